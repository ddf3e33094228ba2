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
