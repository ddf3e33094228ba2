// Deleting a section's objects arrays wholesale.
#pragma once

#include "tessaline/model/element.h"

// Deletes the array with its elements. Deleting a polyline or a spline
// leaves its parent list (the element model has always done so); a section
// deleting its arrays owns those lists too, so they are freed here first.
void Delete_Section_Array(Objects_Array_Type* array);
