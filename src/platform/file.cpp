// The file class over POSIX descriptors, profile strings and OpenFile.
#include "tessaline/platform/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

namespace {

std::atomic<long> fault_countdown[3];
std::atomic<long> operation_count[3];

// Counts an operation and tells whether the armed fault hits it.
bool Fault_Hits(File_Fault kind) {
  auto k = static_cast<size_t>(kind);
  operation_count[k].fetch_add(1);
  long n = fault_countdown[k].load();
  while (n > 0) {
    if (fault_countdown[k].compare_exchange_weak(n, n - 1)) return n == 1;
  }
  return false;
}

int Cause_Of(int e) {
  switch (e) {
    case ENOENT:
      return CFileException::fileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
      return CFileException::badPath;
    case EMFILE:
    case ENFILE:
      return CFileException::tooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
      return CFileException::accessDenied;
    case EBADF:
      return CFileException::invalidFile;
    case ENOSPC:
    case EFBIG:
      return CFileException::diskFull;
    case EINVAL:
      return CFileException::badSeek;
    case EIO:
      return CFileException::hardIO;
    default:
      return CFileException::genericException;
  }
}

std::string Trim(const std::string& s) {
  size_t a = s.find_first_not_of(" \t\r\n");
  if (a == std::string::npos) return {};
  size_t b = s.find_last_not_of(" \t\r\n");
  return s.substr(a, b - a + 1);
}

bool Same_Name(const std::string& a, const char* b) {
  size_t n = std::strlen(b);
  if (a.size() != n) return false;
  for (size_t i = 0; i < n; ++i) {
    if (std::tolower(static_cast<unsigned char>(a[i])) !=
        std::tolower(static_cast<unsigned char>(b[i]))) {
      return false;
    }
  }
  return true;
}

}  // namespace

void SetFileFault(File_Fault kind, long n) {
  fault_countdown[static_cast<size_t>(kind)].store(n > 0 ? n : 0);
}

long FileOperationCount(File_Fault kind) {
  return operation_count[static_cast<size_t>(kind)].load();
}

CFile::CFile(const char* path, UINT flags) {
  CFileException e;
  if (!Open(path, flags, &e)) throw e;
}

CFile::~CFile() {
  Abort();
}

void CFile::Throw(int os_error) const {
  throw CFileException(Cause_Of(os_error), os_error, path_);
}

BOOL CFile::Open(const char* path, UINT flags, CFileException* error) {
  auto fail = [&](int cause, int os) {
    if (error) *error = CFileException(cause, os, path ? path : "");
    return FALSE;
  };
  if (fd_ >= 0) return fail(CFileException::genericException, 0);
  if (!path || !*path) return fail(CFileException::badPath, 0);
  int mode =
      (flags & 3) == modeWrite ? O_WRONLY : ((flags & 3) == modeReadWrite ? O_RDWR : O_RDONLY);
  if (flags & modeCreate) {
    mode |= O_CREAT;
    if (!(flags & modeNoTruncate)) mode |= O_TRUNC;
  }
  int fd = ::open(path, mode | O_CLOEXEC, 0644);
  if (fd < 0) return fail(Cause_Of(errno), errno);
  struct stat st;
  if (::fstat(fd, &st) != 0 || S_ISDIR(st.st_mode)) {
    ::close(fd);
    return fail(CFileException::accessDenied, EISDIR);
  }
  fd_ = m_hFile = fd;
  path_ = path;
  return TRUE;
}

UINT CFile::Read(void* buffer, UINT count) {
  if (fd_ < 0) Throw(EBADF);
  if (count == 0) return 0;
  if (!buffer) Throw(EINVAL);
  if (Fault_Hits(File_Fault::read)) Throw(EIO);
  auto* p = static_cast<unsigned char*>(buffer);
  UINT done = 0;
  while (done < count) {
    ssize_t n = ::read(fd_, p + done, count - done);
    if (n < 0) {
      if (errno == EINTR) continue;
      Throw(errno);
    }
    if (n == 0) break;
    done += static_cast<UINT>(n);
  }
  return done;
}

void CFile::Write(const void* buffer, UINT count) {
  if (fd_ < 0) Throw(EBADF);
  if (count == 0) return;
  if (!buffer) Throw(EINVAL);
  if (Fault_Hits(File_Fault::write)) Throw(ENOSPC);
  const auto* p = static_cast<const unsigned char*>(buffer);
  UINT done = 0;
  while (done < count) {
    ssize_t n = ::write(fd_, p + done, count - done);
    if (n < 0) {
      if (errno == EINTR) continue;
      Throw(errno);
    }
    if (n == 0) Throw(ENOSPC);
    done += static_cast<UINT>(n);
  }
}

uint64_t CFile::Seek(int64_t offset, UINT from) {
  if (fd_ < 0) Throw(EBADF);
  int whence =
      from == begin ? SEEK_SET : (from == current ? SEEK_CUR : (from == end ? SEEK_END : -1));
  if (whence < 0) Throw(EINVAL);
  off_t r = ::lseek(fd_, static_cast<off_t>(offset), whence);
  if (r < 0) Throw(errno);
  return static_cast<uint64_t>(r);
}

