// The exported properties record for the host's use.
#include "tessaline/analysis/properties.h"

surface_geometry surface_geom = {};
