// The graphics device interface: a software raster device context with the
// names, signatures and integer pixel rules of Win32 GDI.
//
// Surfaces. A memory context (CreateCompatibleDC) draws into the bitmap
// selected into it; bitmaps are true colour (32 bits per pixel) and hold every
// COLORREF exactly. The "DISPLAY" context (CreateDCA) and information context
// (CreateICA) report the screen's capabilities (host.h: SetDisplayMetrics) but
// have no pixels: drawing into them succeeds on the display context and fails
// on the information context, and changes nothing.
//
// Coordinates. Drawing calls take logical coordinates, mapped to device
// pixels (x right, y down) by the mapping mode, window and viewport. Device
// coordinates beyond +-2^27 are clamped before rasterising (GDI's own limit).
//
// Pixel rules (every rule is exact integer arithmetic, so a figure drawn
// twice with R2_XORPEN or R2_NOT leaves the surface as it was):
//  - A line from A to B covers max(|dx|, |dy|) pixels: it starts at A and
//    leaves out B. Along the major axis every pixel is hit once; the minor
//    coordinate is the exact line rounded to nearest, a tie going to the
//    smaller device coordinate (up, or left). Polyline and Polygon draw each
//    segment that way, so a joint is hit once (by the segment it starts).
//  - Rectangle(l, t, r, b) covers columns l..r-1 and rows t..b-1: the pen
//    draws the border, the brush the inside. With a null pen the brush covers
//    columns l..r-2 and rows t..b-2, as in Win32.
//  - Ellipse(l, t, r, b) covers the digital ellipse of the same box: a pixel
//    at offsets (dx, dy) from the centre of the pixel box (half-pixel centres
//    for even sizes) belongs to it when (dx/(a+1/2))^2 + (dy/(b+1/2))^2 <= 1,
//    a and b being the half distances between the outermost pixel centres;
//    the middle row(s) and column(s) always reach the box, so the four
//    extreme points are l, r-1, t and b-1. The pen draws the pixels of that
//    set that have a 4-neighbour outside it; the brush the rest. With a null
//    pen the brush covers the set of the box (l, t, r-1, b-1), and so does
//    CreateEllipticRgn(l, t, r, b): a region leaves out the right and bottom
//    edge of its box.
//  - Arc draws the pixels of the ellipse's outline whose direction from the
//    centre lies counter-clockwise (as seen on the device) from the start
//    radial, inclusive, to the end radial, exclusive. Radials that cut the
//    ellipse through the outermost pixel centres in the same pixel (the cut
//    points rounded to the nearest pixel) give the whole ellipse.
//  - Polygon fill and CreatePolygonRgn sample the pixel at its integer point:
//    a pixel is inside when it is inside the polygon, points on a left or top
//    edge counting as inside and on a right or bottom edge as outside
//    (ALTERNATE: odd crossing count; WINDING: non-zero winding number). The
//    pen outline is the closed polyline through the vertices; the brush does
//    not paint the outline's pixels.
//  - Dashed pens (PS_DASH 18 on 6 off, PS_DOT 3/3, PS_DASHDOT 9/6/3/6,
//    PS_DASHDOTDOT 9/3/3/3/3/3 pixels) count pixels along the figure; the
//    pattern restarts with each figure and with MoveToEx and runs on through
//    consecutive LineTo calls. Gaps take the background colour when the
//    background mode is OPAQUE and are left alone when it is TRANSPARENT.
//  - A pen's width is in logical units, mapped like a length along x; width 0
//    is one pixel whatever the mapping. Wide pens (width > 1 after mapping)
//    are geometric with round caps and
//    joins: a pixel is covered when its sample point lies closer than
//    width/2 to the figure's outline path (the path through the pixel
//    centres that a 1-pixel pen would draw). The sample point is the pixel's
//    integer point for odd widths and that point + (1/2, 1/2) for even
//    widths, so a horizontal line of width w covers exactly w rows. Each call
//    covers a pixel once. A dashed style with width > 1 draws solid, as in
//    Win32. PS_INSIDEFRAME draws as PS_SOLID, except that Rectangle and
//    Ellipse with a wide pen shrink their box by w/2 on the left and top and
//    (w-1)/2 on the right and bottom, so that the pen stays inside the box.
//  - Every drawing call paints through the raster operation (SetROP2) and is
//    clipped to the surface and to the clipping region, per pixel.
//    SetPixel and FillRect copy (they ignore the raster operation), as in
//    Win32; FillRgn, FrameRgn and PaintRgn use it.
//
// Handles are checked: a deleted, made-up or wrongly typed handle makes a
// call fail with its failure value (FALSE, 0, NULL, CLR_INVALID, ERROR),
// never a crash. All calls are safe from several threads on different
// objects.
#pragma once

