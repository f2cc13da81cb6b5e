#include "kit/host/OdDbHostAppServices.h"

#include <sys/stat.h>

#include <string>

namespace {

std::string ToUtf8(const OdString& text) {
  std::string out;
  for (const OdChar* p = text.c_str(); *p; ++p) {
    const auto c = static_cast<char32_t>(*p);
    if (c < 0x80) {
      out += static_cast<char>(c);
    } else if (c < 0x800) {
      out += static_cast<char>(0xC0 | (c >> 6));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      out += static_cast<char>(0xE0 | (c >> 12));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
      out += static_cast<char>(0xF0 | (c >> 18));
      out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return out;
}

}  // namespace

OdString OdDbHostAppServices::findFile(const OdString& fileName, OdDbDatabase*, int) {
  struct stat info {};
  if (fileName.isEmpty() || stat(ToUtf8(fileName).c_str(), &info) != 0 || !S_ISREG(info.st_mode)) {
    return OdString();
  }
  return fileName;
}
