// Writing the geometry file: the cross-section part, properties, split,
// name and extra code, field by field in little-endian order.
#include <cstring>
#include <vector>

#include "files/geo_io.h"
#include "model/record.h"
#include "platform/locked.h"
#include "tessaline/files/cross_section.h"

using namespace geo_io;

namespace {

// The number a parent is written as: m + 1 + its index in the objects array
// for an ordinary element, 1 + its index in the second array for a
// construction element; the raw handle when it is in neither.
uint32_t Link_Number(HGLOBAL parent, Objects_Array_Type* objects, Objects_Array_Type* aux) {
  int attr = 0;
  {
    Locked_Element p(parent);
    if (!p) return parent;
    attr = p->attr;
  }
  int m = aux->count > 0 ? aux->count : 0;
  if (attr & ATTR_ORDINARY) {
    int i = Get_Element_Index_by_Handle(objects, parent);
    return i >= 0 ? static_cast<uint32_t>(m + 1 + i) : parent;
  }
  int i = Get_Element_Index_by_Handle(aux, parent);
  return i >= 0 ? static_cast<uint32_t>(1 + i) : parent;
}

// One element entry: type, second word, 72 bytes as they stand, creation
// type, parent count and the parent slots, the first three as link numbers.
// The record in memory is not changed. An element that does not lock is
// written as an empty entry so that the array stays readable.
void Write_Element(CFile& f, HGLOBAL h, Objects_Array_Type* objects, Objects_Array_Type* aux) {
  Element_Record r{};
  std::vector<HGLOBAL> parents;
  {
    Locked_Element e(h);
    if (e) {
      r = *e;
      Locked<HGLOBAL> list(r.parents);
      if (r.parent_count > 0) {
        parents.assign(static_cast<size_t>(r.parent_count), 0);
        for (size_t i = 0; i < parents.size() && list.holds(static_cast<long long>(i)); ++i) {
          parents[i] = list[i];
        }
      }
    }
  }
  PutI32(f, r.type);
  PutI32(f, r.attr);
  for (int32_t w : r.u.words) PutI32(f, w);
  PutI32(f, r.creation_type);
  int32_t count = r.parent_count > 0 ? r.parent_count : 0;
  PutI32(f, count);
  for (size_t i = 0; i < parents.size(); ++i) {
    uint32_t v = parents[i];
    if (i < 3 && v != 0) v = Link_Number(v, objects, aux);
    Put32(f, v);
  }
}

void Write_Array(CFile& f, Objects_Array_Type* array, Objects_Array_Type* objects,
                 Objects_Array_Type* aux) {
  std::vector<HGLOBAL> handles;
  {
    Array_Slots slots(array);
    handles.assign(slots.data(), slots.data() + slots.size());
  }
  PutI32(f, static_cast<int32_t>(handles.size()));
  for (HGLOBAL h : handles) Write_Element(f, h, objects, aux);
}

// A contour list: its count, then per contour the number of contour
// elements and each one's index in the objects array (-1 when not there).
void Write_Contours(CFile& f, int32_t count, HGLOBAL list, Objects_Array_Type* objects) {
  std::vector<HGLOBAL> blocks;
  {
    Locked<HGLOBAL> slots(list);
    for (int32_t i = 0; i < count && slots.holds(i); ++i) blocks.push_back(slots[i]);
  }
  PutI32(f, static_cast<int32_t>(blocks.size()));
  for (HGLOBAL b : blocks) {
    Contour_Type c{};
    {
      Locked<Contour_Type> r(b);
      if (r) c = *r;
    }
    // A parts block shorter than the count ends the contour there.
    std::vector<int32_t> indexes;
    {
      Locked<HGLOBAL> parts(c.parts);
      for (int32_t i = 0; i < c.count && parts.holds(i); ++i) {
        Locked<ContEl_Type> part(parts[static_cast<size_t>(i)]);
        HGLOBAL el = part ? part->element : 0;
        indexes.push_back(el ? Get_Element_Index_by_Handle(objects, el) : -1);
      }
    }
    PutI32(f, static_cast<int32_t>(indexes.size()));
    for (int32_t k : indexes) PutI32(f, k);
  }
}

// Doubles of a block, `count` of them; what the block does not hold is 0.
void Write_Doubles(CFile& f, HGLOBAL block, int64_t count) {
  Locked<double> d(block);
  for (int64_t i = 0; i < count; ++i) PutDouble(f, d.holds(i) ? d[static_cast<size_t>(i)] : 0.0);
}

void Write_Split(CFile& f, const FE_Split& s) {
  int32_t n = s.node_count > 0 ? s.node_count : 0;
  PutI32(f, n);
  {
    Locked<FEPOINT> nodes(s.nodes);
    for (int32_t i = 0; i < n; ++i) {
      FEPOINT p = nodes.holds(i) ? nodes[static_cast<size_t>(i)] : FEPOINT{0, 0, 0};
      PutDouble(f, p.x);
      PutDouble(f, p.y);
      f.Write(&p.flag, 1);
    }
  }
  int32_t k = s.second ? 2 * n : 0;
  PutI32(f, k);
  Write_Doubles(f, s.second, k);
  int32_t t = s.triangle_count > 0 ? s.triangle_count : 0;
  PutI32(f, t);
  if (t != 0) {
    {
      Locked<FE3Ang> tri(s.triangles);
      for (int32_t i = 0; i < t; ++i) {
        FE3Ang a = tri.holds(i) ? tri[static_cast<size_t>(i)] : FE3Ang{{0, 0, 0}};
        for (int32_t v : a.n) PutI32(f, v);
      }
    }
    Write_Doubles(f, s.results, t);
  }
  int32_t k2 = s.tau_x && s.tau_y ? t : 0;
  PutI32(f, k2);
  Write_Doubles(f, s.tau_x, k2);
  Write_Doubles(f, s.tau_y, k2);
  int32_t k3 = s.further ? 3 * t : 0;
  PutI32(f, k3);
  Write_Doubles(f, s.further, k3);
  PutI32(f, s.spare[0]);
  PutI32(f, s.spare[1]);
}

}  // namespace

