// Nearest-element queries against brute force, with the tie and layer rules.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <vector>

#include "geometry/sampling.h"
#include "support/capture.h"
#include "support/elements.h"

namespace {

// A drawing of every kind: points, ordinary segments, construction lines,
// polylines, circles, arcs (ends set) and splines (moments computed).
struct Drawing {
  Objects_Array_Type array{};
  std::vector<int> kinds;  // type code; 7 for a construction line

  explicit Drawing(unsigned seed, int n) {
    Rng rnd(seed);
    for (int i = 0; i < n; ++i) {
      int kind = 1 + static_cast<int>(rnd.gen() % 7);
      HGLOBAL h = 0;
      double x = rnd(-100, 100), y = rnd(-100, 100);
      switch (kind) {
        case 1:
          h = Create_Point(x, y);
          break;
        case 2:
        case 7:
          h = Create_Line(x, y, x + rnd(-30, 30), y + rnd(-30, 30));
          if (kind == 7) Set_Attr(h, 0);
          break;
        case 3:
        case 6: {
          std::vector<double> xs{x}, ys{y};
          int m = 2 + static_cast<int>(rnd.gen() % 5);
          for (int k = 1; k < m; ++k) {
            xs.push_back(xs.back() + rnd(1, 20));
            ys.push_back(ys.back() + rnd(-20, 20));
          }
          if (kind == 3) {
            h = Create_Polyline(m, xs.data(), ys.data());
          } else {
            h = Create_Spline(m, xs.data(), ys.data(), nullptr, nullptr);
            Calc_Spline_Coef(h);
          }
          break;
        }
        case 4:
          h = Create_Circle(x, y, rnd(1, 30));
          break;
        case 5: {
          Test_Arc a = Random_Arc(rnd, i);
          h = Create_Arc(a.cx, a.cy, a.r, a.a1, a.a2);
          Set_Arc_Ends(h, a.x(a.a1), a.y(a.a1), a.x(a.a2), a.y(a.a2));
          break;
        }
      }
      Add_Element_In_Array_by_Handle(&array, h);
      kinds.push_back(kind);
    }
  }
  ~Drawing() { DeleteObjectsArray(&array); }
  HGLOBAL at(int i) { return Get_Element_Handle_by_Index(&array, i); }
};

// Squared distance to segment AB by its clamped parameter.
double Seg_SQ(double x1, double y1, double x2, double y2, double px, double py) {
  double dx = x2 - x1, dy = y2 - y1, l = dx * dx + dy * dy;
  double t = l > 0 ? std::clamp(((px - x1) * dx + (py - y1) * dy) / l, 0.0, 1.0) : 0.0;
  double qx = x1 + t * dx - px, qy = y1 + t * dy - py;
  return qx * qx + qy * qy;
}

// The reference distance of element h (squared) and its piece, computed
// without the library's distance code: splines by 1000 samples a piece of
// the moment-form cubic, arcs by the angle test.
double Brute_SQ(HGLOBAL h, double px, double py, int* piece) {
  auto* e = static_cast<Element_Record*>(GlobalLock(h));
  Element_Record r = *e;
  GlobalUnlock(h);
  *piece = 0;
  auto sq = [](double a, double b) { return a * a + b * b; };
  switch (r.type) {
    case EL_POINT:
      return sq(r.u.point.x - px, r.u.point.y - py);
    case EL_SEGMENT: {
      const auto& s = r.u.seg;
      if (r.attr & ATTR_ORDINARY) return Seg_SQ(s.x1, s.y1, s.x2, s.y2, px, py);
      double c = (px - s.x1) * (s.y2 - s.y1) - (py - s.y1) * (s.x2 - s.x1);
      return c * c / sq(s.x2 - s.x1, s.y2 - s.y1);
    }
    case EL_CIRCLE: {
      double d = std::sqrt(sq(px - r.u.circle.xc, py - r.u.circle.yc)) - r.u.circle.r;
      return d * d;
    }
    case EL_ARC: {
      Test_Arc a{r.u.arc.xc, r.u.arc.yc, r.u.arc.r, r.u.arc.a1, r.u.arc.a2};
      if (a.holds(px, py, 0)) {
        double d = std::sqrt(sq(px - a.cx, py - a.cy)) - a.r;
        return d * d;
      }
      return std::min(sq(px - a.x(a.a1), py - a.y(a.a1)), sq(px - a.x(a.a2), py - a.y(a.a2)));
    }
    case EL_POLYLINE:
    case EL_SPLINE: {
      int n = Get_Polyline_Node_Num(h);
      std::vector<double> x(n), y(n);
      for (int i = 0; i < n; ++i) Get_El_Node_Coord_by_Handle(h, i, &x[i], &y[i]);
      double best = INFINITY;
      for (int i = 0; i + 1 < n; ++i) {
        double d;
        if (r.type == EL_POLYLINE) {
          d = Seg_SQ(x[i], y[i], x[i + 1], y[i + 1], px, py);
        } else {
          auto* mx = static_cast<double*>(GlobalLock(r.u.spline.m1));
          auto* my = static_cast<double*>(GlobalLock(r.u.spline.m2));
          double hc = std::hypot(x[i + 1] - x[i], y[i + 1] - y[i]);
          auto at = [&](double t, const std::vector<double>& v, const double* m) {
            double u = hc - t;
            return m[i] * u * u * u / (6 * hc) + m[i + 1] * t * t * t / (6 * hc) +
                   (v[i] - m[i] * hc * hc / 6) * u / hc +
                   (v[i + 1] - m[i + 1] * hc * hc / 6) * t / hc;
          };
          d = INFINITY;
          for (int k = 0; k <= 1000; ++k) {
            double t = hc * k / 1000;
            d = std::min(d, sq(at(t, x, mx) - px, at(t, y, my) - py));
          }
          GlobalUnlock(r.u.spline.m1);
          GlobalUnlock(r.u.spline.m2);
        }
        if (d < best) {
          best = d;
          *piece = i;
        }
      }
      return best;
    }
  }
  return -1;
}

}  // namespace

