#include "picture.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>

#include "output_file.h"

namespace tessaline::app {

namespace {

// A 5 x 7 pixel font for the labels: digits and the few signs numbers need.
struct Glyph {
  char c;
  unsigned char rows[7];
};
constexpr Glyph kFont[] = {
    {'0', {0x0E, 0x11, 0x13, 0x15, 0x19, 0x11, 0x0E}},
    {'1', {0x04, 0x0C, 0x04, 0x04, 0x04, 0x04, 0x0E}},
    {'2', {0x0E, 0x11, 0x01, 0x02, 0x04, 0x08, 0x1F}},
    {'3', {0x1F, 0x02, 0x04, 0x02, 0x01, 0x11, 0x0E}},
    {'4', {0x02, 0x06, 0x0A, 0x12, 0x1F, 0x02, 0x02}},
    {'5', {0x1F, 0x10, 0x1E, 0x01, 0x01, 0x11, 0x0E}},
    {'6', {0x06, 0x08, 0x10, 0x1E, 0x11, 0x11, 0x0E}},
    {'7', {0x1F, 0x01, 0x02, 0x04, 0x08, 0x08, 0x08}},
    {'8', {0x0E, 0x11, 0x11, 0x0E, 0x11, 0x11, 0x0E}},
    {'9', {0x0E, 0x11, 0x11, 0x0F, 0x01, 0x02, 0x0C}},
    {'.', {0x00, 0x00, 0x00, 0x00, 0x00, 0x0C, 0x0C}},
    {'-', {0x00, 0x00, 0x00, 0x1F, 0x00, 0x00, 0x00}},
    {'+', {0x00, 0x04, 0x04, 0x1F, 0x04, 0x04, 0x00}},
    {'e', {0x00, 0x00, 0x0E, 0x11, 0x1F, 0x10, 0x0E}},
    {'m', {0x00, 0x00, 0x1A, 0x15, 0x15, 0x11, 0x11}},
    {'x', {0x00, 0x00, 0x11, 0x0A, 0x04, 0x0A, 0x11}},
};
constexpr int kScale = 2;             // font pixels per glyph pixel
constexpr int kAdvance = 6 * kScale;  // glyph width with its gap
constexpr int kTextHeight = 7 * kScale;

int Text_Width(const std::string& s) {
  return static_cast<int>(s.size()) * kAdvance - kScale;
}

void Draw_Text(HDC dc, int x, int y, const std::string& s, COLORREF colour) {
  for (char c : s) {
    for (const Glyph& g : kFont) {
      if (g.c != c) continue;
      for (int row = 0; row < 7; ++row)
        for (int col = 0; col < 5; ++col)
          if (g.rows[row] & (0x10 >> col))
            for (int dy = 0; dy < kScale; ++dy)
              for (int dx = 0; dx < kScale; ++dx)
                SetPixelV(dc, x + col * kScale + dx, y + row * kScale + dy, colour);
    }
    x += kAdvance;
  }
}

std::string Format_Length(double v) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.6g", v);
  return buf;
}

// The memory context the picture is drawn on, released in any case.
class Canvas {
 public:
  Canvas(int w, int h) {
    dc_ = CreateCompatibleDC(nullptr);
    bitmap_ = dc_ ? CreateCompatibleBitmap(dc_, w, h) : nullptr;
    if (bitmap_) old_ = SelectObject(dc_, bitmap_);
  }
  ~Canvas() {
    if (old_) SelectObject(dc_, old_);
    if (bitmap_) DeleteObject(bitmap_);
    if (dc_) DeleteDC(dc_);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;
  bool ok() const { return bitmap_ != nullptr; }
  HDC dc() const { return dc_; }

 private:
  HDC dc_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ old_ = nullptr;
};

// World millimetres to picture pixels, y up in the world and down in the picture.
struct Mapping {
  double scale, x0, y0;  // pixels per mm; world point at pixel (0, height)
  int height;
  int X(double x) const { return static_cast<int>(std::lround((x - x0) * scale)); }
  int Y(double y) const { return height - static_cast<int>(std::lround((y - y0) * scale)); }
};

void Line(HDC dc, int x1, int y1, int x2, int y2) {
  MoveToEx(dc, x1, y1, nullptr);
  LineTo(dc, x2, y2);
}

// A dimension line with end ticks and its length written beside it.
void Dimension(HDC dc, bool horizontal, int a, int b, int at, double length, COLORREF colour) {
  HPEN pen = CreatePen(PS_SOLID, 1, colour);
  HGDIOBJ old = SelectObject(dc, pen);
  std::string label = Format_Length(length);
  if (horizontal) {
    Line(dc, a, at, b, at);
    Line(dc, a, at - 6, a, at + 7);
    Line(dc, b, at - 6, b, at + 7);
    Draw_Text(dc, (a + b - Text_Width(label)) / 2, at + 8, label, colour);
  } else {
    Line(dc, at, a, at, b);
    Line(dc, at - 6, a, at + 7, a);
    Line(dc, at - 6, b, at + 7, b);
    Draw_Text(dc, at - 8 - Text_Width(label), (a + b - kTextHeight) / 2, label, colour);
  }
  SelectObject(dc, old);
  DeleteObject(pen);
}

void Centroid_And_Axes(HDC dc, const Mapping& m, const Section_Result& r) {
  int cx = m.X(r.cx), cy = m.Y(r.cy);
  double reach = 0.5 * std::hypot(r.xmax - r.xmin, r.ymax - r.ymin) * m.scale + 10;
  HPEN axis = CreatePen(PS_DASHDOT, 1, RGB(200, 30, 30));
  HGDIOBJ old = SelectObject(dc, axis);
  for (double a : {r.angle, r.angle + M_PI / 2}) {
    int dx = static_cast<int>(std::lround(reach * std::cos(a)));
    int dy = static_cast<int>(std::lround(reach * std::sin(a)));
    Line(dc, cx - dx, cy + dy, cx + dx, cy - dy);
  }
  HPEN mark = CreatePen(PS_SOLID, 2, RGB(200, 30, 30));
  SelectObject(dc, mark);
  HGDIOBJ old_brush = SelectObject(dc, GetStockObject(NULL_BRUSH));
  Ellipse(dc, cx - 6, cy - 6, cx + 7, cy + 7);
  Line(dc, cx - 9, cy, cx + 10, cy);
  Line(dc, cx, cy - 9, cx, cy + 10);
  SelectObject(dc, old_brush);
  SelectObject(dc, old);
  DeleteObject(axis);
  DeleteObject(mark);
}

// Owns a split's blocks.
struct Split_Blocks {
  FE_Split split{};
  ~Split_Blocks() { Free_FE_Split(&split); }
};

// The mesher split of the section at about `elements` triangles; with
// `torsion` the mesh the torsion analysis refines to a 1e-3 gap, its
// per-triangle stresses in tau_x and tau_y.
bool Make_Split(Section& s, double area, int elements, bool torsion, Split_Blocks* m,
                std::string* error) {
  double h = Element_Size(area, torsion ? std::max(50, elements / 4) : elements);
  if (torsion) {
    // The torsion analysis moves the middle of each boundary chord onto its
    // arc: no chord may turn by more than 22.5 degrees, or the element on a
    // small fillet folds.
    for (const Piece& p : s.outline.pieces) {
      if (p.kind == Piece::kArc)
        h = std::min(h, p.r * (p.a2 - p.a1) / std::ceil((p.a2 - p.a1) / (std::numbers::pi / 8)));
      if (p.kind == Piece::kCircle) h = std::min(h, p.r * std::numbers::pi / 8);
    }
  }
  if (!Split_Surface_By_Mesher(&s.surface, &m->split, &m->split.node_count, &m->split.triangles,
                               &m->split.triangle_count, nullptr, h) ||
      m->split.triangle_count <= 0) {
    *error = "the section could not be split into elements";
    return false;
  }
  if (!torsion) return true;
  Torsion_Warping_Options options{1e-3, 4 * elements, 1.0};
  Torsion_Warping_Result t{};
  if (Calc_Torsion_Warping_On_Split(&s.surface, &m->split, &options, &t) ==
      TORSION_WARPING_FAILED) {
    *error = "the torsion analysis failed";
    return false;
  }
  return true;
}

// The triangles of the split: outlined, or filled by the size of their
// torsion shear stress on a blue-to-red scale with its legend.
void Draw_Split(HDC dc, const Mapping& m, const FE_Split& split, bool stress, int width) {
  const FEPOINT* nodes = static_cast<const FEPOINT*>(GlobalLock(split.nodes));
  const FE3Ang* tri = static_cast<const FE3Ang*>(GlobalLock(split.triangles));
  const double* tx = stress ? static_cast<const double*>(GlobalLock(split.tau_x)) : nullptr;
  const double* ty = stress ? static_cast<const double*>(GlobalLock(split.tau_y)) : nullptr;
  int n = split.triangle_count, nn = split.node_count;
  if (nodes && tri && (!stress || (tx && ty))) {
    constexpr int kShades = 64;
    HBRUSH shades[kShades];
    double lo = 0, hi = 0;
    if (stress) {
      for (int i = 0; i < n; ++i) hi = std::max(hi, std::hypot(tx[i], ty[i]));
      for (int k = 0; k < kShades; ++k) {
        double r = 0, g = 0, b = 0;
        HSVtoRGB(300 - 240.0 * k / (kShades - 1), 1, 1, &r, &g, &b);
        shades[k] = CreateSolidBrush(
            RGB(static_cast<int>(255 * r), static_cast<int>(255 * g), static_cast<int>(255 * b)));
      }
    }
    HPEN pen = CreatePen(PS_SOLID, 1, RGB(60, 60, 90));
    HGDIOBJ old_pen = SelectObject(dc, stress ? GetStockObject(NULL_PEN) : pen);
    HGDIOBJ old_brush = SelectObject(dc, GetStockObject(NULL_BRUSH));
    for (int i = 0; i < n; ++i) {
      POINT p[3];
      bool ok = true;
      for (int c = 0; c < 3; ++c) {
        int k = tri[i].n[c];
        ok = ok && k >= 0 && k < nn;
        if (ok) p[c] = {m.X(nodes[k].x), m.Y(nodes[k].y)};
      }
      if (!ok) continue;
      if (stress) {
        double t = hi > lo ? (std::hypot(tx[i], ty[i]) - lo) / (hi - lo) : 0;
        SelectObject(dc,
                     shades[std::clamp(static_cast<int>(t * (kShades - 1) + 0.5), 0, kShades - 1)]);
      }
      Polygon(dc, p, 3);
    }
    SelectObject(dc, old_brush);
    SelectObject(dc, old_pen);
    DeleteObject(pen);
    if (stress) {
      // Legend: the scale from the largest stress at the top to zero below.
      int x = width - 100, top = 30, bottom = m.height - 80;
      for (int y = top; y <= bottom; ++y) {
        double t = static_cast<double>(bottom - y) / (bottom - top);
        RECT band{x, y, x + 24, y + 1};
        FillRect(dc, &band,
                 shades[std::clamp(static_cast<int>(t * (kShades - 1) + 0.5), 0, kShades - 1)]);
      }
      char label[32];
      std::snprintf(label, sizeof label, "%.3g", hi);
      Draw_Text(dc, x - 10, top - 20, label, RGB(40, 40, 40));
      Draw_Text(dc, x, bottom + 8, "0", RGB(40, 40, 40));
      for (HBRUSH b : shades) DeleteObject(b);
    }
  }
  if (nodes) GlobalUnlock(split.nodes);
  if (tri) GlobalUnlock(split.triangles);
  if (tx) GlobalUnlock(split.tau_x);
  if (ty) GlobalUnlock(split.tau_y);
}

}  // namespace

bool Write_Section_Picture(Section& s, const Section_Result& r, const Picture_Options& o,
                           const std::string& path, std::string* error) {
  if (o.width < 100 || o.height < 100 || o.width > 8000 || o.height > 8000) {
    *error = "picture size must be 100 to 8000 pixels a side";
    return false;
  }
  Canvas canvas(o.width, o.height);
  if (!canvas.ok()) {
    *error = "out of memory for the picture";
    return false;
  }
  HDC dc = canvas.dc();
  RECT all{0, 0, o.width, o.height};
  FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));

  // Room for the dimensions on the left and below, the legend on the right.
  const int left = 90, bottom = 60, top = 20, right = o.torsion_stress ? 120 : 30;
  double w = std::max(r.xmax - r.xmin, 1e-9), h = std::max(r.ymax - r.ymin, 1e-9);
  double scale = std::min((o.width - left - right) / w, (o.height - top - bottom) / h);
  if (!(scale > 0)) {
    *error = "picture too small for the section";
    return false;
  }
  Mapping m{scale, 0, 0, o.height};
  double spare_x = (o.width - left - right) / scale - w,
         spare_y = (o.height - top - bottom) / scale - h;
  m.x0 = r.xmin - left / scale - spare_x / 2;
  m.y0 = r.ymin - bottom / scale - spare_y / 2;

  Coord_Syst cs{};
  cs.world = {m.x0, m.y0, o.width / scale, o.height / scale};
  cs.window = {0, o.height, o.width, -o.height};
  if (!Draw_Surface(&s.surface, dc, &cs, RGB(150, 185, 225), RGB(20, 40, 90))) {
    *error = "the section could not be drawn";
    return false;
  }
  if (o.mesh || o.torsion_stress) {
    Split_Blocks split;
    if (!Make_Split(s, r.area, o.elements, o.torsion_stress, &split, error)) return false;
    Draw_Split(dc, m, split.split, o.torsion_stress, o.width);
  }
  Centroid_And_Axes(dc, m, r);
  COLORREF ink = RGB(40, 40, 40);
  Dimension(dc, true, m.X(r.xmin), m.X(r.xmax), m.Y(r.ymin) + 18, w, ink);
  Dimension(dc, false, m.Y(r.ymax), m.Y(r.ymin), m.X(r.xmin) - 18, h, ink);

  return Write_Atomically(
      path,
      [&](const std::string& temp, std::string* why) {
        if (WriteDCPng(dc, temp.c_str())) return true;
        *why = "the PNG could not be written";
        return false;
      },
      error);
}

}  // namespace tessaline::app
