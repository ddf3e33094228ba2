// The section library: named sections in one binary file (".slb"), each a
// block of a fixed record (ten parameters, block length, name), a 100 x 100
// preview bitmap and the section's own geometry data.
//
// File layout, little-endian, written field by field:
//
//   0      360 bytes  tagLibHeader
//   360    20000      offset table: entry i is the file offset of section i's
//                     block; only the first "number of sections" entries count
//   20360  ...        section blocks, one after another, in no particular order
//
// A block at offset O: 0 the ten parameters (80 bytes), 80 the block length
// (4), 84 the name (40, NUL-terminated), 124 the preview in the bitmap file
// layout ("BM" header whose size field n covers the whole bitmap), 124 + n
// the section's own data as its Write produces them.
//
// The object opens the file for each operation and closes it before
// returning; between calls only the header and the offset table live in
// memory. A failed open makes an operation return 0; read and write errors
// during an operation throw CFileException, and an index that the offset
// table does not hold, where the operations below say so, throws
// std::out_of_range (the framework's invalid-argument exception).
//
// The editing operations (AddSection, ReplaceSection, RemoveSection) work in
// place and are kept exactly as the library has always behaved, including
// two known losses: a 5001st section's table entry lands on the start of the
// first block, and growing a section that is not the last loses the old
// file's last d bytes (d the growth) because the moving window starts one
// chunk below the old end and reads d bytes lower. Programs of our own use
// the Safe* operations instead, which lose nothing and leave either the old
// or the new library whole whatever fails.
#pragma once

#include <cstdint>
#include <string>

#include "tessaline/export.h"
#include "tessaline/library/dibitmap.h"
#include "tessaline/library/section.h"
#include "tessaline/platform/file.h"
#include "tessaline/platform/framework.h"

// The library header as it stands in the file (360 bytes).
struct TESSALINE_API tagLibHeader {
  char signature[48];  // NUL-terminated
  uint8_t type_flag;   // 1 when `type` is valid
  uint8_t type;
  char description[256];  // NUL-terminated
  uint16_t sections;
  char date[48];  // last change, "%B %d, %Y" in local time
  uint32_t table_offset;
};
static_assert(sizeof(tagLibHeader) == 360, "the library header is 360 bytes");

// A section's fixed record: 124 bytes in the file (in memory padded).
struct TESSALINE_API tagCrossRecord {
  tagGeometryParams params;
  uint32_t length;  // of the whole block: record, bitmap and data
  char name[40];    // NUL-terminated, at most 39 characters

  tagCrossRecord() : length(0), name{} {}
};

// Sizes of the file's parts.
inline constexpr uint32_t kLib_Header_Bytes = 360;
inline constexpr uint32_t kCross_Record_Bytes = 124;

class TESSALINE_API CCrossSectionLibrary {
 public:
  static const char m_LibSignature[40];  // "ORT ltd. CrossSection Library"
  static const int m_nMaxSections;       // 5000

  // Clears the header; loads nothing.
  CCrossSectionLibrary();
  // Load(path).
  explicit CCrossSectionLibrary(CString& path);
  // The path from the profile: GetPrivateProfileStringA(section, key,
  // "deflib.slb", ...), "deflib.slb" when that gives nothing; then Load.
  CCrossSectionLibrary(CString& ini_file, CString& section, CString& key);
  ~CCrossSectionLibrary();
  CCrossSectionLibrary(const CCrossSectionLibrary&) = delete;
  CCrossSectionLibrary& operator=(const CCrossSectionLibrary&) = delete;

  // Reads the header and the table. A file that does not exist is created
  // as "Default library" (1 when that worked); an existing file that is not
  // a library leaves the object unloaded and the file untouched (0).
  int Load(CString& path);
  // Creates (truncating) an empty library: header, 5000 zero table entries.
  int CreateNew(CString& path, CString& description);

  // Appends a block; 1, or 0 when the scratch file or the library cannot be
  // opened. No test against m_nMaxSections (see above).
  WORD AddSection(CCrossSection& section);
  // Replaces block `index` in place; an index below 0 or above the count
  // adds instead. An index equal to the count throws std::out_of_range.
  int ReplaceSection(CCrossSection& section, int index);
  // Removes block `index`; 0 for an index outside 0 .. count-1.
  int RemoveSection(int index);

  // Reads block `index` (0 <= index <= count; the count itself throws
  // std::out_of_range) into `section`: record, then section.Read.
  int GetSection(CCrossSection& section, int index);
  // The names of sections first .. last (swapped when last < first; a
  // negative first is 0, a negative last or one past the end is count-1).
  int GetSectionNames(CStringArray& names, int first, int last);
  int GetGeometryParams(int index, tagGeometryParams& params);
  int SetGeometryParams(int index, tagGeometryParams& params);
  int GetPreviewBitmap(CDIBitmap& dib, int index);
  // Rewrites the header (with today's date); change the description in it
  // first through GetHeaderForEdit.
  int SaveLibDescription();

  WORD GetCount() const { return static_cast<WORD>(m_nCount); }
  int IsEmpty() const { return m_Header.sections == 0; }
  // The file's length; 0 for an empty path. A failure to open throws.
  DWORD GetFileSize();
  // The path after its last backslash (or slash), or the whole path.
  void GetLibName(CString& name) const;
  CString GetLibName() const;
  void GetPathName(CString& path) const { path = m_strPathName; }
  const tagLibHeader* GetHeader() const { return &m_Header; }
  tagLibHeader* GetHeaderForEdit() { return &m_Header; }
  // The header's section type when its flag is set, else 255.
  BYTE GetSectionType() const { return m_Header.type_flag ? m_Header.type : 255; }

  // ---- The safe path -------------------------------------------------------
  // Each returns 1 or 0 and never throws: on 0, GetLastErrorText says why,
  // the library file is as it was before the call and the object matches
  // it.
  //
  // Appends a section, refusing a 5001st. The block and its table entry go
  // behind everything the header counts; the header is written last, so a
  // failure before it leaves the old library whole.
  int SafeAddSection(CCrossSection& section);
  // Replaces section `index` (0 .. count-1) or removes it: the new library
  // is written to a scratch file beside the library (path + ".$$$") and
  // renamed over it, so the old file stays whole until the rename.
  int SafeReplaceSection(CCrossSection& section, int index);
  int SafeRemoveSection(int index);
  const std::string& GetLastErrorText() const { return m_strError; }

 protected:
  int LoadLibHeader();
  int CreatePreviewBitmap(CDIBitmap& dib, CCrossSection& section);
  int SetModified();

  CArray<DWORD, DWORD> m_OffsetTable;
  CFile m_File;
  CString m_strPathName;
  int m_nCount;
  tagLibHeader m_Header;

 private:
  friend struct Library_Access;
  std::string m_strError;
};

// The host's library dialog: its caption is string resource 20023 followed
// by the library's name.
class TESSALINE_API CLibraryDialog {
 public:
  explicit CLibraryDialog(CCrossSectionLibrary* library) : m_pLibrary(library) {}
  // Sets and returns the caption (the window text a host shows).
  const CString& SetCaption();
  const CString& GetCaption() const { return m_strCaption; }

  CCrossSectionLibrary* m_pLibrary;

 private:
  CString m_strCaption;
};
