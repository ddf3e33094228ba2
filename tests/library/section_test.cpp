// Beam sections: parameters exchanged with the properties record, the
// geometry's own data, copies sharing geometry, and previews.
#include <gtest/gtest.h>

#include <cstring>

#include <tessaline/tessaline.h>

#include "support/section.h"
#include "support/surface.h"

namespace {

TEST(BeamSection, ParametersSwapTheTwoMomentsBothWays) {
  surface_geometry sg;
  for (int i = 0; i < 21; ++i) (&sg.area)[i] = 100.0 + i;
  CBeamCrosSect s;
  s.ReadFromSurfGeom(&sg);
  EXPECT_EQ(s.m_GeomParams.moment_x, sg.central_moment_x);  // field 11 goes third
  EXPECT_EQ(s.m_GeomParams.moment_y, sg.central_moment_y);
  EXPECT_EQ(s.m_GeomParams.last_value, sg.further_constant);
  surface_geometry other;
  for (int i = 0; i < 21; ++i) (&other.area)[i] = -1.0 - i;
  s.WriteToSurfGeom(&other);
  for (int i = 0; i < 21; ++i) {
    bool copied = i == 0 || i == 6 || i == 7 || i == 8 || i == 9 || i == 10 || i == 12 || i == 13 ||
                  i == 15 || i == 20;
    EXPECT_EQ((&other.area)[i], copied ? (&sg.area)[i] : -1.0 - i) << "field " << i + 1;
  }
}

TEST(BeamSection, WritesAndReadsItsGeometryAndCopiesShareIt) {
  _Geo_Cross_Section g;
  Build_Section(g);
  CBeamCrosSect s(&g);
  CBeamCrosSect copy(s);
  CMemFile f;
  EXPECT_EQ(s.Write(f), 1);
  auto bytes = f.Data();
  EXPECT_EQ(bytes[0], 'R');
  EXPECT_EQ(bytes[bytes.size() - 4], 'E');
  // A change through one copy shows in what the other writes.
  Delete_Element_by_Index(&copy.m_pCrossSection->aux_objects, 0);
  CMemFile f2;
  s.Write(f2);
  EXPECT_LT(f2.Data().size(), bytes.size());

  _Cross_Section back;
  CBeamCrosSect r(&back);
  f.SeekToBegin();
  EXPECT_EQ(r.Read(f), 1);
  EXPECT_EQ(back.objects.count, g.objects.count);
  CMemFile again;
  r.Write(again);
  EXPECT_EQ(again.Data(), bytes);
  back.Delete_Cross_Section();
  Free_Geo_Cross_Section(&g);
  CBeamCrosSect none;
  CMemFile empty;
  EXPECT_EQ(none.Write(empty), 1);
  EXPECT_EQ(empty.GetLength(), 0u);
}

TEST(BeamSection, Previews) {
  COLORREF face = GetSysColor(COLOR_BTNFACE);
  CRect rect(0, 0, 100, 100);
  {
    Surface s(100, 100, RGB(1, 2, 3));
    CDC dc(s.dc());
    CBeamCrosSect none;
    EXPECT_EQ(none.DrawPreview(dc, rect), 0);
    dc.Detach();
    EXPECT_EQ(s.Where(face, false).size(), 0u);
  }
  _Geo_Cross_Section g;
  Build_Section(g);
  {
    Surface s(100, 100, RGB(1, 2, 3));
    CDC dc(s.dc());
    CBeamCrosSect beam(&g);
    EXPECT_EQ(beam.DrawPreview(dc, rect), 1);
    dc.Detach();
    // The surfaces' region stays selected as the clipping region.
    EXPECT_EQ(GetPixel(s.dc(), 1, 1), CLR_INVALID);
    SelectClipRgn(s.dc(), nullptr);
    EXPECT_EQ(GetPixel(s.dc(), 1, 1), face);
    EXPECT_EQ(GetPixel(s.dc(), 50, 70), RGB(255, 255, 255));  // inside the outline
    EXPECT_GT(s.Where(RGB(0, 0, 0)).size(), 100u);            // its frame
    // The 2 mm margin: a band along the edges stays button face.
    for (int i = 0; i < 100; ++i) {
      EXPECT_EQ(GetPixel(s.dc(), i, 2), face);
      EXPECT_EQ(GetPixel(s.dc(), 2, i), face);
    }
  }
  Free_Geo_Cross_Section(&g);
  // A surface of no height: background only, and 1.
  _Geo_Cross_Section flat;
  HGLOBAL c = Create_El_Contour(1);
  Add_ContEl(static_cast<Contour_Type*>(GlobalLock(c)),
             Create_El_Part(Create_Line(0, 5, 10, 5), 0, 1));
  Add_Element_In_Array_by_Handle(&flat.objects,
                                 Get_ContEl_Handle(static_cast<Contour_Type*>(GlobalLock(c)), 0));
  Add_Surface_Contour(&flat.surface, c, 0);
  Surface s(100, 100, RGB(1, 2, 3));
  CDC dc(s.dc());
  CBeamCrosSect beam(&flat);
  EXPECT_EQ(beam.DrawPreview(dc, rect), 1);
  dc.Detach();
  EXPECT_EQ(s.Where(face, false).size(), 0u);
  Free_Geo_Cross_Section(&flat);
}

}  // namespace
