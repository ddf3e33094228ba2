// The section library: loading, creating, reading sections, their names,
// parameters and previews, the description and the record I/O.
#include "tessaline/library/library.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <vector>

#include "library/library_io.h"
#include "tessaline/platform/strings.h"
#include "tessaline/platform/user.h"

namespace library_io {
namespace {

void Put(unsigned char* p, uint64_t v, int bytes) {
  for (int i = 0; i < bytes; ++i) p[i] = static_cast<unsigned char>(v >> (8 * i));
}
uint64_t Get(const unsigned char* p, int bytes) {
  uint64_t v = 0;
  for (int i = 0; i < bytes; ++i) v |= uint64_t{p[i]} << (8 * i);
  return v;
}

}  // namespace

void Encode_Header(const tagLibHeader& h, unsigned char* out) {
  std::memcpy(out, h.signature, 48);
  out[48] = h.type_flag;
  out[49] = h.type;
  std::memcpy(out + 50, h.description, 256);
  Put(out + 306, h.sections, 2);
  std::memcpy(out + 308, h.date, 48);
  Put(out + 356, h.table_offset, 4);
}

void Decode_Header(const unsigned char* in, tagLibHeader& h) {
  std::memcpy(h.signature, in, 48);
  h.type_flag = in[48];
  h.type = in[49];
  std::memcpy(h.description, in + 50, 256);
  h.sections = static_cast<uint16_t>(Get(in + 306, 2));
  std::memcpy(h.date, in + 308, 48);
  h.table_offset = static_cast<uint32_t>(Get(in + 356, 4));
  // Texts from the file are terminated within their fields.
  h.signature[47] = h.description[255] = h.date[47] = 0;
}

void Write_Header(CFile& f, const tagLibHeader& h) {
  unsigned char b[kLib_Header_Bytes];
  Encode_Header(h, b);
  f.Write(b, kLib_Header_Bytes);
}

void Encode_Record(const tagCrossRecord& r, unsigned char* out) {
  double v[10];
  std::memcpy(v, &r.params, sizeof v);
  for (int i = 0; i < 10; ++i) {
    uint64_t u;
    std::memcpy(&u, &v[i], 8);
    Put(out + 8 * i, u, 8);
  }
  Put(out + 80, r.length, 4);
  std::memcpy(out + 84, r.name, 40);
}

void Decode_Record(const unsigned char* in, tagCrossRecord& r) {
  double v[10];
  for (int i = 0; i < 10; ++i) {
    uint64_t u = Get(in + 8 * i, 8);
    std::memcpy(&v[i], &u, 8);
  }
  std::memcpy(&r.params, v, sizeof v);
  r.length = static_cast<uint32_t>(Get(in + 80, 4));
  std::memcpy(r.name, in + 84, 40);
  r.name[39] = 0;
}

void Write_Record(CFile& f, const tagCrossRecord& r) {
  unsigned char b[kCross_Record_Bytes];
  Encode_Record(r, b);
  f.Write(b, kCross_Record_Bytes);
}

bool Read_Record(CFile& f, tagCrossRecord& r) {
  unsigned char b[kCross_Record_Bytes];
  if (f.Read(b, kCross_Record_Bytes) != kCross_Record_Bytes) return false;
  Decode_Record(b, r);
  return true;
}

void Write_U32(CFile& f, uint32_t v) {
  unsigned char b[4];
  Put(b, v, 4);
  f.Write(b, 4);
}

uint64_t Copy_Chunks(CFile& source, CFile& target, unsigned chunk) {
  std::vector<unsigned char> buf(chunk);
  uint64_t total = 0;
  for (;;) {
    UINT n = source.Read(buf.data(), chunk);
    target.Write(buf.data(), n);
    total += n;
    if (n < chunk) return total;
  }
}

uint64_t Copy_Bytes(CFile& source, CFile& target, uint64_t count) {
  std::vector<unsigned char> buf(4096);
  uint64_t total = 0;
  while (total < count) {
    auto want = static_cast<UINT>(std::min<uint64_t>(buf.size(), count - total));
    UINT n = source.Read(buf.data(), want);
    target.Write(buf.data(), n);
    total += n;
    if (n < want) break;
  }
  return total;
}

}  // namespace library_io

using namespace library_io;

namespace {

// Closes the library's file on every way out of an operation.
struct Closer {
  CFile& f;
  ~Closer() { f.Abort(); }
};

}  // namespace