TEST(Nearest, AnyKindAgreesWithBruteForceOnRandomDrawings) {
  Leak_Check leaks;
  for (unsigned seed = 1; seed <= 3; ++seed) {
    Drawing d(seed, 60);
    Rng rnd(seed + 100);
    for (int q = 0; q < 25; ++q) {
      double px = rnd(-120, 120), py = rnd(-120, 120);
      std::vector<double> ref(60);
      std::vector<int> pieces(60);
      int best = 0;
      for (int i = 0; i < 60; ++i) {
        ref[i] = Brute_SQ(d.at(i), px, py, &pieces[i]);
        if (ref[i] < ref[best]) best = i;
      }
      int index = -2, part = -2;
      double sq = -2;
      HGLOBAL h = SQNearest_Element_Point(&d.array, px, py, &index, &part, &sq);
      ASSERT_GE(index, 0);
      EXPECT_EQ(h, d.at(index));
      // The answer is as near as the true nearest element, within the
      // spline's chord sagitta (the curve is measured as drawn).
      double tol = 1e-9 * (1 + ref[best]) + 0.02 * std::sqrt(ref[best]) + 0.02;
      EXPECT_NEAR(std::sqrt(sq), std::sqrt(ref[index]), d.kinds[index] == 6 ? 0.05 : 1e-9);
      EXPECT_LE(sq, ref[best] + tol) << "seed " << seed << " query " << q;
      if (d.kinds[index] == 3 || (d.kinds[index] == 6 && std::sqrt(sq) > 1)) {
        EXPECT_EQ(part, pieces[index]);
      }
      // SQDist reports the piece for a spline only.
      int sentinel = 77;
      double one = SQDist_Element_Point(d.at(index), px, py, &sentinel);
      EXPECT_EQ(one, sq);
      if (d.kinds[index] == 6) {
        EXPECT_EQ(sentinel, part);
      } else {
        EXPECT_EQ(sentinel, 77);
      }
    }
  }
}

