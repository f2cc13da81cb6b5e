#include "kit/gi/acis/AcisEntityData.h"

#include <cctype>

namespace {

// The text lines as stored; long lines go on in groups of code 3. The text ends where another
// subclass starts.
std::vector<std::string> satLines(const TaggedValues& data) {
  std::vector<std::string> lines;
  bool started = false;
  for (const TaggedValue& v : data) {
    if (v.code == 100 && started) break;
    if (v.code == 1) {
      lines.push_back(v.text);
      started = true;
    } else if (v.code == 3 && started) {
      lines.back() += v.text;
    }
  }
  return lines;
}

}  // namespace

AcisModel acisModelOf(const ModelerGeometryEntity& entity) {
  if (!entity.acisBinary.empty()) return readAcisBinary(entity.acisBinary);
  std::vector<std::string> lines = satLines(entity.data);
  if (lines.empty()) return {};
  std::vector<std::string_view> views(lines.begin(), lines.end());
  // Drawings keep the text enciphered; plain text (some writers) starts with the version number.
  bool plain = !lines[0].empty() && std::isdigit(static_cast<unsigned char>(lines[0][0]));
  return readAcisText(views, !plain);
}
