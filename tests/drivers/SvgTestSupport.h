// Helpers shared by the SVG writer tests: reading written files and checking that they parse.
#pragma once

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <unistd.h>
#include <sstream>
#include <string>

namespace svgtest {

inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

inline void WriteFile(const std::filesystem::path& path, const std::string& text) {
  std::ofstream out(path, std::ios::binary);
  out << text;
}

// xmllint's verdict on a file (it is installed with the project's packages); empty when the file
// is well-formed XML, else what xmllint said.
inline std::string XmlProblems(const std::filesystem::path& path) {
  std::string command = "xmllint --noout --nonet '" + path.string() + "' 2>&1";
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return "xmllint could not be started";
  std::string said;
  char buffer[512];
  while (fgets(buffer, sizeof buffer, pipe) != nullptr) said += buffer;
  int status = pclose(pipe);
  if (status != 0 && said.empty()) said = "xmllint failed (is libxml2-utils installed?)";
  return status == 0 ? std::string() : said;
}

// The same for a text: written to a scratch file first, named per process because CTest runs
// the test cases of one program side by side.
inline std::string XmlTextProblems(const std::string& text, const std::string& scratchName) {
  auto path = std::filesystem::temp_directory_path() / (std::to_string(getpid()) + "_" + scratchName);
  WriteFile(path, text);
  std::string problems = XmlProblems(path);
  std::filesystem::remove(path);
  return problems;
}

inline int CountOf(const std::string& text, const std::string& part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++count;
  return count;
}

}  // namespace svgtest
