// The safe path of the section library: adds that respect the table's
// 5000 entries and commit with the header, and replaces and removes that
// write a new library beside the old one and rename it over, so that the
// file on disk is at every moment either the old library or the new one.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "library/library_io.h"
#include "library/scratch.h"
#include "tessaline/library/library.h"

using namespace library_io;

namespace {

struct Closer {
  CFile& f;
  ~Closer() { f.Abort(); }
};

struct Failure {
  std::string text;
};

std::string Describe(const CFileException& e) {
  std::string what;
  switch (e.m_cause) {
    case CFileException::fileNotFound:
      what = "file not found";
      break;
    case CFileException::accessDenied:
      what = "access denied";
      break;
    case CFileException::diskFull:
      what = "disk full";
      break;
    case CFileException::hardIO:
      what = "input/output error";
      break;
    case CFileException::badSeek:
      what = "bad position";
      break;
    default:
      what = "file error " + std::to_string(e.m_cause);
  }
  return what + (e.m_strFileName.empty() ? "" : " (" + e.m_strFileName + ")");
}

}  // namespace

// Runs one safe operation: its failures become the error text and 0.
template <class Op>
static int Run_Safe(std::string& error, Op op) {
  error.clear();
  try {
    op();
    return 1;
  } catch (const Failure& f) {
    error = f.text;
  } catch (const CFileException& e) {
    error = "the library was left as it was: " + Describe(e);
  } catch (const std::exception& e) {
    error = std::string("the library was left as it was: ") + e.what();
  }
  return 0;
}

int CCrossSectionLibrary::SafeAddSection(CCrossSection& section) {
  tagLibHeader before = m_Header;
  int result = Run_Safe(m_strError, [&] {
    if (m_strPathName.empty()) throw Failure{"no library is loaded"};
    if (m_nCount >= m_nMaxSections) {
      throw Failure{"the library already holds " + std::to_string(m_nMaxSections) +
                    " sections, as many as its offset table has entries; no section was added"};
    }
    Scratch_Block block;
    uint32_t length = block.Build(section, &Library_Access::Preview, this);
    if (!block.created) throw Failure{"cannot create the scratch file temp.$$$"};
    if (!m_File.Open(m_strPathName.c_str(), CFile::modeReadWrite)) {
      throw Failure{"cannot open the library " + m_strPathName};
    }
    Closer close{m_File};
    uint64_t end = m_File.GetLength();
    if (end + length > 0xFFFFFFFFull) throw Failure{"the library would pass 4 GiB"};
    try {
      // Block and table entry first, behind everything the header counts;
      // the header's new count is what makes the section part of the library.
      m_File.Seek(static_cast<int64_t>(end), CFile::begin);
      if (Copy_Chunks(block.file, m_File, 2048) != length)
        throw Failure{"the scratch block was cut short"};
      m_File.Seek(kTable_Offset + 4ull * static_cast<uint32_t>(m_nCount), CFile::begin);
      Write_U32(m_File, static_cast<uint32_t>(end));
      SetModified();
      m_Header.sections = static_cast<uint16_t>(m_nCount + 1);
      m_File.Seek(0, CFile::begin);
      Write_Header(m_File, m_Header);
    } catch (...) {
      m_Header = before;
      try {
        m_File.SetLength(end);  // drop the unreferenced bytes when the disk lets us
      } catch (const CFileException&) {
      }
      throw;
    }
    m_File.Close();
    m_nCount += 1;
    m_OffsetTable.Add(static_cast<DWORD>(end));
  });
  return result;
}

