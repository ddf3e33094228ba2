// Exact and plastic section properties against closed forms and identities.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>
#include <vector>

#include "contour/drawing.h"
#include "support/sections.h"

namespace {

constexpr double kPi = std::numbers::pi;

// Raw sums of a region put together from rectangles, disks and quarter
// disks, each added or taken away: the closed forms.
struct Closed_Form {
  double a = 0, sx = 0, sy = 0, sxx = 0, syy = 0, sxy = 0;
  double dx = 0, dy = 0;  // where the shape's origin lies

  // The region about (cx, cy) with area a and moments about its own centre.
  void Add(double sign, double cx, double cy, double area, double su, double sv, double suu,
           double svv, double suv) {
    cx += dx, cy += dy;
    a += sign * area;
    sx += sign * (su + cx * area);
    sy += sign * (sv + cy * area);
    sxx += sign * (suu + 2 * cx * su + cx * cx * area);
    syy += sign * (svv + 2 * cy * sv + cy * cy * area);
    sxy += sign * (suv + cx * sv + cy * su + cx * cy * area);
  }
  Closed_Form& Rect(double x0, double y0, double x1, double y1, double sign = 1) {
    double b = x1 - x0, h = y1 - y0;
    Add(sign, (x0 + x1) / 2, (y0 + y1) / 2, b * h, 0, 0, h * b * b * b / 12, b * h * h * h / 12, 0);
    return *this;
  }
  Closed_Form& Disk(double cx, double cy, double r, double sign = 1) {
    double m = kPi * r * r * r * r / 4;
    Add(sign, cx, cy, kPi * r * r, 0, 0, m, m, 0);
    return *this;
  }
  // The quarter of the disk about (cx, cy) towards (qx, qy), each +-1.
  Closed_Form& Quarter(double cx, double cy, double r, double qx, double qy, double sign = 1) {
    double r3 = r * r * r, m = kPi * r3 * r / 16;
    Add(sign, cx, cy, kPi * r * r / 4, qx * r3 / 3, qy * r3 / 3, m, m, qx * qy * r3 * r / 8);
    return *this;
  }
  Closed_Form& I_Section(double b, double h, double tw, double tf, double r) {
    const double x = b / 2, y = h / 2, w = tw / 2, f = y - tf;
    Rect(-x, f, x, y).Rect(-x, -y, x, -f).Rect(-w, -f, w, f);
    for (double ex : {-1.0, 1.0}) {
      for (double ey : {-1.0, 1.0}) {
        Rect(std::min(ex * w, ex * (w + r)), std::min(ey * (f - r), ey * f),
             std::max(ex * w, ex * (w + r)), std::max(ey * (f - r), ey * f));
        Quarter(ex * (w + r), ey * (f - r), r, -ex, ey, -1);
      }
    }
    return *this;
  }
};

// Fields 1 to 6 against the closed form, to 1e-12 of the section's scale.
void Expect_Sums(const surface_geometry& g, const Closed_Form& c, double size) {
  const double tol = 1e-12 * std::fabs(c.a) * (1 + size * size);
  EXPECT_NEAR(g.area, c.a, 1e-12 * c.a);
  EXPECT_NEAR(g.first_moment_x, c.sx, tol * (1 + size));
  EXPECT_NEAR(g.first_moment_y, c.sy, tol * (1 + size));
  EXPECT_NEAR(g.second_moment_x, c.sxx, tol * size * size);
  EXPECT_NEAR(g.second_moment_y, c.syy, tol * size * size);
  EXPECT_NEAR(g.product_moment, c.sxy, tol * size * size);
}

surface_geometry Exact(Section& s) {
  surface_geometry g{};
  EXPECT_EQ(Calc_Exact_Surface_Param(s.surface(), &g), 1);
  return g;
}

// The principal moments of the central tensor, larger first: invariant
// under rotation whatever the principal-angle rule of field 7 picks.
std::pair<double, double> Eigen(const surface_geometry& g) {
  double m = (g.central_moment_x + g.central_moment_y) / 2;
  double r = std::hypot((g.central_moment_x - g.central_moment_y) / 2, g.central_product_moment);
  return {m + r, m - r};
}

TEST(ExactProperties, ClosedForms) {
  const double dx = 37, dy = -12;
  struct Case {
    const char* name;
    std::function<void(Section&)> draw;
    std::function<void(Closed_Form&)> closed;
    int contours;
  };
  const Case cases[] = {
      {"rectangle", [](Section& s) { s.Rectangle(100, 50); },
       [](Closed_Form& c) { c.Rect(-50, -25, 50, 25); }, 1},
      {"hollow rectangle", [](Section& s) { s.Hollow_Rectangle(100, 60, 5); },
       [](Closed_Form& c) { c.Rect(-50, -30, 50, 30).Rect(-45, -25, 45, 25, -1); }, 2},
      {"circle", [](Section& s) { s.Round(40); }, [](Closed_Form& c) { c.Disk(0, 0, 40); }, 1},
      {"hollow circle", [](Section& s) { s.Annulus(40, 31); },
       [](Closed_Form& c) { c.Disk(0, 0, 40).Disk(0, 0, 31, -1); }, 2},
      {"I-section", [](Section& s) { s.I_Section(200, 300, 10, 15, 18); },
       [](Closed_Form& c) { c.I_Section(200, 300, 10, 15, 18); }, 1},
      {"angle", [](Section& s) { s.Angle(80, 120, 8); },
       [](Closed_Form& c) { c.Rect(0, 0, 80, 8).Rect(0, 8, 8, 120); }, 1},
      {"plate with two holes", [](Section& s) { s.Plate_With_Two_Holes(200, 80, 20, 30); },
       [](Closed_Form& c) {
         c.Rect(-100, -40, 100, 40).Disk(-50, 0, 20, -1).Rect(35, -15, 65, 15, -1);
       },
       3},
  };
  for (const Case& k : cases) {
    SCOPED_TRACE(k.name);
    Section s(Placement{dx, dy, 0});
    k.draw(s);
    ASSERT_EQ(s.contours(), k.contours);
    Closed_Form c;
    c.dx = dx, c.dy = dy;
    k.closed(c);
    surface_geometry g = Exact(s);
    Expect_Sums(g, c, 300);
    // The completion is that of the record: the centroid from the sums.
    EXPECT_NEAR(g.centroid_x, c.sx / c.a, 1e-10);
    EXPECT_NEAR(g.centroid_y, c.sy / c.a, 1e-10);
  }
}

TEST(ExactProperties, AreasAddWhenCut) {
  // An I-section cut along its horizontal axis into two tees; the cut runs
  // through the web, between the fillets.
  const double b = 200, h = 300, tw = 10, tf = 15, r = 18;
  const double x = b / 2, y = h / 2, w = tw / 2, f = y - tf, c = w + r, g = f - r;
  const Placement at{5, 7, 0.3};
  Section whole(at), top(at), bottom(at);
  whole.I_Section(b, h, tw, tf, r);
  top.Outline({{w, 0},
               {w, g, true, c, g, false},
               {c, f},
               {x, f},
               {x, y},
               {-x, y},
               {-x, f},
               {-c, f, true, -c, g, false},
               {-w, g},
               {-w, 0}});
  bottom.Outline({{-w, 0},
                  {-w, -g, true, -c, -g, false},
                  {-c, -f},
                  {-x, -f},
                  {-x, -y},
                  {x, -y},
                  {x, -f},
                  {c, -f, true, c, -g, false},
                  {w, -g},
                  {w, 0}});
  surface_geometry gw = Exact(whole), gt = Exact(top), gb = Exact(bottom);
  const double* fw = &gw.area;
  const double* ft = &gt.area;
  const double* fb = &gb.area;
  const double scale[6] = {1, y, y, y * y, y * y, y * y};
  for (int i = 0; i < 6; ++i) {
    EXPECT_NEAR(ft[i] + fb[i], fw[i], 1e-12 * gw.area * scale[i]) << "field " << i + 1;
  }
}

TEST(ExactProperties, TranslationAndRotation) {
  // An unequal angle has a product moment and distinct principal moments.
  Section base;
  base.Angle(80, 120, 8);
  surface_geometry g0 = Exact(base);
  auto [i1, i2] = Eigen(g0);
  const double tol = 1e-12 * i1;
  for (Placement p : {Placement{40, -25, 0}, Placement{0, 0, 0.7}, Placement{-60, 30, 2.5},
                      Placement{10, 10, -1.2}, Placement{0, 0, kPi / 2}}) {
    Section s(p);
    s.Angle(80, 120, 8);
    surface_geometry g = Exact(s);
    EXPECT_NEAR(g.area, g0.area, 1e-13 * g0.area);
    // The centroid moves with the section.
    double cx = p.x + std::cos(p.angle) * g0.centroid_x - std::sin(p.angle) * g0.centroid_y;
    double cy = p.y + std::sin(p.angle) * g0.centroid_x + std::cos(p.angle) * g0.centroid_y;
    EXPECT_NEAR(g.centroid_x, cx, 1e-12 * 120);
    EXPECT_NEAR(g.centroid_y, cy, 1e-12 * 120);
    // Parallel axes: the origin moments are the central ones plus A d^2.
    EXPECT_NEAR(g.second_moment_x, g.central_moment_y + g.area * cx * cx, tol);
    EXPECT_NEAR(g.product_moment, g.central_product_moment + g.area * cx * cy, tol);
    auto [j1, j2] = Eigen(g);
    EXPECT_NEAR(j1, i1, tol);
    EXPECT_NEAR(j2, i2, tol);
    EXPECT_NEAR(g.polar_moment, g0.polar_moment, tol);
    if (p.angle == 0) {
      EXPECT_NEAR(g.central_moment_x, g0.central_moment_x, tol);
      EXPECT_NEAR(g.central_product_moment, g0.central_product_moment, tol);
    }
  }
}

TEST(ExactProperties, SplineFollowsItsCurve) {
  // A closed spline round eight points; its exact area against the polygon
  // of its own curve at 4000 points a piece (error ~1e-7 of the area: the
  // chords cut the curve by O(h^2)).
  const int n = 9;
  double xs[n], ys[n], m1[n] = {}, m2[n] = {};
  for (int i = 0; i < n; ++i) {
    double t = 2 * kPi * i / (n - 1);
    xs[i] = 30 * std::cos(t) + 5 * std::cos(3 * t) + 100;
    ys[i] = 20 * std::sin(t) - 50;
  }
  xs[n - 1] = xs[0], ys[n - 1] = ys[0];
  Drawing d;
  HGLOBAL spline = d.Add(Create_Spline(n, xs, ys, m1, m2));
  ASSERT_EQ(Calc_Spline_Coef(spline), 1);
  Surface_Record surface;
  ASSERT_EQ(surface.Outer({spline}), 0);
  surface_geometry g{};
  ASSERT_EQ(Calc_Exact_Surface_Param(&surface.s, &g), 1);

  double mx[n], my[n], area = 0;
  for (int i = 0; i < n; ++i) Get_Spline_Node_Coord_by_Handle(spline, i, &xs[i], &ys[i]);
  {
    auto* e = static_cast<Element_Record*>(GlobalLock(spline));
    auto* bx = static_cast<double*>(GlobalLock(e->u.spline.m1));
    auto* by = static_cast<double*>(GlobalLock(e->u.spline.m2));
    for (int i = 0; i < n; ++i) mx[i] = bx[i], my[i] = by[i];
    GlobalUnlock(e->u.spline.m2), GlobalUnlock(e->u.spline.m1), GlobalUnlock(spline);
  }
  double px = xs[0], py = ys[0];
  for (int i = 0; i + 1 < n; ++i) {
    double hc = std::hypot(xs[i + 1] - xs[i], ys[i + 1] - ys[i]);
    for (int k = 1; k <= 4000; ++k) {
      double u = k / 4000.0, w = u * (1 - u) / 6 * hc * hc;
      double qx = (1 - u) * xs[i] + u * xs[i + 1] - w * ((2 - u) * mx[i] + (1 + u) * mx[i + 1]);
      double qy = (1 - u) * ys[i] + u * ys[i + 1] - w * ((2 - u) * my[i] + (1 + u) * my[i + 1]);
      area += (px * qy - qx * py) / 2;
      px = qx, py = qy;
    }
  }
  EXPECT_NEAR(g.area, std::fabs(area), 1e-6 * g.area);
  EXPECT_NEAR(g.area, kPi * 30 * 20, 0.05 * g.area);  // and it is about the ellipse
}

TEST(ExactProperties, PolylineAndSplineOutlines) {
  // The same outlines as one closed polyline (either way round) and as a
  // spline whose moments are zero (straight pieces) give the sums and the
  // plastic moduli of their segments.
  const double x[] = {0, 80, 80, 8, 8, 0, 0}, y[] = {0, 0, 8, 8, 120, 120, 0};
  const double rx[] = {0, 0, 8, 8, 80, 80, 0}, ry[] = {0, 120, 120, 8, 8, 0, 0};
  const double tx[] = {0, 50, 10, 0}, ty[] = {0, 5, 40, 0}, zero[4] = {};
  Drawing d;
  Surface_Record forward, backward, spline, triangle;
  forward.Outer({d.Add(Create_Polyline(7, x, y))});
  backward.Outer({d.Add(Create_Polyline(7, rx, ry))});
  spline.Outer({d.Add(Create_Spline(4, tx, ty, zero, zero))});
  triangle.Outer(d.Polygon({{0, 0}, {50, 5}, {10, 40}}));
  Section angle;
  angle.Angle(80, 120, 8);
  auto same = [](Surface_Type* a, Surface_Type* b) {
    surface_geometry ga{}, gb{};
    ASSERT_EQ(Calc_Exact_Surface_Param(a, &ga), 1);
    ASSERT_EQ(Calc_Exact_Surface_Param(b, &gb), 1);
    const double* fa = &ga.area;
    const double* fb = &gb.area;
    for (int i = 0; i < 6; ++i) EXPECT_NEAR(fa[i], fb[i], 1e-12 * std::fabs(fb[i]) + 1e-6) << i;
    Plastic_Geometry pa{}, pb{};
    ASSERT_EQ(Calc_Plastic_Surface_Param(a, &pa), 1);
    ASSERT_EQ(Calc_Plastic_Surface_Param(b, &pb), 1);
    EXPECT_NEAR(pa.x_axis.plastic_modulus, pb.x_axis.plastic_modulus,
                1e-11 * pb.x_axis.plastic_modulus);
    EXPECT_NEAR(pa.major.plastic_modulus, pb.major.plastic_modulus,
                1e-11 * pb.major.plastic_modulus);
    EXPECT_NEAR(pa.minor.fibre, pb.minor.fibre, 1e-11 * pb.minor.fibre);
  };
  same(&forward.s, angle.surface());
  same(&backward.s, angle.surface());
  same(&spline.s, &triangle.s);
}

TEST(PlasticProperties, ClosedForms) {
  auto plastic = [](Section& s) {
    Plastic_Geometry p{};
    EXPECT_EQ(Calc_Plastic_Surface_Param(s.surface(), &p), 1);
    return p;
  };
  Section rect(Placement{12, -3, 0}), round(Placement{-7, 4, 0}), i(Placement{100, 50, 0});
  const Plastic_Geometry p = plastic(rect.Rectangle(60, 140));
  EXPECT_NEAR(p.x_axis.plastic_modulus, 60 * 140 * 140 / 4.0, 1e-12 * 60 * 140 * 140);
  EXPECT_NEAR(p.y_axis.plastic_modulus, 140 * 60 * 60 / 4.0, 1e-12 * 60 * 140 * 140);
  EXPECT_NEAR(p.x_axis.shape_factor, 1.5, 1e-12);
  EXPECT_NEAR(p.x_axis.y, -3, 1e-10);
  EXPECT_NEAR(p.y_axis.x, 12, 1e-10);
  EXPECT_EQ(p.principal_angle, 0);  // the largest moment is about the horizontal axis
  EXPECT_NEAR(p.major.plastic_modulus, p.x_axis.plastic_modulus, 1e-9);

  const double d = 50;
  const Plastic_Geometry c = plastic(round.Round(d / 2));
  EXPECT_NEAR(c.x_axis.plastic_modulus, d * d * d / 6, 1e-12 * d * d * d);
  EXPECT_NEAR(c.y_axis.plastic_modulus, d * d * d / 6, 1e-12 * d * d * d);
  EXPECT_NEAR(c.x_axis.shape_factor, 16 / (3 * kPi), 1e-12);

  // I-section: flanges, web and four fillets about each axis through the
  // centre (the section is doubly symmetric).
  const double b = 200, h = 300, tw = 10, tf = 15, r = 18;
  const double w = tw / 2, f = h / 2 - tf, q = kPi * r * r / 4, k = 4 * r / (3 * kPi);
  const double fillet_y = r * r * (f - r / 2) - q * (f - r + k);
  const double fillet_x = r * r * (w + r / 2) - q * (w + r - k);
  const double zx = 2 * (b * tf * (f + tf / 2) + tw * f * f / 2 + 2 * fillet_y);
  const double zy = 2 * (2 * tf * b * b / 8 + 2 * f * w * w / 2 + 2 * fillet_x);
  const Plastic_Geometry ip = plastic(i.I_Section(b, h, tw, tf, r));
  EXPECT_NEAR(ip.x_axis.plastic_modulus, zx, 1e-12 * zx);
  EXPECT_NEAR(ip.y_axis.plastic_modulus, zy, 1e-12 * zx);
  EXPECT_NEAR(ip.x_axis.offset, 0, 1e-10);
  EXPECT_NEAR(ip.major.plastic_modulus, zx, 1e-12 * zx);
  EXPECT_NEAR(ip.minor.plastic_modulus, zy, 1e-12 * zx);
}

TEST(PlasticProperties, AngleNeutralAxisAndRotation) {
  // An L with legs b (along x) and h, thickness t: the horizontal leg holds
  // more than half the area, so the neutral axis parallel to x cuts it.
  const double b = 150, h = 100, t = 10, a = b * t + (h - t) * t, yp = a / (2 * b);
  const double zx =
      b * yp * yp / 2 + b * (t - yp) * (t - yp) / 2 + t * (h - t) * ((h + t) / 2 - yp);
  Section s;
  s.Angle(b, h, t);
  Plastic_Geometry p{};
  ASSERT_EQ(Calc_Plastic_Surface_Param(s.surface(), &p), 1);
  EXPECT_NEAR(p.x_axis.y, yp, 1e-11 * h);
  EXPECT_NEAR(p.x_axis.plastic_modulus, zx, 1e-12 * zx);
  // The moduli about the principal directions turn with the section.
  for (double angle : {0.4, 2.0, -1.1}) {
    Section r(Placement{20, -30, angle});
    r.Angle(b, h, t);
    Plastic_Geometry q{};
    ASSERT_EQ(Calc_Plastic_Surface_Param(r.surface(), &q), 1);
    EXPECT_NEAR(q.major.plastic_modulus, p.major.plastic_modulus, 1e-11 * zx);
    EXPECT_NEAR(q.minor.plastic_modulus, p.minor.plastic_modulus, 1e-11 * zx);
    EXPECT_NEAR(q.major.moment, p.major.moment, 1e-11 * p.major.moment);
    EXPECT_NEAR(q.major.shape_factor, p.major.shape_factor, 1e-11);
  }
}

TEST(ExactProperties, BadInput) {
  surface_geometry g{};
  g.area = 42;
  Plastic_Geometry p{};
  p.area = 42;
  auto refused = [&](Surface_Type* s) {
    EXPECT_EQ(Calc_Exact_Surface_Param(s, &g), 0);
    EXPECT_EQ(Calc_Plastic_Surface_Param(s, &p), 0);
  };
  refused(nullptr);
  Surface_Type empty{};
  refused(&empty);
  Section ok;
  ok.Rectangle(1, 1);
  EXPECT_EQ(Calc_Exact_Surface_Param(ok.surface(), nullptr), 0);
  EXPECT_EQ(Calc_Plastic_Surface_Param(ok.surface(), nullptr), 0);

  // Outer contours that bound no area, and holes with no section round them.
  Drawing d;
  const std::vector<std::pair<std::vector<HGLOBAL>, std::vector<HGLOBAL>>> bad = {
      {{d.Seg(0, 0, 1, 0), d.Seg(1, 0, 1, 1), d.Seg(1, 1, 0, 1)}, {}},  // three sides of a square
      {{d.Seg(0, 0, 1, 0), d.Seg(1, 0, 0, 0)}, {}},                     // there and back
      {{d.Seg(0, 0, 1, 0), d.Seg(1, 0, NAN, 1), d.Seg(NAN, 1, 0, 0)}, {}},
      {{d.Seg(0, 0, 1, 0), d.Add(Create_Point(1, 1)), d.Seg(1, 0, 0, 0)},
       {}},  // a point in the chain
      {{d.Circle(0, 0, 0)}, {}},
      {d.Square(0, 0, 2), d.Square(3, 0, 1)},  // a hole beside the section, not in it
      {{}, d.Square(0, 0, 1)},                 // a hole only
  };
  for (const auto& [outer, hole] : bad) {
    Surface_Record r;
    if (!outer.empty()) r.Outer(outer);
    if (!hole.empty()) r.Hole(hole);
    refused(&r.s);
  }
  EXPECT_EQ(g.area, 42);
  EXPECT_EQ(p.area, 42);
}

}  // namespace
