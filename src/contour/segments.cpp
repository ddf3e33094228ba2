// Surface segments: contours as straight segments travelled with the
// interior on a chosen side, and the container of the extended form.
#include "tessaline/contour/segments.h"

#include <cmath>
#include <limits>
#include <new>
#include <vector>

#include "contour/lists.h"
#include "contour/outline.h"
#include "contour/shape.h"
#include "tessaline/geometry/vector.h"

namespace {

constexpr double kProbe_Distance = 1e-5;
constexpr int kMax_Arc_Pieces = 4096;
// Material on the left: outer contours with their interior on the left,
// holes with theirs on the right.
int Sense_Of(int kind) {
  return kind == kOuters ? 0 : 1;
}

// The middle of the first element, the direction of travel there in stored
// order and the unit normal whose side is probed (left of a segment,
// outwards on an arc or a circle).
bool First_Element_Frame(const Element_Record& r, double* mx, double* my, double* dx, double* dy,
                         double* nx, double* ny) {
  if (!Contour_Probe_Point(r, mx, my)) return false;
  if (r.type == EL_SEGMENT) {
    *dx = r.u.seg.x2 - r.u.seg.x1;
    *dy = r.u.seg.y2 - r.u.seg.y1;
    return Perp_Vect(*dx, *dy, nx, ny) != 0;
  }
  double middle = 0, sweep;
  if (r.type == EL_ARC) Arc_Middle(r.u.arc.a1, r.u.arc.a2, &middle, &sweep);
  *nx = std::cos(middle);
  *ny = std::sin(middle);
  *dx = -*ny;  // counter-clockwise along the curve
  *dy = *nx;
  return true;
}

int Direction(Contour_Type* contour, const Element_Record& first, int sense, double* inward_x,
              double* inward_y) {
  double mx, my, dx, dy, nx, ny;
  if (!First_Element_Frame(first, &mx, &my, &dx, &dy, &nx, &ny)) return 0;
  bool inside =
      Is_Point_In_Contour(contour, mx + kProbe_Distance * nx, my + kProbe_Distance * ny) != 0;
  double ix = inside ? nx : -nx, iy = inside ? ny : -ny;  // into the interior
  if (inward_x) *inward_x = ix;
  if (inward_y) *inward_y = iy;
  // The side the interior must lie on: left for sense 0, right otherwise.
  double sx = sense == 0 ? ix : -ix, sy = sense == 0 ? iy : -iy;
  return Vect_Mul(dx, dy, sx, sy) < 0 ? -1 : 1;
}

// Appends one contour's segments; their number.
int Contour_Segments(Contour_Type* contour, int sense, double x0, double y0, double scale,
                     Segment_List* list) {
  std::vector<Element_Record> elements;
  if (!Read_Contour(contour, &elements) || elements.empty()) return 0;
  int sense_of_travel = Direction(contour, elements[0], sense, nullptr, nullptr);
  if (sense_of_travel == 0) return 0;
  std::vector<Outline_Piece> pieces;
  Outline_Pieces(elements, sense_of_travel > 0, {kSegment_Arc_Step, 0, kMax_Arc_Pieces}, &pieces);
  for (const Outline_Piece& p : pieces) {
    SEGMENT_2D s{
        (p.x1 - x0) * scale, (p.y1 - y0) * scale, (p.x2 - x0) * scale, (p.y2 - y0) * scale, 1, 1};
    list->Add(s);
  }
  return static_cast<int>(pieces.size());
}

// Twice the signed area enclosed by a chain of segments.
double Twice_Area(const Segment_List& list) {
  double sum = 0;
  for (int i = 0; i < list.GetSize(); ++i) {
    const SEGMENT_2D& s = list[i];
    sum += s.x1 * s.y2 - s.x2 * s.y1;
  }
  return sum;
}

// The outer contour containing the hole: the smallest by area when several
// do; -1 when none does. `outers` are the outer contours read and indexed,
// in list order (an empty one for a contour that could not be read).
int Hole_Owner(Contour_Type* hole, const std::vector<Contour_Shape>& outers,
               const CSurface_Segments& segments) {
  std::vector<Element_Record> elements;
  double px, py;
  if (!Read_Contour(hole, &elements) || elements.empty() ||
      !Contour_Probe_Point(elements[0], &px, &py)) {
    return -1;
  }
  int owner = -1;
  double owner_area = std::numeric_limits<double>::infinity();
  for (size_t j = 0; j < outers.size(); ++j) {
    const Box& b = outers[j].box();
    if (b.empty || px < b.left || px > b.right || py < b.bottom || py > b.top ||
        !outers[j].Contains(px, py)) {
      continue;
    }
    const Segment_List* list = segments.GetExternalAt(static_cast<int>(j));
    double area = list ? std::fabs(Twice_Area(*list)) : 0;
    if (owner < 0 || area < owner_area) owner = static_cast<int>(j), owner_area = area;
  }
  return owner;
}

}  // namespace

// ---- CSurface_Segments -------------------------------------------------------

CSurface_Segments::~CSurface_Segments() {
  RemoveAll();
}

