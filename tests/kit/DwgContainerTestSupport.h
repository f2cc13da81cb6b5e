// Helpers shared by the DWG container tests: corpus files by release mark, their bytes, and the
// outcome of a container reader on damaged copies.
#pragma once

#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "kit/dwg/DwgFileSections.h"
#include "tests/kit/DwgTestSupport.h"

inline std::vector<std::string> corpusFilesMarked(const std::vector<std::string>& marks) {
  std::vector<std::string> files;
  for (const std::string& f : corpusDwgFiles()) {
    if (std::find(marks.begin(), marks.end(), dwgVersionMark(f)) != marks.end()) files.push_back(f);
  }
  return files;
}

inline std::string corpusBytes(const std::string& relative) {
  std::ifstream in(corpusPath(relative), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline const uint8_t kHeaderEndSentinel[16] = {0x30, 0x84, 0xE0, 0xDC, 0x02, 0x21, 0xC7, 0x56,
                                               0xA0, 0x83, 0x97, 0x47, 0xB1, 0x92, 0xCC, 0xA0};
inline const uint8_t kClassesEndSentinel[16] = {0x72, 0x5E, 0x3B, 0x47, 0x3B, 0x56, 0x07, 0x3A,
                                                0x3F, 0x23, 0x0B, 0xA0, 0x18, 0x30, 0x49, 0x75};

inline bool startsWith(std::string_view section, const uint8_t* sentinel) {
  return section.size() >= 16 && std::memcmp(section.data(), sentinel, 16) == 0;
}

// The closing sentinel follows the data; some writers leave padding or stale bytes after it.
inline bool closedBy(std::string_view section, const uint8_t* sentinel) {
  return section.size() > 32 &&
         section.find(std::string_view(reinterpret_cast<const char*>(sentinel), 16), 16) != std::string_view::npos;
}

// What every sound file's container yields: header and classes between their sentinels, an object
// map ending with its empty chunk (big-endian size 2 and a zero check sum), objects, a template.
inline void expectWholeSections(const DwgFileSections& sections) {
  EXPECT_TRUE(sections.messages.empty()) << sections.messages.front();
  EXPECT_TRUE(startsWith(sections.header, kDwgHeaderSentinel));
  EXPECT_TRUE(closedBy(sections.header, kHeaderEndSentinel));
  EXPECT_TRUE(startsWith(sections.classes, kDwgClassesSentinel));
  EXPECT_TRUE(closedBy(sections.classes, kClassesEndSentinel));
  ASSERT_GE(sections.handles.size(), 4u);
  EXPECT_EQ(sections.handles.substr(sections.handles.size() - 4, 2), std::string("\x00\x02", 2));
  EXPECT_GT(sections.objects.size(), 1000u);
  EXPECT_GE(sections.templateSection.size(), 2u);
}

// What a reader made of damaged bytes: "error" for DwgFormatError, "reported" when it read on
// with messages, "silent" when it noticed nothing. Any other exception escapes and fails the test.
using DwgContainerReader = std::function<void(std::string_view, DwgFileSections&)>;

inline std::string containerOutcome(const DwgContainerReader& read, const std::string& bytes) {
  DwgFileSections sections;
  try {
    read(bytes, sections);
  } catch (const DwgFormatError&) {
    return "error";
  }
  return sections.messages.empty() ? "silent" : "reported";
}