TEST(Nearest, PerKindSearchesTakeTheFirstOfEquallyNearElements) {
  Leak_Check leaks;
  // On a small integer grid many distances tie exactly.
  std::mt19937 rng(7);
  for (int round = 0; round < 30; ++round) {
    Objects_Array_Type a{};
    for (int i = 0; i < 25; ++i) {
      double x = rng() % 5, y = rng() % 5, r = rng() % 3 + 1;
      HGLOBAL h = rng() % 4 == 0   ? Create_Line(x, y, x + r, y)
                  : rng() % 3 == 0 ? Create_Circle(x, y, r)
                  : rng() % 2 == 0 ? Create_Arc(x, y, r, 0, 3)
                                   : Create_Point(x, y);
      if (rng() % 3 == 0 && Get_Element_Type_by_Handle(h) == EL_SEGMENT) Set_Attr(h, 0);
      Add_Element_In_Array_by_Handle(&a, h);
    }
    HGLOBAL skip = Get_Element_Handle_by_Index(&a, static_cast<int>(rng() % 25));
    const double px = rng() % 6, py = rng() % 6;
    // The lowest index of the smallest distance among the elements for
    // which `measure` gives one; the distance 0.0 when none does.
    using Measure = std::function<bool(const Element_Record&, HGLOBAL, double*)>;
    auto check = [&](const Measure& measure, int got, const double* got_d) {
      int best = -1;
      double bd = 0, d;
      for (int i = 0; i < a.count; ++i) {
        HGLOBAL h = Get_Element_Handle_by_Index(&a, i);
        Element_Record r = *static_cast<Element_Record*>(GlobalLock(h));
        GlobalUnlock(h);
        if (measure(r, h, &d) && (best < 0 || d < bd)) best = i, bd = d;
      }
      EXPECT_EQ(got, best);
      EXPECT_EQ(got_d ? *got_d : bd, bd);
    };
    auto circle = [&](HGLOBAL excluded) -> Measure {
      return [&, excluded](const Element_Record& r, HGLOBAL h, double* d) {
        *d = Distance_Circle_Point(r.u.circle.xc, r.u.circle.yc, r.u.circle.r, px, py);
        return r.type == EL_CIRCLE && h != excluded;
      };
    };
    auto line = [&](HGLOBAL excluded) -> Measure {
      return [&, excluded](const Element_Record& r, HGLOBAL h, double* d) {
        *d = Distance_Line_Point(r.u.seg.x1, r.u.seg.y1, r.u.seg.x2, r.u.seg.y2, px, py);
        return r.type == EL_SEGMENT && !(r.attr & ATTR_ORDINARY) && h != excluded;
      };
    };
    double d = -1;
    int got = Get_Nearest_Segment_End(&a, px, py, &d);
    check(
        [&](const Element_Record& r, HGLOBAL, double* dd) {
          const auto& s = r.u.seg;
          *dd =
              std::min(Distance_2Points(px, py, s.x1, s.y1), Distance_2Points(px, py, s.x2, s.y2));
          return r.type == EL_SEGMENT;
        },
        got, &d);
    got = Get_Nearest_Segment(&a, px, py, &d);
    check(
        [&](const Element_Record& r, HGLOBAL h, double* dd) {
          *dd = SQDist_Element_Point(h, px, py, nullptr);
          return r.type == EL_SEGMENT;
        },
        got, &d);
    got = Get_Nearest_Circle(&a, px, py, &d);
    check(circle(0), got, &d);
    got = Get_Nearest_Circle_Besides1(&a, px, py, &d, skip);
    check(circle(skip), got, &d);
    check(line(0), Get_Nearest_Line(&a, px, py), nullptr);
    check(line(skip), Get_Nearest_Line_Besides1(&a, px, py, skip), nullptr);
    check(
        [&](const Element_Record& r, HGLOBAL, double* dd) {
          const auto& c = r.u.arc;
          *dd = Distance_Arc_Point(c.xc, c.yc, c.r, c.a1, c.a2, px, py);
          return r.type == EL_ARC;
        },
        Get_Nearest_Arc(&a, px, py), nullptr);
    int index = -2;
    HGLOBAL any = SQNearest_Element_Point(&a, px, py, &index, nullptr, nullptr);
    check(
        [&](const Element_Record&, HGLOBAL h, double* dd) {
          *dd = SQDist_Element_Point(h, px, py, nullptr);
          return true;
        },
        index, nullptr);
    EXPECT_EQ(any, Get_Element_Handle_by_Index(&a, index));
    DeleteObjectsArray(&a);
  }
}

