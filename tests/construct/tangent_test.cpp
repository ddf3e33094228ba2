// Tangent and arc construction geometry: properties on random inputs, and
// the degenerate inputs each construction refuses.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include <tessaline/tessaline.h>

namespace {

constexpr double kPi = 3.14159265358979323846;

struct Random_Points {
  std::mt19937 rng{2024};
  std::uniform_real_distribution<double> u{-100, 100};
  double operator()() { return u(rng); }
};

double Tol(double scale) {
  return 1e-9 * (1 + scale);
}

// Whether P and Q lie on the same side of the line A -> B (or on it).
bool Same_Side(const double* l, double px, double py, double qx, double qy) {
  return Vect_Mul(l[2] - l[0], l[3] - l[1], px - l[0], py - l[1]) *
             Vect_Mul(l[2] - l[0], l[3] - l[1], qx - l[0], qy - l[1]) >=
         0;
}

}  // namespace

TEST(Tangent, TouchingPointsAndTangentCircles) {
  Random_Points rnd;
  for (int k = 0; k < 500; ++k) {
    double cx = rnd(), cy = rnd(), r = std::fabs(rnd()) + 1, px = rnd(), py = rnd();
    double xa = 0, ya = 0, xb = 0, yb = 0;
    int n = Tangent_Points_Circle(cx, cy, r, px, py, &xa, &ya, &xb, &yb);
    double d = Distance_2Points(cx, cy, px, py);
    ASSERT_EQ(n, d < r ? 0 : 2) << k;
    for (auto [tx, ty] : {std::pair{xa, ya}, std::pair{xb, yb}}) {
      if (n == 0) break;
      EXPECT_NEAR(Distance_2Points(cx, cy, tx, ty), r, Tol(d));
      // The radius at the touching point is perpendicular to the tangent.
      EXPECT_NEAR(Scal_Mul(tx - cx, ty - cy, tx - px, ty - py), 0, Tol(d * d));
    }
    // A turns counter-clockwise from C -> P, B clockwise.
    EXPECT_TRUE(n == 0 || (Vect_Mul(px - cx, py - cy, xa - cx, ya - cy) > 0 &&
                           Vect_Mul(px - cx, py - cy, xb - cx, yb - cy) < 0));

    // The circle centred at P touching the circle: at the touching point nearer Q.
    double qx = rnd(), qy = rnd(), rt = 0;
    ASSERT_EQ(Tangent_Circle_Centred(cx, cy, r, px, py, qx, qy, &rt), 1);
    double ux = (px - cx) / d, uy = (py - cy) / d;
    double near = Distance_2Points(cx + r * ux, cy + r * uy, qx, qy);
    double far = Distance_2Points(cx - r * ux, cy - r * uy, qx, qy);
    EXPECT_NEAR(rt, near <= far ? std::fabs(d - r) : d + r, Tol(d));
  }
  double x = 0, y = 0, x2 = 0, y2 = 0, rt = 7;
  EXPECT_EQ(Tangent_Points_Circle(0, 0, 5, 3, 4, &x, &y, &x2, &y2), 1);  // on the circle
  EXPECT_TRUE(x == 3 && y2 == 4);
  EXPECT_EQ(Tangent_Points_Circle(0, 0, 0, 3, 4, &x, &y, &x2, &y2), 0);
  EXPECT_EQ(Tangent_Circle_Centred(1, 1, 5, 1, 1, 9, 9, &rt), 0);  // concentric
  EXPECT_EQ(Tangent_Circle_Centred(0, 0, 5, 5, 0, 6, 0, &rt), 0);  // P on it: radius 0
  EXPECT_EQ(rt, 7);
}

