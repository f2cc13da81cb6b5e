#include "projects/common/LayerList.h"

std::vector<OdString> SplitLayerList(const OdString& list) {
  std::vector<OdString> names;
  const std::wstring& text = list.str();
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t end = text.find(L';', start);
    if (end == std::wstring::npos) end = text.size();
    if (end > start) names.emplace_back(text.substr(start, end - start));
    start = end + 1;
  }
  return names;
}