uint64_t CFile::GetLength() const {
  if (fd_ < 0) Throw(EBADF);
  struct stat st;
  if (::fstat(fd_, &st) != 0) Throw(errno);
  return static_cast<uint64_t>(st.st_size);
}

uint64_t CFile::GetPosition() const {
  if (fd_ < 0) Throw(EBADF);
  off_t r = ::lseek(fd_, 0, SEEK_CUR);
  if (r < 0) Throw(errno);
  return static_cast<uint64_t>(r);
}

void CFile::SetLength(uint64_t length) {
  if (fd_ < 0) Throw(EBADF);
  if (length > static_cast<uint64_t>(INT64_MAX)) Throw(EFBIG);
  if (Fault_Hits(File_Fault::write)) Throw(ENOSPC);
  if (::ftruncate(fd_, static_cast<off_t>(length)) != 0) Throw(errno);
}

void CFile::Flush() {
  if (fd_ < 0) Throw(EBADF);
  if (::fsync(fd_) != 0) Throw(errno);
}

void CFile::Close() {
  if (fd_ < 0) return;
  int fd = fd_;
  fd_ = m_hFile = -1;
  if (::close(fd) != 0) Throw(errno);
}

void CFile::Abort() {
  if (fd_ < 0) return;
  ::close(fd_);
  fd_ = m_hFile = -1;
}

void CFile::Remove(const char* path) {
  if (!path || ::unlink(path) != 0) {
    int e = path ? errno : EINVAL;
    throw CFileException(Cause_Of(e), e, path ? path : "");
  }
}

void CFile::Rename(const char* old_path, const char* new_path) {
  if (!old_path || !new_path) throw CFileException(CFileException::badPath, EINVAL, "");
  if (Fault_Hits(File_Fault::rename)) throw CFileException(CFileException::hardIO, EIO, old_path);
  if (::rename(old_path, new_path) != 0) {
    int e = errno;
    throw CFileException(Cause_Of(e), e, old_path);
  }
}

CMemFile::CMemFile(const void* data, size_t size)
    : data_(static_cast<const unsigned char*>(data),
            static_cast<const unsigned char*>(data) + size) {}

UINT CMemFile::Read(void* buffer, UINT count) {
  if (count == 0) return 0;
  if (!buffer) throw CFileException(CFileException::genericException, EINVAL, "");
  if (pos_ >= data_.size()) return 0;
  auto n = static_cast<UINT>(std::min<uint64_t>(count, data_.size() - pos_));
  std::memcpy(buffer, data_.data() + pos_, n);
  pos_ += n;
  return n;
}

void CMemFile::Write(const void* buffer, UINT count) {
  if (count == 0) return;
  if (!buffer) throw CFileException(CFileException::genericException, EINVAL, "");
  if (pos_ + count > data_.size()) data_.resize(pos_ + count);
  std::memcpy(data_.data() + pos_, buffer, count);
  pos_ += count;
}

uint64_t CMemFile::Seek(int64_t offset, UINT from) {
  int64_t base = from == begin ? 0
                               : (from == current ? static_cast<int64_t>(pos_)
                                                  : static_cast<int64_t>(data_.size()));
  if (from > end || offset < -base) throw CFileException(CFileException::badSeek, EINVAL, "");
  pos_ = static_cast<uint64_t>(base + offset);
  return pos_;
}

void CMemFile::SetLength(uint64_t length) {
  if (length > (uint64_t{1} << 31)) throw CFileException(CFileException::diskFull, ENOSPC, "");
  data_.resize(length);
}

DWORD GetPrivateProfileStringA(const char* section, const char* key, const char* default_value,
                               char* out, DWORD size, const char* file) {
  if (!out || size == 0) return 0;
  std::string value = default_value ? default_value : "";
  if (section && key && file) {
    std::ifstream in(file);
    std::string line;
    bool inside = false;
    while (in && std::getline(in, line)) {
      std::string t = Trim(line);
      if (t.empty() || t[0] == ';' || t[0] == '#') continue;
      if (t.front() == '[') {
        size_t close = t.find(']');
        inside = close != std::string::npos && Same_Name(Trim(t.substr(1, close - 1)), section);
        continue;
      }
      size_t eq = t.find('=');
      if (!inside || eq == std::string::npos || !Same_Name(Trim(t.substr(0, eq)), key)) continue;
      value = Trim(t.substr(eq + 1));
      if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
          value.back() == value.front()) {
        value = value.substr(1, value.size() - 2);
      }
      break;
    }
  }
  size_t n = std::min<size_t>(value.size(), size - 1);
  std::memcpy(out, value.data(), n);
  out[n] = 0;
  return static_cast<DWORD>(n);
}

int OpenFile(const char* path, OFSTRUCT* info, UINT style) {
  if (info) std::memset(info, 0, sizeof *info);
  if (!path || !(style & OF_EXIST)) return HFILE_ERROR;
  int fd = ::open(path, O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    if (info) info->nErrCode = static_cast<WORD>(errno);
    return HFILE_ERROR;
  }
  ::close(fd);
  if (info) {
    info->cBytes = sizeof *info;
    std::snprintf(info->szPathName, sizeof info->szPathName, "%s", path);
  }
  return 1;
}
