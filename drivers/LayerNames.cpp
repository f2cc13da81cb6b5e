// Layer names become element ids and class names of the output: a fixed sequence of replacements
// turns every name the driver holds into its standardized form.
#include <sstream>
#include <string>

#include "drivers/TRANS_BASE2.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

const std::wstring kSpecialCharacters = L" ()-.$[]|?@!%^*{}";

// Each special character becomes "&#x" + its code in lower-case hexadecimal + ";", then every "&"
// (those of the escapes included) becomes "_and_". The ids the viewer knows depend on that order.
std::wstring escapeSpecialCharacters(std::wstring name) {
  for (std::size_t at = name.find_first_of(kSpecialCharacters); at != std::wstring::npos;
       at = name.find_first_of(kSpecialCharacters)) {
    const wchar_t c = name[at];
    std::wostringstream escape;
    escape << L"&#x" << std::hex << static_cast<unsigned long>(c) << L";";
    name = ReplaceAll(name, std::wstring(1, c), escape.str());
  }
  return name;
}

}  // namespace

OdString TRANS_BASE2::StandardizeLayerName(const OdString& name) {
  std::wstring text = ReplaceAll(name.str(), L"\\U+", L"\\u");
  text = ReplaceAll(text, L"#", L"_" + kSpecialCharacters);
  text = escapeSpecialCharacters(std::move(text));
  text = ReplaceAll(text, L"&", L"_and_");
  text = ReplaceAll(text, std::wstring(1, wchar_t(198)), L"AE");
  text = ReplaceAll(text, std::wstring(1, wchar_t(223)), L"SS");
  text = ReplaceAll(text, std::wstring(1, wchar_t(230)), L"ae");
  text = ReplaceAll(text, std::wstring(1, wchar_t(216)), L"OE");
  text = ReplaceAll(text, std::wstring(1, wchar_t(248)), L"oe");
  text = ReplaceAll(text, L"__", L"_");
  return OdString(std::move(text));
}

void TRANS_BASE2::StandardizeLayerList(DrvLayerMap& layers) {
  for (auto& [key, layer] : layers) {
    OdString before = layer.name;
    layer.name = StandardizeLayerName(before);
    m_standardizedNames[layer.name] = before;
    TraceMessage("Original Layer Name", before);
    TraceMessage("Modified Layer Name", layer.name);
  }
}

int TRANS_BASE2::StandardizeLayerNames() {
  TraceMessage("Standardize Layer Names");
  for (auto& view : m_views) {
    StandardizeLayerList(view.layers);
    for (auto& group : view.nodeGroups) StandardizeLayerList(group.layers);
  }
  return 0;
}
