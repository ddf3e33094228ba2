// Reading the geometry file. Every count and length read is checked against
// what is left of the file before anything is allocated for it, and every
// loop ends at the end of the file.
#include <algorithm>
#include <cstring>
#include <vector>

#include "files/geo_io.h"
#include "files/split_release.h"
#include "model/record.h"
#include "platform/locked.h"
#include "tessaline/files/cross_section.h"

using namespace geo_io;

namespace {

constexpr int64_t kElement_Entry_Bytes = 88;
constexpr int64_t kNode_Entry_Bytes = 17;

// One element entry into a new zero-filled record; 0 when the entry is cut
// short or its parent count cannot be held.
HGLOBAL Read_Element(Reader& r) {
  Element_Record e{};
  e.type = r.I32();
  e.attr = r.I32();
  for (int32_t& w : e.u.words) w = r.I32();
  e.creation_type = r.I32();
  int32_t p = r.I32();
  if (!r.ok() || !r.Fits(p, 4)) return 0;
  // A compound element's blocks are not in the file: the raw handle values
  // written for them name nothing of this element's, so none is kept.
  if (e.type == EL_POLYLINE) {
    e.attr = 0;
    e.u.poly.nodes = 0;
  } else if (e.type == EL_SPLINE) {
    e.attr = 0;
    e.u.spline.x = e.u.spline.y = e.u.spline.m1 = e.u.spline.m2 = 0;
  }
  HGLOBAL parents = 0;
  if (p > 0) {
    parents = GlobalAlloc(GHND, static_cast<SIZE_T>(p) * sizeof(HGLOBAL));
    if (!parents) return 0;
    Locked<HGLOBAL> list(parents);
    for (int32_t i = 0; i < p; ++i) list[static_cast<size_t>(i)] = static_cast<HGLOBAL>(r.I32());
  }
  e.parent_count = p;
  e.parents = parents;
  HGLOBAL h = Alloc_Element();
  Locked_Element rec(h);
  if (!rec || !r.ok()) {
    if (parents) GlobalFree(parents);
    if (h) GlobalFree(h);
    return 0;
  }
  *rec = e;
  return h;
}

bool Read_Array(Reader& r, Objects_Array_Type* array) {
  DeleteObjectsArray(array);
  int32_t count = r.I32();
  if (!r.ok() || !r.Fits(count, kElement_Entry_Bytes)) return false;
  for (int32_t i = 0; i < count; ++i) {
    HGLOBAL h = Read_Element(r);
    if (!h) return false;
    if (Add_Element_In_Array_by_Handle(array, h) < 0) {
      Delete_Element(h);
      return false;
    }
  }
  return true;
}

// Turns the link numbers in the first three parent slots of every element
// back into handles: 1..m the second array, m+1..m+n the objects array.
void Relink(Objects_Array_Type* objects, Objects_Array_Type* aux) {
  std::vector<HGLOBAL> a, o;
  {
    Array_Slots sa(aux), so(objects);
    a.assign(sa.data(), sa.data() + sa.size());
    o.assign(so.data(), so.data() + so.size());
  }
  auto relink = [&](HGLOBAL h) {
    Locked_Element e(h);
    if (!e || e->parent_count <= 0) return;
    Locked<HGLOBAL> list(e->parents);
    for (size_t i = 0;
         i < 3 && list.holds(static_cast<long long>(i)) && i < static_cast<size_t>(e->parent_count);
         ++i) {
      uint32_t k = list[i];
      if (k >= 1 && k <= a.size()) {
        list[i] = a[k - 1];
      } else if (k > a.size() && k <= a.size() + o.size()) {
        list[i] = o[k - a.size() - 1];
      }
    }
  };
  for (HGLOBAL h : a) relink(h);
  for (HGLOBAL h : o) relink(h);
}

bool Read_Contours(Reader& r, Surface_Type* surface, Objects_Array_Type* objects, int is_hole) {
  int32_t count = r.I32();
  if (!r.ok() || !r.Fits(count, 4)) return false;
  for (int32_t c = 0; c < count; ++c) {
    int32_t n = r.I32();
    if (!r.ok() || !r.Fits(n, 4)) return false;
    HGLOBAL block = Create_El_Contour(n);
    if (!block) return false;
    bool ok = true;
    {
      Locked<Contour_Type> rec(block);
      for (int32_t i = 0; i < n && ok; ++i) {
        int32_t index = r.I32();
        HGLOBAL el =
            index >= 0 && index < objects->count ? Get_Element_Handle_by_Index(objects, index) : 0;
        HGLOBAL part = Create_El_Part(el, 0, 1);
        ok = r.ok() && part && Add_ContEl(rec.get(), part) >= 0;
        if (!ok && part) GlobalFree(part);
      }
    }
    if (!ok || Add_Surface_Contour(surface, block, is_hole) < 0) {
      {
        Locked<Contour_Type> rec(block);
        if (rec) Delete_El_Contour(rec.get());
      }
      GlobalFree(block);
      return false;
    }
  }
  return true;
}

// `count` doubles into a new block; false when they cannot be held.
bool Read_Doubles(Reader& r, int32_t count, HGLOBAL& block) {
  if (!r.Fits(count, 8)) return false;
  block = GlobalAlloc(GHND, static_cast<SIZE_T>(count) * sizeof(double));
  if (!block) return false;
  Locked<double> d(block);
  for (int32_t i = 0; i < count; ++i) d[static_cast<size_t>(i)] = r.Double();
  return r.ok();
}

bool Read_Split(Reader& r, FE_Split* s) {
  Release_Split(s);
  int32_t n = r.I32();
  if (!r.ok()) return false;
  if (n <= 0) return true;  // the counts that follow pass through the tag loop
  if (!r.Fits(n, kNode_Entry_Bytes)) return false;
  s->nodes = GlobalAlloc(GHND, static_cast<SIZE_T>(n) * sizeof(FEPOINT));
  if (!s->nodes) return false;
  s->node_count = n;
  {
    Locked<FEPOINT> nodes(s->nodes);
    for (int32_t i = 0; i < n; ++i) {
      FEPOINT& p = nodes[static_cast<size_t>(i)];
      p.x = r.Double();
      p.y = r.Double();
      r.Bytes(&p.flag, 1);
    }
  }
  int32_t k = r.I32();
  if (!r.ok() || (k > 0 && !Read_Doubles(r, k, s->second))) return false;
  int32_t t = r.I32();
  if (!r.ok()) return false;
  if (t > 0) {
    if (!r.Fits(t, 12 + 8)) return false;
    s->triangles = GlobalAlloc(GHND, static_cast<SIZE_T>(t) * sizeof(FE3Ang));
    if (!s->triangles) return false;
    s->triangle_count = t;
    {
      Locked<FE3Ang> tri(s->triangles);
      for (int32_t i = 0; i < t; ++i) {
        for (int32_t& v : tri[static_cast<size_t>(i)].n) v = r.I32();
      }
    }
    if (!Read_Doubles(r, t, s->results)) return false;
    int32_t k2 = r.I32();
    if (!r.ok()) return false;
    if (k2 > 0 &&
        (!r.Fits(k2, 16) || !Read_Doubles(r, k2, s->tau_x) || !Read_Doubles(r, k2, s->tau_y))) {
      return false;
    }
    int32_t k3 = r.I32();
    if (!r.ok() || (k3 > 0 && !Read_Doubles(r, k3, s->further))) return false;
  }
  s->spare[0] = r.I32();
  s->spare[1] = r.I32();
  return r.ok();
}

}  // namespace

