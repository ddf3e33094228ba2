// The DXF reader over libdxflib: the only unit that includes it. Entities
// are collected per block in drawing units, then model space is expanded
// through its INSERTs and scaled to millimetres.
#include <dxflib/dl_creationadapter.h>
#include <dxflib/dl_dxf.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <new>
#include <numbers>

#include "dxf.h"

namespace tessaline::app {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr size_t kMax_Depth = 16;
constexpr long kMax_Expansion_Work = 1000000;
constexpr size_t kMax_Pieces = 200000;
constexpr size_t kMax_Problems = 50;

// x' = a x + b y + e, y' = c x + d y + f.
struct Affine {
  double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;
  double Det() const { return a * d - b * c; }
  // Scales x and y alike and keeps right angles: circles stay circles.
  bool Similar() const {
    double sx = a * a + c * c, sy = b * b + d * d;
    return std::abs(sx - sy) <= 1e-9 * (sx + sy) && std::abs(a * b + c * d) <= 1e-9 * (sx + sy) &&
           sx > 0;
  }
  void Apply(double x, double y, double* ox, double* oy) const {
    *ox = a * x + b * y + e;
    *oy = c * x + d * y + f;
  }
};

// m after n: first n, then m.
Affine Compose(const Affine& m, const Affine& n) {
  return {m.a * n.a + m.b * n.c, m.a * n.b + m.b * n.d,       m.c * n.a + m.d * n.c,
          m.c * n.b + m.d * n.d, m.a * n.e + m.b * n.f + m.e, m.c * n.e + m.d * n.f + m.f};
}

Affine Translate(double x, double y) {
  return {1, 0, 0, 1, x, y};
}
Affine Rotate(double rad) {
  double c = std::cos(rad), s = std::sin(rad);
  return {c, -s, s, c, 0, 0};
}
Affine Scale(double sx, double sy) {
  return {sx, 0, 0, sy, 0, 0};
}

// The counter-clockwise arc from a1 to a2, its span in (0, 2 pi]. Angles
// of any size (a drawing may hold 1e12): the start is reduced to a turn
// and the span taken modulo a turn, never stepped a turn at a time.
Piece Arc_Piece(double xc, double yc, double r, double a1, double a2) {
  double span = std::fmod(a2 - a1, 2 * kPi);
  if (span <= 0) span += 2 * kPi;
  if (std::abs(a1) > 2 * kPi) a1 = std::remainder(a1, 2 * kPi);
  a2 = a1 + span;
  return {Piece::kArc,
          xc + r * std::cos(a1),
          yc + r * std::sin(a1),
          xc + r * std::cos(a2),
          yc + r * std::sin(a2),
          xc,
          yc,
          r,
          a1,
          a2};
}

// The piece under `m`; false when m would turn an arc into an ellipse.
bool Transform(const Affine& m, Piece* p) {
  if (p->kind == Piece::kSegment) {
    m.Apply(p->x1, p->y1, &p->x1, &p->y1);
    m.Apply(p->x2, p->y2, &p->x2, &p->y2);
    return true;
  }
  if (!m.Similar()) return false;
  double s = std::sqrt(std::abs(m.Det())), phi = std::atan2(m.c, m.a);
  m.Apply(p->xc, p->yc, &p->xc, &p->yc);
  p->r *= s;
  if (p->kind == Piece::kCircle) return true;
  double x1, y1, x2, y2;
  m.Apply(p->x1, p->y1, &x1, &y1);
  m.Apply(p->x2, p->y2, &x2, &y2);
  if (m.Det() > 0) {
    *p = {Piece::kArc, x1, y1, x2, y2, p->xc, p->yc, p->r, p->a1 + phi, p->a2 + phi};
  } else {  // a mirror runs the arc the other way round
    *p = {Piece::kArc, x2, y2, x1, y1, p->xc, p->yc, p->r, phi - p->a2, phi - p->a1};
  }
  return true;
}

struct Insert {
  std::string name, layer;
  Affine placement;  // block coordinates to the coordinates of the insert's owner
  int cols, rows;
  double col_step, row_step, angle, sx, sy, ipx, ipy;
};

struct Block {
  double bx = 0, by = 0;
  std::vector<Layered_Piece> pieces;
  std::vector<Insert> inserts;
};

class Collector : public DL_CreationAdapter {
 public:
  std::map<std::string, Block> blocks;
  Block model;
  int insunits = 0;
  std::vector<std::string> problems;