TEST(Tangent, CircleBetweenTwoLinesFollowsTheCursor) {
  Random_Points rnd;
  for (int k = 0; k < 500; ++k) {
    double l[8];
    for (double& v : l) v = rnd();
    double px = rnd(), py = rnd(), xc = 0, yc = 0, r = 0;
    ASSERT_EQ(
        Tangent_Circle_2Line(l[0], l[1], l[2], l[3], l[4], l[5], l[6], l[7], px, py, &xc, &yc, &r),
        1);
    double scale = std::fabs(xc) + std::fabs(yc) + r;
    EXPECT_NEAR(Distance_Line_Point(l[0], l[1], l[2], l[3], xc, yc), r, Tol(scale)) << k;
    EXPECT_NEAR(Distance_Line_Point(l[4], l[5], l[6], l[7], xc, yc), r, Tol(scale)) << k;
    // The centre lies in P's sector: on P's side of both lines.
    EXPECT_TRUE(Same_Side(l, px, py, xc, yc) && Same_Side(l + 4, px, py, xc, yc)) << k;
  }
  double xc = 0, yc = 0, r = 0;
  // Parallel lines y = 0 and y = 10: radius 5 on y = 5 under the cursor.
  ASSERT_EQ(Tangent_Circle_2Line(0, 0, 1, 0, 7, 10, 3, 10, 42, 99, &xc, &yc, &r), 1);
  EXPECT_TRUE(xc == 42 && yc == 5 && r == 5);
  EXPECT_EQ(Tangent_Circle_2Line(0, 0, 1, 0, 2, 0, 3, 0, 1, 1, &xc, &yc, &r), 0);  // one line
  EXPECT_EQ(Tangent_Circle_2Line(0, 0, 0, 0, 2, 0, 3, 1, 1, 1, &xc, &yc, &r), 0);  // no line
  EXPECT_EQ(Tangent_Circle_2Line(0, 0, 1, 0, 0, 0, 0, 1, 0, 0, &xc, &yc, &r), 0);  // the crossing
}

TEST(Tangent, ArcsAndTheCircleThroughThreePoints) {
  Random_Points rnd;
  for (int k = 0; k < 300; ++k) {
    double x1 = rnd(), y1 = rnd(), x2 = rnd(), y2 = rnd(), px = rnd(), py = rnd();
    double xc, yc, r, a1, a2;
    ASSERT_EQ(Arc_2Points_Centre(x1, y1, x2, y2, px, py, &xc, &yc, &r, &a1, &a2), 1);
    double scale = std::fabs(xc) + std::fabs(yc) + r;
    EXPECT_NEAR(Distance_2Points(xc, yc, x2, y2), r, Tol(scale));
    EXPECT_NEAR(xc + r * std::cos(a1), x1, Tol(scale));
    EXPECT_NEAR(yc + r * std::sin(a2), y2, Tol(scale));
    EXPECT_TRUE(a1 >= 0 && a1 < 2 * kPi && a2 >= 0 && a2 < 2 * kPi);
    // The centre moved along the bisector only: P - C is parallel to the chord.
    EXPECT_NEAR(Vect_Mul(px - xc, py - yc, x2 - x1, y2 - y1), 0, Tol(scale * scale));

    double x3 = rnd(), y3 = rnd();
    if (Circle_3Points(x1, y1, x2, y2, x3, y3, &xc, &yc, &r)) {
      scale = std::fabs(xc) + std::fabs(yc) + r;
      EXPECT_NEAR(Distance_2Points(xc, yc, x2, y2), r, 1e-7 * (1 + scale));
      EXPECT_NEAR(Distance_2Points(xc, yc, x3, y3), r, 1e-7 * (1 + scale));
    }
  }
  double xc = 0, yc = 0, r = 0, a1 = 0, a2 = 0;
  // Centre on the left of A -> B: less than a half circle, from A to B.
  ASSERT_EQ(Arc_2Points_Centre(1, 0, 0, 1, 1, -1, &xc, &yc, &r, &a1, &a2), 1);
  EXPECT_TRUE(std::fabs(xc) < 1e-15 && std::fabs(a1) < 1e-15 && std::fabs(a2 - kPi / 2) < 1e-15);
  EXPECT_EQ(Arc_2Points_Centre(1, 1, 1, 1, 0, 0, &xc, &yc, &r, &a1, &a2), 0);
  ASSERT_EQ(Arc_Centre_Start_End(1, 1, 1, 4, 0, 0, &r, &a1, &a2), 1);
  EXPECT_TRUE(r == 3 && std::fabs(a1 - kPi / 2) < 1e-15 && std::fabs(a2 - 5 * kPi / 4) < 1e-15);
  EXPECT_EQ(Arc_Centre_Start_End(1, 1, 1, 1, 0, 0, &r, &a1, &a2), 0);
  EXPECT_EQ(Arc_Centre_Start_End(1, 1, 2, 1, 1, 1, &r, &a1, &a2), 0);
  // Equal slopes of opposite sign are refused along with collinear points.
  EXPECT_EQ(Circle_3Points(0, 0, 1, 1, 2, 0, &xc, &yc, &r), 0);
  EXPECT_EQ(Circle_3Points(0, 0, 1, 1, 2, 2, &xc, &yc, &r), 0);
  ASSERT_EQ(Circle_3Points(0, 0, 2, 0, 0, 2, &xc, &yc, &r), 1);
  EXPECT_TRUE(xc == 1 && yc == 1 && std::fabs(r - std::sqrt(2.0)) < 1e-15);
}
