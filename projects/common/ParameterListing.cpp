#include "projects/common/ParameterListing.h"

#include <cctype>
#include <iostream>

namespace {

constexpr std::size_t kKeywordColumn = 19;
constexpr const char* kTitleIndent = "                        ";  // 19 + 5 spaces

void writeSectionTitle(std::ostream& out, const std::string& title) {
  out << '\n';
  out << kTitleIndent << title << '\n';
  out << kTitleIndent << std::string(title.size(), '-') << '\n';
}

std::string upperCased(const std::string& keyword) {
  std::string out = keyword;
  for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return out;
}

void writeKeywordRow(std::ostream& out, const ParameterHelpRow& row) {
  std::string keyword = upperCased(row.keyword);
  if (keyword.size() >= kKeywordColumn)
    out << keyword << "  ";
  else
    out << keyword << std::string(kKeywordColumn - keyword.size(), ' ');
  out << row.marker << "  " << row.description << '\n';
}

}  // namespace

void WriteParameterRow(std::ostream& out, const ParameterHelpRow& row) {
  if (row.keyword.empty())
    writeSectionTitle(out, row.description);
  else
    writeKeywordRow(out, row);
}

void WriteParameterListing(std::ostream& out) {
  out << "                        Parameters\n";
  out << std::string(75, '=') << '\n';
  for (std::size_t i = 0; i < g_ParameterHelpRowCount; ++i) {
    const ParameterHelpRow& row = g_ParameterHelpRows[i];
    WriteParameterRow(out, row);
    if (row.keyword == "Z") {
      out << "\n\n";
      break;
    }
  }
}

void WriteOutputFormatList(std::ostream& out) {
  out << '\n'
      << "<<< Output Format List >>>\n"
      << "Acrobat PDF\n"
      << "<<< End of Output Format List >>>\n"
      << '\n';
}

void WriteProgramHistory(std::ostream& out) {
  out << "                         Program History\n";
  for (std::size_t i = 0; i < g_ProgramHistoryLineCount; ++i) out << g_ProgramHistoryLines[i] << '\n';
}

void ListParameters() {
  WriteParameterListing(std::cout);
  std::cout.flush();
}

void ListOutputFormats() {
  WriteOutputFormatList(std::cout);
  std::cout.flush();
}

void ListProgramHistory() {
  WriteProgramHistory(std::cout);
  std::cout.flush();
}
