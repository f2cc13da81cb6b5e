// Helpers shared by the DWG reader tests: the corpus DWG files, the twin DXF of a drawing, and
// loading with the error text kept.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "kit/base/OdError.h"
#include "kit/dwg/DwgReader.h"
#include "tests/kit/DxfTestSupport.h"

// Every .dwg of the corpus, relative to it, sorted.
inline std::vector<std::string> corpusDwgFiles() {
  std::vector<std::string> files;
  std::filesystem::path root(DM_CORPUS_DIR);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    if (!entry.is_regular_file()) continue;
    std::string ext = entry.path().extension().string();
    std::transform(ext.begin(), ext.end(), ext.begin(), ::tolower);
    if (ext == ".dwg") files.push_back(std::filesystem::relative(entry.path(), root).string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

// The release mark of a corpus file ("AC1015").
inline std::string dwgVersionMark(const std::string& relative) {
  std::ifstream in(corpusPath(relative), std::ios::binary);
  std::string mark(6, '\0');
  in.read(mark.data(), 6);
  return mark;
}

inline std::string narrowText(const OdString& s) {
  std::string out;
  for (OdChar c : s.str()) out += c < 0x80 ? char(c) : '?';
  return out;
}

// The description of an OdError after the file name ("...: the file header is cut off").
inline std::string errorTail(const OdError& e) {
  std::string text = narrowText(e.description());
  size_t colon = text.rfind(": ");
  return colon == std::string::npos ? text : text.substr(colon + 2);
}

inline std::string readBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// The fields of a dump line: split on blanks outside quotes, brackets and parentheses.
inline std::vector<std::string> dumpFields(const std::string& line) {
  std::vector<std::string> out;
  std::string current;
  int depth = 0;
  bool quoted = false;
  for (size_t i = 0; i < line.size(); ++i) {
    char c = line[i];
    if (c == '\\' && quoted && i + 1 < line.size()) {
      current += c;
      current += line[++i];
      continue;
    }
    if (c == '"') quoted = !quoted;
    if (!quoted && (c == '[' || c == '(')) ++depth;
    if (!quoted && (c == ']' || c == ')')) --depth;
    if (c == ' ' && !quoted && depth == 0) {
      if (!current.empty()) out.push_back(current);
      current.clear();
    } else {
      current += c;
    }
  }
  if (!current.empty()) out.push_back(current);
  return out;
}