const char CCrossSectionLibrary::m_LibSignature[40] = "ORT ltd. CrossSection Library";
const int CCrossSectionLibrary::m_nMaxSections = 5000;

CCrossSectionLibrary::CCrossSectionLibrary() : m_nCount(0), m_Header{} {}

CCrossSectionLibrary::CCrossSectionLibrary(CString& path) : m_nCount(0), m_Header{} {
  Load(path);
}

CCrossSectionLibrary::CCrossSectionLibrary(CString& ini_file, CString& section, CString& key)
    : m_nCount(0), m_Header{} {
  char buffer[260];
  DWORD n = GetPrivateProfileStringA(section.c_str(), key.c_str(), "deflib.slb", buffer, 260,
                                     ini_file.c_str());
  CString path = n == 0 ? CString("deflib.slb") : CString(buffer, n);
  Load(path);
}

CCrossSectionLibrary::~CCrossSectionLibrary() {
  m_File.Abort();
}

int CCrossSectionLibrary::Load(CString& path) {
  m_strPathName = path;
  if (!LoadLibHeader()) {
    m_strPathName.clear();
    m_nCount = 0;
    m_OffsetTable.RemoveAll();
    if (OpenFile(path.c_str(), nullptr, OF_EXIST) == HFILE_ERROR) {
      CString description = "Default library";
      return CreateNew(path, description);
    }
    return 0;
  }
  m_nCount = m_Header.sections;
  return 1;
}

int CCrossSectionLibrary::LoadLibHeader() {
  if (!m_File.Open(m_strPathName.c_str(), CFile::modeRead | CFile::shareDenyNone)) return 0;
  Closer close{m_File};
  unsigned char b[kLib_Header_Bytes];
  if (m_File.Read(b, kLib_Header_Bytes) != kLib_Header_Bytes) return 0;
  tagLibHeader h;
  Decode_Header(b, h);
  // Every library this format makes keeps its table at 360; a header that
  // says otherwise would point the table's rewrites into the blocks.
  if (std::strncmp(h.signature, m_LibSignature, sizeof h.signature) != 0 ||
      h.table_offset != kTable_Offset) {
    return 0;
  }
  if (h.sections > m_nMaxSections) h.sections = static_cast<uint16_t>(m_nMaxSections);
  std::vector<unsigned char> table(4 * static_cast<size_t>(h.sections));
  m_File.Seek(kTable_Offset, CFile::begin);
  if (!table.empty() &&
      m_File.Read(table.data(), static_cast<UINT>(table.size())) != table.size()) {
    return 0;
  }
  m_OffsetTable.SetSize(h.sections);
  for (int i = 0; i < h.sections; ++i) {
    const unsigned char* p = &table[4 * static_cast<size_t>(i)];
    m_OffsetTable[i] = DWORD{p[0]} | (DWORD{p[1]} << 8) | (DWORD{p[2]} << 16) | (DWORD{p[3]} << 24);
  }
  m_Header = h;
  return 1;
}

int CCrossSectionLibrary::CreateNew(CString& path, CString& description) {
  if (!m_File.Open(path.c_str(), CFile::modeCreate | CFile::modeReadWrite)) return 0;
  Closer close{m_File};
  m_Header = tagLibHeader{};
  std::memcpy(m_Header.signature, m_LibSignature, sizeof m_LibSignature);
  size_t n = std::min(description.size(), sizeof m_Header.description - 1);
  std::memcpy(m_Header.description, description.data(), n);
  SetModified();
  m_Header.sections = 0;
  m_Header.type_flag = 1;
  m_Header.type = 0;
  m_Header.table_offset = kTable_Offset;
  Write_Header(m_File, m_Header);
  m_File.SetLength(kTable_Offset + 4ull * m_nMaxSections);
  m_File.Close();
  m_strPathName = path;
  m_OffsetTable.RemoveAll();
  m_nCount = 0;
  return 1;
}

int CCrossSectionLibrary::GetSection(CCrossSection& section, int index) {
  if (index < 0 || index > m_nCount) return 0;
  if (!m_File.Open(m_strPathName.c_str(), CFile::modeRead | CFile::shareDenyNone)) return 0;
  Closer close{m_File};
  DWORD offset = m_OffsetTable[index];  // the count itself throws here, as it always has
  m_File.Seek(offset, CFile::begin);
  tagCrossRecord r;
  if (!Read_Record(m_File, r)) return 0;
  unsigned char head[14];
  if (m_File.Read(head, 14) != 14) return 0;
  DWORD size =
      DWORD{head[2]} | (DWORD{head[3]} << 8) | (DWORD{head[4]} << 16) | (DWORD{head[5]} << 24);
  m_File.Seek(uint64_t{offset} + kCross_Record_Bytes + size, CFile::begin);
  section.m_GeomParams = r.params;
  std::memcpy(section.m_szName, r.name, sizeof section.m_szName);
  section.Read(m_File);
  return 1;
}

