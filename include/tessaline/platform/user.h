// The user-interface side of the platform: message boxes and the beep
// (routed to a replaceable handler, see host.h), host windows, the cursor,
// system colours and MulDiv.
#pragma once

#include "tessaline/export.h"
#include "tessaline/platform/win_types.h"

TESSALINE_API int MessageBoxA(HWND owner, const char* text, const char* caption, UINT type);
TESSALINE_API BOOL MessageBeep(UINT type);

// ---------------------------------------------------------------------------
// Host windows and the cursor. The library has no windows of its own: a host
// tells it the client size and screen position of each window it passes in
// (host.h). Functions given a window the host has not described fail.

// (0, 0, width, height) of the window's client area.
TESSALINE_API BOOL GetClientRect(HWND window, RECT* rect);
// The cursor position in screen coordinates, as last set by SetCursorPos.
TESSALINE_API BOOL GetCursorPos(POINT* point);
TESSALINE_API BOOL SetCursorPos(int x, int y);
TESSALINE_API BOOL ScreenToClient(HWND window, POINT* point);
TESSALINE_API BOOL ClientToScreen(HWND window, POINT* point);

// ---------------------------------------------------------------------------
// System colours: the present-day defaults until the host changes them.

constexpr int COLOR_SCROLLBAR = 0;
constexpr int COLOR_BACKGROUND = 1;
constexpr int COLOR_DESKTOP = COLOR_BACKGROUND;
constexpr int COLOR_ACTIVECAPTION = 2;
constexpr int COLOR_INACTIVECAPTION = 3;
constexpr int COLOR_MENU = 4;
constexpr int COLOR_WINDOW = 5;
constexpr int COLOR_WINDOWFRAME = 6;
constexpr int COLOR_MENUTEXT = 7;
constexpr int COLOR_WINDOWTEXT = 8;
constexpr int COLOR_CAPTIONTEXT = 9;
constexpr int COLOR_ACTIVEBORDER = 10;
constexpr int COLOR_INACTIVEBORDER = 11;
constexpr int COLOR_APPWORKSPACE = 12;
constexpr int COLOR_HIGHLIGHT = 13;
constexpr int COLOR_HIGHLIGHTTEXT = 14;
constexpr int COLOR_BTNFACE = 15;
constexpr int COLOR_3DFACE = COLOR_BTNFACE;
constexpr int COLOR_BTNSHADOW = 16;
constexpr int COLOR_3DSHADOW = COLOR_BTNSHADOW;
constexpr int COLOR_GRAYTEXT = 17;
constexpr int COLOR_BTNTEXT = 18;
constexpr int COLOR_INACTIVECAPTIONTEXT = 19;
constexpr int COLOR_BTNHIGHLIGHT = 20;
constexpr int COLOR_3DHILIGHT = COLOR_BTNHIGHLIGHT;
constexpr int COLOR_3DDKSHADOW = 21;
constexpr int COLOR_3DLIGHT = 22;
constexpr int COLOR_INFOTEXT = 23;
constexpr int COLOR_INFOBK = 24;
constexpr int COLOR_HOTLIGHT = 26;
constexpr int COLOR_GRADIENTACTIVECAPTION = 27;
constexpr int COLOR_GRADIENTINACTIVECAPTION = 28;
constexpr int COLOR_MENUHILIGHT = 29;
constexpr int COLOR_MENUBAR = 30;

// The colour of a display element; 0 for an index outside 0..30.
TESSALINE_API DWORD GetSysColor(int index);
// Sets `count` colours; FALSE (and nothing changed) when an index is outside
// 0..30 or an array is null.
TESSALINE_API BOOL SetSysColors(int count, const int* indexes, const COLORREF* colors);

// ---------------------------------------------------------------------------
// a * b / c in 64 bits, rounded half away from zero; -1 when c is 0 or the
// result leaves the 32-bit range.
TESSALINE_API int MulDiv(int a, int b, int c);
