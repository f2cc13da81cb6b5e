// An ordered list of directories to look for files in: each entry ends in a separator, none
// appears twice, and every addition is traced under the list's own label.
#pragma once

#include <vector>

#include "kit/base/OdString.h"

class SearchPathList {
public:
  explicit SearchPathList(const char* traceLabel) : traceLabel_(traceLabel) {}

  // Adds the directory with "/" appended when it ends in neither "/" nor "\"; an empty path and a
  // directory already listed are left out.
  void Add(const OdString& path);
  // Replaces the list with the ";"-separated pieces of the text, in order.
  void Replace(const OdString& list);
  // Adds the ";"-separated pieces of the text, in order.
  void AddAll(const OdString& list);
  void Clear() { directories_.clear(); }

  const std::vector<OdString>& Directories() const { return directories_; }
  int Count() const { return static_cast<int>(directories_.size()); }

private:
  const char* traceLabel_;
  std::vector<OdString> directories_;
};

// The directory part of a path: the text up to and including the later of the last "/" and the
// last "\"; empty when there is no separator.
OdString DirectoryPart(const OdString& path);
// The file name after that separator (the whole text when there is none).
OdString BareFileName(const OdString& path);
