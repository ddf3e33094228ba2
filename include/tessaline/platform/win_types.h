// The plain Win32 types and constants that the system's code is written
// against. Only the subset the library uses is here.
#pragma once

#include <cstdint>

typedef int BOOL;
typedef unsigned int UINT;
typedef uint8_t BYTE;
typedef uint16_t WORD;
typedef uint32_t DWORD;
typedef int32_t LONG;
typedef uintptr_t WPARAM;
typedef intptr_t LPARAM;
typedef uint64_t SIZE_T;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

// A movable memory block's handle: an unsigned 32-bit value, 0 meaning none.
//
//   bits 31..22  generation (1..1023) of the slot when the block was allocated
//   bits 21..0   slot index in the handle table (1..4 194 303)
//
// Freeing a block bumps its slot's generation, so a freed or made-up handle
// no longer matches any live block and locks to null; it never reaches
// another block. Freed slots are reused oldest first, so the same slot comes
// back only after every other free slot, and the same handle value only after
// 1023 such rounds.
typedef uint32_t HGLOBAL;

// A host window, opaque to the library.
struct HWND__;
typedef HWND__* HWND;

typedef DWORD COLORREF;  // 0x00BBGGRR

struct POINT {
  LONG x;
  LONG y;
};

struct RECT {
  LONG left;
  LONG top;
  LONG right;
  LONG bottom;
};

// Movable memory flags.
constexpr UINT GMEM_FIXED = 0x0000;
constexpr UINT GMEM_MOVEABLE = 0x0002;
constexpr UINT GMEM_ZEROINIT = 0x0040;
constexpr UINT GHND = GMEM_MOVEABLE | GMEM_ZEROINIT;
constexpr UINT GPTR = GMEM_FIXED | GMEM_ZEROINIT;

// Message boxes.
constexpr UINT MB_OK = 0x00000000;
constexpr UINT MB_OKCANCEL = 0x00000001;
constexpr UINT MB_YESNO = 0x00000004;
constexpr UINT MB_ICONHAND = 0x00000010;
constexpr UINT MB_ICONSTOP = MB_ICONHAND;
constexpr UINT MB_ICONERROR = MB_ICONHAND;
constexpr UINT MB_ICONQUESTION = 0x00000020;
constexpr UINT MB_ICONEXCLAMATION = 0x00000030;
constexpr UINT MB_ICONWARNING = MB_ICONEXCLAMATION;
constexpr UINT MB_ICONASTERISK = 0x00000040;
constexpr UINT MB_ICONINFORMATION = MB_ICONASTERISK;
constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDYES = 6;
constexpr int IDNO = 7;

inline constexpr COLORREF RGB(BYTE r, BYTE g, BYTE b) {
  return static_cast<COLORREF>(r) | (static_cast<COLORREF>(g) << 8) |
         (static_cast<COLORREF>(b) << 16);
}
inline constexpr BYTE GetRValue(COLORREF c) {
  return static_cast<BYTE>(c & 0xFF);
}
inline constexpr BYTE GetGValue(COLORREF c) {
  return static_cast<BYTE>((c >> 8) & 0xFF);
}
inline constexpr BYTE GetBValue(COLORREF c) {
  return static_cast<BYTE>((c >> 16) & 0xFF);
}