#include <cstdint>

#include "tessaline/export.h"
#include "tessaline/platform/win_types.h"

// ---------------------------------------------------------------------------
// Handles: pointers to incomplete types, as Win32's STRICT handles are.

struct HDC__;
typedef HDC__* HDC;
struct HPEN__;
typedef HPEN__* HPEN;
struct HBRUSH__;
typedef HBRUSH__* HBRUSH;
struct HRGN__;
typedef HRGN__* HRGN;
struct HBITMAP__;
typedef HBITMAP__* HBITMAP;
struct HPALETTE__;
typedef HPALETTE__* HPALETTE;
typedef void* HGDIOBJ;  // any of the above but HDC

struct DEVMODEA;  // never looked at; pass NULL

struct SIZE {
  LONG cx;
  LONG cy;
};

struct LOGPEN {
  UINT lopnStyle;
  POINT lopnWidth;  // only x counts
  COLORREF lopnColor;
};

struct LOGBRUSH {
  UINT lbStyle;
  COLORREF lbColor;
  uintptr_t lbHatch;
};

// What GetObjectA reports for a bitmap: bmBits is always null (device
// dependent bitmap), bmWidthBytes is width * 4.
struct BITMAP {
  LONG bmType;
  LONG bmWidth;
  LONG bmHeight;
  LONG bmWidthBytes;
  WORD bmPlanes;
  WORD bmBitsPixel;
  void* bmBits;
};

// ---------------------------------------------------------------------------
// Constants (Win32 values).

constexpr COLORREF CLR_INVALID = 0xFFFFFFFF;
#define HGDI_ERROR (reinterpret_cast<HGDIOBJ>(static_cast<intptr_t>(-1)))

// Object types (GetObjectType, GetCurrentObject).
constexpr UINT OBJ_PEN = 1;
constexpr UINT OBJ_BRUSH = 2;
constexpr UINT OBJ_DC = 3;
constexpr UINT OBJ_PAL = 5;
constexpr UINT OBJ_BITMAP = 7;
constexpr UINT OBJ_REGION = 8;
constexpr UINT OBJ_MEMDC = 10;

// Stock objects.
constexpr int WHITE_BRUSH = 0;
constexpr int LTGRAY_BRUSH = 1;
constexpr int GRAY_BRUSH = 2;
constexpr int DKGRAY_BRUSH = 3;
constexpr int BLACK_BRUSH = 4;
constexpr int NULL_BRUSH = 5;
constexpr int HOLLOW_BRUSH = NULL_BRUSH;
constexpr int WHITE_PEN = 6;
constexpr int BLACK_PEN = 7;
constexpr int NULL_PEN = 8;

// Pen styles.
constexpr int PS_SOLID = 0;
constexpr int PS_DASH = 1;
constexpr int PS_DOT = 2;
constexpr int PS_DASHDOT = 3;
constexpr int PS_DASHDOTDOT = 4;
constexpr int PS_NULL = 5;
constexpr int PS_INSIDEFRAME = 6;

// Brush styles (LOGBRUSH).
constexpr UINT BS_SOLID = 0;
constexpr UINT BS_NULL = 1;
constexpr UINT BS_HOLLOW = BS_NULL;

// Raster operations: the result for pen bit P and destination bit D is bit
// (2 * P + D) of (code - 1).
constexpr int R2_BLACK = 1;         //  0
constexpr int R2_NOTMERGEPEN = 2;   // ~(D | P)
constexpr int R2_MASKNOTPEN = 3;    //  D & ~P
constexpr int R2_NOTCOPYPEN = 4;    // ~P
constexpr int R2_MASKPENNOT = 5;    //  P & ~D
constexpr int R2_NOT = 6;           // ~D
constexpr int R2_XORPEN = 7;        //  D ^ P
constexpr int R2_NOTMASKPEN = 8;    // ~(D & P)
constexpr int R2_MASKPEN = 9;       //  D & P
constexpr int R2_NOTXORPEN = 10;    // ~(D ^ P)
constexpr int R2_NOP = 11;          //  D
constexpr int R2_MERGENOTPEN = 12;  //  D | ~P
constexpr int R2_COPYPEN = 13;      //  P
constexpr int R2_MERGEPENNOT = 14;  //  P | ~D
constexpr int R2_MERGEPEN = 15;     //  D | P
constexpr int R2_WHITE = 16;        //  1

// Background modes.
constexpr int TRANSPARENT = 1;
constexpr int OPAQUE = 2;

