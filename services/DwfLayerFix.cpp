#include "services/DwfLayerFix.h"

#include <cctype>
#include <fstream>
#include <iostream>
#include <sstream>
#include <sys/stat.h>
#include <utility>
#include <vector>

#include "services/Trace.h"

namespace {

const std::string kAsciiDwfHeader = "(DWF V00.55)";
const std::string kLayerOpcode = "(Layer";

bool pathExists(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0;
}

// Whitespace-separated fields; a field opened by a quote runs to the matching quote.
std::vector<std::string> splitFields(const std::string& text) {
  std::vector<std::string> fields;
  std::size_t i = 0;
  while (i < text.size()) {
    while (i < text.size() && std::isspace(static_cast<unsigned char>(text[i]))) ++i;
    if (i >= text.size()) break;
    std::size_t end = i + 1;
    if (text[i] == '\'' || text[i] == '"') {
      end = text.find(text[i], i + 1);
      end = end == std::string::npos ? text.size() : end + 1;
    } else {
      while (end < text.size() && !std::isspace(static_cast<unsigned char>(text[end]))) ++end;
    }
    fields.push_back(text.substr(i, end - i));
    i = end;
  }
  return fields;
}

bool isEmptyName(const std::string& field) { return field == "''" || field == "\"\""; }

// The replacement for a record that needs one; empty when the record is fine.
std::string repairedRecord(const std::string& record) {
  const std::string body = record.substr(kLayerOpcode.size(), record.size() - kLayerOpcode.size() - 1);
  const std::vector<std::string> fields = splitFields(body);
  if (fields.size() != 2 || !isEmptyName(fields[1])) return {};
  return kLayerOpcode + " " + fields[0] + " 'Layer_" + fields[0] + "')";
}

// The distinct layer records needing a repair, each with its replacement, in file order.
std::vector<std::pair<std::string, std::string>> findRepairs(const std::string& text) {
  std::vector<std::pair<std::string, std::string>> repairs;
  for (std::size_t at = text.find(kLayerOpcode); at != std::string::npos;
       at = text.find(kLayerOpcode, at + 1)) {
    const std::size_t close = text.find(')', at);
    if (close == std::string::npos) break;
    const std::string record = text.substr(at, close - at + 1);
    const std::string repaired = repairedRecord(record);
    if (repaired.empty()) continue;
    bool known = false;
    for (const auto& repair : repairs) known = known || repair.first == record;
    if (!known) repairs.emplace_back(record, repaired);
  }
  return repairs;
}

void replaceEverywhere(std::string& text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

}  // namespace

bool FixDwfLayers(const std::string& inputPath, const std::string& outputPath, bool quiet,
                  bool overwrite) {
  std::ifstream input(inputPath, std::ios::binary);
  if (!input) {
    PrintMessage("Could not open input DWF file", inputPath.c_str());
    return false;
  }
  if (!overwrite && pathExists(outputPath)) {
    PrintMessage("Output File Exists but -over[write] parameter was not defined");
    PrintMessage("Program terminating");
    return false;
  }
  std::ostringstream content;
  content << input.rdbuf();
  std::string text = content.str();
  if (text.compare(0, kAsciiDwfHeader.size(), kAsciiDwfHeader) != 0) return false;

  const auto repairs = findRepairs(text);
  if (repairs.empty()) return false;
  for (const auto& [from, to] : repairs) {
    replaceEverywhere(text, from, to);
    if (!quiet) std::cout << "Replacing \"" << from << "\" with \"" << to << "\"" << std::endl;
  }
  std::ofstream output(outputPath, std::ios::binary | std::ios::trunc);
  if (!output) {
    PrintMessage("Could not open output DWF file", outputPath.c_str());
    return false;
  }
  output << text;
  output.flush();
  return static_cast<bool>(output);
}