// Writes the library without section `index`'s block, or with `block`'s in
// its place, to path + ".$$$", and renames that over the library.
static void Rebuild(CCrossSectionLibrary& lib, CFile& old_file, const CString& path,
                    const tagLibHeader& header, CArray<DWORD, DWORD>& table, int index,
                    Scratch_Block* block, uint32_t new_length) {
  if (!old_file.Open(path.c_str(), CFile::modeRead))
    throw Failure{"cannot open the library " + path};
  Closer close{old_file};
  uint64_t length = old_file.GetLength();
  uint64_t start = table[index];
  uint64_t end = length;
  for (int i = 0; i < table.GetSize(); ++i) {
    if (table[i] > start) end = std::min<uint64_t>(end, table[i]);
  }
  uint64_t first_block = kTable_Offset + 4ull * CCrossSectionLibrary::m_nMaxSections;
  if (start < first_block || start >= length)
    throw Failure{"the section's block lies outside the file"};
  int64_t d = static_cast<int64_t>(new_length) - static_cast<int64_t>(end - start);
  if (static_cast<int64_t>(length) + d > 0xFFFFFFFFll)
    throw Failure{"the library would pass 4 GiB"};

  CArray<DWORD, DWORD> moved;
  for (int i = 0; i < table.GetSize(); ++i) {
    if (i == index && !block) continue;
    DWORD t = table[i];
    if (t > start) t = static_cast<DWORD>(static_cast<int64_t>(t) + d);
    moved.Add(t);
  }
  tagLibHeader h = header;
  h.sections = static_cast<uint16_t>(moved.GetSize());

  std::string next = path + ".$$$";
  CFile out;
  if (!out.Open(next.c_str(), CFile::modeCreate | CFile::modeReadWrite)) {
    throw Failure{"cannot create the scratch library " + next};
  }
  try {
    Write_Header(out, h);
    for (int i = 0; i < CCrossSectionLibrary::m_nMaxSections; ++i) {
      Write_U32(out, i < moved.GetSize() ? moved[i] : 0);
    }
    old_file.Seek(static_cast<int64_t>(first_block), CFile::begin);
    if (Copy_Bytes(old_file, out, start - first_block) != start - first_block) {
      throw Failure{"the library ends inside a section"};
    }
    if (block && Copy_Chunks(block->file, out, 2048) != new_length) {
      throw Failure{"the scratch block was cut short"};
    }
    old_file.Seek(static_cast<int64_t>(end), CFile::begin);
    Copy_Bytes(old_file, out, length - end);
    out.Flush();
    out.Close();
    old_file.Abort();
    CFile::Rename(next.c_str(), path.c_str());
  } catch (...) {
    out.Abort();
    std::remove(next.c_str());
    throw;
  }
  table = moved;
  (void)lib;
}

int CCrossSectionLibrary::SafeReplaceSection(CCrossSection& section, int index) {
  return Run_Safe(m_strError, [&] {
    if (index < 0 || index >= m_nCount) throw Failure{"no section " + std::to_string(index)};
    Scratch_Block block;
    uint32_t length = block.Build(section, &Library_Access::Preview, this);
    if (!block.created) throw Failure{"cannot create the scratch file temp.$$$"};
    tagLibHeader before = m_Header;
    SetModified();
    tagLibHeader h = m_Header;
    m_Header = before;
    CArray<DWORD, DWORD> table = m_OffsetTable;
    Rebuild(*this, m_File, m_strPathName, h, table, index, &block, length);
    m_OffsetTable = table;
    m_Header = h;
  });
}

int CCrossSectionLibrary::SafeRemoveSection(int index) {
  return Run_Safe(m_strError, [&] {
    if (index < 0 || index >= m_nCount) throw Failure{"no section " + std::to_string(index)};
    tagLibHeader before = m_Header;
    SetModified();
    tagLibHeader h = m_Header;
    m_Header = before;
    CArray<DWORD, DWORD> table = m_OffsetTable;
    Rebuild(*this, m_File, m_strPathName, h, table, index, nullptr, 0);
    m_OffsetTable = table;
    m_Header = h;
    m_Header.sections = static_cast<uint16_t>(table.GetSize());
    m_nCount = table.GetSize();
  });
}
