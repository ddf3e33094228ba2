// The section library: the file it creates, a scripted sequence of edits
// checked against a model of what each section must read back, the moving
// window's loss, the safe path, and I/O faults at every step of it.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>

#include <tessaline/tessaline.h>

#include "support/section.h"
#include "support/temp_dir.h"

namespace {

// What one stored section must read back as.
struct Expected {
  std::string name;
  tagGeometryParams params;
  std::vector<unsigned char> geometry;  // its cross-section part
};

// Sections of different sizes (the geometry's element count grows with k).
struct Section_Source {
  std::unique_ptr<_Geo_Cross_Section> g = std::make_unique<_Geo_Cross_Section>();
  CBeamCrosSect beam;
  Expected expected;

  Section_Source(int k, const std::string& name) {
    Build_Section(*g, {false, false, "x", 1.0 + k});
    for (int i = 0; i < k; ++i) Add_Element_In_Array_by_Handle(&g->aux_objects, Create_Point(i, k));
    beam.m_pCrossSection = g.get();
    beam.SetName(name.c_str());
    beam.m_GeomParams.area = 10.0 * k + 1;
    beam.m_GeomParams.last_value = -k;
    CMemFile f;
    beam.Write(f);
    expected = {std::string(name, 0, 39), beam.m_GeomParams, f.Data()};
  }
  ~Section_Source() { Free_Geo_Cross_Section(g.get()); }
};

// Every section of the library at `path` reads back as the model says.
void Check_Library(const std::string& path, const std::vector<Expected>& model) {
  CString p = path;
  CCrossSectionLibrary lib(p);
  ASSERT_EQ(lib.GetCount(), model.size());
  CStringArray names;
  lib.GetSectionNames(names, -1, -1);
  for (size_t i = 0; i < model.size(); ++i) {
    SCOPED_TRACE("section " + std::to_string(i));
    _Cross_Section geometry;
    CBeamCrosSect s(&geometry);
    ASSERT_EQ(lib.GetSection(s, static_cast<int>(i)), 1);
    EXPECT_EQ(s.GetName(), model[i].name);
    EXPECT_EQ(names[i], model[i].name);
    EXPECT_EQ(std::memcmp(&s.m_GeomParams, &model[i].params, sizeof s.m_GeomParams), 0);
    CMemFile f;
    s.Write(f);
    EXPECT_EQ(f.Data(), model[i].geometry);
    CDIBitmap dib;
    EXPECT_EQ(lib.GetPreviewBitmap(dib, static_cast<int>(i)), 1);
    EXPECT_EQ(dib.DIBWidth(), 100u);
    geometry.Delete_Cross_Section();
  }
}

#define CHECK_LIBRARY(path, ...)      \
  do {                                \
    SCOPED_TRACE("checked here");     \
    Check_Library(path, __VA_ARGS__); \
  } while (0)

TEST(SectionLibrary, NewFilesAndHeaders) {
  Temp_Dir dir;
  CString path = dir / "deflib.slb";
  CCrossSectionLibrary lib(path);
  EXPECT_EQ(lib.GetFileSize(), 20360u);
  EXPECT_STREQ(lib.GetHeader()->description, "Default library");
  EXPECT_STREQ(lib.GetHeader()->signature, "ORT ltd. CrossSection Library");
  EXPECT_EQ(lib.GetSectionType(), 0);
  EXPECT_EQ(lib.IsEmpty(), 1);
  EXPECT_EQ(lib.GetLibName(), "deflib.slb");

  // An existing file that is not a library stays unloaded and untouched.
  Write_All(dir / "other.slb", {'n', 'o', 't'});
  CString other = dir / "other.slb";
  CCrossSectionLibrary bad;
  EXPECT_EQ(bad.Load(other), 0);
  CString loaded;
  bad.GetPathName(loaded);
  EXPECT_EQ(loaded, "");
  EXPECT_EQ(Read_All(other).size(), 3u);

  // A header claiming 6000 sections loads 5000 offsets; a clear type flag
  // reads as type 255.
  auto bytes = Read_All(path);
  bytes[306] = 6000 & 0xFF;
  bytes[307] = 6000 >> 8;
  bytes[48] = 0;
  Write_All(path, bytes);
  CCrossSectionLibrary big(path);
  EXPECT_EQ(big.GetCount(), 5000);
  EXPECT_EQ(big.GetSectionType(), 255);

  // The INI constructor and the dialog caption.
  std::string ini = "[Library]\nPath=" + (dir / "fromini.slb") + "\n";
  Write_All(dir / "host.ini", {ini.begin(), ini.end()});
  CString ini_path = dir / "host.ini", section = "Library", key = "Path";
  CCrossSectionLibrary from_ini(ini_path, section, key);
  EXPECT_EQ(from_ini.GetLibName(), "fromini.slb");
  SetStringResource(20023, "Library - ");
  CLibraryDialog dialog(&from_ini);
  EXPECT_EQ(dialog.SetCaption(), "Library - fromini.slb");
  SetStringResource(20023, nullptr);
}

TEST(SectionLibrary, ScriptedEditsMatchTheModel) {
  Temp_Dir dir;
  dir.Enter();
  CString path = dir / "lib.slb";
  CCrossSectionLibrary lib(path);
  std::vector<std::unique_ptr<Section_Source>> src;
  for (int k = 0; k < 7; ++k) {
    src.push_back(std::make_unique<Section_Source>(k, "section " + std::to_string(k)));
  }
  src.push_back(std::make_unique<Section_Source>(1, std::string(45, 'L')));  // cut to 39
  std::vector<Expected> model;
  auto add = [&](int k) {
    ASSERT_EQ(lib.AddSection(src[k]->beam), 1);
    model.push_back(src[k]->expected);
  };
  auto replace = [&](int index, int k) {
    ASSERT_EQ(lib.ReplaceSection(src[k]->beam, index), 1);
    model[index] = src[k]->expected;
  };
  for (int k : {3, 4, 5, 6}) add(k);
  CHECK_LIBRARY(path, model);
  replace(1, 1);  // shrink a middle section
  CHECK_LIBRARY(path, model);
  replace(1, 7);  // one of the same size: only the name differs
  CHECK_LIBRARY(path, model);
  replace(3, 6);  // the last, equal
  replace(3, 0);  // the last, shrinking: the file ends with it
  EXPECT_EQ(lib.GetFileSize(), Read_All(path).size());
  CHECK_LIBRARY(path, model);
  replace(3, 5);  // the last, growing
  CHECK_LIBRARY(path, model);
  ASSERT_EQ(lib.SafeReplaceSection(src[6]->beam, 0), 1);  // grow a middle one safely
  model[0] = src[6]->expected;
  CHECK_LIBRARY(path, model);
  EXPECT_EQ(lib.ReplaceSection(src[7]->beam, -1), 1);  // below 0: an add
  model.push_back(src[7]->expected);
  EXPECT_EQ(model.back().name.size(), 39u);
  CHECK_LIBRARY(path, model);
  ASSERT_EQ(lib.RemoveSection(1), 1);
  model.erase(model.begin() + 1);
  ASSERT_EQ(lib.RemoveSection(static_cast<int>(model.size()) - 1), 1);
  model.pop_back();
  CHECK_LIBRARY(path, model);
  EXPECT_EQ(lib.RemoveSection(static_cast<int>(model.size())), 0);
  std::strcpy(lib.GetHeaderForEdit()->description, "Steel profiles");
  ASSERT_EQ(lib.SaveLibDescription(), 1);
  CCrossSectionLibrary reread(path);
  EXPECT_STREQ(reread.GetHeader()->description, "Steel profiles");
  CHECK_LIBRARY(path, model);

  CStringArray names;
  lib.GetSectionNames(names, 2, 0);
  EXPECT_EQ(names.size(), 3u);
  EXPECT_EQ(names[0], model[0].name);
  _Cross_Section scratch_geometry;
  CBeamCrosSect s(&scratch_geometry);
  EXPECT_THROW(lib.GetSection(s, lib.GetCount()), std::out_of_range);
  EXPECT_EQ(lib.GetSection(s, lib.GetCount() + 1), 0);
  EXPECT_FALSE(std::filesystem::exists("temp.$$$"));
  while (lib.GetCount() > 0) lib.RemoveSection(0);
  EXPECT_EQ(lib.GetFileSize(), 20360u);
  EXPECT_EQ(lib.IsEmpty(), 1);
}

TEST(SectionLibrary, MovingWindowLosesTheOldLastBytesAndTheSafePathNone) {
  Temp_Dir dir;
  dir.Enter();
  Section_Source a(3, "a"), b(2, "b"), c(4, "c"), big(6, "big");
  CString path = dir / "lib.slb";
  {
    CCrossSectionLibrary lib(path);
    for (auto* s : {&a, &b, &c}) lib.AddSection(s->beam);
  }
  std::filesystem::copy_file(path, dir / "safe.slb");
  std::vector<unsigned char> before = Read_All(path);
  CCrossSectionLibrary in_place(path);
  ASSERT_EQ(in_place.ReplaceSection(big.beam, 1), 1);
  CString safe_path = dir / "safe.slb";
  CCrossSectionLibrary safe(safe_path);
  ASSERT_EQ(safe.SafeReplaceSection(big.beam, 1), 1);
  std::vector<unsigned char> lossy = Read_All(path), whole = Read_All(safe_path);
  ASSERT_EQ(lossy.size(), whole.size());
  const size_t old_end = before.size(), d = lossy.size() - old_end;
  uint32_t next;
  std::memcpy(&next, &before[360 + 4 * 2], 4);  // section c's block follows b's
  // Replay the window on the old bytes: from one chunk below the old end,
  // read 2048 bytes d lower and write them at p, down while p > next.
  std::vector<unsigned char> image = before;
  image.resize(old_end + d, 0);
  size_t p = old_end - 2048, lowest = p;
  do {
    std::copy_n(image.begin() + static_cast<long>(p - d), 2048,
                image.begin() + static_cast<long>(p));
    lowest = p;
    p -= 2048;
  } while (p > next);
  // The new block itself and the header and table are what the safe path wrote.
  std::copy(whole.begin(), whole.begin() + static_cast<long>(next + d), image.begin());
  EXPECT_EQ(lossy, image);
  // So the in-place growth loses exactly two runs: the old last d bytes
  // (zeros at the new end), and the start of the next block from next + d
  // up to the window's last start, which keeps bytes that were never moved.
  for (size_t i = 0; i < lossy.size(); ++i) {
    bool lost = (i >= next + d && i < lowest) || i >= old_end;
    if (!lost) {
      ASSERT_EQ(lossy[i], whole[i]) << i;
    }
  }
  EXPECT_TRUE(std::all_of(lossy.end() - static_cast<long>(d), lossy.end(),
                          [](unsigned char x) { return x == 0; }));
  EXPECT_TRUE(std::equal(whole.end() - static_cast<long>(d), whole.end(),
                         before.end() - static_cast<long>(d)));
  Check_Library(safe_path, {a.expected, big.expected, c.expected});
}

TEST(SectionLibrary, SafeAddRefusesThe5001stSection) {
  Temp_Dir dir;
  dir.Enter();
  CString path = dir / "full.slb";
  Section_Source a(1, "a");
  {
    CCrossSectionLibrary lib(path);
    lib.AddSection(a.beam);
  }
  // A full table: 5000 entries all naming the one block.
  auto bytes = Read_All(path);
  uint32_t first;
  std::memcpy(&first, &bytes[360], 4);
  for (int i = 0; i < 5000; ++i) std::memcpy(&bytes[360 + 4 * i], &first, 4);
  bytes[306] = 5000 & 0xFF;
  bytes[307] = 5000 >> 8;
  Write_All(path, bytes);
  CCrossSectionLibrary lib(path);
  EXPECT_EQ(lib.SafeAddSection(a.beam), 0);
  EXPECT_NE(lib.GetLastErrorText().find("5000"), std::string::npos);
  EXPECT_EQ(Read_All(path), bytes);
}

// Runs `op` on a fresh copy of the library with the n-th operation of
// `kind` failing, for every n the operation makes, and checks that the
// library then holds either `old_model` or `new_model` whole.
void Every_Fault(const std::string& original, const std::string& path,
                 const std::function<int(CCrossSectionLibrary&)>& op,
                 const std::vector<Expected>& old_model, const std::vector<Expected>& new_model) {
  for (File_Fault kind : {File_Fault::write, File_Fault::read, File_Fault::rename}) {
    std::filesystem::copy_file(original, path, std::filesystem::copy_options::overwrite_existing);
    long count;
    {
      CString p = path;
      CCrossSectionLibrary lib(p);
      long start = FileOperationCount(kind);
      ASSERT_EQ(op(lib), 1);
      count = FileOperationCount(kind) - start;
    }
    for (long n = 1; n <= count; ++n) {
      SCOPED_TRACE("fault " + std::to_string(static_cast<int>(kind)) + " at " + std::to_string(n));
      std::filesystem::copy_file(original, path, std::filesystem::copy_options::overwrite_existing);
      int result;
      {
        CString p = path;
        CCrossSectionLibrary lib(p);
        SetFileFault(kind, n);
        result = op(lib);
        SetFileFault(kind, 0);
        EXPECT_EQ(result == 0, !lib.GetLastErrorText().empty());
      }
      Check_Library(path, result ? new_model : old_model);
      EXPECT_FALSE(std::filesystem::exists("temp.$$$"));
      EXPECT_FALSE(std::filesystem::exists(path + ".$$$"));
    }
  }
}

TEST(SectionLibrary, SafeEditsSurviveAFaultAtEveryStep) {
  Temp_Dir dir(true);
  dir.Enter();
  Section_Source a(1, "a"), b(2, "b"), c(3, "c"), d(5, "d");
  std::string original = dir / "original.slb";
  {
    CString p = original;
    CCrossSectionLibrary lib(p);
    for (auto* s : {&a, &b, &c}) lib.AddSection(s->beam);
  }
  std::vector<Expected> old_model = {a.expected, b.expected, c.expected};
  std::string path = dir / "lib.slb";
  Every_Fault(original, path, [&](CCrossSectionLibrary& l) { return l.SafeAddSection(d.beam); },
              old_model, {a.expected, b.expected, c.expected, d.expected});
  Every_Fault(original, path,
              [&](CCrossSectionLibrary& l) { return l.SafeReplaceSection(d.beam, 0); }, old_model,
              {d.expected, b.expected, c.expected});
  Every_Fault(original, path, [&](CCrossSectionLibrary& l) { return l.SafeRemoveSection(1); },
              old_model, {a.expected, c.expected});
}

}  // namespace
