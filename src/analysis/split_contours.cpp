// Reading a surface's contours for the splits.
#include "analysis/split_contours.h"

#include "contour/lists.h"

bool Read_Split_Contours(const Surface_Type* surface, std::vector<Split_Contour>* out,
                         int* outer_count) {
  out->clear();
  *outer_count = 0;
  for (int list : {kOuters, kHoles}) {
    Handle_Slots contours = Surface_List(surface, list);
    for (size_t i = 0; i < contours.size(); ++i) {
      Locked<Contour_Type> c(contours[i]);
      if (!c) return false;
      Split_Contour sc;
      sc.flag = list == kOuters ? 1 : Hole_Flag(i);
      Handle_Slots parts = Contour_Parts(c.get());
      for (size_t k = 0; k < parts.size(); ++k) {
        Locked_Element e(Part_Element(parts[k]));
        if (!Lock_Guarded(e)) return false;
        sc.elements.push_back(*e);
      }
      out->push_back(std::move(sc));
      if (list == kOuters) ++*outer_count;
    }
  }
  return true;
}
