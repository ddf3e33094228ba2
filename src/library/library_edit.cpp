// Editing the section library in place: a new block is built in the
// scratch file "temp.$$$" in the current directory and copied into the
// library; blocks behind a changed one are moved up or down in fixed
// chunks (2048 bytes for adding and replacing, 4096 for removing).
#include <cstring>
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

}  // namespace

uint32_t Scratch_Block::Build(CCrossSection& section,
                              int (*preview)(void*, CDIBitmap&, CCrossSection&), void* owner) {
  if (!file.Open(kScratch_Name, CFile::modeCreate | CFile::modeReadWrite)) return 0;
  created = true;
  tagCrossRecord r;
  r.params = section.m_GeomParams;
  r.length = 0;
  size_t n = strnlen(section.m_szName, sizeof r.name - 1);
  std::memcpy(r.name, section.m_szName, n);
  r.name[n] = 0;
  Write_Record(file, r);
  CDIBitmap dib;
  preview(owner, dib, section);
  dib.Save(file);
  section.Write(file);
  r.length = static_cast<uint32_t>(file.GetLength());
  file.Seek(0, CFile::begin);
  Write_Record(file, r);
  file.Seek(0, CFile::begin);
  return r.length;
}

Scratch_Block::~Scratch_Block() {
  file.Abort();
  if (created) {
    try {
      CFile::Remove(kScratch_Name);
    } catch (const CFileException&) {
      // Already gone: nothing is left behind either way.
    }
  }
}

int CCrossSectionLibrary::CreatePreviewBitmap(CDIBitmap& dib, CCrossSection& section) {
  HDC screen = GetDC(nullptr);
  HDC memory = CreateCompatibleDC(screen);
  BITMAPINFOHEADER header{};
  header.biSize = sizeof header;
  header.biWidth = 100;
  header.biHeight = 100;
  header.biPlanes = 1;
  header.biBitCount = 4;
  header.biCompression = BI_RGB;
  HBITMAP bitmap = CreateDIBitmap(screen, &header, 0, nullptr, nullptr, DIB_RGB_COLORS);
  if (!bitmap || !memory) {
    if (bitmap) DeleteObject(bitmap);
    if (memory) DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return 0;
  }
  HGDIOBJ old = SelectObject(memory, bitmap);
  {
    CDC dc;
    dc.Attach(memory);
    CRect rect(0, 0, 100, 100);
    section.DrawPreview(dc, rect);
    dc.Detach();
  }
  SelectObject(memory, old);
  dib.AssignDDP(bitmap);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  return 1;
}

int Library_Access::Preview(void* library, CDIBitmap& dib, CCrossSection& section) {
  return static_cast<CCrossSectionLibrary*>(library)->CreatePreviewBitmap(dib, section);
}

WORD CCrossSectionLibrary::AddSection(CCrossSection& section) {
  Scratch_Block block;
  uint32_t length = block.Build(section, &Library_Access::Preview, this);
  if (!block.created) return 0;
  if (!m_File.Open(m_strPathName.c_str(), CFile::modeReadWrite)) return 0;
  Closer close{m_File};
  auto end = static_cast<DWORD>(m_File.GetLength());
  m_File.SetLength(uint64_t{end} + length);
  m_File.Seek(end, CFile::begin);
  Copy_Chunks(block.file, m_File, 2048);
  SetModified();
  m_Header.sections = static_cast<uint16_t>(m_Header.sections + 1);
  m_File.Seek(0, CFile::begin);
  Write_Header(m_File, m_Header);
  // No test against the table's 5000 entries: a 5001st entry lands on the
  // first block. Kept as the library has always done; SafeAddSection refuses.
  m_File.Seek(kTable_Offset + 4ull * static_cast<uint32_t>(m_nCount), CFile::begin);
  Write_U32(m_File, end);
  m_nCount += 1;
  m_OffsetTable.Add(end);
  m_File.Close();
  return 1;
}

