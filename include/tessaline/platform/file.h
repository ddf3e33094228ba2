// Files: the framework's file class over POSIX descriptors, its exception,
// profile (INI) strings and the existence test.
//
// A CFile reads and writes raw bytes at its position; every error other than
// a failed Open (which reports through its result) throws CFileException, as
// the framework does. A read at the end of the file delivers fewer bytes and
// does not throw. Paths are 8-bit strings taken as they are (a backslash is
// an ordinary character).
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <vector>

#include "tessaline/export.h"
#include "tessaline/platform/win_types.h"

class TESSALINE_API CFileException : public std::exception {
 public:
  enum {
    none = 0,
    genericException = 1,
    fileNotFound = 2,
    badPath = 3,
    tooManyOpenFiles = 4,
    accessDenied = 5,
    invalidFile = 6,
    removeCurrentDir = 7,
    directoryFull = 8,
    badSeek = 9,
    hardIO = 10,
    sharingViolation = 11,
    lockViolation = 12,
    diskFull = 13,
    endOfFile = 14,
  };
  CFileException() = default;
  CFileException(int cause, long os_error, const std::string& file)
      : m_cause(cause), m_lOsError(os_error), m_strFileName(file) {}
  const char* what() const noexcept override { return "file exception"; }

  int m_cause = none;
  long m_lOsError = 0;
  std::string m_strFileName;
};

class TESSALINE_API CFile {
 public:
  enum OpenFlags : UINT {
    modeRead = 0x0000,
    modeWrite = 0x0001,
    modeReadWrite = 0x0002,
    shareCompat = 0x0000,
    shareExclusive = 0x0010,
    shareDenyWrite = 0x0020,
    shareDenyRead = 0x0030,
    shareDenyNone = 0x0040,
    modeNoInherit = 0x0080,
    modeCreate = 0x1000,
    modeNoTruncate = 0x2000,
    typeText = 0x4000,
    typeBinary = 0x8000,
  };
  enum SeekPosition { begin = 0, current = 1, end = 2 };

  CFile() = default;
  // Opens or throws CFileException.
  CFile(const char* path, UINT flags);
  virtual ~CFile();
  CFile(const CFile&) = delete;
  CFile& operator=(const CFile&) = delete;

  // Opens the file: modeCreate makes it (truncating unless modeNoTruncate).
  // FALSE on failure, with the cause in `error` when given. A file object
  // holds one file at a time: opening an open object fails.
  virtual BOOL Open(const char* path, UINT flags, CFileException* error = nullptr);
  // Up to `count` bytes; fewer at the end of the file.
  virtual UINT Read(void* buffer, UINT count);
  virtual void Write(const void* buffer, UINT count);
  // The new position from the start. Seeking before the start throws.
  virtual uint64_t Seek(int64_t offset, UINT from);
  void SeekToBegin() { Seek(0, begin); }
  uint64_t SeekToEnd() { return Seek(0, end); }
  virtual uint64_t GetLength() const;
  virtual uint64_t GetPosition() const;
  // Truncates or extends (with zero bytes) the file.
  virtual void SetLength(uint64_t length);
  // Makes what was written durable (fsync).
  virtual void Flush();
  // Closes; an error while closing throws.
  virtual void Close();
  // Closes without throwing.
  virtual void Abort();
  const std::string& GetFilePath() const { return path_; }
  bool IsOpen() const { return fd_ >= 0; }

  static void Remove(const char* path);
  static void Rename(const char* old_path, const char* new_path);

  int m_hFile = -1;  // the descriptor, -1 when closed (mirrors fd_)

 private:
  [[noreturn]] void Throw(int os_error) const;
  int fd_ = -1;
  std::string path_;
};

// A file held in memory, with the same operations (the framework's
// CMemFile): readers run over it without system calls. Faults are not
// injected here.
class TESSALINE_API CMemFile : public CFile {
 public:
  CMemFile() = default;
  CMemFile(const void* data, size_t size);
  UINT Read(void* buffer, UINT count) override;
  void Write(const void* buffer, UINT count) override;
  uint64_t Seek(int64_t offset, UINT from) override;
  uint64_t GetLength() const override { return data_.size(); }
  uint64_t GetPosition() const override { return pos_; }
  void SetLength(uint64_t length) override;
  void Flush() override {}
  void Close() override {}
  void Abort() override {}
  const std::vector<unsigned char>& Data() const { return data_; }

 private:
  std::vector<unsigned char> data_;
  uint64_t pos_ = 0;
};

// Fault injection for tests: the n-th operation of a kind from now (1 = the
// next one) fails as a full disk or a hardware error would, throwing
// CFileException without touching the file; 0 disarms. Writes and SetLength
// count as writes.
enum class File_Fault { write, read, rename };
TESSALINE_API void SetFileFault(File_Fault kind, long n);
// The number of operations of a kind made since the process started.
TESSALINE_API long FileOperationCount(File_Fault kind);

// ---------------------------------------------------------------------------
// Profile strings and the existence test.

// The value of `key` in the [section] of the INI file, copied into `out`
// (at most size - 1 characters and a NUL); the default when the file, the
// section or the key is missing. Returns the number of characters copied.
// Section and key names compare without regard to case; surrounding blanks
// are dropped, and a value in matching quotes loses them.
TESSALINE_API DWORD GetPrivateProfileStringA(const char* section, const char* key,
                                             const char* default_value, char* out, DWORD size,
                                             const char* file);

struct OFSTRUCT {
  BYTE cBytes;
  BYTE fFixedDisk;
  WORD nErrCode;
  WORD Reserved1;
  WORD Reserved2;
  char szPathName[128];
};
constexpr UINT OF_READ = 0x0000;
constexpr UINT OF_EXIST = 0x4000;
constexpr int HFILE_ERROR = -1;

// OF_EXIST only: 1 when the file exists and can be opened for reading, else
// HFILE_ERROR. Other modes give HFILE_ERROR.
TESSALINE_API int OpenFile(const char* path, OFSTRUCT* info, UINT style);