int CCrossSectionLibrary::GetSectionNames(CStringArray& names, int first, int last) {
  names.clear();
  if (m_nCount == 0) return 0;
  if (first < 0) first = 0;
  if (last < 0 || last >= m_nCount) last = m_nCount - 1;
  if (last < first) std::swap(first, last);
  if (first >= m_nCount) return 0;
  if (!m_File.Open(m_strPathName.c_str(), CFile::modeRead | CFile::shareDenyNone)) return 0;
  Closer close{m_File};
  for (int i = first; i <= last; ++i) {
    m_File.Seek(m_OffsetTable[i], CFile::begin);
    tagCrossRecord r;
    if (!Read_Record(m_File, r)) r.name[0] = 0;
    names.push_back(r.name);
  }
  return 1;
}

int CCrossSectionLibrary::GetGeometryParams(int index, tagGeometryParams& params) {
  params = tagGeometryParams();
  if (index < 0 || index >= m_nCount) return 0;
  if (!m_File.Open(m_strPathName.c_str(), CFile::modeRead | CFile::shareDenyNone)) return 0;
  Closer close{m_File};
  m_File.Seek(m_OffsetTable[index], CFile::begin);
  tagCrossRecord r;
  if (!Read_Record(m_File, r)) return 0;
  params = r.params;
  return 1;
}

int CCrossSectionLibrary::SetGeometryParams(int index, tagGeometryParams& params) {
  if (index < 0 || index >= m_nCount) return 0;
  if (!m_File.Open(m_strPathName.c_str(), CFile::modeWrite)) return 0;
  Closer close{m_File};
  m_File.Seek(m_OffsetTable[index], CFile::begin);
  tagCrossRecord r;
  r.params = params;
  unsigned char b[kCross_Record_Bytes];
  Encode_Record(r, b);
  m_File.Write(b, 80);
  return 1;
}

int CCrossSectionLibrary::GetPreviewBitmap(CDIBitmap& dib, int index) {
  if (index < 0 || index >= m_nCount) return 0;
  if (!m_File.Open(m_strPathName.c_str(), CFile::modeRead | CFile::shareDenyNone)) return 0;
  Closer close{m_File};
  m_File.Seek(uint64_t{m_OffsetTable[index]} + kCross_Record_Bytes, CFile::begin);
  return dib.Load(m_File);
}

int CCrossSectionLibrary::SaveLibDescription() {
  if (!m_File.Open(m_strPathName.c_str(), CFile::modeWrite)) return 0;
  Closer close{m_File};
  SetModified();
  Write_Header(m_File, m_Header);
  return 1;
}

int CCrossSectionLibrary::SetModified() {
  char text[128] = {};
  std::time_t now = std::time(nullptr);
  std::tm local{};
  if (!localtime_r(&now, &local) || std::strftime(text, sizeof text, "%B %d, %Y", &local) == 0) {
    text[0] = 0;
  }
  std::memset(m_Header.date, 0, sizeof m_Header.date);
  std::memcpy(m_Header.date, text, strnlen(text, sizeof m_Header.date - 1));
  return 1;
}

DWORD CCrossSectionLibrary::GetFileSize() {
  if (m_strPathName.empty()) return 0;
  CFile f(m_strPathName.c_str(), CFile::modeRead | CFile::shareDenyNone);
  return static_cast<DWORD>(f.GetLength());
}

void CCrossSectionLibrary::GetLibName(CString& name) const {
  name = GetLibName();
}

CString CCrossSectionLibrary::GetLibName() const {
  size_t cut = m_strPathName.find_last_of("\\/");
  return cut == CString::npos ? m_strPathName : m_strPathName.substr(cut + 1);
}

const CString& CLibraryDialog::SetCaption() {
  char prefix[256] = {};
  LoadStringA(nullptr, 20023, prefix, sizeof prefix);
  m_strCaption = prefix + (m_pLibrary ? m_pLibrary->GetLibName() : CString());
  return m_strCaption;
}
