// Proves that a host finds, includes and links the installed library.
#include <cstdio>

#include <tessaline/tessaline.h>

int main() {
  Objects_Array_Type objects = {};
  Add_Element_In_Array_by_Handle(&objects, Create_Line(0, 0, 3, 4));
  double x1, y1, x2, y2;
  Get_Segment_Coord_by_Handle(Get_Element_Handle_by_Index(&objects, 0), &x1, &y1, &x2, &y2);
  double length = Distance_2Points(x1, y1, x2, y2);
  DeleteObjectsArray(&objects);
  std::printf("consumer: linked tessaline, segment length %g\n", length);
  return length == 5.0 ? 0 : 1;
}
