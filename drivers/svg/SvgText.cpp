// Texts: grouped by font family and font size so that the viewer can restyle them, each a "text"
// element with its rotation, width factor, decorations and block attribute marks.
#include <cmath>
#include <string_view>

#include "drivers/svg/DRAWSVG.h"
#include "drivers/svg/SvgNumberText.h"
#include "drivers/svg/SvgXmlText.h"

namespace {

// Rendered font size relative to the text height.
constexpr double kFontSizeFactor = 0.9;
// The width factor that needs no scaling.
constexpr double kPlainWidthFactor = 0.9;

bool IsPlainFontName(const std::string& name) {
  if (name.empty()) return false;
  for (char c : name) {
    bool plain = c == ' ' || c == '_' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    if (!plain) return false;
  }
  return true;
}

std::string Attribute(const std::string& text) { return XmlText(text, XmlEscapeMode::kAttribute); }

}  // namespace

std::string DRAWSVG::FontFamily(const std::string& fontName) const {
  std::string family = IsPlainFontName(fontName) ? fontName : Attribute(m_defaultFontName);
  if (family.find(' ') != std::string::npos) family = "'" + family + "'";
  if (family.find("roman") != std::string::npos) return family + ", Times, serif";
  if (family.find("simplex") != std::string::npos) return " arial, Helvetica, sans-serif";
  return family + ", Helvetica, sans-serif";
}

void DRAWSVG::WriteFontGroups(std::deque<DrvFontGroup>& groups) {
  bool familyOpen = false;
  std::string lastFont;
  for (DrvFontGroup& group : groups) {
    if (!familyOpen || group.fontName != lastFont) {
      if (familyOpen) m_out += "</g>\n";
      m_out += "<g style=\"font-family:" + FontFamily(group.fontName) + "; stroke:none; ";
      // White text is drawn black: the output is meant for a white page.
      bool blackOrWhite = m_colourClass == "black" || m_colourClass == "white";
      m_out += blackOrWhite ? std::string("fill:black ;\" >\n") : "fill:" + m_colourClass + ";\" >\n";
      familyOpen = true;
      lastFont = group.fontName;
    }
    m_out += "<g font-size=\"";
    AppendDouble(m_out, kFontSizeFactor * group.height);
    m_out += "\" >\n";
    WriteTexts(group.texts);
    m_out += "</g>\n";
    group.written = true;
    FlushIfLarge();
  }
  if (familyOpen) m_out += "</g>\n";
}

void DRAWSVG::WriteTexts(const std::vector<DrvText>& texts) {
  SvgCoordinates page = PageCoordinates();
  for (const DrvText& text : texts) {
    if (!IsFinitePoint(text.position.x, text.position.y)) continue;
    ++m_textCount;
    AppendElementId("text");
    bool attribute = !text.attributeTag.empty();
    // One class attribute even when a handle layer holds a block attribute.
    if (m_handles || attribute) {
      m_out += "class=\"";
      m_out += m_handles && attribute ? "vtrl_handles vtrl_attribute" : (m_handles ? "vtrl_handles" : "vtrl_attribute");
      m_out += "\" ";
    }
    if (m_handles) m_out += "vtrl:handle='" + Attribute(text.handle) + "' ";
    std::string x = page.XText(text.position.x);
    std::string y = page.YText(text.position.y);
    m_out += "x=\"" + x + "\" y=\"" + y + "\" ";
    double angle = std::isfinite(text.rotation) ? text.rotation : 0;
    double widthFactor = std::isfinite(text.widthFactor) ? text.widthFactor : kPlainWidthFactor;
    if (angle != 0 || widthFactor != kPlainWidthFactor) {
      m_out += "transform=\"";
      if (std::fabs(angle) > 0.01) {
        // SVG turns clockwise, the drawing counter-clockwise.
        m_out += "rotate(" + std::to_string(static_cast<long>(std::fmod(360 - angle, 1e9))) + " " + x + " " + y + ") ";
      }
      if (std::fabs(widthFactor - kPlainWidthFactor) > 0.01) {
        std::string negativeX;
        std::string negativeY;
        AppendCoordinate(negativeX, -page.ShiftX(text.position.x), page.precision());
        AppendCoordinate(negativeY, -page.ShiftY(text.position.y), page.precision());
        // The first translate carries the negated y and the second the positive one: the viewer
        // expects exactly this order of signs.
        m_out += "translate(" + x + " " + negativeY + ") scale(";
        AppendDouble(m_out, widthFactor / kPlainWidthFactor);
        m_out += " 1) translate(" + negativeX + " " + y + ") ";
      }
      m_out += "\" ";
    }
    switch (text.decoration) {
      case 1: m_out += "text-decoration=\"underline\" "; break;
      case 2: m_out += "text-decoration=\"line-through\" "; break;
      case 3: m_out += "text-decoration=\"overline\" "; break;
      default: break;
    }
    if (text.italic) m_out += "font-style=\"italic\" ";
    if (text.bold) m_out += "font-weight=\"bold\" ";
    if (attribute) {
      m_out += "vtrl:tag='" + Attribute(text.attributeTag) + "' vtrl:blockhandle='" + Attribute(text.blockHandle) + "' ";
      if (text.invisible) m_out += "style=\"visibility: hidden;\" ";
    }
    std::string content = XmlText(text.text.str(), XmlEscapeMode::kContent, true);
    m_out += '>';
    m_out += content;
    if (m_doTooltips) m_out += "<title>" + content + "</title>";
    m_out += "</text>\n";
  }
}
