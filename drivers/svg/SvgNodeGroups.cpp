// Block groups around the content of blocks with hyperlinks or handles: a link anchor, or a "g"
// element with the block's name as class and a numbered "Block_" id.
#include <exception>

#include "drivers/svg/DRAWSVG.h"
#include "drivers/svg/SvgXmlText.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

bool StartsWithNode(const OdString& name) { return name.left(5) == OdString(L"NODE_"); }

}  // namespace

void DRAWSVG::OpenNodeGroup(const OdString& name, const OdString& linkText, const std::string& handle) {
  try {
    m_groupOpen = true;
    // Texts of a block node are written without a group of their own.
    if (name.find(L"TEXTNODE") >= 0) return;
    m_currentGroupName = name;
    m_anchorOpen = true;
    if (!linkText.isEmpty()) {
      std::wstring link = ReplaceAll(linkText.str(), L"\\U+", L"\\u");
      m_out += "<a xlink:href=\"" + XmlText(link, XmlEscapeMode::kAttribute) + "\" target=\"_blank\">\n";
    } else {
      std::string className = XmlText(name.str(), XmlEscapeMode::kAttribute);
      std::string id = "Block_" + m_idPostfix + className + "_" + std::to_string(++m_blockCounter);
      if (handle.empty()) {
        m_out += "<g class=\"" + className + "\" id=\"" + id + "\">\n";
      } else {
        m_out += "<g class=\"" + className + " vtrl_block\" vtrl:handle='" + XmlText(handle, XmlEscapeMode::kAttribute) +
                 "' id=\"" + id + "\">\n";
      }
    }
    if (StartsWithNode(name)) m_nodeFlag = true;
  } catch (const std::exception&) {
    TraceMessage("Error in BeginGroup", name);
  }
}

void DRAWSVG::CloseNodeGroup(const OdString& name, bool anchor) {
  try {
    m_groupOpen = false;
    if (StartsWithNode(name)) m_nodeFlag = false;
    if (!m_anchorOpen) return;
    m_currentGroupName.empty();
    m_anchorOpen = false;
    m_out += anchor ? "</a>\n" : "</g>\n";
  } catch (const std::exception&) {
    TraceMessage("Error in EndGroup", name);
  }
}
