// Parent links: an element built from other elements remembers them in the
// parent list of its record; its creation type says which slots hold them.
#pragma once

#include <cstdint>

#include "tessaline/export.h"
#include "tessaline/model/element.h"
#include "tessaline/platform/win_types.h"

// p1, p2, p3 := 0, then filled from the slots the creation type uses.
TESSALINE_API void Get_Parent_Elem(HGLOBAL h, HGLOBAL* p1, HGLOBAL* p2, HGLOBAL* p3);
// Writes parent number k into the slot the creation type gives it.
TESSALINE_API void Set_Parent_Elem(HGLOBAL h, HGLOBAL parent, int k);
// Releases element h from parent m; returns h's creation type on entry.
TESSALINE_API int Cut_Parent_Link(HGLOBAL h, HGLOBAL m);

// ---- Attached objects --------------------------------------------------------

// Run after the elements of `moved` were moved together. For each moved
// element M in array order: every element E of `all` that is not itself in
// `moved` and whose first two parents p1, p2 satisfy (p2 == M or p1 != M) is
// released from M (Cut_Parent_Link): an element follows a moved element only
// when that element is its first parent and not also its second. Then M is
// released from each of its own parents that is not in `moved`. The cuts are
// those, and in the order, of a loop over every (M, E) pair, but only the
// pairs that are linked are visited: an index from parent to children is
// built once, so the time grows with the elements and links, not with
// their product.
TESSALINE_API void Do_Objects_Attach_Moving(const Objects_Array_Type* moved,
                                            const Objects_Array_Type* all);

// Re-points every link to `old_h` held by an element of `array` or `second`
// (any slot of its parent list; `old_h` and `new_h` themselves are passed
// over) to `new_h`: used when an element is replaced or split, so that what
// was built on it follows the new element. With flag bit 0x01 set, `new_h`
// also takes a copy of old's creation type and parent list (both pieces of a
// split element stay built on the same parents); with it clear new's own
// links stay as they are. Returns the number of slots re-pointed (>= 0);
// -1 when old or new is not an element, -2 when a parent list could not be
// allocated (nothing re-pointed).
TESSALINE_API int Change_All_Childs(HGLOBAL old_h, HGLOBAL new_h, int flag,
                                    const Objects_Array_Type* array,
                                    const Objects_Array_Type* second);

// Copies the first `count` elements of `source` (Create_Element_Copy: the
// geometry, the creation type and the parent slots) and appends the copies
// to `destination`, in source order. Every parent link of a copy that points
// at one of the copied source elements is re-pointed at that element's copy,
// so the copies form the same link graph among themselves. Links to elements
// outside the copied range keep pointing at the originals: when those are
// copied too (into another array), Create_Analog_Attach re-points them.
// The copies are new elements that belong to whoever owns `destination`
// (DeleteObjectsArray frees them); `source` and its elements are unchanged.
// A count beyond the source's count copies the whole source; a count < 1, or
// a null array, copies nothing. An entry that cannot be copied (a stale
// handle) is passed over; a handle held twice is copied twice, links going to
// the copy of its first occurrence.
TESSALINE_API void Create_Same_Objects_With_Attach(const Objects_Array_Type* source,
                                                   Objects_Array_Type* destination, int count);

// Re-points links from originals to their analogues: `copies` holds, at each
// index i, the copy of the element at index i of `originals`. Every parent
// slot of every element of `children` that holds originals[i] gets
// copies[i] (the first i, when an original is held twice). Used after both
// arrays of a drawing were copied, so that the copied construction elements
// hang on the copied ordinary elements and back. Returns the number of slots
// re-pointed; -1 for a null array or when `copies` holds fewer elements than
// `originals`.
TESSALINE_API int Create_Analog_Attach(const Objects_Array_Type* originals,
                                       const Objects_Array_Type* copies,
                                       const Objects_Array_Type* children);