// Polygon fill modes.
constexpr int ALTERNATE = 1;
constexpr int WINDING = 2;

// Mapping modes.
constexpr int MM_TEXT = 1;
constexpr int MM_LOMETRIC = 2;   // 0.1 mm, y up
constexpr int MM_HIMETRIC = 3;   // 0.01 mm, y up
constexpr int MM_LOENGLISH = 4;  // 0.01 inch, y up
constexpr int MM_HIENGLISH = 5;  // 0.001 inch, y up
constexpr int MM_TWIPS = 6;      // 1/1440 inch, y up
constexpr int MM_ISOTROPIC = 7;
constexpr int MM_ANISOTROPIC = 8;

// Device capabilities (GetDeviceCaps).
constexpr int TECHNOLOGY = 2;
constexpr int HORZSIZE = 4;
constexpr int VERTSIZE = 6;
constexpr int HORZRES = 8;
constexpr int VERTRES = 10;
constexpr int BITSPIXEL = 12;
constexpr int PLANES = 14;
constexpr int NUMCOLORS = 24;
constexpr int ASPECTX = 40;
constexpr int ASPECTY = 42;
constexpr int ASPECTXY = 44;
constexpr int LOGPIXELSX = 88;
constexpr int LOGPIXELSY = 90;
constexpr int SIZEPALETTE = 104;
constexpr int COLORRES = 108;
constexpr int DT_RASDISPLAY = 1;

// Regions: CombineRgn modes and region types.
constexpr int RGN_AND = 1;
constexpr int RGN_OR = 2;
constexpr int RGN_XOR = 3;
constexpr int RGN_DIFF = 4;
constexpr int RGN_COPY = 5;
constexpr int ERROR = 0;
constexpr int NULLREGION = 1;
constexpr int SIMPLEREGION = 2;
constexpr int COMPLEXREGION = 3;

// ---------------------------------------------------------------------------
// Contexts.

// A memory context compatible with `dc` (NULL: the screen). It starts with
// a 1 x 1 stock bitmap that ignores drawing; select a bitmap to draw.
TESSALINE_API HDC CreateCompatibleDC(HDC dc);
// "DISPLAY" (any case) only; NULL for other drivers. The other arguments are
// not looked at.
TESSALINE_API HDC CreateDCA(const char* driver, const char* device, const char* port,
                            const DEVMODEA* mode);
TESSALINE_API HDC CreateICA(const char* driver, const char* device, const char* port,
                            const DEVMODEA* mode);
// Deselects the context's objects (they stay alive) and frees it.
TESSALINE_API BOOL DeleteDC(HDC dc);
// The screen's values for every context: HORZSIZE, VERTSIZE, HORZRES and
// VERTRES from SetDisplayMetrics; BITSPIXEL 32, PLANES 1, NUMCOLORS -1,
// SIZEPALETTE 0, COLORRES 24, ASPECTX 36, ASPECTY 36, ASPECTXY 51,
// LOGPIXELSX/Y 96, TECHNOLOGY DT_RASDISPLAY. 0 for other indexes.
TESSALINE_API int GetDeviceCaps(HDC dc, int index);

// ---------------------------------------------------------------------------
// Objects.

TESSALINE_API HGDIOBJ GetStockObject(int index);
// Pens, brushes and bitmaps: selects the object and returns the previous one
// of that kind (NULL on failure; a bitmap goes into one memory context at a
// time). Regions: as SelectClipRgn, returning the region type cast to
// HGDIOBJ, or HGDI_ERROR.
TESSALINE_API HGDIOBJ SelectObject(HDC dc, HGDIOBJ obj);
// Frees a pen, brush, region, bitmap or palette. FALSE for an invalid handle
// and for an object selected into a context (as Win32 documents); stock
// objects are never freed (TRUE).
TESSALINE_API BOOL DeleteObject(HGDIOBJ obj);
// OBJ_* of a live object (a context gives OBJ_DC or OBJ_MEMDC), 0 otherwise.
TESSALINE_API DWORD GetObjectType(HGDIOBJ obj);
// Copies min(size, sizeof record) bytes of the object's LOGPEN, LOGBRUSH or
// BITMAP into `out` and returns the count; with a null `out`, returns the
// record's size. 0 on failure.
TESSALINE_API int GetObjectA(HGDIOBJ obj, int size, void* out);
// The pen, brush or bitmap (OBJ_PEN, OBJ_BRUSH, OBJ_BITMAP) selected now.
TESSALINE_API HGDIOBJ GetCurrentObject(HDC dc, UINT type);

