// Shared pieces of element, auxiliary and rubber-band drawing: the pen rule,
// scoped selection of GDI objects and modes, and the point marker.
#pragma once

#include <cstdint>

#include "tessaline/display/coord.h"
#include "tessaline/platform/gdi.h"

// Colour-table entry of the pen rule for an attribute word: 5 when active
// (0x08), else 3 when selected (0x02), else 4 when ordinary (0x01), else 6.
int Pen_Rule_Entry(int32_t attr);
// A width-1 pen of the rule's colour: solid for an ordinary word, dashed for
// an auxiliary one (bit 0x01 clear).
HPEN Create_Rule_Pen(int32_t attr, const COLORREF* colours);

// Selects an object into a context for a scope and puts the previous one back
// at the end; an owned object is deleted after that.
class Scoped_Select {
 public:
  Scoped_Select(HDC dc, HGDIOBJ obj, bool owned) : dc_(dc), obj_(obj), owned_(owned) {
    old_ = obj ? SelectObject(dc, obj) : nullptr;
  }
  ~Scoped_Select() {
    if (old_) SelectObject(dc_, old_);
    if (owned_ && obj_) DeleteObject(obj_);
  }
  Scoped_Select(const Scoped_Select&) = delete;
  Scoped_Select& operator=(const Scoped_Select&) = delete;

 private:
  HDC dc_;
  HGDIOBJ obj_;
  HGDIOBJ old_;
  bool owned_;
};

// Sets the raster operation (and, when bk_mode is not 0, the background
// mode) for a scope; the previous values are put back at the end.
class Scoped_Modes {
 public:
  Scoped_Modes(HDC dc, int rop, int bk_mode = 0) : dc_(dc) {
    rop_ = SetROP2(dc, rop);
    bk_ = bk_mode ? SetBkMode(dc, bk_mode) : 0;
  }
  ~Scoped_Modes() {
    if (bk_) SetBkMode(dc_, bk_);
    if (rop_) SetROP2(dc_, rop_);
  }
  Scoped_Modes(const Scoped_Modes&) = delete;
  Scoped_Modes& operator=(const Scoped_Modes&) = delete;

  int previous_rop() const { return rop_; }
  int previous_bk_mode() const { return bk_; }

 private:
  HDC dc_;
  int rop_;
  int bk_;
};

// Pen, brush and modes of one rubber band for a scope: a width-1 pen of the
// colour in the style, the given brush (none: the context's own), R2_XORPEN
// and, when bk_mode is not 0, that background mode.
class Rubber_Paint {
 public:
  Rubber_Paint(HDC dc, int style, COLORREF colour, HGDIOBJ brush, bool own_brush, int bk_mode = 0)
      : modes_(dc, R2_XORPEN, bk_mode),
        pen_(dc, CreatePen(style, 1, colour), true),
        brush_(dc, brush, own_brush) {}

  int previous_rop() const { return modes_.previous_rop(); }
  int previous_bk_mode() const { return modes_.previous_bk_mode(); }

 private:
  Scoped_Modes modes_;
  Scoped_Select pen_;
  Scoped_Select brush_;
};

// Half size of the point marker, logical units.
inline constexpr int kMarker_Radius = 3;

// The point marker: a circle of radius kMarker_Radius logical units (7 units
// across) about the mapped point, outlined with the selected pen and filled
// with the selected brush. Nothing for a point outside the world rectangle
// widened by a tenth of its size on every side (as Get_Pixel_Checked).
BOOL Draw_Point_Marker(HDC dc, const Coord_Syst* cs, double x, double y);

// The polyline drawing of Draw_Element; shows the "pElem->type!=polyline"
// warning for an element of another type.
void Draw_Polyline_Element(HGLOBAL h, HDC dc, const Coord_Syst* cs, const COLORREF* colours);
// The spline drawing of Draw_Element.
void Draw_Spline_Element(HGLOBAL h, HDC dc, const Coord_Syst* cs, const COLORREF* colours);
// World length of one sampling step of a spline: two logical units along x,
// or 0 when the mapping gives no finite positive length.
double Spline_Step(const Coord_Syst* cs);
