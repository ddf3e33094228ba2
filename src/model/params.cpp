// Getters and setters of element geometry by handle. Each checks the type
// and touches no record of another type.
#include "model/record.h"
#include "tessaline/model/create.h"

namespace {

// Runs f on the record when it has the wanted type; otherwise `mismatch`.
template <class F>
int With_Type(HGLOBAL h, int32_t type, int mismatch, F f) {
  Locked_Element e(h);
  if (!e || e->type != type) return mismatch;
  f(*e);
  return 1;
}

}  // namespace

int Get_Point_Coord_by_Handle(HGLOBAL h, double* x, double* y) {
  return With_Type(h, EL_POINT, 0, [&](Element_Record& r) {
    *x = r.u.point.x;
    *y = r.u.point.y;
  });
}

int Set_Point_Coord_by_Handle(HGLOBAL h, double x, double y) {
  return With_Type(h, EL_POINT, 0, [&](Element_Record& r) { r.u.point = {x, y}; });
}

int Get_Segment_Coord_by_Handle(HGLOBAL h, double* x1, double* y1, double* x2, double* y2) {
  return With_Type(h, EL_SEGMENT, 0, [&](Element_Record& r) {
    *x1 = r.u.seg.x1;
    *y1 = r.u.seg.y1;
    *x2 = r.u.seg.x2;
    *y2 = r.u.seg.y2;
  });
}

int Set_Segment_Coord_by_Handle(HGLOBAL h, double x1, double y1, double x2, double y2) {
  return With_Type(h, EL_SEGMENT, 0, [&](Element_Record& r) { r.u.seg = {x1, y1, x2, y2}; });
}

int Get_Circle_Param_by_Handle(HGLOBAL h, double* xc, double* yc, double* r) {
  return With_Type(h, EL_CIRCLE, 0, [&](Element_Record& e) {
    *xc = e.u.circle.xc;
    *yc = e.u.circle.yc;
    *r = e.u.circle.r;
  });
}

int Set_Circle_Param_by_Handle(HGLOBAL h, double xc, double yc, double r) {
  return With_Type(h, EL_CIRCLE, 0, [&](Element_Record& e) { e.u.circle = {xc, yc, r}; });
}

int Get_Arc_Ends_Simple(HGLOBAL h, double* x1, double* y1, double* x2, double* y2) {
  return With_Type(h, EL_ARC, 0, [&](Element_Record& e) {
    *x1 = e.u.arc.x1;
    *y1 = e.u.arc.y1;
    *x2 = e.u.arc.x2;
    *y2 = e.u.arc.y2;
  });
}

int Set_Arc_Ends(HGLOBAL h, double x1, double y1, double x2, double y2) {
  return With_Type(h, EL_ARC, 0, [&](Element_Record& e) {
    e.u.arc.x1 = x1;
    e.u.arc.y1 = y1;
    e.u.arc.x2 = x2;
    e.u.arc.y2 = y2;
  });
}

int Get_Arc_Param(HGLOBAL h, double* x1, double* y1, double* x2, double* y2, double* xc, double* yc,
                  double* r, double* a1, double* a2) {
  return With_Type(h, EL_ARC, 0, [&](Element_Record& e) {
    *x1 = e.u.arc.x1;
    *y1 = e.u.arc.y1;
    *x2 = e.u.arc.x2;
    *y2 = e.u.arc.y2;
    *xc = e.u.arc.xc;
    *yc = e.u.arc.yc;
    *r = e.u.arc.r;
    *a1 = e.u.arc.a1;
    *a2 = e.u.arc.a2;
  });
}

int Set_Arc_Param(HGLOBAL h, double x1, double y1, double x2, double y2, double xc, double yc,
                  double r, double a1, double a2) {
  return With_Type(h, EL_ARC, 0,
                   [&](Element_Record& e) { e.u.arc = {xc, yc, r, a1, a2, x1, y1, x2, y2}; });
}

namespace {

// Node i of a polyline (type 3, i < n, inside the node block) or null.
// The block stays locked for as long as `xy` lives.
bool Polyline_Node(const Element_Record& r, int32_t i, Locked<double>& xy) {
  if (r.type != EL_POLYLINE || i >= r.u.poly.n || i < 0) return false;
  return xy.holds(2LL * i + 1);
}

}  // namespace