  // Each problem once: a block inserted many times would repeat its own.
  void Problem(const std::string& what) {
    if (problems.size() < kMax_Problems &&
        std::find(problems.begin(), problems.end(), what) == problems.end())
      problems.push_back(what);
  }

  void addBlock(const DL_BlockData& data) override {
    Flush();
    current_ = &blocks[data.name];
    current_->bx = data.bpx;
    current_->by = data.bpy;
  }
  void endBlock() override {
    Flush();
    current_ = &model;
  }
  void addLine(const DL_LineData& d) override {
    Flush();
    Add({Piece::kSegment, d.x1, d.y1, d.x2, d.y2, 0, 0, 0, 0, 0}, false);
  }
  void addArc(const DL_ArcData& d) override {
    Flush();
    if (Bad_Radius(d.radius, "ARC") || Bad_Angles(d.angle1, d.angle2, "ARC")) return;
    Add(Arc_Piece(d.cx, d.cy, d.radius, d.angle1 * kPi / 180, d.angle2 * kPi / 180), true);
  }
  void addCircle(const DL_CircleData& d) override {
    Flush();
    if (Bad_Radius(d.radius, "CIRCLE")) return;
    Add({Piece::kCircle, 0, 0, 0, 0, d.cx, d.cy, d.radius, 0, 2 * kPi}, true);
  }
  void addEllipse(const DL_EllipseData& d) override {
    Flush();
    double r = std::hypot(d.mx, d.my);
    if (!(std::abs(d.ratio - 1) <= 1e-12) || Bad_Radius(r, "ELLIPSE")) {
      Problem("ELLIPSE on layer " + Layer() +
              " refused: only circular ellipses are read; redraw it as arcs");
      return;
    }
    if (Bad_Angles(d.angle1, d.angle2, "ELLIPSE")) return;
    double rot = std::atan2(d.my, d.mx), span = d.angle2 - d.angle1;
    if (std::abs(span) > 4 * kPi) span = std::fmod(span, 2 * kPi);
    if (span <= 0) span += 2 * kPi;
    if (std::abs(span - 2 * kPi) <= 1e-12)
      Add({Piece::kCircle, 0, 0, 0, 0, d.cx, d.cy, r, 0, 2 * kPi}, false);
    else
      Add(Arc_Piece(d.cx, d.cy, r, rot + d.angle1, rot + d.angle2), false);
  }
  void addSpline(const DL_SplineData&) override {
    Flush();
    Problem("SPLINE on layer " + Layer() +
            " refused: splines are not read; redraw it as arcs, lines or a polyline");
  }
  void addPolyline(const DL_PolylineData& d) override {
    Flush();
    if (d.flags & (8 | 16 | 64)) {
      Problem("POLYLINE on layer " + Layer() + " refused: 3-D polylines and meshes are not read");
      return;
    }
    poly_open_ = true;
    poly_closed_ = (d.flags & 1) != 0;
    poly_layer_ = Layer();
    poly_ocs_ = Ocs_Mirrored();
    poly_.clear();
  }
  void addVertex(const DL_VertexData& d) override {
    if (poly_open_ && poly_.size() < kMax_Pieces) poly_.push_back({d.x, d.y, d.bulge});
  }
  void endSequence() override { Flush(); }
  void addInsert(const DL_InsertData& d) override {
    Flush();
    Insert ins{d.name,
               Layer(),
               {},
               std::max(1, d.cols),
               std::max(1, d.rows),
               d.colSp,
               d.rowSp,
               d.angle * kPi / 180,
               d.sx,
               d.sy,
               d.ipx,
               d.ipy};
    if (Ocs_Mirrored()) ins.placement = Scale(-1, 1);
    if (!std::isfinite(d.sx * d.sy * d.angle * d.ipx * d.ipy) || d.sx == 0 || d.sy == 0) {
      Problem("INSERT of block " + d.name + " on layer " + Layer() + " refused: bad scale");
      return;
    }
    current_->inserts.push_back(ins);
  }
  void setVariableInt(const std::string& key, int value, int) override {
    if (key == "$INSUNITS") insunits = value;
  }

