// Text intake: drop rules, content rewriting for the viewer, and font groups per font and height.
#include <cmath>
#include <string>

#include "drivers/TRANS_BASE2.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

// Each step replaces every occurrence, in this order. The "**" placeholders keep the escapes the
// kit made ("\U+XXXX", "\'" and "\"") apart while every other backslash is doubled for the viewer.
const wchar_t* const kRewriteSteps[][2] = {
    {L"%2Edwg", L".dwg"}, {L"%2Edxf", L".dxf"}, {L"%2Edgn", L".dgn"}, {L"\\'", L"'"},
    {L"\\\"", L"\""},     {L"''", L"\""},       {L"\\(", L"("},       {L"\\)", L")"},
    {L"\\U+", L"**u"},    {L"\\'", L"**'"},     {L"\\\"", L"**\""},   {L"\\", L"\\\\"},
    {L"**u", L"\\u"},     {L"**'", L"\\'"},     {L"**\"", L"\\\""},   {L"\\\\M+19900", L"\\u2122"},
};

bool referencesDrawingFile(const std::wstring& text) {
  if (text.find(L"xref") == std::wstring::npos) return false;
  std::size_t dwg = text.find(L".dwg");
  return dwg != std::wstring::npos && dwg > 0;
}

}  // namespace

OdString RewriteTextContent(const OdString& content) {
  std::wstring text = content.str();
  for (const auto& step : kRewriteSteps) text = ReplaceAll(text, step[0], step[1]);
  return OdString(std::move(text));
}

void TRANS_BASE2::SetFont(const std::string& fontName, double height) {
  try {
    std::string name = EqualsNoCase(fontName, "txt") ? m_defaultFontName : fontName;
    if (m_currentFontGroup && m_fontGroupOwner == m_currentGroup && m_currentFontGroup->fontName == name &&
        m_currentFontGroup->height == height)
      return;
    m_currentFontGroup = nullptr;
    m_fontGroupOwner = m_currentGroup;
    if (!m_currentGroup) return;
    for (auto& group : m_currentGroup->fontGroups) {
      if (group.fontName == name && group.height == height) {
        m_currentFontGroup = &group;
        return;
      }
    }
    m_currentGroup->fontGroups.push_back({name, height, false, {}});
    m_currentFontGroup = &m_currentGroup->fontGroups.back();
  } catch (...) {
    TraceMessage("Error in SetFont");
  }
}

// A text widens the extents by the box it covers (its length estimated from the characters), so
// that a view holding only texts still has a page to be written on.
void TRANS_BASE2::ExtendTextExtents(const DrvText& text, double height, std::size_t characters) {
  const double length = 0.6 * height * text.widthFactor * static_cast<double>(characters);
  const double angle = text.rotation * M_PI / 180.0;
  const double ux = std::cos(angle), uy = std::sin(angle);
  const double x = text.position.x, y = text.position.y;
  ExtendExtents(x, y);
  ExtendExtents(x + length * ux, y + length * uy);
  ExtendExtents(x - height * uy, y + height * ux);
  ExtendExtents(x + length * ux - height * uy, y + length * uy + height * ux);
}

int TRANS_BASE2::DrawText(const TextRecord& record) {
  try {
    const double height = m_unitScale * record.height;
    if (m_tolerance > height) return 0;
    if (!std::isfinite(record.position.x) || !std::isfinite(record.position.y)) return 0;
    if (referencesDrawingFile(record.text.str())) return 0;
    std::string escaped;
    EscapeNonAscii(escaped, record.text, OdString(L"\\u"), OdString(), false);
    if (escaped.empty()) return 0;

    const std::string fontName = OutputFontFor(record);
    if (!fontName.empty() && fontName == record.fontName && FindSystemFontFile(fontName).empty())
      AddUnmappedFont(fontName);

    SetAttributes();
    SetFont(fontName, height);
    if (!m_currentFontGroup) return 0;

    DrvText text;
    text.position = {record.position.x * m_unitScale, record.position.y * m_unitScale};
    text.text = RewriteTextContent(record.text);
    text.rotation = record.rotation;
    text.widthFactor = record.widthFactor;
    text.decoration = record.decoration;
    text.bold = record.bold;
    text.italic = record.italic;
    text.layerName = m_currentLayerName;
    text.colorIndex = m_currentColor;
    text.handle = m_currentHandle;
    text.attributeTag = record.attributeTag;
    text.blockHandle = record.blockHandle;
    text.invisible = record.invisible;
    ExtendTextExtents(text, height, escaped.size());
    m_currentFontGroup->texts.push_back(std::move(text));
    return 1;
  } catch (...) {
    TraceMessage("Error in DrawText");
    return 0;
  }
}