int Save_CrossSectData(CFile& file, _Cross_Section* section) {
  if (!section) return 0;
  Objects_Array_Type* objects = &section->objects;
  Objects_Array_Type* aux = &section->aux_objects;
  PutI32(file, TAG_CROSS_SECTION);
  PutI32(file, TAG_CROSS_DATA);
  PutI32(file, TAG_OBJECTS);
  Write_Array(file, aux, objects, aux);
  Write_Array(file, objects, objects, aux);
  PutI32(file, TAG_SURFACES);
  const Surface_Type& s = section->surface;
  Write_Contours(file, s.outer_count, s.outers, objects);
  Write_Contours(file, s.hole_count, s.holes, objects);
  PutI32(file, TAG_CROSS_END);
  return 1;
}

int Save_GeoCrossSectData(CFile& file, _Geo_Cross_Section* section, DWORD version) {
  if (!section) return 0;
  PutI32(file, TAG_GEOMETRY);
  Save_CrossSectData(file, section);
  PutI32(file, TAG_PROPERTIES);
  double g[sizeof(surface_geometry) / sizeof(double)];
  std::memcpy(g, &section->geom, sizeof g);
  for (double v : g) PutDouble(file, v);
  PutI32(file, TAG_SPLIT);
  Write_Split(file, section->split);
  size_t length = strnlen(section->name, sizeof section->name);
  if (length != 0) {
    PutI32(file, TAG_NAME);
    PutI32(file, static_cast<int32_t>(length));
    file.Write(section->name, static_cast<UINT>(length));
  }
  // Major and minor are tested apart, so 10.1 writes no extra code: the
  // file format has it so and readers of both kinds rely on it.
  if ((version >> 16) >= 9 && (version & 0xFFFF) >= 2) {
    PutI32(file, TAG_EXTRA);
    PutI32(file, section->extra_code);
  }
  PutI32(file, TAG_GEOMETRY_END);
  return 1;
}
