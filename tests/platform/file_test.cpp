// The file layer: open modes, positions and lengths, errors as exceptions,
// injected faults, profile strings and the existence test.
#include <gtest/gtest.h>

#include <tessaline/tessaline.h>

#include "support/temp_dir.h"

namespace {

TEST(File, ModesPositionsAndLengths) {
  Temp_Dir dir;
  std::string p = dir / "a.bin";
  CFileException error;
  CFile f;
  EXPECT_FALSE(f.Open(p.c_str(), CFile::modeRead, &error));
  EXPECT_EQ(error.m_cause, CFileException::fileNotFound);

  ASSERT_TRUE(f.Open(p.c_str(), CFile::modeCreate | CFile::modeReadWrite));
  f.Write("abcdef", 6);
  EXPECT_EQ(f.GetLength(), 6u);
  EXPECT_EQ(f.Seek(-2, CFile::current), 4u);
  char buf[8] = {};
  EXPECT_EQ(f.Read(buf, 8), 2u);  // fewer at the end, no exception
  EXPECT_EQ(std::string(buf, 2), "ef");
  f.SetLength(10);  // extends with zero bytes
  f.SeekToBegin();
  EXPECT_EQ(f.Read(buf, 8), 8u);
  EXPECT_EQ(buf[7], 0);
  EXPECT_THROW(f.Seek(-1, CFile::begin), CFileException);
  f.Close();

  // Without modeNoTruncate a create empties the file; with it, it stays.
  ASSERT_TRUE(f.Open(p.c_str(), CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite));
  EXPECT_EQ(f.GetLength(), 10u);
  f.Close();
  ASSERT_TRUE(f.Open(p.c_str(), CFile::modeRead));
  EXPECT_THROW(f.Write("x", 1), CFileException);
  f.Close();
  EXPECT_THROW(f.Read(buf, 1), CFileException);  // closed

  CFile::Rename(p.c_str(), (dir / "b.bin").c_str());
  EXPECT_EQ(OpenFile(p.c_str(), nullptr, OF_EXIST), HFILE_ERROR);
  EXPECT_EQ(OpenFile((dir / "b.bin").c_str(), nullptr, OF_EXIST), 1);
  CFile::Remove((dir / "b.bin").c_str());
  EXPECT_THROW(CFile::Remove((dir / "b.bin").c_str()), CFileException);
  EXPECT_THROW(CFile((dir / "none").c_str(), CFile::modeRead), CFileException);
}

TEST(File, InjectedFaultsFailTheNthOperationOnly) {
  Temp_Dir dir;
  std::string p = dir / "a.bin";
  CFile f(p.c_str(), CFile::modeCreate | CFile::modeReadWrite);
  SetFileFault(File_Fault::write, 2);
  f.Write("ab", 2);
  EXPECT_THROW(f.Write("cd", 2), CFileException);  // nothing written
  f.Write("ef", 2);
  EXPECT_EQ(f.GetLength(), 4u);
  SetFileFault(File_Fault::read, 1);
  f.SeekToBegin();
  char buf[4];
  EXPECT_THROW(f.Read(buf, 4), CFileException);
  EXPECT_EQ(f.Read(buf, 4), 4u);
  EXPECT_EQ(std::string(buf, 4), "abef");
  f.Close();
  SetFileFault(File_Fault::rename, 1);
  EXPECT_THROW(CFile::Rename(p.c_str(), (dir / "b").c_str()), CFileException);
  EXPECT_EQ(OpenFile(p.c_str(), nullptr, OF_EXIST), 1);
}

TEST(File, ProfileStrings) {
  Temp_Dir dir;
  std::string ini = dir / "host.ini";
  std::string text = "; comment\n[Other]\nLibrary=wrong\n[ Paths ]\n  library = \"lib 1.slb\" \n";
  Write_All(ini, {text.begin(), text.end()});
  char out[260];
  EXPECT_EQ(GetPrivateProfileStringA("paths", "LIBRARY", "deflib.slb", out, 260, ini.c_str()), 9u);
  EXPECT_STREQ(out, "lib 1.slb");
  EXPECT_EQ(GetPrivateProfileStringA("Paths", "missing", "deflib.slb", out, 260, ini.c_str()), 10u);
  EXPECT_STREQ(out, "deflib.slb");
  EXPECT_EQ(GetPrivateProfileStringA("Paths", "library", "", out, 4, ini.c_str()), 3u);
  EXPECT_STREQ(out, "lib");
  EXPECT_EQ(GetPrivateProfileStringA("Paths", "library", "", out, 260, (dir / "no.ini").c_str()),
            0u);
}

}  // namespace
