// The platform layer's public part: the portable subset of Win32 that the
// system's code and its hosts use.
#pragma once

#include "tessaline/platform/dc.h"
#include "tessaline/platform/dib.h"
#include "tessaline/platform/file.h"
#include "tessaline/platform/framework.h"
#include "tessaline/platform/gdi.h"
#include "tessaline/platform/memory.h"
#include "tessaline/platform/strings.h"
#include "tessaline/platform/user.h"
#include "tessaline/platform/win_types.h"
