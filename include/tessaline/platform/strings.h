// String resources: texts by number that the host provides (host.h:
// SetStringResource), read back the Win32 way.
#pragma once

#include "tessaline/export.h"
#include "tessaline/platform/win_types.h"

struct HINSTANCE__;
typedef HINSTANCE__* HINSTANCE;

// Copies the text of resource `id` into `buffer` (at most size - 1
// characters and a NUL) and returns the number of characters copied; 0 (and
// an empty buffer) when the host has set no such text.
TESSALINE_API int LoadStringA(HINSTANCE instance, UINT id, char* buffer, int size);

// Forgets every text the host has set (the module does this when it is
// unloaded).
TESSALINE_API void ClearStringResources();
