// Cross-sections drawn from segments, arcs and circles for the analysis
// tests: rectangle, hollow rectangle, circle, annulus, I-section with root
// fillets, angle, plate with two holes, and any outline of straight and
// circular pieces, each placed at an offset and a rotation.
//
// Shapes are given in their own axes and placed by turning them
// counter-clockwise by `angle` about their own origin, then moving that
// origin to (x, y). Every point is computed once in the shape's axes and
// placed once, so pieces that meet share their end points bit for bit
// (arcs get their ends set to the placed points). A Section owns its
// elements and, once built, its surface.
#pragma once

#include <cmath>
#include <numbers>
#include <vector>

#include <tessaline/tessaline.h>

struct Placement {
  double x = 0, y = 0, angle = 0;
};

// A vertex of an outline. The piece from it to the next vertex is straight,
// or, when `arc`, a circular arc about (cx, cy) in the shape's axes,
// counter-clockwise when `ccw`.
struct Vertex {
  double x, y;
  bool arc = false;
  double cx = 0, cy = 0;
  bool ccw = true;
};

class Section {
 public:
  explicit Section(Placement p = {}) : p_(p) {}
  ~Section() {
    Delete_Surface(&surface_);
    DeleteObjectsArray(&objects_);
  }
  Section(const Section&) = delete;
  Section& operator=(const Section&) = delete;

  // ---- Pieces, in the shape's axes ----
  HGLOBAL Segment(double x1, double y1, double x2, double y2) {
    double a, b, c, d;
    Place(x1, y1, &a, &b);
    Place(x2, y2, &c, &d);
    return Add(Create_Line(a, b, c, d));
  }
  // The arc about (cx, cy) counter-clockwise from (x1, y1) to (x2, y2),
  // both on its circle.
  HGLOBAL Arc(double cx, double cy, double x1, double y1, double x2, double y2) {
    double r = std::hypot(x1 - cx, y1 - cy);
    double a1 = std::atan2(y1 - cy, x1 - cx) + p_.angle;
    double a2 = std::atan2(y2 - cy, x2 - cx) + p_.angle;
    double pcx, pcy, px1, py1, px2, py2;
    Place(cx, cy, &pcx, &pcy);
    Place(x1, y1, &px1, &py1);
    Place(x2, y2, &px2, &py2);
    HGLOBAL h = Add(Create_Arc(pcx, pcy, r, a1, a2));
    Set_Arc_Ends(h, px1, py1, px2, py2);
    return h;
  }
  HGLOBAL Circle(double cx, double cy, double r) {
    double x, y;
    Place(cx, cy, &x, &y);
    return Add(Create_Circle(x, y, r));
  }
  // The closed outline through the vertices, in order.
  Section& Outline(const std::vector<Vertex>& v) {
    for (size_t i = 0; i < v.size(); ++i) {
      const Vertex& a = v[i];
      const Vertex& b = v[(i + 1) % v.size()];
      if (!a.arc) {
        Segment(a.x, a.y, b.x, b.y);
      } else if (a.ccw) {
        Arc(a.cx, a.cy, a.x, a.y, b.x, b.y);
      } else {
        Arc(a.cx, a.cy, b.x, b.y, a.x, a.y);
      }
    }
    return *this;
  }

  // ---- Shapes, in the shape's axes ----
  // b x h, centred on (cx, cy).
  Section& Rectangle(double b, double h, double cx = 0, double cy = 0) {
    return Outline({{cx - b / 2, cy - h / 2},
                    {cx + b / 2, cy - h / 2},
                    {cx + b / 2, cy + h / 2},
                    {cx - b / 2, cy + h / 2}});
  }
  // b x h with walls t, centred on the origin.
  Section& Hollow_Rectangle(double b, double h, double t) {
    return Rectangle(b, h).Rectangle(b - 2 * t, h - 2 * t);
  }
  Section& Round(double r, double cx = 0, double cy = 0) {
    Circle(cx, cy, r);
    return *this;
  }
  Section& Annulus(double r_out, double r_in) { return Round(r_out).Round(r_in); }
  // A doubly symmetric I-section centred on the origin: width b, height h,
  // web tw, flanges tf, four root fillets of radius r between web and
  // flanges (r = 0: none).
  Section& I_Section(double b, double h, double tw, double tf, double r) {
    return Outline(I_Outline(b, h, tw, tf, r));
  }
  // Counter-clockwise; the concave fillets are travelled clockwise.
  static std::vector<Vertex> I_Outline(double b, double h, double tw, double tf, double r) {
    const double x = b / 2, y = h / 2, w = tw / 2, f = y - tf;
    const double c = w + r, g = f - r;  // fillet centres at (+-c, +-g)
    if (r == 0) {
      return {{-x, -y}, {x, -y}, {x, -f}, {w, -f}, {w, f},   {x, f},
              {x, y},   {-x, y}, {-x, f}, {-w, f}, {-w, -f}, {-x, -f}};
    }
    return {{-x, -y}, {x, -y},
            {x, -f},  {c, -f, true, c, -g, false},
            {w, -g},  {w, g, true, c, g, false},
            {c, f},   {x, f},
            {x, y},   {-x, y},
            {-x, f},  {-c, f, true, -c, g, false},
            {-w, g},  {-w, -g, true, -c, -g, false},
            {-c, -f}, {-x, -f}};
  }
  // An L angle with its corner at the origin: legs b along x and h along y,
  // both t thick.
  Section& Angle(double b, double h, double t) {
    return Outline({{0, 0}, {b, 0}, {b, t}, {t, t}, {t, h}, {0, h}});
  }
  // A b x h plate centred on the origin with a round hole of radius r
  // centred at (-b/4, 0) and a square hole of side s centred at (b/4, 0).
  Section& Plate_With_Two_Holes(double b, double h, double r, double s) {
    return Rectangle(b, h).Round(r, -b / 4, 0).Rectangle(s, s, b / 4, 0);
  }

  // The surface of what is drawn (filed once, on first use).
  Surface_Type* surface() {
    if (!filed_) {
      filed_ = true;
      contours_ = Make_Surface_From_Objects(&objects_, &surface_);
    }
    return &surface_;
  }
  int contours() {
    surface();
    return contours_;
  }
  Objects_Array_Type* objects() { return &objects_; }

 private:
  HGLOBAL Add(HGLOBAL h) {
    Add_Element_In_Array_by_Handle(&objects_, h);
    return h;
  }
  void Place(double x, double y, double* px, double* py) const {
    double c = std::cos(p_.angle), s = std::sin(p_.angle);
    if (p_.angle == 0) c = 1, s = 0;
    *px = p_.x + c * x - s * y;
    *py = p_.y + s * x + c * y;
  }

  Placement p_;
  Objects_Array_Type objects_{};
  Surface_Type surface_{};
  bool filed_ = false;
  int contours_ = 0;
};
