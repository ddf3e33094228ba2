// Releasing a split record's blocks before it is read anew or freed.
#pragma once

#include "tessaline/analysis/split.h"
#include "tessaline/platform/memory.h"

// Frees the seven blocks that are set, in field order, and clears them and
// the two counts.
inline void Release_Split(FE_Split* s) {
  if (!s) return;
  for (HGLOBAL* h :
       {&s->nodes, &s->second, &s->triangles, &s->results, &s->further, &s->tau_x, &s->tau_y}) {
    if (*h) GlobalFree(*h);
    *h = 0;
  }
  s->node_count = 0;
  s->triangle_count = 0;
}
