// The fixture files (written by examples/library_sheet, and the fuzzers'
// seeds) still read as they were written: the formats have not drifted.
#include <gtest/gtest.h>

#include <tessaline/tessaline.h>

#include "support/temp_dir.h"

namespace {

const std::string kData = std::string(TESSALINE_TEST_DATA) + "/files/";

TEST(Fixtures, ReadAndWriteBackTheSameBytes) {
  std::vector<unsigned char> geo = Read_All(kData + "section.wgf");
  ASSERT_EQ(Is_Cros_Sect_File((kData + "section.wgf").c_str()), 1);
  CMemFile in(geo.data() + 4, geo.size() - 4);
  _Geo_Cross_Section g;
  ASSERT_EQ(Read_GeoCrossSectData(in, &g), 1);
  EXPECT_STREQ(g.name, "");
  EXPECT_EQ(g.surface.outer_count, 1);
  CMemFile out;
  Save_GeoCrossSectData(out, &g, Cross_Section_Version(9, 2));
  EXPECT_EQ(out.Data(), std::vector<unsigned char>(geo.begin() + 4, geo.end()));
  Free_Geo_Cross_Section(&g);

  std::vector<unsigned char> bmp = Read_All(kData + "preview.bmp");
  CMemFile bin(bmp.data(), bmp.size());
  CDIBitmap dib;
  ASSERT_EQ(dib.Load(bin), 1);
  CMemFile bout;
  dib.Save(bout);
  EXPECT_EQ(bout.Data(), bmp);

  CString path = kData + "compact.slb";
  CCrossSectionLibrary lib(path);
  ASSERT_EQ(lib.GetCount(), 1);
  _Cross_Section geometry;
  CBeamCrosSect s(&geometry);
  ASSERT_EQ(lib.GetSection(s, 0), 1);
  EXPECT_STREQ(s.GetName(), "IPE 200");
  EXPECT_GT(s.m_GeomParams.area, 0);
  EXPECT_EQ(geometry.objects.count, 12);
  geometry.Delete_Cross_Section();
}

}  // namespace
