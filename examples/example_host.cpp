// A small host program: draws a plate with a hole into an objects array,
// files its contours into a surface and tests points against it, copies and
// deletes elements, and prints what the array holds.
#include <cstdio>
#include <initializer_list>

#include <tessaline/tessaline.h>

namespace {

const char* Type_Name(int type) {
  switch (type) {
    case EL_POINT:
      return "point";
    case EL_SEGMENT:
      return "segment";
    case EL_POLYLINE:
      return "polyline";
    case EL_CIRCLE:
      return "circle";
    case EL_ARC:
      return "arc";
    case EL_SPLINE:
      return "spline";
    default:
      return "unknown";
  }
}

void Print_Array(const char* title, Objects_Array_Type* a) {
  std::printf("%s: %d element(s), capacity %d\n", title, a->count, a->capacity);
  for (int i = 0; i < a->count; ++i) {
    HGLOBAL h = Get_Element_Handle_by_Index(a, i);
    int type = Get_Element_Type_by_Handle(h);
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0, r = 0;
    std::printf("  [%d] %-8s ", i, Type_Name(type));
    if (type == EL_SEGMENT && Get_Segment_Coord_by_Handle(h, &x1, &y1, &x2, &y2)) {
      std::printf("(%g, %g) - (%g, %g)", x1, y1, x2, y2);
      std::printf("  length %g", Distance_2Points(x1, y1, x2, y2));
    } else if (type == EL_CIRCLE && Get_Circle_Param_by_Handle(h, &x1, &y1, &r)) {
      std::printf("centre (%g, %g) radius %g", x1, y1, r);
    } else if (type == EL_ARC) {
      double a1, a2;
      Get_Arc_Param(h, &x2, &y2, &x2, &y2, &x1, &y1, &r, &a1, &a2);
      std::printf("centre (%g, %g) radius %g from %g to %g deg", x1, y1, r, RadToDeg(a1),
                  RadToDeg(a2));
    } else if (type == EL_POINT && Get_Point_Coord_by_Handle(h, &x1, &y1)) {
      std::printf("(%g, %g)", x1, y1);
    } else if (type == EL_POLYLINE) {
      std::printf("%d nodes", Get_Polyline_Node_Num(h));
    }
    std::printf("%s\n", Get_Element_Attribute(h) & ATTR_SELECTED ? "  [selected]" : "");
  }
}

}  // namespace

int main() {
  Objects_Array_Type objects = {};

  // A 100 x 60 rectangular plate with a hole of radius 15.
  Add_Element_In_Array_by_Handle(&objects, Create_Line(0, 0, 100, 0));
  Add_Element_In_Array_by_Handle(&objects, Create_Line(100, 0, 100, 60));
  Add_Element_In_Array_by_Handle(&objects, Create_Line(100, 60, 0, 60));
  Add_Element_In_Array_by_Handle(&objects, Create_Line(0, 60, 0, 0));
  Add_Element_In_Array_by_Handle(&objects, Create_Circle(50, 30, 15));
  Add_Element_In_Array_by_Handle(&objects, Create_Arc(50, 30, 25, 0, 3.14159265358979));
  Add_Element_In_Array_by_Handle(&objects, Create_Point(50, 30));
  Print_Array("drawn", &objects);

  // The closed contours become a surface: the outline outside, the circle a hole.
  Surface_Type surface = {};
  int filed = Make_Surface_From_Objects(&objects, &surface);
  double left, top, right, bottom;
  Get_Surface_Extern_Rect(&surface, &left, &top, &right, &bottom);
  std::printf("surface: %d contour(s) filed, %d outer, %d hole(s), extent (%g, %g) - (%g, %g)\n",
              filed, surface.outer_count, surface.hole_count, left, bottom, right, top);
  const double probes[][2] = {{10, 10}, {50, 30}, {50, 50}, {150, 30}};
  for (const auto& p : probes) {
    std::printf(
        "  point (%g, %g) is %s\n", p[0], p[1],
        Is_Point_In_Surface(&surface, p[0], p[1]) ? "in the material" : "not in the material");
  }
  Delete_Surface(&surface);

  // Copy the circle and the first segment; select the copy of the segment.
  HGLOBAL circle_copy = Create_Element_Copy(Get_Element_Handle_by_Index(&objects, 4));
  Set_Circle_Param_by_Handle(circle_copy, 50, 30, 5);
  Add_Element_In_Array_by_Handle(&objects, circle_copy);
  HGLOBAL seg_copy = Create_Element_Copy(Get_Element_Handle_by_Index(&objects, 0));
  Set_Element_Select_Attribute(seg_copy, 1);
  Add_Element_In_Array_by_Handle(&objects, seg_copy);
  Print_Array("after copying", &objects);

  // Delete the point and the arc: Delete_Element frees every block of the
  // element, Delete_Element_by_Index then drops its slot (the record's handle
  // is already stale, so the second free does nothing).
  for (int index : {6, 5}) {
    Delete_Element(Get_Element_Handle_by_Index(&objects, index));
    Delete_Element_by_Index(&objects, index);
  }
  Print_Array("after deleting", &objects);

  DeleteObjectsArray(&objects);
  std::printf("memory blocks still held: %ld\n", GlobalBlockCount());
  return 0;
}
