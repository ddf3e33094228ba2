// Raster primitives in world coordinates.
//
// Each drawing primitive takes the device context, the visible world
// rectangle and the logical window first, maps world points with the
// truncating mapping of WPtoLP and draws through the device context with its
// selected pen, brush and raster operation. Region builders return a region
// that the caller owns and deletes.
#pragma once

#include "tessaline/display/coord.h"
#include "tessaline/export.h"
#include "tessaline/platform/gdi.h"

// The pixel at a world point, or CLR_INVALID (-1) when the point lies outside
// the world rectangle widened by a tenth of its size on every side (bounds
// inclusive) or outside the device.
TESSALINE_API COLORREF Get_Pixel_Checked(HDC dc, const World_Window* world,
                                         const Logical_Window* window, double x, double y);
// Sets the pixel; CLR_INVALID where Get_Pixel_Checked gives it, else SetPixel's result.
TESSALINE_API COLORREF rSetPixel(HDC dc, const World_Window* world, const Logical_Window* window,
                                 double x, double y, COLORREF colour);
// The part of the segment inside the world rectangle; 0 when nothing of it is.
TESSALINE_API BOOL rLine_2p(HDC dc, const World_Window* world, const Logical_Window* window,
                            double x1, double y1, double x2, double y2);
TESSALINE_API BOOL rEllipse(HDC dc, const World_Window* world, const Logical_Window* window,
                            double x1, double y1, double x2, double y2);
TESSALINE_API BOOL rRectangle(HDC dc, const World_Window* world, const Logical_Window* window,
                              double x1, double y1, double x2, double y2);
// points: n consecutive (x, y) pairs. 0 when the work block cannot be allocated.
TESSALINE_API BOOL rPolygon(HDC dc, const World_Window* world, const Logical_Window* window,
                            const double* points, int n);
TESSALINE_API BOOL rPolyline(HDC dc, const World_Window* world, const Logical_Window* window,
                             const double* points, int n);
// The visible part of the circle (centre, radius); 0 when none of its outline
// is visible. A circle wholly inside the world rectangle is one Ellipse (the
// selected brush fills it); a partly visible one is drawn as the arcs that lie
// inside, without fill. Circles far larger than the view are stroked as
// polylines of their visible arcs, so no coordinate leaves the logical range.
TESSALINE_API BOOL rCircle(HDC dc, const World_Window* world, const Logical_Window* window,
                           double xc, double yc, double r);
// The visible part of the arc from angle a1 counter-clockwise to a2 (radians);
// 0 when none of it is visible.
TESSALINE_API BOOL rArc(HDC dc, const World_Window* world, const Logical_Window* window, double xc,
                        double yc, double r, double a1, double a2);

// Regions in logical coordinates of the world rectangle (x1, y1)-(x2, y2), of
// the ellipse in that box, and of a polygon of n (x, y) pairs (alternate fill).
TESSALINE_API HRGN Create_Rect_Rgn_W(const Logical_Window* window, const World_Window* world,
                                     double x1, double y1, double x2, double y2);
TESSALINE_API HRGN Create_Ellipse_Rgn_W(const Logical_Window* window, const World_Window* world,
                                        double x1, double y1, double x2, double y2);
TESSALINE_API HRGN Create_Polygon_Rgn_W(const Logical_Window* window, const World_Window* world,
                                        const double* points, int n);
// The same in device units, clipped to the window's client rectangle.
TESSALINE_API HRGN Create_Rect_Rgn_Clipped(HDC dc, HWND window, const Coord_Syst* cs, double x1,
                                           double y1, double x2, double y2);
TESSALINE_API HRGN Create_Ellipse_Rgn_Clipped(HDC dc, HWND window, const Coord_Syst* cs, double x1,
                                              double y1, double x2, double y2);
TESSALINE_API HRGN Create_Polygon_Rgn_Clipped(HDC dc, const double* points, int n, HWND window,
                                              const Coord_Syst* cs);
