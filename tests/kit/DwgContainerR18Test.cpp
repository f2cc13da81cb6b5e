// The R2004 to R2018 container: every corpus file of those releases gives its sections, and
// damaged copies (cut short, bytes flipped in the header, the maps and the pages, maps that
// repeat pages or claim huge sizes) end in DwgFormatError or a message.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "kit/base/OdError.h"
#include "kit/dwg/DwgDataSectionR18.h"
#include "kit/dwg/DwgLittleEndian.h"
#include "kit/dwg/DwgR2004Header.h"
#include "kit/dwg/DwgSectionFraming.h"
#include "kit/dwg/DwgSectionPages.h"
#include "tests/kit/DwgContainerTestSupport.h"

namespace {

const char* const kSample = "dwg/example_2004.dwg";

struct Layout {
  DwgR2004FileHeader header;
  DwgPageIndex pages;
  std::vector<DwgSectionInfo> sections;

  const DwgSectionInfo& section(const std::string& name) const {
    return *std::find_if(sections.begin(), sections.end(), [&](const DwgSectionInfo& s) { return s.name == name; });
  }
};

Layout layoutOf(const std::string& bytes) {
  Layout layout;
  std::vector<std::string> messages;
  layout.header = readDwgR2004FileHeader(bytes, messages);
  layout.pages = indexDwgPages(parseDwgPageMap(readDwgSystemPage(bytes, layout.header.pageMapAddress, kDwgPageMapType, messages)));
  uint64_t sectionMapAt = layout.pages.at(int32_t(layout.header.sectionMapId)).address;
  layout.sections = parseDwgSectionMap(readDwgSystemPage(bytes, sectionMapAt, kDwgSectionMapType, messages));
  return layout;
}

std::string outcome(const std::string& bytes) { return containerOutcome(readDwgContainerR18, bytes); }

// Flips every byte in [from, to) in turn; each copy must fail or be reported.
void expectEveryFlipNoticed(const std::string& bytes, uint64_t from, uint64_t to, const char* what) {
  SCOPED_TRACE(what);
  for (uint64_t at = from; at < to && at < bytes.size(); ++at) {
    std::string damaged = bytes;
    damaged[at] = char(damaged[at] ^ 0x5A);
    EXPECT_NE(outcome(damaged), "silent") << "byte " << at;
  }
}

TEST(DwgContainerR18, EveryCorpusFileGivesItsSections) {
  const std::vector<std::string> files = corpusFilesMarked({"AC1018", "AC1024", "AC1027", "AC1032"});
  EXPECT_GE(files.size(), 78u);
  for (const std::string& file : files) {
    SCOPED_TRACE(file);
    std::string bytes = corpusBytes(file);
    DwgFileSections sections;
    ASSERT_NO_THROW(readDwgContainerR18(bytes, sections));
    expectWholeSections(sections);
    EXPECT_GT(sections.codePage, 0);
  }
}

TEST(DwgContainerR18, TheFileHeaderDecryptsAndLocatesTheMaps) {
  std::string bytes = corpusBytes(kSample);
  std::vector<std::string> messages;
  DwgR2004FileHeader header = readDwgR2004FileHeader(bytes, messages);
  EXPECT_TRUE(messages.empty());
  EXPECT_LT(header.pageMapAddress, bytes.size());
  EXPECT_EQ(header.sectionMapId + 1, header.pageMapId);
  const std::vector<uint8_t>& magic = dwgR2004MagicSequence();
  EXPECT_EQ(std::vector<uint8_t>(magic.begin(), magic.begin() + 8),
            (std::vector<uint8_t>{0x29, 0x23, 0xBE, 0x84, 0xE1, 0x6C, 0xD6, 0xAE}));
}

TEST(DwgContainerR18, ADamagedFileHeaderGivesWayToItsCopy) {
  std::string bytes = corpusBytes(kSample);
  for (size_t at = kDwgR2004HeaderAt + 0x50; at < kDwgR2004HeaderAt + 0x60; ++at) bytes[at] = char(~bytes[at]);
  DwgFileSections sections;
  ASSERT_NO_THROW(readDwgContainerR18(bytes, sections));
  ASSERT_EQ(sections.messages.size(), 1u);
  EXPECT_NE(sections.messages[0].find("copy"), std::string::npos);
  EXPECT_TRUE(startsWith(sections.header, kDwgHeaderSentinel));
  // With the copy damaged too, the maps cannot be found.
  for (size_t at = bytes.size() - kDwgR2004HeaderSize + 0x50; at < bytes.size() - kDwgR2004HeaderSize + 0x60; ++at) {
    bytes[at] = char(~bytes[at]);
  }
  EXPECT_EQ(outcome(bytes), "error");
}

TEST(DwgContainerR18, ACutFileIsAnError) {
  for (const char* file : {kSample, "dwg/2018/Line.dwg"}) {
    SCOPED_TRACE(file);
    std::string bytes = corpusBytes(file);
    uint64_t mapsAt = layoutOf(bytes).header.pageMapAddress;
    for (uint64_t cut : {uint64_t(0), uint64_t(6), uint64_t(0x80), uint64_t(0xEB), uint64_t(0x100), mapsAt + 0x10}) {
      EXPECT_EQ(outcome(bytes.substr(0, cut)), "error") << cut;
    }
    for (uint64_t cut = 0x100; cut < mapsAt; cut += mapsAt / 97) EXPECT_EQ(outcome(bytes.substr(0, cut)), "error") << cut;
  }
}

TEST(DwgContainerR18, FlippedBytesAreNoticed) {
  std::string bytes = corpusBytes(kSample);
  Layout layout = layoutOf(bytes);
  uint64_t pageMapAt = layout.header.pageMapAddress;
  uint64_t sectionMapAt = layout.pages.at(int32_t(layout.header.sectionMapId)).address;
  const DwgSectionInfo& header = layout.section("AcDb:Header");
  const DwgPageLocation& headerPage = layout.pages.at(int32_t(header.pages.at(0).number));
  const DwgSectionInfo& classes = layout.section("AcDb:Classes");
  const DwgPageLocation& classesPage = layout.pages.at(int32_t(classes.pages.at(0).number));

  expectEveryFlipNoticed(bytes, kDwgR2004HeaderAt, kDwgR2004HeaderAt + kDwgR2004HeaderSize, "file header");
  expectEveryFlipNoticed(bytes, pageMapAt, pageMapAt + 0x14 + dwgLe32(reinterpret_cast<const uint8_t*>(bytes.data()) + pageMapAt + 8), "page map");
  expectEveryFlipNoticed(bytes, sectionMapAt, sectionMapAt + 0x14 + dwgLe32(reinterpret_cast<const uint8_t*>(bytes.data()) + sectionMapAt + 8), "section map");
  expectEveryFlipNoticed(bytes, headerPage.address, headerPage.address + 0x20 + header.pages[0].dataSize, "header page");
  expectEveryFlipNoticed(bytes, classesPage.address, classesPage.address + 0x20 + classes.pages[0].dataSize, "classes page");
}

TEST(DwgContainerR18, RandomDamageNeverCrashes) {
  std::string bytes = corpusBytes("dwg/2018/Line.dwg");
  std::mt19937 random(2004);
  for (int copy = 0; copy < 200; ++copy) {
    std::string damaged = bytes;
    for (int k = 0; k < 8; ++k) damaged[random() % damaged.size()] = char(random());
    outcome(damaged);
  }
}

TEST(DwgContainerR18, APasswordProtectedDrawingIsRefused) {
  std::string bytes = corpusBytes(kSample);
  bytes[0x18] = char(bytes[0x18] | 1);
  DwgFileSections sections;
  try {
    readDwgContainerR18(bytes, sections);
    ADD_FAILURE() << "read a protected drawing";
  } catch (const DwgFormatError& e) {
    EXPECT_EQ(e.code, eUnsupportedFileFormat);
  }
}

TEST(DwgContainerR18, DamagedSectionMapEntriesAreRefused) {
  std::string bytes = corpusBytes(kSample);
  Layout layout = layoutOf(bytes);
  const DwgSectionInfo& objects = layout.section("AcDb:AcDbObjects");
  struct Damage {
    const char* name;
    std::function<void(DwgSectionInfo&)> apply;
  };
  const std::vector<Damage> damages = {
      {"one page listed over and over", [](DwgSectionInfo& s) { s.pages.assign(5000, s.pages[0]); }},
      {"a huge size", [](DwgSectionInfo& s) { s.size = uint64_t(1) << 40; }},
      {"pages of no size", [](DwgSectionInfo& s) { s.maxPageSize = 0; }},
      {"pages of 4 GB", [](DwgSectionInfo& s) { s.maxPageSize = 0xFFFFFFFF; }},
      {"a page the page map lacks", [](DwgSectionInfo& s) { s.pages[1].number = 9999; }},
      {"a gap as page", [](DwgSectionInfo& s) { s.pages[1].number = uint32_t(-3); }},
      {"a page past the end", [](DwgSectionInfo& s) { s.pages[1].startOffset = s.size + 1; }},
      {"an unknown compression", [](DwgSectionInfo& s) { s.compressed = 7; }},
      {"encryption", [](DwgSectionInfo& s) { s.encrypted = 1; }},
  };
  for (const Damage& d : damages) {
    SCOPED_TRACE(d.name);
    DwgSectionInfo damaged = objects;
    d.apply(damaged);
    std::vector<std::string> messages;
    EXPECT_THROW(readDwgDataSection(bytes, damaged, layout.pages, messages), DwgFormatError);
  }
}

TEST(DwgContainerR18, PagesLieEndToEndAfterTheFileHeader) {
  std::vector<uint8_t> map(8 * 3 + 16);
  dwgPutLe32(map.data() + 0, 1);
  dwgPutLe32(map.data() + 4, 0x200);
  dwgPutLe32(map.data() + 8, uint32_t(-2));  // a gap, followed by its tree links
  dwgPutLe32(map.data() + 12, 0x80);
  dwgPutLe32(map.data() + 32, 3);
  dwgPutLe32(map.data() + 36, 0x40);
  std::vector<DwgPageLocation> pages = parseDwgPageMap(map);
  ASSERT_EQ(pages.size(), 3u);
  EXPECT_EQ(pages[0].address, 0x100u);
  EXPECT_EQ(pages[1].number, -2);
  EXPECT_EQ(pages[2].number, 3);
  EXPECT_EQ(pages[2].address, 0x380u);
  EXPECT_EQ(indexDwgPages(pages).count(-2), 0u);
}

TEST(DwgContainerR18, ASectionMapCutShortIsAnError) {
  std::vector<uint8_t> map(0x14 + 0x60 + 0x10);
  dwgPutLe32(map.data(), 1);
  dwgPutLe32(map.data() + 0x14 + 0x08, 1);  // one page, whose entry is there
  EXPECT_EQ(parseDwgSectionMap(map).size(), 1u);
  dwgPutLe32(map.data() + 0x14 + 0x08, 2);  // two pages claimed
  EXPECT_THROW(parseDwgSectionMap(map), DwgFormatError);
  dwgPutLe32(map.data() + 0x14 + 0x08, 1);
  dwgPutLe32(map.data(), 0xFFFFFFFF);  // more sections than the map holds
  EXPECT_THROW(parseDwgSectionMap(map), DwgFormatError);
  EXPECT_THROW(parseDwgSectionMap(std::vector<uint8_t>(0x10)), DwgFormatError);
}

}  // namespace
