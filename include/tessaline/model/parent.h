// Parent links: an element built from other elements remembers them in the
// parent list of its record; its creation type says which slots hold them.
#pragma once

#include <cstdint>

#include "tessaline/export.h"
#include "tessaline/platform/win_types.h"

// p1, p2, p3 := 0, then filled from the slots the creation type uses.
TESSALINE_API void Get_Parent_Elem(HGLOBAL h, HGLOBAL* p1, HGLOBAL* p2, HGLOBAL* p3);
// Writes parent number k into the slot the creation type gives it.
TESSALINE_API void Set_Parent_Elem(HGLOBAL h, HGLOBAL parent, int k);
// Releases element h from parent m; returns h's creation type on entry.
TESSALINE_API int Cut_Parent_Link(HGLOBAL h, HGLOBAL m);
