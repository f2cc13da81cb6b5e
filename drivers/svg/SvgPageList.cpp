// The page list of files already written: a run learns only at its end which of its views held
// something to draw, so the files that listed a view that was left out get their list rewritten.
#include <fstream>
#include <iterator>
#include <string>

#include "drivers/svg/SvgHeaderText.h"

bool ReplacePageList(const std::string& path, const std::vector<SvgPageEntry>& pages, int currentPage) {
  std::string text;
  {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    text.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  static const std::string kOpening = "<text id=\"vistrel_multiPages";
  static const std::string kClosing = "</text>\n";
  const std::size_t start = text.find(kOpening);
  if (start == std::string::npos) return false;
  const std::size_t idEnd = text.find('"', start + kOpening.size());
  const std::size_t end = text.find(kClosing, start);
  if (idEnd == std::string::npos || end == std::string::npos) return false;
  const std::string idTail = text.substr(start + kOpening.size(), idEnd - start - kOpening.size());
  std::string list;
  AppendPageList(list, pages, currentPage, idTail);
  text.replace(start, end + kClosing.size() - start, list);
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
  return static_cast<bool>(out);
}
