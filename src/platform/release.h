// What the module releases when the library is unloaded: the handle table
// of movable memory and the table of graphics objects (stock objects
// included). Nothing may use them at the same time; a later call starts a
// fresh table.
#pragma once

#include "platform/memory_internal.h"

void Release_Gdi_Table();
