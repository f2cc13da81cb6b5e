#include <sys/stat.h>

#include <fstream>

#include "projects/common/CommonRoutines.h"

std::size_t ReadWholeFile(const std::string& path, std::string& content) {
  // A directory opens as a stream too, and then reports a nonsense length.
  struct stat info {};
  if (stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return 0;
  std::ifstream in(path, std::ios::binary);
  if (!in) return 0;
  in.seekg(0, std::ios::end);
  std::streamoff length = in.tellg();
  if (length <= 0) return 0;
  in.seekg(0, std::ios::beg);
  content.assign(static_cast<std::size_t>(length), '\0');
  in.read(content.data(), length);
  content.resize(static_cast<std::size_t>(in.gcount()));
  return content.size();
}

std::size_t ReadWholeFile(const OdString& path, std::string& content) {
  std::string utf8;
  return ReadWholeFile(OdStringToUtf8(utf8, path), content);
}

bool ExtractJsonObject(const std::string& text, std::string& object) {
  std::size_t start = text.find('{');
  if (start == std::string::npos) return false;
  int depth = 0;
  for (std::size_t i = start; i < text.size(); ++i) {
    if (text[i] == '{') ++depth;
    if (text[i] != '}') continue;
    if (--depth < 1) {
      object = text.substr(start, i - start + 1);
      return true;
    }
  }
  return false;
}
