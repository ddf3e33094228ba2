// Pen outlines shared by the drawing calls: thin (one-pixel) paths through
// device points, painted with the pen's dash pattern or collected so that a
// brush can leave them out, and wide strokes of the same paths.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "platform/raster.h"
#include "platform/shapes.h"

namespace gdi {

using Pixel_List = std::vector<std::pair<int64_t, int64_t>>;  // (x, y)

// Device points of logical ones, clamped for rasterising.
std::vector<POINT> To_Device_Points(const Mapping& m, const POINT* points, int count);

// Strokes the segments of a path (closing it when asked) with a one-pixel
// pen, each segment leaving out its end; the pattern starts at `phase`.
// Returns the phase after the last segment.
long Stroke_Thin(const Target& t, const Stroke& s, const std::vector<POINT>& path, bool closed,
                 long phase);
// The pixels Stroke_Thin would touch, in order.
void Thin_Pixels(const RECT& box, const std::vector<POINT>& path, bool closed, Pixel_List& out);
// Paints pixels in the given order, step i of the pattern at pixel i.
void Stroke_Pixels(const Target& t, const Stroke& s, const Pixel_List& pixels);

// Orders outline pixels of an ellipse along it: by direction from the
// centre, turning counter-clockwise from the sector's start, nearer pixels
// first on a shared direction. Dashed arcs and ellipses run their pattern
// in this order.
void Order_Along(Pixel_List& pixels, const Ellipse_Shape& e, const Sector& sector);

std::vector<DPoint> To_DPoints(const std::vector<POINT>& path);

// Paints a figure: the brush's rows except the pen's pixels, then the pen
// along the path (closed or open) with a thin or a wide stroke.
void Paint_Path_Figure(const Target& t, const Stroke& s, const Brush_Color& brush,
                       std::vector<Row_Span> fill, const std::vector<POINT>& path, bool closed);

}  // namespace gdi
