// Hooks by which a host program adapts the library to itself. Set them once
// at start-up, before other calls.
#pragma once

#include "tessaline/export.h"
#include "tessaline/platform/win_types.h"

// The signature of a message-box handler.
using MessageBoxHandler = int (*)(HWND owner, const char* text, const char* caption, UINT type);

// Routes every MessageBoxA to `h` and returns the previous handler. Null
// restores the default, which writes one line to standard error and returns
// IDOK.
TESSALINE_API MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler h);

// The signature of a beep handler.
using MessageBeepHandler = void (*)(UINT type);

// Routes every MessageBeep to `h` and returns the previous handler. Null
// restores the default, which does nothing.
TESSALINE_API MessageBeepHandler SetMessageBeepHandler(MessageBeepHandler h);

// Overrides the controls library's factor (world units per host length
// unit) for a unit code. The built-in table: 1 mm 1, 2 cm 10, 3 dm 100,
// 4 m 1000, 5 inch 25.4, 6 foot 304.8; other codes 1.0.
TESSALINE_API void SetUnitFactor(int code, double factor);

// The screen as the "DISPLAY" context reports it (GetDeviceCaps HORZSIZE,
// VERTSIZE in millimetres, HORZRES, VERTRES in pixels). Defaults 508, 286,
// 1920, 1080; a value <= 0 restores that default.
TESSALINE_API void SetDisplayMetrics(int horzsize_mm, int vertsize_mm, int horzres_px,
                                     int vertres_px);

// Describes a host window for GetClientRect, ScreenToClient and
// ClientToScreen: its client area is w x h pixels and its top-left corner
// lies at (x, y) on the screen. A window described by only one of the two
// has (0, 0) for the other. A null window is ignored.
TESSALINE_API void SetWindowClientSize(HWND window, int w, int h);
TESSALINE_API void SetWindowClientOrigin(HWND window, int x, int y);

// The text of string resource `id` that LoadStringA returns (resource 20023
// is the prefix of the library dialog's caption); null forgets it.
TESSALINE_API void SetStringResource(UINT id, const char* text);
