// Surface records: their contour lists, rectangles and elements, and the
// filing of a drawing's contours into outer contours and holes.
#include "tessaline/contour/surface.h"

#include <cmath>
#include <new>
#include <unordered_set>
#include <vector>

#include "contour/lists.h"
#include "contour/outline.h"
#include "contour/search.h"
#include "contour/shape.h"
#include "model/box.h"
#include "tessaline/geometry/vector.h"

namespace {

// Position of the first contour of the list holding {element, index, flag}.
int Find_In_List(Surface_Type* surface, int kind, HGLOBAL element, int index, int flag) {
  Handle_Slots contours = Surface_List(surface, kind);
  for (size_t i = 0; i < contours.size(); ++i) {
    Locked<Contour_Type> c(contours[i]);
    if (c && Find_ContEl(c.get(), element, index, flag) >= 0) return static_cast<int>(i);
  }
  return -1;
}

// The element's box in axes turned by `angle` (Rotate2D's coordinates).
Box Turned_Box(HGLOBAL h, double angle) {
  Box box;
  Locked_Element e(h);
  if (!e) return box;
  auto add = [&](double x, double y) {
    double xr, yr;
    Rotate2D(angle, x, y, &xr, &yr);
    box.Add(xr, yr);
  };
  const auto& u = e->u;
  switch (e->type) {
    case EL_POINT:
      add(u.point.x, u.point.y);
      break;
    case EL_SEGMENT:
      add(u.seg.x1, u.seg.y1);
      add(u.seg.x2, u.seg.y2);
      break;
    case EL_CIRCLE: {
      double xr, yr, r = std::fabs(u.circle.r);
      Rotate2D(angle, u.circle.xc, u.circle.yc, &xr, &yr);
      box.Add(xr - r, yr - r);
      box.Add(xr + r, yr + r);
      break;
    }
    case EL_ARC: {
      // Turning the axes by `angle` turns every direction back by it.
      Element_Record::Arc_Data arc = u.arc;
      Rotate2D(angle, u.arc.xc, u.arc.yc, &arc.xc, &arc.yc);
      arc.a1 -= angle;
      arc.a2 -= angle;
      Add_Arc(box, arc);
      break;
    }
    default: {
      Box plain = Element_Box(h);
      if (plain.empty) break;
      add(plain.left, plain.bottom);
      add(plain.left, plain.top);
      add(plain.right, plain.bottom);
      add(plain.right, plain.top);
      break;
    }
  }
  return box;
}

// The union over the outer contours of `element_box` of each element.
template <class Element_Box_Fn>
int Outer_Box(Surface_Type* surface, Element_Box_Fn element_box, double* left, double* top,
              double* right, double* bottom) {
  if (!left || !top || !right || !bottom) return 0;
  Box all;
  Handle_Slots contours = Surface_List(surface, kOuters);
  for (size_t i = 0; i < contours.size(); ++i) {
    Locked<Contour_Type> c(contours[i]);
    Handle_Slots parts = Contour_Parts(c.get());
    for (size_t j = 0; j < parts.size(); ++j) all.Add(element_box(Part_Element(parts[j])));
  }
  if (all.empty) return 0;
  *left = all.left;
  *top = all.top;
  *right = all.right;
  *bottom = all.bottom;
  return 1;
}

void Free_Contour_Block(HGLOBAL block) {
  {
    Locked<Contour_Type> c(block);
    if (c) Delete_El_Contour(c.get());
  }
  GlobalFree(block);
}

// A found contour and, for filing it, a point on it and its elements
// indexed for containment tests.
struct Found {
  Contour_Type contour;
  double px, py;
  Contour_Shape shape;
};

// Finds the drawing's contours, each element in one at most.
void Find_Contours(Objects_Array_Type* array, std::vector<Found>* found) {
  std::vector<HGLOBAL> handles;
  {
    Array_Slots slots(array);
    handles.assign(slots.data(), slots.data() + slots.size());
  }
  Contour_Search search(array);
  search.Exclude_Dead_Ends();
  std::unordered_set<HGLOBAL> circles;
  for (HGLOBAL h : handles) {
    int32_t type;
    {
      Locked_Element e(h);
      if (!e) continue;  // a stale handle takes no part, as in the search
      type = e->type;
    }
    if (type == EL_CIRCLE ? !circles.insert(h).second
                          : (type != EL_SEGMENT && type != EL_ARC) || search.Is_Excluded(h)) {
      continue;
    }
    Found f{};
    if (!search.Find(h, &f.contour)) continue;
    try {
      if (!f.shape.Read(&f.contour) || f.shape.elements().empty()) {
        Delete_El_Contour(&f.contour);
        continue;
      }
      f.shape.Index();
      Contour_Probe_Point(f.shape.elements()[0], &f.px, &f.py);
      Handle_Slots parts = Contour_Parts(&f.contour);
      for (size_t j = 0; j < parts.size(); ++j) search.Exclude(Part_Element(parts[j]));
      found->push_back(std::move(f));
    } catch (const std::bad_alloc&) {
      Delete_El_Contour(&f.contour);
      throw;
    }
  }
}

// For each found contour, how many of the others contain it (judged at its
// point). Only contours whose boxes reach the point's height are tested.
std::vector<int> Depths(const std::vector<Found>& found) {
  std::vector<std::pair<double, double>> spans;
  for (const Found& f : found) spans.push_back({f.shape.box().bottom, f.shape.box().top});
  Y_Bands bands;
  bands.Build(spans);
  std::vector<int> depth(found.size(), 0);
  for (size_t i = 0; i < found.size(); ++i) {
    const Found& f = found[i];
    for (uint32_t j : bands.At(f.py)) {
      const Box& b = found[j].shape.box();
      if (j == i || f.px < b.left || f.px > b.right || f.py < b.bottom || f.py > b.top) continue;
      depth[i] += found[j].shape.Contains(f.px, f.py);
    }
  }
  return depth;
}

}  // namespace