  void Flush() {
    if (!poly_open_) return;
    poly_open_ = false;
    size_t n = poly_.size();
    size_t edges = poly_closed_ ? n : n - 1;
    if (n < 2) return;
    for (size_t i = 0; i < edges; ++i) {
      const Vertex &p = poly_[i], &q = poly_[(i + 1) % n];
      Piece piece{Piece::kSegment, p.x, p.y, q.x, q.y, 0, 0, 0, 0, 0};
      if (p.bulge != 0 && std::isfinite(p.bulge)) piece = Bulge_Piece(p.x, p.y, q.x, q.y, p.bulge);
      if (poly_ocs_) Transform(Scale(-1, 1), &piece);
      Push({piece, poly_layer_});
    }
  }

 private:
  struct Vertex {
    double x, y, bulge;
  };
  Block* current_ = &model;
  bool poly_open_ = false, poly_closed_ = false, poly_ocs_ = false;
  std::string poly_layer_;
  std::vector<Vertex> poly_;

  std::string Layer() { return getAttributes().getLayer(); }
  // An extrusion direction of -z mirrors the entity's own coordinates in x.
  bool Ocs_Mirrored() {
    const double* dir = getExtrusion() ? getExtrusion()->getDirection() : nullptr;
    return dir && dir[2] < 0;
  }
  bool Bad_Radius(double r, const char* kind) {
    if (r > 0 && std::isfinite(r)) return false;
    Problem(std::string(kind) + " on layer " + Layer() + " refused: its radius is not positive");
    return true;
  }
  bool Bad_Angles(double a1, double a2, const char* kind) {
    if (std::isfinite(a1) && std::isfinite(a2)) return false;
    Problem(std::string(kind) + " on layer " + Layer() + " refused: its angles are not finite");
    return true;
  }
  void Add(Piece p, bool ocs) {
    if (ocs && Ocs_Mirrored()) Transform(Scale(-1, 1), &p);
    Push({p, Layer()});
  }
  void Push(Layered_Piece p) {
    if (current_->pieces.size() < kMax_Pieces) current_->pieces.push_back(std::move(p));
  }
};

// Millimetres per drawing unit; 0 for a unit that is not a length we know.
double Unit_Mm(int insunits) {
  switch (insunits) {
    case 0:  // unitless: taken as millimetres
    case 4:
      return 1;
    case 1:
      return 25.4;
    case 2:
      return 304.8;
    case 5:
      return 10;
    case 6:
      return 1000;
    case 8:
      return 25.4e-6;
    case 9:
      return 0.0254;
    case 10:
      return 914.4;
    case 13:
      return 1e-3;
    case 14:
      return 100;
    default:
      return 0;
  }
}

// The expansion of model space through its INSERTs. Blocks that insert
// each other several times over multiply at every level, so the work is
// bounded as a whole (pieces placed or refused, copies made), not only by
// the depth, and a block inserted inside itself is refused outright.
class Expansion {
 public:
  Expansion(Collector& c, std::vector<Layered_Piece>* out) : c_(c), out_(out) {}

  void Run(const Block& block, const Affine& m, const std::string& layer0) {
    if (!Spend()) return;
    for (const Layered_Piece& lp : block.pieces) {
      if (out_->size() >= kMax_Pieces || !Spend()) return;
      Layered_Piece p = lp;
      if (!Transform(m, &p.piece)) {
        if (c_.problems.size() < kMax_Problems)
          c_.Problem("arc on layer " + p.layer +
                     " refused: its block is inserted with unequal x and y scales");
        continue;
      }
      // Entities on layer 0 of a block take the layer of the insert.
      if (p.layer == "0" && !layer0.empty()) p.layer = layer0;
      out_->push_back(std::move(p));
    }
    chain_.push_back(&block);
    for (const Insert& ins : block.inserts) {
      if (!Spend()) break;
      auto it = c_.blocks.find(ins.name);
      if (it == c_.blocks.end()) {
        c_.Problem("INSERT of block " + ins.name + " refused: no such block");
        continue;
      }
      const Block& b = it->second;
      if (std::find(chain_.begin(), chain_.end(), &b) != chain_.end()) {
        c_.Problem("INSERT of block " + ins.name + " refused: the block inserts itself");
        continue;
      }
      if (chain_.size() > kMax_Depth || static_cast<long>(ins.cols) * ins.rows > 10000) {
        c_.Problem("INSERT of block " + ins.name + " refused: nested too deep or too many copies");
        continue;
      }
      std::string layer = ins.layer == "0" ? layer0 : ins.layer;
      for (int r = 0; r < ins.rows && work_ > 0; ++r) {
        for (int k = 0; k < ins.cols && work_ > 0; ++k) {
          Affine place =
              Compose(Translate(ins.ipx, ins.ipy),
                      Compose(Rotate(ins.angle),
                              Compose(Translate(k * ins.col_step, r * ins.row_step),
                                      Compose(Scale(ins.sx, ins.sy), Translate(-b.bx, -b.by)))));
          Run(b, Compose(m, Compose(ins.placement, place)), layer);
        }
      }
    }
    chain_.pop_back();
  }

