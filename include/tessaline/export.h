// Linkage of the exported interface: symbols are hidden by default and
// TESSALINE_API marks the ones a host may call.
#pragma once

#if defined(TESSALINE_BUILDING)
#define TESSALINE_API __attribute__((visibility("default")))
#else
#define TESSALINE_API
#endif
