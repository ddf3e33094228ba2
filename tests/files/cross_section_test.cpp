// The geometry file: round trips, the layout's tags and link numbers, the
// version test, readers that end at the end of the file, and the copy,
// merge and free operations.
#include <gtest/gtest.h>

#include <fstream>

#include <tessaline/tessaline.h>

#include "support/section.h"
#include "support/temp_dir.h"

namespace {

constexpr DWORD kV91 = Cross_Section_Version(9, 1);
constexpr DWORD kV92 = Cross_Section_Version(9, 2);
constexpr DWORD kV101 = Cross_Section_Version(10, 1);

int Read_Into(const std::string& path, _Geo_Cross_Section& g) {
  CFile f(path.c_str(), CFile::modeRead);
  return Read_GeoCrossSectData(f, &g);
}

bool Has_Tag(const std::vector<unsigned char>& b, const char* two) {
  const unsigned char t[4] = {static_cast<unsigned char>(two[0]),
                              static_cast<unsigned char>(two[1]), 0, 0};
  return std::search(b.begin(), b.end(), t, t + 4) != b.end();
}

TEST(CrossSectionFile, RoundTripsByteForByte) {
  Temp_Dir dir;
  long blocks = GlobalBlockCount();
  for (DWORD version : {kV91, kV92, kV101}) {
    for (bool split : {false, true}) {
      for (const char* name : {"", "HEB 200"}) {
        _Geo_Cross_Section g;
        Build_Section(g, {false, split, name});
        auto first = Saved_Bytes(dir / "a.wgf", g, version);
        _Geo_Cross_Section back;
        ASSERT_EQ(Read_Into(dir / "a.wgf", back), 1);
        EXPECT_EQ(Saved_Bytes(dir / "b.wgf", back, version), first)
            << version << " " << split << " '" << name << "'";
        EXPECT_EQ(back.surface.outer_count, 1);
        EXPECT_EQ(back.surface.hole_count, 1);
        EXPECT_STREQ(back.name, name);
        // Parent links come back as handles into the arrays read.
        HGLOBAL p = Get_Element_Handle_by_Index(&back.objects, 5);
        EXPECT_EQ(Get_Parent(p, 0), Get_Element_Handle_by_Index(&back.aux_objects, 2));
        EXPECT_EQ(Get_Parent(p, 1), Get_Element_Handle_by_Index(&back.objects, 0));
        EXPECT_EQ(Has_Tag(first, "TC"), version == kV92);
        EXPECT_EQ(Has_Tag(first, "NC"), *name != 0);
        Free_Geo_Cross_Section(&g);
        Free_Geo_Cross_Section(&back);
      }
    }
  }
  EXPECT_EQ(GlobalBlockCount(), blocks);
}

TEST(CrossSectionFile, CompoundElementsKeepTheirWordsButNotTheirBlocks) {
  Temp_Dir dir;
  _Geo_Cross_Section g;
  Build_Section(g, {true, true, "poly"});
  auto first = Saved_Bytes(dir / "a.wgf", g, kV92);
  _Geo_Cross_Section back;
  ASSERT_EQ(Read_Into(dir / "a.wgf", back), 1);
  auto second = Saved_Bytes(dir / "b.wgf", back, kV92);
  ASSERT_EQ(second.size(), first.size());
  // Only the raw handle words differ: the polyline's attribute and node
  // blocks, the spline's attribute and four coefficient blocks.
  int words = 0;
  for (size_t i = 0; i + 4 <= first.size(); i += 4) {
    words +=
        !std::equal(first.begin() + static_cast<long>(i), first.begin() + static_cast<long>(i) + 4,
                    second.begin() + static_cast<long>(i));
  }
  EXPECT_EQ(words, 7);
  HGLOBAL poly = Get_Element_Handle_by_Index(&back.objects, 6);
  EXPECT_EQ(Get_Polyline_Node_Num(poly), 4);
  _Geo_Cross_Section again;
  ASSERT_EQ(Read_Into(dir / "b.wgf", again), 1);
  EXPECT_EQ(Saved_Bytes(dir / "c.wgf", again, kV92), second);
  for (auto* s : {&g, &back, &again}) Free_Geo_Cross_Section(s);
}

TEST(CrossSectionFile, LayoutTagsAndLinkNumbers) {
  Temp_Dir dir;
  _Geo_Cross_Section g;
  Build_Section(g);
  // A contour element whose drawing element is in no array is written as -1.
  HGLOBAL stray = Create_Circle(0, 0, 1);
  Contour_Type* outer = static_cast<Contour_Type*>(
      GlobalLock(static_cast<HGLOBAL*>(GlobalLock(g.surface.outers))[0]));
  Set_ContEl_Handle(outer, stray, 0);
  auto b = Saved_Bytes(dir / "a.wgf", g, kV91);
  const char head[] = "CG\0\0RC\0\0DC\0\0BO\0\0\3\0\0\0";
  EXPECT_TRUE(std::equal(head, head + 20, b.begin()));
  // The derived point's parents: aux element 2 is number 3; the objects
  // array's element 0 is m + 1 = 4.
  auto p_entry = std::search(b.begin(), b.end(), std::begin("\5\0\0\0\2\0\0\0\3\0\0\0\4\0\0\0"),
                             std::end("\5\0\0\0\2\0\0\0\3\0\0\0\4\0\0\0") - 1);
  EXPECT_NE(p_entry, b.end());
  _Geo_Cross_Section back;
  ASSERT_EQ(Read_Into(dir / "a.wgf", back), 1);
  Contour_Type* read_outer = static_cast<Contour_Type*>(
      GlobalLock(static_cast<HGLOBAL*>(GlobalLock(back.surface.outers))[0]));
  EXPECT_EQ(Get_ContEl_Handle(read_outer, 0), 0u);
  EXPECT_NE(Get_ContEl_Handle(read_outer, 1), 0u);
  Delete_Element(stray);
  Free_Geo_Cross_Section(&g);
  Free_Geo_Cross_Section(&back);
  for (DWORD v : {Cross_Section_Version(9, 5), Cross_Section_Version(8, 9)}) {
    _Geo_Cross_Section e;
    EXPECT_EQ(Has_Tag(Saved_Bytes(dir / "v.wgf", e, v), "TC"), (v >> 16) == 9);
  }
}

TEST(CrossSectionFile, ReaderEndsOnEveryTruncationAndLie) {
  Temp_Dir dir;
  _Geo_Cross_Section g;
  Build_Section(g, {true, true, "a name"});
  auto whole = Saved_Bytes(dir / "a.wgf", g, kV92);
  Free_Geo_Cross_Section(&g);
  long blocks = GlobalBlockCount();
  for (size_t n = 0; n < whole.size(); ++n) {
    CMemFile f(whole.data(), n);
    _Geo_Cross_Section t;
    EXPECT_EQ(Read_GeoCrossSectData(f, &t), 0) << n;
    Free_Geo_Cross_Section(&t);
  }
  EXPECT_EQ(GlobalBlockCount(), blocks);
  // Counts that the file cannot hold: the second array's count, then a name
  // length, then a long name that is cut to the buffer.
  auto lie = whole;
  lie[16] = 0xFF;
  lie[17] = 0xFF;
  lie[18] = 0xFF;
  lie[19] = 0x7F;
  Write_All(dir / "l.wgf", lie);
  _Geo_Cross_Section t;
  EXPECT_EQ(Read_Into(dir / "l.wgf", t), 0);
  Free_Geo_Cross_Section(&t);
  std::vector<unsigned char> named = {'C', 'G', 0, 0, 'N', 'C', 0, 0, 100, 0, 0, 0};
  named.insert(named.end(), 100, 'x');
  named.insert(named.end(), {'E', 'G', 0, 0});
  Write_All(dir / "n.wgf", named);
  ASSERT_EQ(Read_Into(dir / "n.wgf", t), 1);
  EXPECT_EQ(std::string(t.name), std::string(59, 'x'));
  named[8] = 0xF0;  // length beyond the file
  named[11] = 0x7F;
  Write_All(dir / "n.wgf", named);
  EXPECT_EQ(Read_Into(dir / "n.wgf", t), 0);
  // A wrong first tag changes nothing.
  Write_All(dir / "n.wgf", {'X', 'G', 0, 0, 'E', 'G', 0, 0});
  EXPECT_EQ(Read_Into(dir / "n.wgf", t), 0);
  EXPECT_EQ(std::string(t.name), std::string(59, 'x'));
  Free_Geo_Cross_Section(&t);
}

TEST(CrossSection, CopyMergeAndFree) {
  Temp_Dir dir;
  long blocks = GlobalBlockCount();
  {
    _Geo_Cross_Section g;
    Build_Section(g, {false, true, "copy me"});
    _Geo_Cross_Section c;
    c.Make_Copy(g);
    EXPECT_STREQ(c.name, "copy me");
    EXPECT_EQ(c.split.nodes, 0u);  // a copy is analysed again
    EXPECT_NE(Get_Element_Handle_by_Index(&c.objects, 0),
              Get_Element_Handle_by_Index(&g.objects, 0));
    // Without split and extra code the copy writes what the source writes.
    FE_Split keep = g.split;
    g.split = FE_Split{};
    EXPECT_EQ(Saved_Bytes(dir / "c.wgf", c, kV91), Saved_Bytes(dir / "g.wgf", g, kV91));
    g.split = keep;

    _Cross_Section merged;
    EXPECT_EQ(merged.Add_Objects(c), 6);
    EXPECT_EQ(Get_Element_Handle_by_Index(&merged.objects, 2),
              Get_Element_Handle_by_Index(&c.objects, 2));
    c.Delete_Cross_Section_Without_Element_Deleting();
    EXPECT_EQ(c.objects.handles, 0u);
    EXPECT_EQ(merged.surface.outer_count, 1);
    merged.Delete_Cross_Section();
    Free_Geo_Cross_Section(&c);
    Free_Geo_Cross_Section(&g);
  }
  EXPECT_EQ(GlobalBlockCount(), blocks);
}

TEST(CrossSection, MagicAndEquivalence) {
  Temp_Dir dir;
  Write_All(dir / "w.wgf", {'W', 'G', 'F', 'F', 1});
  Write_All(dir / "x.wgf", {'W', 'G', 'F'});
  EXPECT_EQ(Is_Cros_Sect_File((dir / "w.wgf").c_str()), 1);
  EXPECT_EQ(Is_Cros_Sect_File((dir / "x.wgf").c_str()), 0);
  EXPECT_EQ(Is_Cros_Sect_File((dir / "none").c_str()), 0);

  surface_geometry a{}, b{};
  for (int i = 0; i < 21; ++i) (&a.area)[i] = (&b.area)[i] = i * 1000.0 + 0.5;
  EXPECT_EQ(Is_Geometry_Equivalent(&a, &a), 1);
  b.second_moment_x += 5;  // field 4 is not compared
  EXPECT_EQ(Is_Geometry_Equivalent(&a, &b), 1);
  a.central_moment_x = 0;
  b.central_moment_x = 0.0001;  // field 11, compared first: exactly the tolerance fails
  EXPECT_EQ(Is_Geometry_Equivalent(&a, &b), 0);
  b.central_moment_x = 0.00009;
  EXPECT_EQ(Is_Geometry_Equivalent(&a, &b), 1);
  b.further_constant = NAN;
  EXPECT_EQ(Is_Geometry_Equivalent(&a, &b), 0);
}

}  // namespace
