// Read-only access to a whole file as one byte range: mapped into memory when possible (no copy,
// pages are read on first touch), read into a buffer otherwise. Readers parse straight from it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class MappedFile {
public:
  MappedFile() = default;
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;
  ~MappedFile();

  // Opens and maps the file. Throws OdError: eFileNotFound when it does not exist, eCantOpenFile
  // when it cannot be read (a directory, no permission).
  void open(const std::string& pathUtf8);

  std::string_view bytes() const { return {data_, size_}; }
  size_t size() const { return size_; }
  // Tells the system that the bytes before `offset` will not be read again, so their pages can
  // leave memory (they are read back from the file if touched after all).
  void releaseBefore(size_t offset);

private:
  const char* data_ = nullptr;
  size_t size_ = 0;
  void* mapping_ = nullptr;
  size_t released_ = 0;
  std::vector<char> buffer_;
};
