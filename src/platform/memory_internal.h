// The handle table's combined lock, for the library's own block views.
#pragma once

#include "tessaline/platform/win_types.h"

// GlobalLock and GlobalSize in one visit to the table: the pointer (null as
// GlobalLock gives it) and the block's size in *bytes (0 with a null pointer).
void* Global_Lock_Sized(HGLOBAL h, SIZE_T* bytes);

// Frees every block and the table itself (the library is being unloaded).
// Nothing may use the table at the same time; a later call starts afresh.
void Release_Memory_Table();
