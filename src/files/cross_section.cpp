// The cross-section structures: copying, merging and freeing, the file
// magic and the equivalence of two sets of section properties.
#include <cmath>
#include <cstring>
#include <unordered_map>
#include <vector>

#include "files/split_release.h"
#include "model/record.h"
#include "platform/locked.h"
#include "tessaline/files/cross_section.h"

namespace {

std::vector<HGLOBAL> Handles_Of(const Objects_Array_Type* array) {
  Array_Slots slots(array);
  return std::vector<HGLOBAL>(slots.data(), slots.data() + slots.size());
}

std::vector<HGLOBAL> Contours_Of(int32_t count, HGLOBAL list) {
  std::vector<HGLOBAL> out;
  Locked<HGLOBAL> slots(list);
  for (int32_t i = 0; i < count && slots.holds(i); ++i)
    out.push_back(slots[static_cast<size_t>(i)]);
  return out;
}

using Copy_Map = std::unordered_map<HGLOBAL, HGLOBAL>;

// Copies the elements of `from` into `to`, remembering each copy.
void Copy_Elements(const Objects_Array_Type* from, Objects_Array_Type* to, Copy_Map& copies) {
  for (HGLOBAL h : Handles_Of(from)) {
    HGLOBAL c = Create_Element_Copy(h);
    if (!c) continue;
    if (Add_Element_In_Array_by_Handle(to, c) < 0) {
      Delete_Element(c);
      continue;
    }
    copies[h] = c;
  }
}

// Points every parent slot of the copies that names a copied element at
// that element's copy.
void Repoint_Parents(const Copy_Map& copies) {
  for (const auto& [old_h, new_h] : copies) {
    Locked_Element e(new_h);
    if (!e || e->parent_count <= 0) continue;
    Locked<HGLOBAL> list(e->parents);
    for (size_t i = 0;
         i < static_cast<size_t>(e->parent_count) && list.holds(static_cast<long long>(i)); ++i) {
      auto it = copies.find(list[i]);
      if (it != copies.end()) list[i] = it->second;
    }
  }
}

// Copies one contour list into `to`, its contours referring to the copies
// (a contour element whose drawing element was not copied refers to none).
void Copy_Contours(int32_t count, HGLOBAL list, Surface_Type* to, int is_hole,
                   const Copy_Map& copies) {
  for (HGLOBAL b : Contours_Of(count, list)) {
    Contour_Type src{};
    {
      Locked<Contour_Type> r(b);
      if (!r) continue;
      src = *r;
    }
    HGLOBAL parts = Copy_Contour(&src);
    HGLOBAL block = GlobalAlloc(GHND, sizeof(Contour_Type));
    if (!block) {
      Contour_Type tmp{src.count, src.count, parts};
      if (parts) Delete_El_Contour(&tmp);
      continue;
    }
    Contour_Type c = parts ? Contour_Type{src.count, src.count, parts} : Contour_Type{0, 0, 0};
    for (int32_t i = 0; i < c.count; ++i) {
      auto it = copies.find(Get_ContEl_Handle(&c, i));
      Set_ContEl_Handle(&c, it != copies.end() ? it->second : 0, i);
    }
    {
      Locked<Contour_Type> r(block);
      *r = c;
    }
    if (Add_Surface_Contour(to, block, is_hole) < 0) {
      Delete_El_Contour(&c);
      GlobalFree(block);
    }
  }
}

void Append_Contours(int32_t count, HGLOBAL list, Surface_Type* to, int is_hole) {
  for (HGLOBAL b : Contours_Of(count, list)) Add_Surface_Contour(to, b, is_hole);
}

}  // namespace

_Cross_Section::_Cross_Section()
    : objects{0, 0, 0}, aux_objects{0, 0, 0}, surface{0, 0, 0, 0, 0, 0} {}

int _Cross_Section::Make_Copy(const _Cross_Section& source) {
  if (&source == this) return 1;
  Delete_Cross_Section();
  Copy_Map copies;
  Copy_Elements(&source.objects, &objects, copies);
  Copy_Elements(&source.aux_objects, &aux_objects, copies);
  Repoint_Parents(copies);
  Copy_Contours(source.surface.outer_count, source.surface.outers, &surface, 0, copies);
  Copy_Contours(source.surface.hole_count, source.surface.holes, &surface, 1, copies);
  return 1;
}

int _Cross_Section::Add_Objects(const _Cross_Section& source) {
  for (HGLOBAL h : Handles_Of(&source.objects)) Add_Element_In_Array_by_Handle(&objects, h);
  for (HGLOBAL h : Handles_Of(&source.aux_objects)) Add_Element_In_Array_by_Handle(&aux_objects, h);
  Append_Contours(source.surface.outer_count, source.surface.outers, &surface, 0);
  Append_Contours(source.surface.hole_count, source.surface.holes, &surface, 1);
  return source.objects.count;
}

void _Cross_Section::Delete_Cross_Section() {
  Delete_Surface(&surface);
  DeleteObjectsArray(&objects);
  DeleteObjectsArray(&aux_objects);
}

void _Cross_Section::Delete_Cross_Section_Without_Element_Deleting() {
  if (surface.holes) GlobalFree(surface.holes);
  if (surface.outers) GlobalFree(surface.outers);
  surface = Surface_Type{0, 0, 0, 0, 0, 0};
  DeleteObjectsArray_Without_El_Deleting(&objects);
  DeleteObjectsArray_Without_El_Deleting(&aux_objects);
  objects = Objects_Array_Type{0, 0, 0};
  aux_objects = Objects_Array_Type{0, 0, 0};
}

_Geo_Cross_Section::_Geo_Cross_Section() : geom{}, split{}, name{}, extra_code(0) {}

int _Geo_Cross_Section::Make_Copy(const _Geo_Cross_Section& source) {
  if (&source == this) return 1;
  Release_Split(&split);
  geom = source.geom;
  _Cross_Section::Make_Copy(source);
  size_t n = strnlen(source.name, sizeof source.name - 1);
  std::memcpy(name, source.name, n);
  name[n] = 0;
  return 1;
}

void Free_Geo_Cross_Section(_Geo_Cross_Section* section) {
  if (!section) return;
  DeleteObjectsArray(&section->objects);
  DeleteObjectsArray(&section->aux_objects);
  Delete_Surface(&section->surface);
  Release_Split(&section->split);
}

int Is_Cros_Sect_File(const char* path) {
  try {
    CFile f;
    if (!f.Open(path, CFile::modeRead)) return 0;
    unsigned char b[4] = {};
    if (f.Read(b, 4) != 4) return 0;
    uint32_t v = b[0] | (uint32_t{b[1]} << 8) | (uint32_t{b[2]} << 16) | (uint32_t{b[3]} << 24);
    return v == kCross_Section_Magic ? 1 : 0;
  } catch (const CFileException&) {
    return 0;
  }
}

int Is_Geometry_Equivalent(const surface_geometry* a, const surface_geometry* b) {
  if (!a || !b) return 0;
  double x[21], y[21];
  std::memcpy(x, a, sizeof x);
  std::memcpy(y, b, sizeof y);
  // Fields 11, 10, 16, 13, 14, 1, 7 and 21, counted from 1.
  for (int field : {11, 10, 16, 13, 14, 1, 7, 21}) {
    if (!(std::fabs(x[field - 1] - y[field - 1]) < 0.0001)) return 0;
  }
  return 1;
}
