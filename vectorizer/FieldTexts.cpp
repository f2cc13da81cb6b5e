#include "vectorizer/FieldTexts.h"

#include "projects/common/CommonRoutines.h"

std::vector<std::pair<std::string, std::string>> g_WorkspaceVariables;

namespace {

// A field is longer than six characters and framed by "$$$" or "%%%" on both ends.
bool FieldName(const std::string& text, std::string& name) {
  if (text.size() <= 6) return false;
  auto isFrame = [](const std::string& part) { return part == "$$$" || part == "%%%"; };
  if (!isFrame(text.substr(0, 3)) || !isFrame(text.substr(text.size() - 3))) return false;
  name = text.substr(3, text.size() - 6);
  return true;
}

std::string FormatTime(const std::string& format, const std::tm& now) {
  char buffer[256];
  size_t length = std::strftime(buffer, sizeof buffer, format.c_str(), &now);
  return std::string(buffer, length);
}

// The default formats of multi-line texts keep a literal "$h" / "$b": kept as the program had them.
std::string DefaultFormat(const std::string& name, bool multiLine) {
  if (name == "sysdate") return multiLine ? "%d-$b-%Y" : "%d-%b-%Y";
  return multiLine ? "%d-$h-%Y  %H:%M:%S" : "%d-%b-%Y  %H:%M:%S";
}

}  // namespace

bool FindWorkspaceVariable(const std::string& name, std::string& value) {
  for (const auto& [variable, text] : g_WorkspaceVariables) {
    if (EqualsNoCase(variable, name)) {
      value = text;
      return true;
    }
  }
  return false;
}

bool RewriteFieldText(std::string& text, bool multiLine, const std::string& inputFileName, const std::tm& now) {
  std::string name;
  if (!FieldName(text, name)) return false;
  std::string variable;
  bool defined = FindWorkspaceVariable(name, variable);
  std::string lower = ToLowerCopy(name);
  if (lower == "systime" || lower == "sytime" || lower == "sysdate") {
    std::string key = lower == "sysdate" ? "sysdate" : "systime";
    text = FormatTime(defined ? variable : DefaultFormat(key, multiLine), now);
  } else if (lower == "username") {
    text = defined ? variable : "Vistrel";
  } else if (lower == "dgnspec" || lower == "dwgspec") {
    text = defined ? variable : inputFileName;
  } else if (defined) {
    text = variable;
  } else {
    return false;
  }
  return true;
}

std::string OriginHyperlinkDescription(const std::string& drawingName) {
  std::string name = drawingName;
  ReplaceAll(name, ".", "%2E");
  return "This drawing is originated from drawing " + name;
}