int Read_CrossSectData(CFile& file, _Cross_Section* section) {
  if (!section) return 0;
  Reader r(file);
  if (r.I32() != TAG_CROSS_SECTION) return 0;
  for (;;) {
    int32_t tag = r.I32();
    if (!r.ok()) return 0;
    switch (tag) {
      case TAG_CROSS_END:
        return 1;
      case TAG_OBJECTS:
        if (!Read_Array(r, &section->aux_objects) || !Read_Array(r, &section->objects)) {
          return 0;
        }
        Relink(&section->objects, &section->aux_objects);
        break;
      case TAG_SURFACES:
        Delete_Surface(&section->surface);
        if (!Read_Contours(r, &section->surface, &section->objects, 0) ||
            !Read_Contours(r, &section->surface, &section->objects, 1)) {
          return 0;
        }
        break;
      default:
        break;  // the "DC" marker and anything unknown
    }
  }
}

int Read_GeoCrossSectData(CFile& file, _Geo_Cross_Section* section) {
  if (!section) return 0;
  Reader r(file);
  if (r.I32() != TAG_GEOMETRY || !r.ok()) return 0;
  for (;;) {
    int32_t tag = r.I32();
    if (!r.ok()) return 0;  // the file ended before the end tag
    switch (tag) {
      case TAG_GEOMETRY_END:
        return 1;
      case TAG_CROSS_SECTION:
        file.Seek(-4, CFile::current);
        if (!Read_CrossSectData(file, section)) return 0;
        break;
      case TAG_PROPERTIES: {
        double g[sizeof(surface_geometry) / sizeof(double)];
        for (double& v : g) v = r.Double();
        if (!r.ok()) return 0;
        std::memcpy(&section->geom, g, sizeof g);
        break;
      }
      case TAG_SPLIT:
        if (!Read_Split(r, &section->split)) return 0;
        break;
      case TAG_NAME: {
        int32_t length = r.I32();
        if (!r.ok() || !r.Fits(length, 1)) return 0;
        section->name[0] = 0;
        auto kept = static_cast<uint32_t>(
            std::min<int64_t>(length, static_cast<int64_t>(sizeof section->name) - 1));
        r.Bytes(section->name, kept);
        section->name[kept] = 0;
        if (!r.ok()) return 0;
        if (static_cast<uint32_t>(length) > kept) file.Seek(length - kept, CFile::current);
        break;
      }
      case TAG_EXTRA:
        section->extra_code = r.I32();
        if (!r.ok()) return 0;
        break;
      default:
        break;  // unknown: the next four bytes are read as a tag
    }
  }
}