// The width is in logical units (scaled by the mapping mode); width 0 is a
// one-pixel pen under any mapping; a negative width is taken as 0. NULL for
// an unknown style.
TESSALINE_API HPEN CreatePen(int style, int width, COLORREF color);
TESSALINE_API HPEN CreatePenIndirect(const LOGPEN* pen);
TESSALINE_API HBRUSH CreateSolidBrush(COLORREF color);

// A bitmap of w x h pixels, all black. A zero size gives a 1 x 1 bitmap as in
// Win32; NULL for a negative size or one beyond 32767 pixels a side or 2^26
// pixels. `dc` (any context or NULL) only sets compatibility, which is
// always the same true-colour format.
TESSALINE_API HBITMAP CreateCompatibleBitmap(HDC dc, int w, int h);
// The pixels as Win32 lays out a 32-bit bitmap: rows top-down, 4 bytes a
// pixel in the order blue, green, red, 0. Copy at most `bytes` bytes; return
// the count copied (0 on failure).
TESSALINE_API LONG GetBitmapBits(HBITMAP bm, LONG bytes, void* bits);
TESSALINE_API LONG SetBitmapBits(HBITMAP bm, DWORD bytes, const void* bits);

// Number of live pens, brushes, regions, bitmaps, palettes and contexts
// (stock objects not counted): lets tests prove that nothing leaks.
TESSALINE_API long GdiObjectCount();

// ---------------------------------------------------------------------------
// Attributes. Setters return the previous value, 0 for a bad context or value
// (CLR_INVALID for the colours).

TESSALINE_API int SetROP2(HDC dc, int rop);
TESSALINE_API int GetROP2(HDC dc);
TESSALINE_API int SetBkMode(HDC dc, int mode);
TESSALINE_API int GetBkMode(HDC dc);
TESSALINE_API COLORREF SetBkColor(HDC dc, COLORREF color);
TESSALINE_API COLORREF GetBkColor(HDC dc);
TESSALINE_API COLORREF SetTextColor(HDC dc, COLORREF color);
TESSALINE_API COLORREF GetTextColor(HDC dc);
TESSALINE_API int SetPolyFillMode(HDC dc, int mode);
TESSALINE_API int GetPolyFillMode(HDC dc);

// ---------------------------------------------------------------------------
// Mapping: device = (logical - window origin) * viewport extent / window
// extent + viewport origin, per axis, computed exactly and rounded to the
// nearest integer (a half rounds up); DPtoLP is the inverse rule.
//
// SetMapMode keeps the origins. MM_TEXT sets both extents to (1, 1); the
// metric and English modes set them from the display metrics with y up;
// MM_ISOTROPIC starts from the MM_LOMETRIC extents, MM_ANISOTROPIC keeps the
// current ones. The extent setters act only in those two modes (TRUE,
// ignored, in the others) and refuse a zero extent. In MM_ISOTROPIC the
// viewport extent is then shrunk on one axis so that a logical unit is as
// many pixels across as up (pixels are square), keeping its sign.

TESSALINE_API int SetMapMode(HDC dc, int mode);
TESSALINE_API int GetMapMode(HDC dc);
TESSALINE_API BOOL SetWindowOrgEx(HDC dc, int x, int y, POINT* old);
TESSALINE_API BOOL GetWindowOrgEx(HDC dc, POINT* out);
TESSALINE_API BOOL SetWindowExtEx(HDC dc, int x, int y, SIZE* old);
TESSALINE_API BOOL GetWindowExtEx(HDC dc, SIZE* out);
TESSALINE_API BOOL SetViewportOrgEx(HDC dc, int x, int y, POINT* old);
TESSALINE_API BOOL GetViewportOrgEx(HDC dc, POINT* out);
TESSALINE_API BOOL SetViewportExtEx(HDC dc, int x, int y, SIZE* old);
TESSALINE_API BOOL GetViewportExtEx(HDC dc, SIZE* out);
// Results beyond the 32-bit range are clamped to it.
TESSALINE_API BOOL LPtoDP(HDC dc, POINT* points, int count);
TESSALINE_API BOOL DPtoLP(HDC dc, POINT* points, int count);

// ---------------------------------------------------------------------------
// Drawing (logical coordinates).

TESSALINE_API BOOL MoveToEx(HDC dc, int x, int y, POINT* old);
TESSALINE_API BOOL GetCurrentPositionEx(HDC dc, POINT* out);
// Draws from the current position to (x, y), leaving out (x, y), and moves
// the current position there.
TESSALINE_API BOOL LineTo(HDC dc, int x, int y);
// At least 2 points; does not use or move the current position.
TESSALINE_API BOOL Polyline(HDC dc, const POINT* points, int count);
// At least 2 points; filled with the brush by the polygon fill mode.
TESSALINE_API BOOL Polygon(HDC dc, const POINT* points, int count);
TESSALINE_API BOOL Rectangle(HDC dc, int left, int top, int right, int bottom);
TESSALINE_API BOOL Ellipse(HDC dc, int left, int top, int right, int bottom);
TESSALINE_API BOOL Arc(HDC dc, int left, int top, int right, int bottom, int x_start, int y_start,
                       int x_end, int y_end);
