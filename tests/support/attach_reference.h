// The releasing of attached elements after a move written as the plain
// double loop over every (moved element, element) pair: the reference that
// Do_Objects_Attach_Moving must match cut for cut, and the baseline of its
// benchmark.
#pragma once

#include <iterator>
#include <random>
#include <vector>

#include <tessaline/tessaline.h>

inline void Attach_Moving_Double_Loop(Objects_Array_Type* moved, Objects_Array_Type* all) {
  for (int i = 0; i < moved->count; ++i) {
    HGLOBAL m = Get_Element_Handle_by_Index(moved, i);
    for (int j = 0; j < all->count; ++j) {
      HGLOBAL e = Get_Element_Handle_by_Index(all, j);
      HGLOBAL p1, p2, p3;
      Get_Parent_Elem(e, &p1, &p2, &p3);
      if ((p2 == m || p1 != m) && Get_Element_Index_by_Handle(moved, e) < 0) Cut_Parent_Link(e, m);
    }
    HGLOBAL p[3];
    Get_Parent_Elem(m, &p[0], &p[1], &p[2]);
    for (HGLOBAL parent : p) {
      if (parent && Get_Element_Index_by_Handle(moved, parent) < 0) Cut_Parent_Link(m, parent);
    }
  }
}

// A drawing of n elements (segments and circles in turn) where each element,
// with probability `linked`, is a derived one: a random creation type of
// the constructions and parents drawn from the elements up to `reach`
// indexes before it (wrapping round), in a four-slot list so that every
// slot rule has room. Appended to `all`.
inline void Random_Link_Graph(unsigned seed, int n, double linked, int reach,
                              Objects_Array_Type* all) {
  static const int kTypes[] = {1,  2,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16, 17,
                               18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 3,  4};
  std::mt19937 rng(seed);
  std::vector<HGLOBAL> made;
  for (int i = 0; i < n; ++i) {
    HGLOBAL h = i % 2 ? Create_Circle(i, 0, 1) : Create_Line(i, 0, i + 1, 1);
    made.push_back(h);
    Add_Element_In_Array_by_Handle(all, h);
  }
  std::uniform_real_distribution<double> coin(0, 1);
  for (int i = 0; i < n; ++i) {
    if (coin(rng) >= linked) continue;
    HGLOBAL h = made[static_cast<size_t>(i)];
    Write_Creation_Type(h, kTypes[rng() % std::size(kTypes)]);
    Alloc_Parent(h, 4);
    for (int k = 0; k < 4; ++k) {
      int back = 1 + static_cast<int>(rng() % static_cast<unsigned>(reach));
      // Now and then a parent named twice, so the cut of a doubled link shows.
      int j = (i - back + n) % n;
      if (k > 0 && rng() % 8 == 0) {
        Write_Parent(h, Get_Parent(h, 0), k);
      } else {
        Write_Parent(h, made[static_cast<size_t>(j)], k);
      }
    }
  }
}
