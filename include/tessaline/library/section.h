// Section records: the ten geometric parameters and the name a section
// library stores for each section, and the beam section that also refers to
// its drawn geometry, writes and reads it and draws its preview.
#pragma once

#include "tessaline/analysis/properties.h"
#include "tessaline/display/coord.h"
#include "tessaline/export.h"
#include "tessaline/files/cross_section.h"
#include "tessaline/platform/dc.h"
#include "tessaline/platform/file.h"

// Ten values of a section, world units (millimetres), radians. Note the
// order of 3 and 4: the moment about the x axis comes first here, while
// surface_geometry keeps the one about the y axis first; the copy functions
// of CBeamCrosSect swap them.
struct TESSALINE_API tagGeometryParams {
  double centroid_x;
  double centroid_y;
  double moment_x;  // central, integral of (y - yc)^2
  double moment_y;  // central, integral of (x - xc)^2
  double polar_moment;
  double principal_moment_1;
  double principal_moment_2;
  double area;
  double principal_angle;
  double last_value;  // surface_geometry's last field

  tagGeometryParams()
      : centroid_x(0),
        centroid_y(0),
        moment_x(0),
        moment_y(0),
        polar_moment(0),
        principal_moment_1(0),
        principal_moment_2(0),
        area(0),
        principal_angle(0),
        last_value(0) {}
};
static_assert(sizeof(tagGeometryParams) == 80, "ten doubles");

// A named section. Write, Read and DrawPreview do nothing here (0). They
// hold the first three virtual slots in that order; the destructor, which
// does nothing, is virtual and comes after them, so that deleting a derived
// section through this type is defined.
class TESSALINE_API CCrossSection {
 public:
  // Zeroes the parameters and (so that it never holds indeterminate bytes)
  // the name.
  CCrossSection();
  CCrossSection(const CCrossSection& other) = default;
  CCrossSection& operator=(const CCrossSection& other) = default;
  virtual int Write(CFile& file);
  virtual int Read(CFile& file);
  virtual int DrawPreview(CDC& dc, CRect& rect);
  virtual ~CCrossSection() = default;

  // Copies at most 39 characters and terminates.
  void SetName(const char* name);
  const char* GetName() const { return m_szName; }

  tagGeometryParams m_GeomParams;
  char m_szName[40];
};

// A section whose geometry is a _Cross_Section the host owns: copies share
// it, and nothing here frees it.
class TESSALINE_API CBeamCrosSect : public CCrossSection {
 public:
  CBeamCrosSect() : m_pCrossSection(nullptr) {}
  explicit CBeamCrosSect(_Cross_Section* geometry) : m_pCrossSection(geometry) {}
  CBeamCrosSect(const CBeamCrosSect& other) = default;
  CBeamCrosSect& operator=(const CBeamCrosSect& other) = default;

  // The geometry's cross-section part ("RC" ... "EC") at the file's
  // position; 1 (nothing is written without geometry). File errors throw.
  int Write(CFile& file) override;
  // Reads a cross-section part into the geometry, which the caller has set
  // to an empty section; 1 whatever the reader reports.
  int Read(CFile& file) override;
  // Fills the rectangle (expected to start at 0, 0) with the button-face
  // colour and draws the geometry's surfaces in it, filled white and framed
  // black, centred with a 2 mm margin at one scale for x and y. 0 without
  // geometry; 1 otherwise (also when the surfaces have no width or height,
  // which leaves the background only). The surfaces' region stays selected
  // as the context's clipping region, as it always has.
  int DrawPreview(CDC& dc, CRect& rect) override;

  // The ten parameters from a properties record, and back: the reverse
  // touches those ten fields of `sg` only.
  void ReadFromSurfGeom(const surface_geometry* sg);
  void WriteToSurfGeom(surface_geometry* sg) const;

  _Cross_Section* m_pCrossSection;
};

// Fills a zeroed coordinate record so that the world box [xmin, xmax] x
// [ymin, ymax] fits a preview of `rect` (from 0, 0) on `dc`, centred, one
// scale for x and y, in a usable area of wu x hu whole millimetres inside a
// 2 mm margin; the logical window's y axis points up.
TESSALINE_API void Set_Preview_Coord_Syst(Coord_Syst* cs, HDC dc, const RECT& rect, int wu, int hu,
                                          double xmin, double ymax, double xmax, double ymin);
