#include "services/SearchPathList.h"

#include <algorithm>
#include <string>

#include "services/Trace.h"

namespace {

bool endsWithSeparator(const std::wstring& path) {
  return !path.empty() && (path.back() == L'/' || path.back() == L'\\');
}

std::wstring::size_type lastSeparator(const std::wstring& path) { return path.find_last_of(L"/\\"); }

}  // namespace

void SearchPathList::Add(const OdString& path) {
  std::wstring directory = path.str();
  if (directory.empty()) return;
  if (!endsWithSeparator(directory)) directory += L'/';
  const OdString entry(directory);
  if (std::find(directories_.begin(), directories_.end(), entry) != directories_.end()) return;
  TraceMessage(traceLabel_, entry);
  directories_.push_back(entry);
}

void SearchPathList::Replace(const OdString& list) {
  Clear();
  AddAll(list);
}

void SearchPathList::AddAll(const OdString& list) {
  const std::wstring& text = list.str();
  std::wstring::size_type start = 0;
  for (;;) {
    const auto end = text.find(L';', start);
    Add(OdString(text.substr(start, end == std::wstring::npos ? std::wstring::npos : end - start)));
    if (end == std::wstring::npos) return;
    start = end + 1;
  }
}

OdString DirectoryPart(const OdString& path) {
  const auto separator = lastSeparator(path.str());
  return separator == std::wstring::npos ? OdString() : OdString(path.str().substr(0, separator + 1));
}

OdString BareFileName(const OdString& path) {
  const auto separator = lastSeparator(path.str());
  return separator == std::wstring::npos ? path : OdString(path.str().substr(separator + 1));
}
