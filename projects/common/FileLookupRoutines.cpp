#include <dirent.h>

#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

std::string upperCased(std::string text) {
  MakeUpperInPlace(text);
  return text;
}

// Names of the directory's entries equal to wantedUpper without regard to case, among those the
// filter accepts. False (with the message) when the directory cannot be read.
template <typename Accept>
bool matchingEntries(const std::string& directory, const std::string& wantedUpper, Accept accept,
                     std::vector<std::string>& matches) {
  DIR* dir = opendir(directory.c_str());
  if (!dir) {
    PrintMessage("Unable to open directory", directory.c_str());
    return false;
  }
  while (const dirent* entry = readdir(dir)) {
    std::string name = entry->d_name;
    if (upperCased(name) == wantedUpper && accept(name)) matches.push_back(name);
  }
  closedir(dir);
  return true;
}

bool endsWithSeparator(const std::string& path) {
  return !path.empty() && (path.back() == '/' || path.back() == '\\');
}

}  // namespace

bool FindFileNoCase(const std::string& path, std::string& result) {
  if (fileExists(path)) {
    result = path;
    return true;
  }
  std::string directory, baseName, extension;
  SplitPath(path, directory, baseName, extension);
  // The name as written after the directory, so a name without extension is looked up without a dot.
  std::string wanted = upperCased(path.substr(directory.size()));
  const bool inCurrentDirectory = directory.empty();
  const std::string searched = inCurrentDirectory ? std::string(".") : directory;
  std::vector<std::string> matches;
  if (!matchingEntries(searched, wanted, [](const std::string&) { return true; }, matches)) return false;
  if (matches.empty()) return false;
  if (matches.size() > 1) {
    PrintMessage("Multiple matching files found", path.c_str());
    return false;
  }
  result = (searched == "." ? std::string("./") : searched) + matches.front();
  return true;
}

bool FindDirectoryNoCase(const std::string& directory, const std::string& name, std::string& result) {
  std::string parent = directory.empty() ? std::string("/") : directory;
  std::string prefix = endsWithSeparator(parent) ? parent : parent + "/";
  if (IsDirectory(prefix + name)) {
    result = prefix + name;
    return true;
  }
  std::vector<std::string> matches;
  auto isSubdirectory = [&prefix](const std::string& entry) { return IsDirectory(prefix + entry); };
  if (!matchingEntries(parent, upperCased(name), isSubdirectory, matches)) return false;
  if (matches.empty()) return false;
  if (matches.size() > 1) {
    PrintMessage("Multiple matching files found", (prefix + name).c_str());
    return false;
  }
  result = prefix + matches.front();
  return true;
}