 private:
  // One unit of work; false once the budget is spent (said once).
  bool Spend() {
    if (work_ <= 0) return false;
    if (--work_ > 0) return true;
    c_.Problem("INSERTs refused: the blocks expand to more than " +
               std::to_string(kMax_Expansion_Work) + " pieces and copies");
    return false;
  }

  Collector& c_;
  std::vector<Layered_Piece>* out_;
  std::vector<const Block*> chain_;
  long work_ = kMax_Expansion_Work;
};

// An ASCII DXF file starts with group code 0 and SECTION (comments, code
// 999, may come first).
bool Looks_Like_Dxf(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::string code, value;
  for (int i = 0; i < 64 && std::getline(in, code) && std::getline(in, value); ++i) {
    auto trim = [](std::string s) {
      while (!s.empty() && (s.back() == '\r' || s.back() == ' ' || s.back() == '\t')) s.pop_back();
      size_t k = s.find_first_not_of(" \t");
      return k == std::string::npos ? std::string() : s.substr(k);
    };
    code = trim(code);
    value = trim(value);
    if (code == "999") continue;
    return code == "0" && value == "SECTION";
  }
  return false;
}

}  // namespace

Piece Bulge_Piece(double x1, double y1, double x2, double y2, double b) {
  double dx = x2 - x1, dy = y2 - y1, c = std::hypot(dx, dy);
  if (!(c > 0) || b == 0 || !std::isfinite(b))
    return {Piece::kSegment, x1, y1, x2, y2, 0, 0, 0, 0, 0};
  double h = c * (1 - b * b) / (4 * b);  // signed distance of the centre left of the chord
  double xc = (x1 + x2) / 2 - dy / c * h, yc = (y1 + y2) / 2 + dx / c * h;
  double r = std::hypot(x1 - xc, y1 - yc);
  double a1 = std::atan2(y1 - yc, x1 - xc), a2 = std::atan2(y2 - yc, x2 - xc);
  Piece arc = b > 0 ? Arc_Piece(xc, yc, r, a1, a2) : Arc_Piece(xc, yc, r, a2, a1);
  // The ends are the vertices themselves, so neighbours join exactly.
  if (b > 0) {
    arc.x1 = x1, arc.y1 = y1, arc.x2 = x2, arc.y2 = y2;
  } else {
    arc.x1 = x2, arc.y1 = y2, arc.x2 = x1, arc.y2 = y1;
  }
  return arc;
}

bool Read_Dxf_Pieces(const std::string& path, std::vector<Layered_Piece>* pieces, double* unit_mm,
                     std::vector<std::string>* problems, std::string* error) {
  namespace fs = std::filesystem;
  std::error_code ec;
  if (!fs::is_regular_file(path, ec)) {
    *error = "no such file";
    return false;
  }
  if (fs::file_size(path, ec) > (256u << 20)) {
    *error = "DXF file larger than 256 MB";
    return false;
  }
  if (!Looks_Like_Dxf(path)) {
    *error = "not an ASCII DXF drawing (corrupt or binary DXF)";
    return false;
  }
  Collector c;
  try {
    DL_Dxf dxf;
    if (!dxf.in(path, &c)) {
      *error = "cannot be opened";
      return false;
    }
    c.Flush();
  } catch (const std::bad_alloc&) {
    *error = "corrupt DXF drawing: a count it holds cannot be met";
    return false;
  } catch (...) {
    *error = "corrupt DXF drawing";
    return false;
  }
  double unit = Unit_Mm(c.insunits);
  if (unit == 0) {
    *error = "$INSUNITS " + std::to_string(c.insunits) + " is not a unit of length this reads";
    return false;
  }
  pieces->clear();
  Expansion(c, pieces).Run(c.model, Scale(unit, unit), "");
  if (pieces->size() >= kMax_Pieces) c.Problem("more than 200000 elements: the rest is left out");
  *unit_mm = unit;
  problems->insert(problems->end(), c.problems.begin(), c.problems.end());
  return true;
}

}  // namespace tessaline::app