void CSurface_Segments::RemoveAll() {
  for (auto* lists : {&m_External, &m_Internal}) {
    for (int i = 0; i < lists->GetSize(); ++i) delete (*lists)[i];
    lists->RemoveAll();
  }
  m_IntInExt.RemoveAll();
}

int CSurface_Segments::GetExternalNum() const {
  return m_External.GetSize();
}
int CSurface_Segments::GetInternalNum() const {
  return m_Internal.GetSize();
}

int CSurface_Segments::Adopt(List_Array& to, Segment_List* list) {
  if (!list) return -1;
  for (const List_Array* lists : {&m_External, &m_Internal}) {
    for (int i = 0; i < lists->GetSize(); ++i) {
      if ((*lists)[i] == list) return -1;  // taking it twice would free it twice
    }
  }
  try {
    return to.Add(list);
  } catch (const std::bad_alloc&) {
    return -1;
  }
}

int CSurface_Segments::AddExternal(Segment_List* list) {
  return Adopt(m_External, list);
}
int CSurface_Segments::AddInternal(Segment_List* list) {
  return Adopt(m_Internal, list);
}

Segment_List* CSurface_Segments::GetExternalAt(int i) const {
  return i >= 0 && i < m_External.GetSize() ? m_External[i] : nullptr;
}

Segment_List* CSurface_Segments::GetInternalAt(int i) const {
  return i >= 0 && i < m_Internal.GetSize() ? m_Internal[i] : nullptr;
}

int CSurface_Segments::SetIntInExtIndex(int i, int j) {
  if (i < 0 || (i >= m_Internal.GetSize() && i >= kMax_Pending_Owners)) return 0;
  try {
    while (m_IntInExt.GetSize() <= i) m_IntInExt.Add(-1);
  } catch (const std::bad_alloc&) {
    return 0;
  }
  m_IntInExt[i] = j;
  return 1;
}

int CSurface_Segments::GetIntInExtAt(int i) const {
  return i >= 0 && i < m_IntInExt.GetSize() ? m_IntInExt[i] : -1;
}

int CSurface_Segments::GetIntContNumbers_InExtContour(int j) const {
  int n = 0;
  for (int i = 0; i < m_Internal.GetSize(); ++i) n += GetIntInExtAt(i) == j ? 1 : 0;
  return n;
}

Segment_List* CSurface_Segments::GetIntCont_InExtContourAt(int j, int n) const {
  for (int i = 0; i < m_Internal.GetSize(); ++i) {
    if (GetIntInExtAt(i) == j && n-- == 0) return m_Internal[i];
  }
  return nullptr;
}

// ---- Directions and segments -------------------------------------------------

int Find_Contour_Direction(Contour_Type* contour, int sense, double* inward_x, double* inward_y) {
  Handle_Slots parts = Contour_Parts(contour);
  if (parts.size() == 0) return 0;
  Element_Record first;
  {
    Locked_Element e(Part_Element(parts[0]));
    if (!Lock_Guarded(e)) return 0;
    first = *e;
  }
  return Direction(contour, first, sense, inward_x, inward_y);
}

int Find_Start_ContEl(Contour_Type* contour, double* x, double* y) {
  std::vector<Element_Record> elements;
  double sx, sy;
  if (!Read_Contour(contour, &elements) || !Chain_Start(elements, &sx, &sy)) return -1;
  if (x) *x = sx;
  if (y) *y = sy;
  return 0;
}

int Make_Surface_Segments(Surface_Type* surface, Segment_List* list, double x0, double y0,
                          double scale) {
  if (!surface || !list) return -1;
  int made = 0;
  try {
    for (int kind : {kOuters, kHoles}) {
      Handle_Slots contours = Surface_List(surface, kind);
      for (size_t i = 0; i < contours.size(); ++i) {
        Locked<Contour_Type> c(contours[i]);
        if (c) made += Contour_Segments(c.get(), Sense_Of(kind), x0, y0, scale, list);
      }
    }
  } catch (const std::bad_alloc&) {
    // The segments appended before memory ran out stay; the count says so.
  }
  return made;
}

int Make_Surface_Segments_Extended(Surface_Type* surface, CSurface_Segments* segments, double x0,
                                   double y0, double scale) {
  if (!surface || !segments) return -1;
  segments->RemoveAll();
  int made = 0;
  try {
    std::vector<Contour_Shape> outers;  // for the holes' owners
    for (int kind : {kOuters, kHoles}) {
      Handle_Slots contours = Surface_List(surface, kind);
      for (size_t i = 0; i < contours.size(); ++i) {
        auto* list = new Segment_List;
        int at = kind == kOuters ? segments->AddExternal(list) : segments->AddInternal(list);
        if (at < 0) {
          delete list;
          return made;
        }
        Locked<Contour_Type> c(contours[i]);
        int count = c ? Contour_Segments(c.get(), Sense_Of(kind), x0, y0, scale, list) : 0;
        made += count;
        if (kind == kOuters) {
          outers.emplace_back();
          if (count > 0 && outers.back().Read(c.get())) outers.back().Index();
        } else {
          segments->SetIntInExtIndex(at, count > 0 ? Hole_Owner(c.get(), outers, *segments) : -1);
        }
      }
    }
  } catch (const std::bad_alloc&) {
    // The lists made before memory ran out stay; the count says so.
  }
  return made;
}