int CCrossSectionLibrary::ReplaceSection(CCrossSection& section, int index) {
  if (index < 0 || index > m_nCount) return AddSection(section);
  Scratch_Block block;
  uint32_t new_length = block.Build(section, &Library_Access::Preview, this);
  if (!block.created) return 0;
  if (!m_File.Open(m_strPathName.c_str(), CFile::modeReadWrite)) return 0;
  Closer close{m_File};
  std::vector<unsigned char> buf(2048);
  if (index == m_nCount - 1) {
    m_File.SetLength(uint64_t{m_OffsetTable[index]} + new_length);
  } else {
    m_File.Seek(m_OffsetTable[index], CFile::begin);
    tagCrossRecord old;
    Read_Record(m_File, old);
    uint32_t old_length = old.length;
    DWORD next = m_OffsetTable[index + 1];  // the count itself throws here, as it always has
    if (old_length > new_length) {
      uint32_t d = old_length - new_length;
      uint64_t p = next;
      for (;;) {
        m_File.Seek(p, CFile::begin);
        UINT n = m_File.Read(buf.data(), 2048);
        m_File.Seek(p - d, CFile::begin);
        m_File.Write(buf.data(), n);
        p += n;
        if (n < 2048) break;
      }
      for (int i = index + 1; i < m_OffsetTable.GetSize(); ++i) m_OffsetTable[i] -= d;
      m_File.SetLength(m_File.GetLength() - d);
    } else if (old_length < new_length) {
      uint32_t d = new_length - old_length;
      auto old_end = static_cast<DWORD>(m_File.GetLength());
      m_File.SetLength(uint64_t{old_end} + d);
      // The moving window, kept exactly: it starts one chunk below the old
      // end and reads d bytes lower, so the old file's last d bytes never
      // reach the new end. A window that would start before the file's
      // beginning makes Seek throw instead of wrapping round.
      DWORD p = old_end - 2048;
      do {
        m_File.Seek(static_cast<int64_t>(p) - d, CFile::begin);
        UINT n = m_File.Read(buf.data(), 2048);
        m_File.Seek(p, CFile::begin);
        m_File.Write(buf.data(), n);
        if (n == 0) break;  // nothing read: stop instead of spinning
        p -= n;
      } while (p > next);
      for (int i = index + 1; i < m_OffsetTable.GetSize(); ++i) m_OffsetTable[i] += d;
    }
  }
  m_File.Seek(m_OffsetTable[index], CFile::begin);
  Copy_Chunks(block.file, m_File, 2048);
  SetModified();
  m_File.Seek(0, CFile::begin);
  Write_Header(m_File, m_Header);
  m_File.Seek(kTable_Offset + 4ull * (static_cast<uint32_t>(index) + 1), CFile::begin);
  for (int i = index + 1; i < m_nCount; ++i) Write_U32(m_File, m_OffsetTable[i]);
  m_File.Close();
  return 1;
}

int CCrossSectionLibrary::RemoveSection(int index) {
  if (index < 0 || index >= m_nCount) return 0;
  if (!m_File.Open(m_strPathName.c_str(), CFile::modeReadWrite)) return 0;
  Closer close{m_File};
  if (index == m_nCount - 1) {
    m_File.SetLength(m_OffsetTable[index]);
    m_OffsetTable.RemoveAt(index);
  } else {
    DWORD d = m_OffsetTable[index + 1] - m_OffsetTable[index];
    std::vector<unsigned char> buf(4096);
    uint64_t src = m_OffsetTable[index + 1], dst = m_OffsetTable[index];
    for (;;) {
      m_File.Seek(src, CFile::begin);
      UINT n = m_File.Read(buf.data(), 4096);
      m_File.Seek(dst, CFile::begin);
      m_File.Write(buf.data(), n);
      src += n;
      dst += n;
      if (n < 4096) break;
    }
    int size = m_OffsetTable.GetSize();
    for (int i = index; i <= size - 2; ++i) m_OffsetTable[i] = m_OffsetTable[i + 1] - d;
    m_OffsetTable.RemoveAt(size - 1);
    m_File.SetLength(m_File.GetLength() - d);
    m_File.Seek(m_Header.table_offset, CFile::begin);
    for (int i = 0; i < m_OffsetTable.GetSize(); ++i) Write_U32(m_File, m_OffsetTable[i]);
  }
  SetModified();
  m_nCount -= 1;
  m_Header.sections = static_cast<uint16_t>(m_nCount);
  m_File.Seek(0, CFile::begin);
  Write_Header(m_File, m_Header);
  m_File.Close();
  return 1;
}
