#include "kit/base/MappedFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "kit/base/OdError.h"

namespace {

[[noreturn]] void failOpen(const std::string& path, int error) {
  std::string text = "Cannot open \"" + path + "\": " + std::strerror(error);
  OdResult code = (error == ENOENT || error == ENOTDIR) ? eFileNotFound : eCantOpenFile;
  throw OdError(code, OdString(odDecodeUtf8(text.data(), text.size())));
}

struct FileDescriptor {
  int fd;
  ~FileDescriptor() {
    if (fd >= 0) ::close(fd);
  }
};

}  // namespace

MappedFile::~MappedFile() {
  if (mapping_) ::munmap(mapping_, size_);
}

void MappedFile::open(const std::string& pathUtf8) {
  FileDescriptor file{::open(pathUtf8.c_str(), O_RDONLY | O_CLOEXEC)};
  if (file.fd < 0) failOpen(pathUtf8, errno);
  struct stat info {};
  if (::fstat(file.fd, &info) != 0) failOpen(pathUtf8, errno);
  if (S_ISDIR(info.st_mode)) failOpen(pathUtf8, EISDIR);
  if (S_ISREG(info.st_mode)) {
    size_ = size_t(info.st_size);
    if (size_ == 0) {
      data_ = "";
      return;
    }
    void* m = ::mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, file.fd, 0);
    if (m != MAP_FAILED) {
      ::madvise(m, size_, MADV_SEQUENTIAL);
      mapping_ = m;
      data_ = static_cast<const char*>(m);
      return;
    }
  }
  // Pipes and files that cannot be mapped are read into memory.
  buffer_.clear();
  char chunk[65536];
  for (;;) {
    ssize_t n = ::read(file.fd, chunk, sizeof chunk);
    if (n < 0) {
      if (errno == EINTR) continue;
      failOpen(pathUtf8, errno);
    }
    if (n == 0) break;
    buffer_.insert(buffer_.end(), chunk, chunk + n);
  }
  data_ = buffer_.data();
  size_ = buffer_.size();
}

void MappedFile::releaseBefore(size_t offset) {
  if (!mapping_) return;
  const size_t page = size_t(::sysconf(_SC_PAGESIZE));
  size_t end = (offset / page) * page;
  if (end <= released_) return;
  ::madvise(static_cast<char*>(mapping_) + released_, end - released_, MADV_DONTNEED);
  released_ = end;
}
