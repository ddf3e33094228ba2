// Small builders the element tests share: cursor records, arcs whose stored
// ends lie on their circle, attribute words and raw record bytes.
#pragma once

#include <cmath>
#include <initializer_list>
#include <utility>
#include <vector>

#include <tessaline/tessaline.h>

// A cursor-position record holding the points in order.
inline Curs_Pos_Type Cursor(std::initializer_list<std::pair<double, double>> points) {
  Curs_Pos_Type c{};
  for (const auto& [x, y] : points) {
    c.x[c.count] = x;
    c.y[c.count] = y;
    ++c.count;
  }
  return c;
}

// The arc about (xc, yc) from angle a1 to a2 with its ends set at those angles.
inline HGLOBAL Arc_With_Ends(double xc, double yc, double r, double a1, double a2) {
  HGLOBAL h = Create_Arc(xc, yc, r, a1, a2);
  Set_Arc_Ends(h, xc + r * std::cos(a1), yc + r * std::sin(a1), xc + r * std::cos(a2),
               yc + r * std::sin(a2));
  return h;
}

// Makes h a child of the parents, in that slot order, with creation type ct.
inline HGLOBAL Child(HGLOBAL h, int ct, std::initializer_list<HGLOBAL> parents) {
  Write_Creation_Type(h, ct);
  Alloc_Parent(h, static_cast<int>(parents.size()));
  int k = 0;
  for (HGLOBAL p : parents) Write_Parent(h, p, k++);
  return h;
}

// Overwrites a simple element's attribute word (0: a construction element).
inline void Set_Attr(HGLOBAL h, int32_t attr) {
  static_cast<Element_Record*>(GlobalLock(h))->attr = attr;
  GlobalUnlock(h);
}

// Marks the given words of a polyline's or spline's attribute block selected.
inline void Select_Words(HGLOBAL h, std::initializer_list<int> words) {
  auto* e = static_cast<Element_Record*>(GlobalLock(h));
  auto* w = static_cast<int32_t*>(GlobalLock(static_cast<HGLOBAL>(e->attr)));
  for (int k : words) w[k] |= ATTR_SELECTED;
  GlobalUnlock(static_cast<HGLOBAL>(e->attr));
  GlobalUnlock(h);
}

// The element's record bytes, to show that a refusal changed nothing.
inline std::vector<unsigned char> Record_Bytes(HGLOBAL h) {
  auto* p = static_cast<unsigned char*>(GlobalLock(h));
  std::vector<unsigned char> v;
  if (p) v.assign(p, p + sizeof(Element_Record));
  GlobalUnlock(h);
  return v;
}
