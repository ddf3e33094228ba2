// Plane stresses of the four-node elements, and the matrix stand-in.
#include <gtest/gtest.h>

#include <tessaline/tessaline.h>

namespace {

constexpr double kE = 210000, kNu = 0.3;

// Nodal displacements of the linear field u = ex x + g y, v = ey y at the
// corners (x[i], y[i]).
dvect Field(const double* x, const double* y, double ex, double ey, double g) {
  dvect u(8);
  for (int i = 0; i < 4; ++i) {
    u[2 * i] = ex * x[i] + g * y[i];
    u[2 * i + 1] = ey * y[i];
  }
  return u;
}

void Expect_Stress(const dvect& s, double ex, double ey, double g) {
  const double f = kE / (1 - kNu * kNu);
  ASSERT_EQ(s.Size(), 3);
  EXPECT_NEAR(s[0], f * (ex + kNu * ey), 1e-9 * kE);
  EXPECT_NEAR(s[1], f * (ey + kNu * ex), 1e-9 * kE);
  EXPECT_NEAR(s[2], f * (1 - kNu) * 0.5 * g, 1e-9 * kE);
}

// Every element reproduces a linear field exactly, anywhere; a rigid
// translation is part of it (zero stresses).
TEST(Plane_Stress, LinearFieldsAreExact) {
  const double a = 4, b = 2;
  const double cx[4] = {-2, 2, 2, -2}, cy[4] = {-1, -1, 1, 1};
  const double kx[4] = {0, 4, 4, 0}, ky[4] = {0, 0, 2, 2};
  for (auto [ex, ey, g] : {std::tuple{1e-3, -2e-4, 5e-4}, std::tuple{0.0, 0.0, 0.0}}) {
    dvect r(3);
    dvect u = Field(cx, cy, ex, ey, g);
    for (int i = 0; i < 8; i += 2) u[i] += 0.7;  // rigid shift on top
    ASSERT_EQ(Get_4Ang_FE_Plain_Stress(r, u, kE, kNu, a, b, 0.3, -0.2), 1);
    Expect_Stress(r, ex, ey, g);
    dvect v = Field(kx, ky, ex, ey, g);
    ASSERT_EQ(Get_4Ang_FE_Plain_Stress_Shel(r, v, kE, kNu, a, b, 1.0, 1.5), 1);
    Expect_Stress(r, ex, ey, g);
    // A general quadrilateral, clockwise too, on both sides of its diagonal.
    const double qx[4] = {0, 5, 6, -1}, qy[4] = {0, 1, 4, 3};
    dvect w = Field(qx, qy, ex, ey, g);
    for (auto [px, py] : {std::pair{3.0, 1.0}, std::pair{1.0, 2.5}, std::pair{3.0, 2.0}}) {
      ASSERT_EQ(Get_4Ang_FE_Plain_Stress(r, w, kE, kNu, qx[0], qy[0], qx[1], qy[1], qx[2], qy[2],
                                         qx[3], qy[3], px, py),
                1);
      Expect_Stress(r, ex, ey, g);
    }
  }
}

TEST(Plane_Stress, DiagonalPointUsesTriangleOneTwoThreeAndBadSizesFail) {
  // Only node 4 moves: triangle 1, 2, 3 sees no strain, triangle 1, 3, 4 does.
  dvect u(8), r(3);
  u[6] = 1.0;
  ASSERT_EQ(Get_4Ang_FE_Plain_Stress(r, u, kE, kNu, 0, 0, 1, 0, 1, 1, 0, 1, 0.5, 0.5), 1);
  EXPECT_EQ(r[0], 0.0);
  EXPECT_EQ(r[2], 0.0);
  ASSERT_EQ(Get_4Ang_FE_Plain_Stress(r, u, kE, kNu, 0, 0, 1, 0, 1, 1, 0, 1, 0.25, 0.5), 1);
  EXPECT_NE(r[2], 0.0);
  // A degenerate triangle leaves the result as it was.
  dvect keep(3);
  keep[0] = 42;
  ASSERT_EQ(Get_4Ang_FE_Plain_Stress(keep, u, kE, kNu, 0, 0, 1, 0, 2, 0, 0, 1, 1.5, 0.0), 1);
  EXPECT_EQ(keep[0], 42);
  dvect short_u(6);
  EXPECT_EQ(Get_4Ang_FE_Plain_Stress(r, short_u, kE, kNu, 2, 2, 0, 0), 0);
  EXPECT_EQ(Get_4Ang_FE_Plain_Stress_Shel(r, short_u, kE, kNu, 2, 2, 0, 0), 0);
  EXPECT_EQ(Get_4Ang_FE_Plain_Stress(r, short_u, kE, kNu, 0, 0, 1, 0, 1, 1, 0, 1, 0.5, 0.5), 0);
}

TEST(Matrix, ProductsAndSizes) {
  dmatrix a(2, 3), b(3, 2), c(1, 1);
  for (int i = 0; i < 2; ++i) {
    for (int j = 0; j < 3; ++j) {
      a[i][j] = i + 2 * j;
      b[j][i] = 1 - i + j;
    }
  }
  ASSERT_EQ(c.Mul2Matrix(a, b), 1);
  int rows = 0, cols = 0;
  EXPECT_EQ(c.Size(&rows, &cols), 4);
  EXPECT_EQ(rows, 2);
  EXPECT_EQ(cols, 2);
  EXPECT_EQ(c[0][0], 0 * 1 + 2 * 2 + 4 * 3);
  EXPECT_EQ(c[1][1], 1 * 0 + 3 * 1 + 5 * 2);
  EXPECT_EQ(c.Mul2Matrix(a, a), 0);  // 2x3 times 2x3
  EXPECT_EQ(c.Rows(), 2);
  ASSERT_EQ(a.Mul2Matrix(a, b), 1);  // into one of its factors
  EXPECT_EQ(a[0][0], 16);
  c *= 0.5;
  EXPECT_EQ(c[0][0], 8);
  dvect v(2), w(5);
  v[0] = 1;
  v[1] = -1;
  ASSERT_EQ(w.MulMatrVect(c, v), 1);
  EXPECT_EQ(w.Size(), 2);
  EXPECT_EQ(w[0], c[0][0] - c[0][1]);
  EXPECT_EQ(w.MulMatrVect(dmatrix(2, 3), v), 0);
  dmatrix neg(-1, 3);
  EXPECT_EQ(neg.Size(nullptr, nullptr), 0);
}

}  // namespace