int Is_Ext_Surface_El(Surface_Type* surface, HGLOBAL element, int index, int flag) {
  return Find_In_List(surface, kOuters, element, index, flag);
}

int Is_Int_Surface_El(Surface_Type* surface, HGLOBAL element, int index, int flag) {
  return Find_In_List(surface, kHoles, element, index, flag);
}

int Is_Surface_El(Surface_Type* surface, HGLOBAL element) {
  return Is_Ext_Surface_El(surface, element, 0, 1) >= 0 ||
                 Is_Int_Surface_El(surface, element, 0, 1) >= 0
             ? 1
             : 0;
}

int Get_Surface_Extern_Rect(Surface_Type* surface, double* left, double* top, double* right,
                            double* bottom) {
  return Outer_Box(surface, Element_Box, left, top, right, bottom);
}

int Get_Surface_Extern_Angled_Rect(Surface_Type* surface, double angle, double* left, double* top,
                                   double* right, double* bottom) {
  auto turned = [angle](HGLOBAL h) { return Turned_Box(h, angle); };
  return Outer_Box(surface, turned, left, top, right, bottom);
}

int Add_Surface_Contour(Surface_Type* surface, HGLOBAL contour_block, int is_hole) {
  if (!surface || !Locked<Contour_Type>(contour_block)) return -1;
  int32_t& capacity = is_hole ? surface->hole_capacity : surface->outer_capacity;
  int32_t& count = is_hole ? surface->hole_count : surface->outer_count;
  HGLOBAL& block = is_hole ? surface->holes : surface->outers;
  if (count < 0 || capacity < count) return -1;
  if (!block) {
    if (capacity != 0 || count != 0) return -1;
    block = GlobalAlloc(GHND, sizeof(HGLOBAL));
    if (!block) return -1;
    capacity = 1;
  }
  if (GlobalSize(block) < static_cast<SIZE_T>(capacity) * sizeof(HGLOBAL)) return -1;
  if (count == capacity) {
    if (capacity == INT32_MAX) return -1;
    // One entry more per overflow; the memory table keeps spare room behind
    // a growing block, so filing many contours stays linear.
    SIZE_T bytes = (static_cast<SIZE_T>(capacity) + 1) * sizeof(HGLOBAL);
    if (!GlobalReAlloc(block, bytes, GMEM_MOVEABLE | GMEM_ZEROINIT)) return -1;
    capacity += 1;
  }
  Locked<HGLOBAL> slots(block);
  if (!slots.holds(count)) return -1;
  slots[count] = contour_block;
  return count++;
}

int Make_Surface_From_Objects(Objects_Array_Type* array, Surface_Type* surface) {
  if (!array || !surface) return -1;
  Delete_Surface(surface);
  std::vector<Found> found;
  std::vector<int> depth;
  try {
    Find_Contours(array, &found);
    depth = Depths(found);
  } catch (const std::bad_alloc&) {
    for (Found& f : found) Delete_El_Contour(&f.contour);
    return -1;
  }
  int filed = 0;
  bool failed = false;
  for (size_t i = 0; i < found.size(); ++i) {
    // An island in a hole would count as in the hole: it is left out.
    HGLOBAL block = !failed && depth[i] <= 1 ? GlobalAlloc(GHND, sizeof(Contour_Type)) : 0;
    {
      Locked<Contour_Type> c(block);
      if (c) *c = found[i].contour;
    }
    if (block && Add_Surface_Contour(surface, block, depth[i]) >= 0) {
      ++filed;
      continue;
    }
    failed |= depth[i] <= 1;
    GlobalFree(block);
    Delete_El_Contour(&found[i].contour);
  }
  if (failed) {  // a surface without one of its contours would be wrong
    Delete_Surface(surface);
    return -1;
  }
  return filed;
}

void Delete_Surface(Surface_Type* surface) {
  if (!surface) return;
  for (int kind : {kHoles, kOuters}) {
    {
      Handle_Slots contours = Surface_List(surface, kind);
      for (size_t i = contours.size(); i-- > 0;) Free_Contour_Block(contours[i]);
    }
    GlobalFree(kind == kHoles ? surface->holes : surface->outers);
  }
  *surface = {};
}