TEST(Nearest, EmptyAndKindlessArraysFindNothing) {
  Objects_Array_Type empty{};
  int index = 5, part = 5;
  double sq = 5, d = 5;
  EXPECT_EQ(SQNearest_Element_Point(&empty, 0, 0, &index, &part, &sq), 0u);
  EXPECT_TRUE(index == -1 && part == -1 && sq == -1.0);
  EXPECT_EQ(SQNearest_Element_Point(nullptr, 0, 0, nullptr, nullptr, nullptr), 0u);

  Objects_Array_Type a{};
  HGLOBAL on_line = Create_Line(0, 0, 10, 0);  // ordinary: the line searches ignore it
  Add_Element_In_Array_by_Handle(&a, on_line);
  EXPECT_EQ(Get_Nearest_Line(&a, 5, 0), -1);
  EXPECT_EQ(Get_Nearest_Circle(&a, 5, 0, &d), -1);
  EXPECT_EQ(d, 0.0);
  HGLOBAL c = Create_Circle(0, 0, 1);
  Add_Element_In_Array_by_Handle(&a, c);
  EXPECT_EQ(Get_Nearest_Circle_Besides1(&a, 5, 0, &d, c), -1);
  // A polyline's piece reaches the host through the general search only.
  const double xs[3] = {20, 30, 30}, ys[3] = {0, 0, 10};
  HGLOBAL poly = Create_Polyline(3, xs, ys);
  Add_Element_In_Array_by_Handle(&a, poly);
  EXPECT_EQ(SQNearest_Element_Point(&a, 31, 6, &index, &part, &sq), poly);
  EXPECT_TRUE(index == 2 && part == 1 && sq == 1.0);
  part = 9;
  EXPECT_EQ(SQDist_Element_Point(poly, 31, 6, &part), 1.0);
  EXPECT_EQ(part, 9);
  DeleteObjectsArray(&a);
}

TEST(Nearest, LayeredSearchesKeepTheFirstSetOnTies) {
  Leak_Check leaks;
  Objects_Array_Type first[2] = {}, second[2] = {};
  // Layer 1: a circle at distance 1 in each set, a point at distance 2 in
  // each, and in the second set a nearer node.
  HGLOBAL c_first = Create_Circle(0, 0, 4), c_second = Create_Circle(10, 0, 4);
  HGLOBAL p_first = Create_Point(5, 2), p_second = Create_Point(5, -2);
  HGLOBAL arc = Create_Arc(5, 0, 9, 0, 1);
  Set_Arc_Ends(arc, 14, 0, 5 + 9 * std::cos(1.0), 9 * std::sin(1.0));
  for (HGLOBAL h : {c_first, p_first}) Add_Element_In_Array_by_Handle(&first[1], h);
  for (HGLOBAL h : {c_second, p_second, arc}) Add_Element_In_Array_by_Handle(&second[1], h);
  double d = -1;
  EXPECT_EQ(SQNearest_Circle_Point_In_Layer(first, second, 1, 5, 0, &d), c_first);
  EXPECT_EQ(d, 1.0);
  EXPECT_EQ(SQNearest_Cir_P_In_Layer_Bes1(first, second, 1, 5, 0, c_first, &d), c_second);
  EXPECT_EQ(Nearest_Point_Point_In_Layer(first, second, 1, 5, 0, &d), p_first);
  EXPECT_EQ(d, 2.0);
  EXPECT_EQ(Nearest_Point_P_In_Layer_Bes1(first, second, 1, 5, -0.5, p_first, &d), p_second);
  EXPECT_EQ(d, 1.5);
  // Strictly nearer in the second set wins.
  EXPECT_EQ(Nearest_Point_Point_In_Layer(first, second, 1, 5, -0.1, &d), p_second);
  // Nodes: the arc's centre (5, 0) counts only for SQNear_.
  double nx = 0, ny = 0;
  EXPECT_EQ(SQNearest_El_Node_Point_In_Layer(first, second, 1, 5, 0.5, &nx, &ny, &d), p_first);
  EXPECT_TRUE(nx == 5 && ny == 2 && d == 2.25);
  EXPECT_EQ(SQNear_El_Node_Point_In_Layer(first, second, 1, 5, 0.5, &nx, &ny, &d), arc);
  EXPECT_TRUE(nx == 5 && ny == 0 && d == 0.25);
  // Neither set: 0, the distance untouched; a negative layer finds nothing.
  d = 42;
  EXPECT_EQ(SQNearest_Circle_Point_In_Layer(first, second, 0, 5, 0, &d), 0u);
  EXPECT_EQ(Nearest_Point_Point_In_Layer(first, second, -1, 5, 0, &d), 0u);
  EXPECT_EQ(d, 42);
  EXPECT_EQ(Nearest_Point_Point_In_Layer(nullptr, second, 1, 5, -0.1, &d), p_second);
  for (auto* s : {first, second}) DeleteObjectsArray(&s[1]);
}
