// Node and triangle blocks of a finite-element split: allocation, freeing,
// the node-list functions and the block <-> vector copies the splits use.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "analysis/split_internal.h"
#include "platform/locked.h"
#include "tessaline/platform/memory.h"
#include "tessaline/platform/user.h"

namespace {

template <class T>
HGLOBAL Alloc_Records(int count) {
  if (count < 0) return 0;
  return GlobalAlloc(GHND, static_cast<SIZE_T>(count) * sizeof(T));
}

template <class T>
bool Read_Records(HGLOBAL block, int count, std::vector<T>* out) {
  out->clear();
  if (count < 0) return false;
  if (count == 0) return true;
  Locked<T> p(block);
  if (!p || p.count() < static_cast<size_t>(count)) return false;
  out->assign(p.get(), p.get() + count);
  return true;
}

template <class T>
bool Write_Records(HGLOBAL block, const std::vector<T>& v) {
  if (v.empty()) return true;
  Locked<T> p(block);
  if (!p || p.count() < v.size()) return false;
  std::memcpy(p.get(), v.data(), v.size() * sizeof(T));
  return true;
}

template <class T>
HGLOBAL New_Block(const std::vector<T>& v) {
  if (v.empty() || v.size() > static_cast<size_t>(INT32_MAX)) return 0;
  HGLOBAL h = Alloc_Records<T>(static_cast<int>(v.size()));
  if (h && !Write_Records(h, v)) {
    GlobalFree(h);
    return 0;
  }
  return h;
}

// Nodes the block holds (its size, whatever a count claims).
long long Block_Nodes(HGLOBAL h) {
  return static_cast<long long>(GlobalSize(h) / sizeof(FEPOINT));
}

}  // namespace

bool Read_FE_Nodes(HGLOBAL block, int count, std::vector<FEPOINT>* out) {
  return Read_Records(block, count, out);
}
bool Read_FE_Triangles(HGLOBAL block, int count, std::vector<FE3Ang>* out) {
  return Read_Records(block, count, out);
}
bool Write_FE_Nodes(HGLOBAL block, const std::vector<FEPOINT>& nodes) {
  return Write_Records(block, nodes);
}
bool Write_FE_Triangles(HGLOBAL block, const std::vector<FE3Ang>& triangles) {
  return Write_Records(block, triangles);
}
HGLOBAL New_FE_Node_Block(const std::vector<FEPOINT>& nodes) {
  return New_Block(nodes);
}
HGLOBAL New_FE_Triangle_Block(const std::vector<FE3Ang>& triangles) {
  return New_Block(triangles);
}

bool FE_Corners_Valid(const std::vector<FE3Ang>& triangles, size_t node_count) {
  for (const FE3Ang& t : triangles) {
    for (int32_t n : t.n) {
      if (n < 0 || static_cast<size_t>(n) >= node_count) return false;
    }
  }
  return true;
}

void Orient_CCW(Split_Mesh* mesh) {
  for (FE3Ang& t : mesh->triangles) {
    const FEPOINT& a = mesh->nodes[t.n[0]];
    const FEPOINT& b = mesh->nodes[t.n[1]];
    const FEPOINT& c = mesh->nodes[t.n[2]];
    if ((b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x) < 0) std::swap(t.n[1], t.n[2]);
  }
}

HGLOBAL Alloc_FE3Ang(int count) {
  return Alloc_Records<FE3Ang>(count);
}

HGLOBAL Alloc_FEPoints(int count) {
  return Alloc_Records<FEPOINT>(count);
}

void Free_FE_Split(FE_Split* split) {
  if (!split) return;
  for (HGLOBAL* h : {&split->nodes, &split->second, &split->triangles, &split->results,
                     &split->further, &split->tau_x, &split->tau_y}) {
    if (*h) GlobalFree(*h);
    *h = 0;
  }
  split->node_count = 0;
  split->triangle_count = 0;
}

int Add_FE_Point(HGLOBAL* nodes, int* count, double x, double y, int flag) {
  if (!nodes || !count) return -1;
  if (*nodes == 0) {
    *nodes = Alloc_FEPoints(1);
    *count = 0;
    if (*nodes == 0) return -1;
  } else {
    if (*count < 0 || *count >= INT32_MAX) return -1;
    SIZE_T bytes = static_cast<SIZE_T>(*count + 1) * sizeof(FEPOINT);
    if (GlobalReAlloc(*nodes, bytes, GMEM_MOVEABLE | GMEM_ZEROINIT) == 0) return -1;
  }
  Locked<FEPOINT> p(*nodes);
  if (!p.holds(*count)) {
    char text[80];
    std::snprintf(text, sizeof text, "Begin iNum=%d, hP = %u", *count, *nodes);
    // Text and caption stand the other way round, as hosts have always seen them.
    MessageBoxA(nullptr, "Warning", text, MB_OK);
    return -1;
  }
  p[*count] = FEPOINT{x, y, static_cast<uint8_t>(flag)};
  return (*count)++;
}

int Insert_FE_Point(HGLOBAL* nodes, int* count, int position, int flag, double x, double y) {
  if (!nodes || !count || *count < 0 || position < 0 || position > *count) return -1;
  if (Block_Nodes(*nodes) < *count) return -1;
  int end = *count;
  if (Add_FE_Point(nodes, count, x, y, flag) != end) return -1;
  Locked<FEPOINT> p(*nodes);
  if (!p) return -1;
  std::memmove(p.get() + position + 1, p.get() + position,
               static_cast<size_t>(end - position) * sizeof(FEPOINT));
  p[position] = FEPOINT{x, y, static_cast<uint8_t>(flag)};
  return position;
}

int Remove_FE_Point(HGLOBAL* nodes, int* count, int position) {
  if (!nodes || !count || position < 0 || position >= *count) return 0;
  if (Block_Nodes(*nodes) < *count) return 0;
  {
    Locked<FEPOINT> p(*nodes);
    if (!p) return 0;
    std::memmove(p.get() + position, p.get() + position + 1,
                 static_cast<size_t>(*count - position - 1) * sizeof(FEPOINT));
  }
  if (*count > 1)
    GlobalReAlloc(*nodes, static_cast<SIZE_T>(*count - 1) * sizeof(FEPOINT), GMEM_MOVEABLE);
  --*count;
  return 1;
}

int Find_FE_Point(HGLOBAL nodes, int count, double x, double y) {
  Locked<FEPOINT> p(nodes);
  if (!p || count <= 0) return -1;
  size_t n = std::min(static_cast<size_t>(count), p.count());
  for (size_t i = 0; i < n; ++i) {
    if (p[i].x == x && p[i].y == y) return static_cast<int>(i);
  }
  return -1;
}

int Find_FE_Point_Back(HGLOBAL nodes, int start, double x, double y) {
  Locked<FEPOINT> p(nodes);
  if (!p) return -1;
  long long i = std::min<long long>(start < 0 ? 0 : start, static_cast<long long>(p.count()) - 1);
  for (; i >= 0; --i) {
    if (p[i].x == x && p[i].y == y) return static_cast<int>(i);
  }
  return -1;
}
