#include "projects/common/CommonRoutines.h"

namespace {

// Extensions are at most five characters long, counted with their dot.
constexpr int kExtensionLimit = 6;

OdString lastExtension;
OdString lastBaseName;

template <typename Text>
int laterSeparator(const Text& path, typename Text::value_type backslash, typename Text::value_type slash) {
  auto b = path.rfind(backslash);
  auto s = path.rfind(slash);
  if (b == Text::npos && s == Text::npos) return -1;
  if (b == Text::npos) return static_cast<int>(s);
  if (s == Text::npos) return static_cast<int>(b);
  return static_cast<int>(b > s ? b : s);
}

// The dot of a short extension, or -1.
int shortExtensionDot(const OdString& path) {
  int dot = path.reverseFind(L'.');
  if (dot < 0 || path.getLength() - dot >= kExtensionLimit) return -1;
  return dot;
}

}  // namespace

int LastSeparator(const OdString& path) {
  // "UUU" has the length of "\U+", so indexes stay those of the path.
  return laterSeparator(ReplaceAll(path.str(), L"\\U+", L"UUU"), L'\\', L'/');
}

int LastSeparator(const std::string& path) {
  std::string copy = path;
  ReplaceAll(copy, "\\U+", "UUU");
  return laterSeparator(copy, '\\', '/');
}

void SplitPath(const std::string& path, std::string& directory, std::string& baseName, std::string& extension) {
  int separator = LastSeparator(path);
  std::size_t nameStart = separator < 0 ? 0 : static_cast<std::size_t>(separator) + 1;
  directory = path.substr(0, nameStart);
  std::string name = path.substr(nameStart);
  std::size_t dot = name.rfind('.');
  baseName = dot == std::string::npos ? name : name.substr(0, dot);
  extension = dot == std::string::npos ? std::string() : name.substr(dot + 1);
}

bool PathSeparatorOf(const OdString& path, OdChar& separator) {
  int b = path.reverseFind(L'\\');
  int s = path.reverseFind(L'/');
  if (b < 0 && s < 0) {
    separator = L'/';
    return false;
  }
  separator = b > s ? L'\\' : L'/';
  return true;
}

OdString GetFileExtension(const OdString& path) {
  int dot = shortExtensionDot(path);
  lastExtension = dot < 0 ? OdString() : path.mid(dot + 1);
  if (!lastExtension.isEmpty() && lastExtension.getAt(lastExtension.getLength() - 1) == L'"')
    lastExtension = lastExtension.left(lastExtension.getLength() - 1);
  return lastExtension;
}

OdString GetFileBaseName(const OdString& path) {
  int dot = shortExtensionDot(path);
  OdString name = dot < 0 ? path : path.left(dot);
  int separator = LastSeparator(name);
  lastBaseName = separator > 0 ? name.mid(separator + 1) : name;
  return lastBaseName;
}
