// One drawn cross-section with its analysis results, and the tagged binary
// geometry file that keeps it.
//
// The file is a sequence of blocks, each opened by a 32-bit little-endian tag
// whose value is two ASCII letters (so the file holds them reversed, then two
// zero bytes), all integers 32-bit little-endian and doubles IEEE 754
// little-endian, written field by field whatever the in-memory padding. A
// cross-section file starts with the magic "WGFF", written by the host
// before the geometry data; the functions here work from the file's current
// position and never open or close it.
#pragma once

#include <cstdint>

#include "tessaline/analysis/properties.h"
#include "tessaline/analysis/split.h"
#include "tessaline/contour/surface.h"
#include "tessaline/export.h"
#include "tessaline/model/element.h"
#include "tessaline/platform/file.h"

// Block tags.
enum : int32_t {
  TAG_GEOMETRY = 0x4743,       // "CG": start of the geometry data
  TAG_CROSS_SECTION = 0x4352,  // "RC": start of the cross-section part
  TAG_CROSS_DATA = 0x4344,     // "DC": marker after the cross-section start
  TAG_OBJECTS = 0x4F42,        // "BO": the two objects arrays
  TAG_SURFACES = 0x5346,       // "FS": the surfaces
  TAG_CROSS_END = 0x4345,      // "EC": end of the cross-section part
  TAG_PROPERTIES = 0x5347,     // "GS": 168 bytes of section properties
  TAG_SPLIT = 0x4645,          // "EF": the finite-element split
  TAG_NAME = 0x434E,           // "NC": the name
  TAG_EXTRA = 0x4354,          // "TC": the extra code
  TAG_GEOMETRY_END = 0x4745,   // "EG": end of the geometry data
};

// "WGFF" read as a little-endian 32-bit integer.
inline constexpr uint32_t kCross_Section_Magic = 0x46464757;

// A file version: major in the upper 16 bits, minor in the lower.
constexpr DWORD Cross_Section_Version(WORD major, WORD minor) {
  return (DWORD{major} << 16) | minor;
}

// The drawing of a section: its elements, the construction elements that
// derived elements refer to, and the surfaces built from them. It owns the
// elements of both arrays and the surfaces' contour records.
struct TESSALINE_API _Cross_Section {
  Objects_Array_Type objects;
  Objects_Array_Type aux_objects;  // the second array: construction elements
  Surface_Type surface;

  // Clears the two arrays and the surface lists.
  _Cross_Section();

  // Deletes this section's elements and surfaces, then makes it a deep copy
  // of `source`: new elements with their parent links re-pointed to the
  // copies (across both arrays), new contours referring to the copies. 1.
  int Make_Copy(const _Cross_Section& source);
  // Appends the source's element handles and contour records to this
  // section (shared, not copied) and returns the source's object count; the
  // caller then empties the source with
  // Delete_Cross_Section_Without_Element_Deleting.
  int Add_Objects(const _Cross_Section& source);
  // Frees the surfaces, then deletes both arrays with their elements.
  void Delete_Cross_Section();
  // Frees the four handle blocks (two surface lists, two arrays) and zeroes
  // their triples; elements and contour records stay alive.
  void Delete_Cross_Section_Without_Element_Deleting();
};

// A section with its properties, finite-element split, name and the host's
// extra code. It owns its split blocks.
struct TESSALINE_API _Geo_Cross_Section : _Cross_Section {
  surface_geometry geom;
  FE_Split split;
  char name[60];
  int32_t extra_code;

  // Clears the arrays and the surface lists, and (so that a fresh section
  // never holds indeterminate handles) the rest of the record too.
  _Geo_Cross_Section();

  // Frees this split (a copy must be analysed again), copies the
  // properties, the drawing (as _Cross_Section::Make_Copy) and the name;
  // the extra code is not copied. 1.
  int Make_Copy(const _Geo_Cross_Section& source);
};

// 1 when the file opens for reading and starts with "WGFF", else 0.
TESSALINE_API int Is_Cros_Sect_File(const char* path);

// Writes the geometry data: the cross-section part, the properties, the
// split, the name when it is not empty, and for versions whose major is at
// least 9 and whose minor is at least 2 (each tested on its own, so 10.1
// does not qualify: kept as the file format has it) the extra code. 1; file
// errors throw CFileException.
TESSALINE_API int Save_GeoCrossSectData(CFile& file, _Geo_Cross_Section* section, DWORD version);

// Reads geometry data written by Save_GeoCrossSectData. 1 when the end tag
// was reached; 0 when the first tag is not the geometry start (nothing
// changed), when the file ends before the end tag, or when a count or length
// is more than the rest of the file can hold. The arrays, surfaces and split
// are replaced wholesale; the properties, name and extra code only when
// their blocks are present. Unknown tags are passed over four bytes at a
// time. The name is cut to 59 characters and always terminated.
//
// Elements come back as written, parent numbers turned back into handles;
// a polyline's or spline's block handles, written as raw values, come back
// as 0 (their nodes are not in the file, and a raw value may name a live
// block of another element).
TESSALINE_API int Read_GeoCrossSectData(CFile& file, _Geo_Cross_Section* section);

// The cross-section part alone ("RC" ... "EC"), as a beam-section record in
// the section library stores its geometry.
TESSALINE_API int Save_CrossSectData(CFile& file, _Cross_Section* section);
// Reads a cross-section part at the file's position into `section` (its
// arrays and surfaces are replaced). 1 read to "EC"; 0 when the part does
// not start with "RC", the file ends first or a count cannot be held.
TESSALINE_API int Read_CrossSectData(CFile& file, _Cross_Section* section);

// Deletes both arrays with their elements, the surfaces and the split.
TESSALINE_API void Free_Geo_Cross_Section(_Geo_Cross_Section* section);

// 1 when eight values of the two records (fields 11, 10, 16, 13, 14, 1, 7
// and 21, in that order) each differ by less than 0.0001, else 0 (a
// difference that is not a number included).
TESSALINE_API int Is_Geometry_Equivalent(const surface_geometry* a, const surface_geometry* b);
