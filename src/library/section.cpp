// Section records: parameters exchanged with the properties record, the
// geometry written and read through the geometry file's cross-section part,
// and the preview.
#include "tessaline/library/section.h"

#include <algorithm>
#include <cstring>

#include "tessaline/contour/surface.h"
#include "tessaline/display/coord_device.h"
#include "tessaline/platform/user.h"

CCrossSection::CCrossSection() : m_szName{} {}

int CCrossSection::Write(CFile&) {
  return 0;
}
int CCrossSection::Read(CFile&) {
  return 0;
}
int CCrossSection::DrawPreview(CDC&, CRect&) {
  return 0;
}

void CCrossSection::SetName(const char* name) {
  size_t n = name ? strnlen(name, sizeof m_szName - 1) : 0;
  std::memcpy(m_szName, name ? name : "", n);
  std::memset(m_szName + n, 0, sizeof m_szName - n);
}

int CBeamCrosSect::Write(CFile& file) {
  if (m_pCrossSection) Save_CrossSectData(file, m_pCrossSection);
  return 1;
}

int CBeamCrosSect::Read(CFile& file) {
  if (m_pCrossSection) Read_CrossSectData(file, m_pCrossSection);
  return 1;
}

void CBeamCrosSect::ReadFromSurfGeom(const surface_geometry* sg) {
  if (!sg) return;
  tagGeometryParams& p = m_GeomParams;
  p.centroid_x = sg->centroid_x;
  p.centroid_y = sg->centroid_y;
  p.moment_x = sg->central_moment_x;
  p.moment_y = sg->central_moment_y;
  p.polar_moment = sg->polar_moment;
  p.principal_moment_1 = sg->principal_moment_1;
  p.principal_moment_2 = sg->principal_moment_2;
  p.area = sg->area;
  p.principal_angle = sg->principal_angle;
  p.last_value = sg->further_constant;
}

void CBeamCrosSect::WriteToSurfGeom(surface_geometry* sg) const {
  if (!sg) return;
  const tagGeometryParams& p = m_GeomParams;
  sg->centroid_x = p.centroid_x;
  sg->centroid_y = p.centroid_y;
  sg->central_moment_x = p.moment_x;
  sg->central_moment_y = p.moment_y;
  sg->polar_moment = p.polar_moment;
  sg->principal_moment_1 = p.principal_moment_1;
  sg->principal_moment_2 = p.principal_moment_2;
  sg->area = p.area;
  sg->principal_angle = p.principal_angle;
  sg->further_constant = p.last_value;
}

void Set_Preview_Coord_Syst(Coord_Syst* cs, HDC dc, const RECT& rect, int wu, int hu, double xmin,
                            double ymax, double xmax, double ymin) {
  if (!cs) return;
  HDC info = CreateICA("DISPLAY", nullptr, nullptr, nullptr);
  int horzsize = GetDeviceCaps(info, HORZSIZE), vertsize = GetDeviceCaps(info, VERTSIZE);
  int horzres = GetDeviceCaps(info, HORZRES), vertres = GetDeviceCaps(info, VERTRES);
  DeleteDC(info);
  int aspect_x = GetDeviceCaps(dc, ASPECTX), aspect_y = GetDeviceCaps(dc, ASPECTY);
  if (horzres <= 0 || vertres <= 0 || aspect_x == 0 || wu <= 0 || hu <= 0) return;
  double w = static_cast<double>(rect.right) * horzsize / horzres;
  double h = static_cast<double>(rect.bottom) * vertsize / vertres;
  cs->paper_w = w;
  cs->paper_h = h;
  int width = rect.right - rect.left, height = rect.bottom - rect.top;
  cs->vp_org_x = cs->vp_org_y = 0;
  cs->vp_ext_x = width;
  cs->vp_ext_y = height;
  cs->unused_a[0] = cs->unused_a[1] = 0.0;
  int logical_h = MulDiv(height, aspect_y, aspect_x);
  cs->window = Logical_Window{0, logical_h, width, -logical_h};
  double s = std::max((xmax - xmin) / wu, (ymax - ymin) / hu);
  cs->scale_x = cs->scale_y = s;
  cs->world.w = w * s;
  cs->world.h = h * s;
  cs->world.x0 = (xmin + xmax) * 0.5 - (wu / 2 + 2) * s;
  cs->world.y0 = (ymin + ymax) * 0.5 - s * (h - (hu / 2 + 2));
}

int CBeamCrosSect::DrawPreview(CDC& dc, CRect& rect) {
  COLORREF face = GetSysColor(COLOR_BTNFACE);
  HBRUSH brush = CreateSolidBrush(face);
  HPEN pen = CreatePen(PS_SOLID, 1, face);
  HGDIOBJ old_brush = SelectObject(dc, brush);
  HGDIOBJ old_pen = SelectObject(dc, pen);
  Rectangle(dc, rect.left, rect.top, rect.right, rect.bottom);
  SelectObject(dc, old_brush);
  SelectObject(dc, old_pen);
  int result = 0;
  if (m_pCrossSection) {
    result = 1;
    Coord_Syst cs{};
    double xmin = 0, ymax = 0, xmax = 0, ymin = 0;
    Get_Surface_Extern_Rect(&m_pCrossSection->surface, &xmin, &ymax, &xmax, &ymin);
    if (xmax - xmin != 0.0 && ymax - ymin != 0.0) {
      int32_t dims[4];
      Get_Display_Dimensions(dims);
      double w = static_cast<double>(rect.right) / dims[2] * dims[0];
      double h = static_cast<double>(rect.bottom) / dims[3] * dims[1];
      Set_Preview_Coord_Syst(&cs, dc, rect, static_cast<int>(w - 4), static_cast<int>(h - 4), xmin,
                             ymax, xmax, ymin);
      if (HRGN rgn = Create_Surface_Rgn1(&m_pCrossSection->surface, &cs.world, &cs.window)) {
        SelectObject(dc, rgn);
        FillRgn(dc, rgn, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
        FrameRgn(dc, rgn, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)), 1, 1);
        DeleteObject(rgn);
      }
    }
  }
  DeleteObject(pen);
  DeleteObject(brush);
  return result;
}