// Sets the pixel (copying, whatever the raster operation) and returns the
// colour set; CLR_INVALID outside the surface or the clipping region.
TESSALINE_API COLORREF SetPixel(HDC dc, int x, int y, COLORREF color);
TESSALINE_API BOOL SetPixelV(HDC dc, int x, int y, COLORREF color);
// CLR_INVALID (also -1 as an int) outside the surface or the clipping region.
TESSALINE_API COLORREF GetPixel(HDC dc, int x, int y);
// Fills [left, right) x [top, bottom) with the brush (copying). An inverted
// side fills as PatBlt with a negative extent: left > right fills columns
// right+1..left, top > bottom rows bottom+1..top. The brush may be a system
// colour index + 1 as in Win32: (HBRUSH)(COLOR_BTNFACE + 1).
TESSALINE_API int FillRect(HDC dc, const RECT* rect, HBRUSH brush);

// ---------------------------------------------------------------------------
// Regions: exact pixel sets, kept as sorted bands of rows holding sorted
// spans. Coordinates are logical for FillRgn, FrameRgn and PaintRgn and
// device for SelectClipRgn. Creating a region of more than 2^22 rows of
// varying shape fails (NULL).

TESSALINE_API HRGN CreateRectRgn(int left, int top, int right, int bottom);
TESSALINE_API HRGN CreateRectRgnIndirect(const RECT* rect);
// The ellipse's pixel set of the box (left, top, right-1, bottom-1), as the
// brush of Ellipse with a null pen covers it: GetRgnBox of
// CreateEllipticRgn(1, 1, 11, 9) is (1, 1, 10, 8).
TESSALINE_API HRGN CreateEllipticRgn(int left, int top, int right, int bottom);
// The polygon's fill as Polygon fills it with a null pen.
TESSALINE_API HRGN CreatePolygonRgn(const POINT* points, int count, int mode);
// Result type; `dest` is replaced (it may be one of the sources).
TESSALINE_API int CombineRgn(HRGN dest, HRGN src1, HRGN src2, int mode);
// Region type; the smallest rectangle holding the region ((0, 0, 0, 0) when
// empty).
TESSALINE_API int GetRgnBox(HRGN rgn, RECT* box);
TESSALINE_API BOOL EqualRgn(HRGN a, HRGN b);
TESSALINE_API BOOL PtInRegion(HRGN rgn, int x, int y);
// ERROR, leaving the region alone, when a coordinate would leave 32 bits.
TESSALINE_API int OffsetRgn(HRGN rgn, int dx, int dy);
TESSALINE_API BOOL FillRgn(HDC dc, HRGN rgn, HBRUSH brush);
TESSALINE_API BOOL PaintRgn(HDC dc, HRGN rgn);
// Paints the region's pixels that lie within w columns or h rows of its
// outside: those that would leave the region when moved by (+-w, 0) or
// (0, +-h).
TESSALINE_API BOOL FrameRgn(HDC dc, HRGN rgn, HBRUSH brush, int w, int h);
// Copies the region (device coordinates) as the clipping region; NULL
// removes clipping. Returns the type of the region that drawing is now
// clipped to (the surface included), ERROR on failure.
TESSALINE_API int SelectClipRgn(HDC dc, HRGN rgn);
// Logical box of the drawable area (surface and clipping region).
TESSALINE_API int GetClipBox(HDC dc, RECT* box);

// ---------------------------------------------------------------------------
// PNG files, so that people and tests can look at what was drawn. A build
// without libpng (CMake option TESSALINE_WITH_PNG off) keeps these calls,
// which then fail (FALSE, NULL).

// Writes the bitmap as an 8-bit RGB PNG. FALSE when the bitmap is not valid
// or the file cannot be written.
TESSALINE_API BOOL WriteBitmapPng(HBITMAP bitmap, const char* path);
// Writes the bitmap selected into a memory context.
TESSALINE_API BOOL WriteDCPng(HDC dc, const char* path);
// Reads a PNG of any colour type into a new bitmap (alpha composited over
// black);
// NULL when the file cannot be read or is larger than CreateCompatibleBitmap
// allows.
TESSALINE_API HBITMAP ReadBitmapPng(const char* path);
