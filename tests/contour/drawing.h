// Drawings and contour records for the surface tests.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <initializer_list>
#include <utility>
#include <vector>

#include <tessaline/tessaline.h>

// An objects array that owns what is drawn into it.
struct Drawing {
  Objects_Array_Type a{};
  ~Drawing() { DeleteObjectsArray(&a); }

  HGLOBAL Add(HGLOBAL h) {
    Add_Element_In_Array_by_Handle(&a, h);
    return h;
  }
  HGLOBAL Seg(double x1, double y1, double x2, double y2) {
    return Add(Create_Line(x1, y1, x2, y2));
  }
  HGLOBAL Circle(double xc, double yc, double r) { return Add(Create_Circle(xc, yc, r)); }
  // Ends from the angles; a coordinate within 1e-12 of a multiple of 1/1024
  // is made that multiple (cos(pi) is -1 but sin(pi) is 1.2e-16), unless
  // `exact_ends` is false.
  HGLOBAL Arc(double xc, double yc, double r, double a1, double a2, bool exact_ends = true) {
    auto snap = [exact_ends](double v) {
      double m = std::round(v * 1024) / 1024;
      return exact_ends && std::fabs(m - v) < 1e-12 ? m : v;
    };
    HGLOBAL h = Add(Create_Arc(xc, yc, r, a1, a2));
    Set_Arc_Ends(h, snap(xc + r * std::cos(a1)), snap(yc + r * std::sin(a1)),
                 snap(xc + r * std::cos(a2)), snap(yc + r * std::sin(a2)));
    return h;
  }
  // The closed chain of segments through the points, in order.
  std::vector<HGLOBAL> Polygon(const std::vector<std::pair<double, double>>& p) {
    std::vector<HGLOBAL> out;
    for (size_t i = 0; i < p.size(); ++i) {
      const auto& q = p[(i + 1) % p.size()];
      out.push_back(Seg(p[i].first, p[i].second, q.first, q.second));
    }
    return out;
  }
  std::vector<HGLOBAL> Square(double x0, double y0, double side) {
    return Polygon({{x0, y0}, {x0 + side, y0}, {x0 + side, y0 + side}, {x0, y0 + side}});
  }
};

// A contour record holding the elements in order, as the search stores them.
struct Contour {
  Contour_Type c{};
  explicit Contour(const std::vector<HGLOBAL>& elements) {
    for (HGLOBAL h : elements) Add_ContEl(&c, Create_El_Part(h, 0, 1));
  }
  ~Contour() { Delete_El_Contour(&c); }
  int In(double x, double y) { return Is_Point_In_Contour(&c, x, y); }
  // Each point {x, y, want} must give the containment `want`.
  void Expect(std::initializer_list<std::array<double, 3>> points) {
    for (const auto& [x, y, want] : points) EXPECT_EQ(In(x, y), want) << x << ", " << y;
  }
};

// The elements in a movable contour-record block, for Add_Surface_Contour.
inline HGLOBAL Contour_Block(const std::vector<HGLOBAL>& elements) {
  HGLOBAL block = GlobalAlloc(GHND, sizeof(Contour_Type));
  auto* c = static_cast<Contour_Type*>(GlobalLock(block));
  for (HGLOBAL h : elements) Add_ContEl(c, Create_El_Part(h, 0, 1));
  GlobalUnlock(block);
  return block;
}

// A surface record the test fills with Add_Surface_Contour; freed at the end.
struct Surface_Record {
  Surface_Type s{};
  ~Surface_Record() { Delete_Surface(&s); }
  int Outer(const std::vector<HGLOBAL>& e) { return Add_Surface_Contour(&s, Contour_Block(e), 0); }
  int Hole(const std::vector<HGLOBAL>& e) { return Add_Surface_Contour(&s, Contour_Block(e), 1); }
  // Each point {x, y, want} must give the containment `want`.
  void Expect(std::initializer_list<std::array<double, 3>> points) {
    for (const auto& [x, y, want] : points) {
      EXPECT_EQ(Is_Point_In_Surface(&s, x, y), want) << x << ", " << y;
    }
  }
};