int Get_Polyline_Node_Coord_by_Handle(HGLOBAL h, int32_t i, double* x, double* y) {
  Locked_Element e(h);
  if (!e || e->type != EL_POLYLINE) return 0;
  Locked<double> xy(e->u.poly.nodes);
  if (!Polyline_Node(*e, i, xy)) return 0;
  *x = xy[2 * static_cast<size_t>(i)];
  *y = xy[2 * static_cast<size_t>(i) + 1];
  return 1;
}

int Set_Polyline_Node_Coord_by_Handle(HGLOBAL h, int32_t i, double x, double y) {
  Locked_Element e(h);
  if (!e || e->type != EL_POLYLINE) return 0;
  Locked<double> xy(e->u.poly.nodes);
  if (!Polyline_Node(*e, i, xy)) return 0;
  xy[2 * static_cast<size_t>(i)] = x;
  xy[2 * static_cast<size_t>(i) + 1] = y;
  return 1;
}

int Get_Spline_Node_Coord_by_Handle(HGLOBAL h, int32_t i, double* x, double* y) {
  Locked_Element e(h);
  if (!e || e->type != EL_SPLINE || i >= e->u.spline.n || i < 0) return -1;
  Locked<double> bx(e->u.spline.x);
  Locked<double> by(e->u.spline.y);
  if (!bx.holds(i) || !by.holds(i)) return -1;
  *x = bx[static_cast<size_t>(i)];
  *y = by[static_cast<size_t>(i)];
  return 1;
}

int Set_Spline_Node_Coord_by_Handle(HGLOBAL h, int32_t i, double x, double y) {
  Locked_Element e(h);
  if (!e || e->type != EL_SPLINE || i >= e->u.spline.n || i < 0) return -1;
  Locked<double> bx(e->u.spline.x);
  Locked<double> by(e->u.spline.y);
  if (!bx.holds(i) || !by.holds(i)) return -1;
  bx[static_cast<size_t>(i)] = x;
  by[static_cast<size_t>(i)] = y;
  return 1;
}

int Get_Polyline_Node_Num(HGLOBAL h) {
  // The third word, for a polyline or a spline alike; no type is checked.
  Locked_Element e(h);
  return e ? e->u.words[0] : 0;
}

int Get_El_Node_Coord_by_Handle(HGLOBAL h, int32_t i, double* x, double* y) {
  int type = Get_Element_Type_by_Handle(h);  // shows the guard box on a bad handle
  switch (type) {
    case EL_POINT:
      Get_Point_Coord_by_Handle(h, x, y);
      return 1;
    case EL_SEGMENT: {
      double x1, y1, x2, y2;
      if (Get_Segment_Coord_by_Handle(h, &x1, &y1, &x2, &y2)) {
        *x = i == 0 ? x1 : x2;
        *y = i == 0 ? y1 : y2;
      }
      return 1;
    }
    case EL_POLYLINE:
      Get_Polyline_Node_Coord_by_Handle(h, i, x, y);
      return 1;
    case EL_ARC: {
      double x1, y1, x2, y2;
      if (Get_Arc_Ends_Simple(h, &x1, &y1, &x2, &y2)) {
        *x = i == 0 ? x1 : x2;
        *y = i == 0 ? y1 : y2;
      }
      return 1;
    }
    case EL_SPLINE:
      Get_Spline_Node_Coord_by_Handle(h, i, x, y);
      return 1;
    default:
      return 0;  // a circle has no node
  }
}

int Get_Nearest_Seg_End_Coord_by_Handle(HGLOBAL h, double px, double py, double* x, double* y) {
  double x1, y1, x2, y2;
  if (!Get_Segment_Coord_by_Handle(h, &x1, &y1, &x2, &y2)) return -1;
  double d1 = (px - x1) * (px - x1) + (py - y1) * (py - y1);
  double d2 = (px - x2) * (px - x2) + (py - y2) * (py - y2);
  // On a tie the first end wins.
  *x = d2 < d1 ? x2 : x1;
  *y = d2 < d1 ? y2 : y1;
  return 1;
}
