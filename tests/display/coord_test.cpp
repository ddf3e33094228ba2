// World and logical coordinates.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include <tessaline/tessaline.h>

TEST(Coord, MappingTruncatesTowardZeroBothWays) {
  World_Window w = {0, 0, 100, 100};
  Logical_Window l = {0, 1000, 1000, -1000};
  int32_t lx, ly;
  WPtoLP(&w, &l, 25, 25, &lx, &ly);
  EXPECT_TRUE(lx == 250 && ly == 750);
  double x, y;
  LPtoWP(&w, &l, &x, &y, 250, 750);
  EXPECT_TRUE(x == 25 && y == 25);

  World_Window ten = {0, 0, 100, 100};
  Logical_Window unit = {0, 0, 1000, 1000};  // 10 logical units per world unit
  const struct {
    double v;
    int32_t want;
  } cases[] = {{0.19, 1}, {-0.19, -1}, {0.099, 0}, {-0.099, 0}, {12.37, 123}, {-12.37, -123}};
  for (const auto& c : cases) {
    WPtoLP(&ten, &unit, c.v, c.v, &lx, &ly);
    EXPECT_TRUE(lx == c.want && ly == c.want) << c.v;
  }
  // Far outside the logical range: clamped, never undefined.
  WPtoLP(&ten, &unit, 1e300, -1e300, &lx, &ly);
  EXPECT_TRUE(lx == INT32_MAX && ly == INT32_MIN);
  EXPECT_DOUBLE_EQ(LPtoWP_Dist(&ten, &unit, 25), 2.5);
  EXPECT_EQ(WPtoLP_Dist(&ten, &unit, 2.55), 25);
  Logical_Window flipped = {0, 0, -1000, 1000};
  EXPECT_DOUBLE_EQ(LPtoWP_Dist(&ten, &flipped, 25), 2.5);  // always positive
  EXPECT_EQ(WPtoLP_Dist(&ten, &flipped, 2.55), 25);
}

TEST(Coord, RoundTripStaysWithinOneLogicalUnit) {
  std::mt19937 rng(3);
  std::uniform_real_distribution<double> u(-1, 1);
  for (int i = 0; i < 2000; ++i) {
    World_Window w = {u(rng) * 500, u(rng) * 500, 10 + 1000 * (u(rng) + 1),
                      10 + 1000 * (u(rng) + 1)};
    Logical_Window l = {static_cast<int32_t>(u(rng) * 100), static_cast<int32_t>(u(rng) * 100),
                        static_cast<int32_t>(200 + 5000 * (u(rng) + 1)),
                        -static_cast<int32_t>(200 + 5000 * (u(rng) + 1))};
    double x = w.x0 + w.w * (u(rng) + 1) / 2, y = w.y0 + w.h * (u(rng) + 1) / 2;
    int32_t lx, ly;
    WPtoLP(&w, &l, x, y, &lx, &ly);
    double bx, by;
    LPtoWP(&w, &l, &bx, &by, lx, ly);
    int32_t lx2, ly2;
    WPtoLP(&w, &l, bx, by, &lx2, &ly2);
    EXPECT_LE(std::abs(lx2 - lx), 1);
    EXPECT_LE(std::abs(ly2 - ly), 1);
    EXPECT_LE(std::abs(x - bx), w.w / l.ext_x * 1.000001);
  }
}

TEST(Coord, GridSnapMovesHalfWayTowardPlusInfinity) {
  const struct {
    double v, want;
  } cases[] = {{12.4, 10}, {12.5, 15}, {-12.5, -10}, {-12.6, -15},
               {0, 0},     {2.5, 5},   {-2.5, 0},    {7.0, 5}};
  for (const auto& c : cases) EXPECT_EQ(Snap_To_Grid(c.v, 5), c.want) << c.v;
  EXPECT_EQ(Snap_To_Grid(12.34, 0), 12.34);
}

TEST(Coord, SettingsRescaleAndScroll) {
  Coord_Syst cs = {};
  cs.paper_w = 200;
  cs.paper_h = 100;
  Make_Coord_Syst_Settings(&cs, 0, 1.0, 1.0, -50, 10);
  // World size, then the x scroll range, position, line and page, and y's minimum.
  EXPECT_EQ(
      (std::vector<double>{cs.world.w, cs.world.h, cs.scroll_x.min, cs.scroll_x.max,
                           cs.scroll_x.pos, cs.scroll_x.line, cs.scroll_x.page, cs.scroll_y.min}),
      (std::vector<double>{200, 100, -850, 750, -50, 2, 50, 10 - 400}));

  double cx = cs.world.x0 + cs.world.w / 2, cy = cs.world.y0 + cs.world.h / 2;
  EXPECT_EQ(Set_Scale(&cs, 2.0, 2.0), &cs);
  EXPECT_EQ(cs.world.w, 200);  // Set_Scale alone changes nothing else
  Rescale_World(&cs, 1);
  EXPECT_TRUE(cs.world.w == 400 && cs.world.h == 200);
  EXPECT_DOUBLE_EQ(cs.world.x0 + cs.world.w / 2, cx);  // the centre is kept
  EXPECT_DOUBLE_EQ(cs.world.y0 + cs.world.h / 2, cy);
  EXPECT_EQ(cs.scroll_x.pos, cs.world.x0);
  Rescale_World(&cs, 0);
  EXPECT_TRUE(cs.world.x0 == 0 && cs.world.y0 == 0);
}

TEST(Coord, UnitsFromTheTable) {
  Coord_Syst cs = {};
  const double factors[] = {1, 10, 100, 1000, 25.4, 304.8};
  for (int code = 1; code <= 6; ++code) {
    Init_Units(&cs, code);
    EXPECT_TRUE(cs.unit_code == code && cs.unit_factor == factors[code - 1]) << code;
  }
  // A code the host added to the table is stored as millimetres with its own factor.
  SetUnitFactor(9, 0.5);
  Init_Units(&cs, 9);
  EXPECT_TRUE(cs.unit_code == 1 && cs.unit_factor == 0.5);
  SetUnitFactor(9, 1.0);
}
