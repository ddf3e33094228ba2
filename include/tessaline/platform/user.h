// Message boxes and the beep, routed to a replaceable handler (see host.h).
#pragma once

#include "tessaline/export.h"
#include "tessaline/platform/win_types.h"

TESSALINE_API int MessageBoxA(HWND owner, const char* text, const char* caption, UINT type);
TESSALINE_API BOOL MessageBeep(UINT type);
