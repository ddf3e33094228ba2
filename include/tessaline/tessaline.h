// tessaline: the core of a 2-D cross-section editor and the analysis of what
// is drawn. This umbrella header declares the whole exported interface and
// the platform layer's public part.
#pragma once

#include "tessaline/export.h"
#include "tessaline/host.h"
#include "tessaline/platform/platform.h"
#include "tessaline/platform/matrix.h"
#include "tessaline/platform/progress.h"

#include "tessaline/model/create.h"
#include "tessaline/model/element.h"
#include "tessaline/model/parent.h"
#include "tessaline/model/rect.h"

#include "tessaline/geometry/intersect.h"
#include "tessaline/geometry/projection.h"
#include "tessaline/geometry/triangle.h"
#include "tessaline/geometry/vector.h"

#include "tessaline/display/colour.h"
#include "tessaline/display/coord.h"
#include "tessaline/display/coord_device.h"
#include "tessaline/display/draw.h"
#include "tessaline/display/raster.h"

#include "tessaline/construct/aux_draw.h"
#include "tessaline/construct/tangent.h"

#include "tessaline/contour/contour.h"
#include "tessaline/contour/segments.h"
#include "tessaline/contour/surface.h"

#include "tessaline/analysis/exact.h"
#include "tessaline/analysis/properties.h"
#include "tessaline/analysis/plane_stress.h"
#include "tessaline/analysis/split.h"
#include "tessaline/analysis/torsion.h"
#include "tessaline/analysis/torsion_warping.h"
#include "tessaline/analysis/weld.h"

#include "tessaline/library/dibitmap.h"
#include "tessaline/files/cross_section.h"
#include "tessaline/library/section.h"
#include "tessaline/library/library.h"
