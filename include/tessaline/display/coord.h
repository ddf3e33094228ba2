// World and logical coordinates of a host's view.
//
// The world is held in doubles (millimetres by default, y up); a device
// context works in 32-bit logical units. One Coord_Syst per view says which
// world rectangle maps onto the logical window, the paper size of the view,
// the scale and the scroll ranges that follow.
#pragma once

#include <cstdint>

#include "tessaline/export.h"
#include "tessaline/platform/win_types.h"

// The visible world: origin (x0, y0) and size (w, h), world units.
struct World_Window {
  double x0, y0, w, h;
};

// The logical window: origin and extent; a negative y extent makes y point up.
struct Logical_Window {
  int32_t org_x, org_y, ext_x, ext_y;
};

// Scroll range of one axis, world units.
struct Scroll_Par {
  double min, max, pos, line, page;
};

// The coordinate-system record of one view, owned by the host; all zero when fresh.
struct Coord_Syst {
  int32_t vp_org_x, vp_org_y, vp_ext_x, vp_ext_y;  // device viewport, pixels
  // 0.0 in every record the library fills. unused_a[0] is the host's pick
  // aperture in logical units (Get_Pick_Aperture, Select_Elements); 0 gives
  // the default.
  double unused_a[2];
  double paper_w, paper_h;  // physical size of the view, millimetres
  Logical_Window window;
  World_Window world;       // its size is scale x paper size after a rescale
  double scale_x, scale_y;  // world units per millimetre of paper
  double host_a[8];         // the host's; never read or written here
  Scroll_Par scroll_x, scroll_y;
  double host_b[4];    // the host's
  double unit_factor;  // world units per host length unit
  int32_t unit_code;   // 1 mm, 2 cm, 3 dm, 4 m, 5 inch, 6 foot
};

TESSALINE_API Coord_Syst* Set_Scale(Coord_Syst* cs, double scale_x, double scale_y);
TESSALINE_API void Make_Coord_Syst_Settings(Coord_Syst* cs, int32_t unused, double scale_x,
                                            double scale_y, double x0, double y0);
TESSALINE_API void Rescale_World(Coord_Syst* cs, int32_t keep_centre);
TESSALINE_API void Set_Standard_Scroll_Par(Coord_Syst* cs);

// World point to logical point: trunc(ext / size * (v - origin)) + org, the
// fraction cut toward zero. A result beyond the 32-bit range is clamped to it.
TESSALINE_API void WPtoLP(const World_Window* world, const Logical_Window* window, double x,
                          double y, int32_t* lx, int32_t* ly);
TESSALINE_API void LPtoWP(const World_Window* world, const Logical_Window* window, double* x,
                          double* y, int32_t lx, int32_t ly);
// Lengths along x, always positive.
TESSALINE_API double LPtoWP_Dist(const World_Window* world, const Logical_Window* window,
                                 int32_t d);
TESSALINE_API int32_t WPtoLP_Dist(const World_Window* world, const Logical_Window* window,
                                  double d);

// The world value v snapped to the grid step s: half-way moves toward plus
// infinity on either side of zero; s = 0 leaves v as it is.
TESSALINE_API double Snap_To_Grid(double v, double s);

// Unit factor and code; a code outside 1..6 is stored as 1 but its factor is
// what the unit table gives for it.
TESSALINE_API void Init_Units(Coord_Syst* cs, int32_t code);
