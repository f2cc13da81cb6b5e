// The R2007 container: its decompressor on hand-made streams (literal runs of every stored
// order, each reference form, overlap, bounds), the code word framing, every corpus file of the
// release, and damaged copies, which end in DwgFormatError or read on without crashing.
#include <gtest/gtest.h>

#include <algorithm>

#include <random>

#include "kit/dwg/DwgR2007Header.h"
#include "kit/dwg/DwgR2007HeaderChecks.h"
#include "kit/dwg/DwgR2007Maps.h"
#include "kit/dwg/DwgR21Decompressor.h"
#include "kit/dwg/DwgReedSolomon.h"
#include "kit/dwg/DwgSectionFraming.h"
#include "tests/kit/DwgContainerTestSupport.h"

namespace {

using Bytes = std::vector<uint8_t>;

Bytes text(const std::string& s) { return Bytes(s.begin(), s.end()); }

Bytes concat(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (const Bytes& p : parts) all.insert(all.end(), p.begin(), p.end());
  return all;
}

Bytes decompress(const Bytes& in, size_t outputSize) { return decompressDwgR21(in.data(), in.size(), outputSize); }

struct Case {
  const char* name;
  Bytes stream;
  Bytes expected;
};

TEST(DwgR21Decompressor, StoresLiteralRunsInPieces) {
  const Bytes abc32 = text("ABCDEFGHIJKLMNOPQRSTUVWXYZ012345");
  const std::vector<Case> cases = {
      // Opcode n (high nibble 0) starts a run of n + 8 bytes; 8 bytes are kept in order.
      {"eight bytes", concat({{0x00}, text("abcdefgh")}), text("abcdefgh")},
      {"ten bytes: last, middle eight, first", concat({{0x02}, text("abcdefghij")}), text("jbcdefghia")},
      {"sixteen bytes: halves swapped", concat({{0x08}, text("abcdefghijklmnop")}), text("ijklmnopabcdefgh")},
      {"thirty-two bytes: four eights reversed", concat({{0x0F, 0x09}, abc32}), text("YZ012345QRSTUVWXIJKLMNOPABCDEFGH")},
      {"nineteen bytes", concat({{0x0B}, text("abcdefghijklmnopqrs")}), text("srqijklmnopabcdefgh")},
      // A first opcode 0x2X leads a short run whose length is in the fourth byte.
      {"short first run reversed", {0x20, 0x00, 0x00, 0x02, 'a', 'b'}, text("ba")},
      {"three bytes reversed", {0x20, 0x00, 0x00, 0x03, 'a', 'b', 'c'}, text("cba")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(decompress(c.stream, c.expected.size()), c.expected);
  }
}

TEST(DwgR21Decompressor, DecodesEveryReferenceForm) {
  const Bytes start = concat({{0x00}, text("abcdefgh")});
  const std::vector<Case> cases = {
      // 0x30-0xFF: count in the high nibble, offset in the low nibble and the next byte.
      {"short reference", concat({start, {0x43, 0x00}}), text("abcdefghefgh")},
      {"overlapping reference", concat({start, {0x80, 0x00}}), text("abcdefghhhhhhhhh")},
      {"literals after a reference", concat({start, {0x43, 0x02}, text("xy")}), text("abcdefghefghyx")},
      {"references chained, then a literal run",
       concat({start, {0x43, 0x00, 0x31, 0x00, 0x00}, text("ijklmnop")}), text("abcdefghefghghgijklmnop")},
      // 0x10-0x1F: count (op & 15) + 3, offset from the next two bytes.
      {"mid-range reference", concat({start, {0x12, 0x03, 0x00}}), text("abcdefghefghe")},
      // 0x00-0x0F after literals: count (op & 15) + 0x13.
      {"long reference", concat({start, {0x01, 0x07, 0x00}}), concat({text("abcdefgh"), text("abcdefghabcdefghabcd")})},
      // 0x20-0x2F: a 16-bit offset and a count from the opcodes that follow.
      {"two-byte offset", concat({start, {0x21, 0x07, 0x00, 0x08}}), text("abcdefghbcdefghbc")},
      {"two-byte offset, long count", concat({start, {0x29, 0x07, 0x00, 0x00, 0x00}}),
       [] {
         Bytes b = text("abcdefgh");
         for (int i = 0; i < 0x101; ++i) b.push_back(b[b.size() - 8]);
         return b;
       }()},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(decompress(c.stream, c.expected.size()), c.expected);
  }
}

TEST(DwgR21Decompressor, RejectsStreamsThatLeaveTheirBounds) {
  const Bytes start = concat({{0x00}, text("abcdefgh")});
  struct Bad {
    const char* name;
    Bytes stream;
    size_t outputSize;
  };
  const std::vector<Bad> cases = {
      {"reference before the start", concat({start, {0x4F, 0xF8}}), 64},
      {"reference past the output", concat({start, {0x80, 0x00}}), 12},
      {"literal run past the output", start, 4},
      {"literal run past the input", concat({{0x05}, text("abc")}), 13},
      {"instruction cut off", concat({start, {0x21, 0x07}}), 64},
      {"fewer bytes than announced", start, 9},
  };
  for (const Bad& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_THROW(decompress(c.stream, c.outputSize), DwgFormatError);
  }
}

std::string outcome(const std::string& bytes) { return containerOutcome(readDwgContainerR21, bytes); }

TEST(DwgContainerR21, EveryCorpusFileGivesItsSections) {
  const std::vector<std::string> files = corpusFilesMarked({"AC1021"});
  EXPECT_GE(files.size(), 18u);
  for (const std::string& file : files) {
    SCOPED_TRACE(file);
    std::string bytes = corpusBytes(file);
    DwgFileSections sections;
    ASSERT_NO_THROW(readDwgContainerR21(bytes, sections));
    expectWholeSections(sections);
  }
}

TEST(DwgContainerR21, ACutFileIsAnError) {
  for (const char* file : {"dwg/example_2007.dwg", "dwg/2007/Line.dwg"}) {
    SCOPED_TRACE(file);
    std::string bytes = corpusBytes(file);
    for (size_t cut : {size_t(0), size_t(6), size_t(0x80), size_t(0x200), size_t(0x480), size_t(0x600)}) {
      EXPECT_EQ(outcome(bytes.substr(0, cut)), "error") << cut;
    }
    // The section map lies near the end; any cut before the last fifth loses it.
    for (size_t cut = 0x480; cut < bytes.size() * 4 / 5; cut += bytes.size() / 61) {
      EXPECT_EQ(outcome(bytes.substr(0, cut)), "error") << cut;
    }
  }
}

// Each stored data byte of the header section's page, flipped, is put right by the page's parity;
// three wrong bytes in one code word are more than it corrects and are caught by the report, the
// page check sum or decompression.
TEST(DwgContainerR21, FlippedPageBytesAreCorrectedOrNoticed) {
  std::string bytes = corpusBytes("dwg/example_2007.dwg");
  std::vector<std::string> messages;
  DwgR2007FileHeader header = readDwgR2007FileHeader(bytes, messages);
  DwgR2007PageIndex pages = parseDwgR2007PageMap(readDwgR2007SystemPage(bytes, header.pageMap, "page map", messages));
  header.sectionMap.offset = pages.at(header.sectionMapId) - kDwgR2007PagesAt;
  std::vector<DwgR2007Section> infos = parseDwgR2007SectionMap(readDwgR2007SystemPage(bytes, header.sectionMap, "section map", messages));
  auto section = std::find_if(infos.begin(), infos.end(), [](const DwgR2007Section& s) { return s.name == "AcDb:Header"; });
  ASSERT_NE(section, infos.end());
  ASSERT_EQ(section->encoding, 4u);
  const DwgR2007Page& page = section->pages.at(0);
  uint64_t at = pages.at(page.id);
  size_t blocks = dwgRsBlocks((page.compressedSize + 7) & ~uint64_t(7), kDwgRsPageData);
  DwgFileSections clean;
  readDwgContainerR21(bytes, clean);
  for (size_t m = 0; m < page.compressedSize; ++m) {
    size_t row = m % kDwgRsPageData, block = m / kDwgRsPageData;
    std::string damaged = bytes;
    damaged[at + row * blocks + block] ^= 0x5A;
    DwgFileSections sections;
    readDwgContainerR21(damaged, sections);
    EXPECT_TRUE(sections.messages.empty()) << "data byte " << m;
    EXPECT_EQ(sections.header, clean.header) << "data byte " << m;
    for (size_t more : {size_t(100), size_t(200)}) damaged[at + ((row + more) % kDwgRsCodeword) * blocks + block] ^= 0xA5;
    EXPECT_NE(outcome(damaged), "silent") << "data byte " << m;
  }
}

bool mentions(const std::vector<std::string>& messages, const std::string& text) {
  return std::any_of(messages.begin(), messages.end(), [&](const std::string& m) { return m.find(text) != std::string::npos; });
}

// Every corpus file passes its CRC-64 checks (the first test); these catch damage the parity
// lets through or cannot mend.
TEST(DwgContainerR21, CheckSumsNoticeWhatParityLeaves) {
  const std::string original = corpusBytes("dwg/2007/Line.dwg");
  std::string damaged = original;
  damaged[0x80 + kDwgR2007CheckDataAt + 3] ^= 0x10;
  DwgFileSections sections;
  readDwgContainerR21(damaged, sections);
  EXPECT_EQ(sections.messages, std::vector<std::string>{"the file header fails its check sums (check data)"});

  // One wrong data byte of the page map with eight wrong parity bytes beside it in its code word
  // is past mending; where the page still decompresses, its check sums tell.
  std::vector<std::string> messages;
  DwgR2007SystemPage map = readDwgR2007FileHeader(original, messages).pageMap;
  size_t blocks = dwgRsBlocks(((map.compressedSize + 7) & ~uint64_t(7)) * map.repeats, kDwgRsSystemData);
  size_t decompressed = 0;
  for (size_t row = 0; row < map.compressedSize; ++row) {
    damaged = original;
    for (size_t r : {row, size_t(240), size_t(241), size_t(242), size_t(243), size_t(244), size_t(245), size_t(246), size_t(247)}) {
      damaged[kDwgR2007PagesAt + map.offset + r * blocks] ^= 0x5A;
    }
    messages.clear();
    try {
      readDwgR2007SystemPage(damaged, map, "page map", messages);
      ++decompressed;
      EXPECT_TRUE(mentions(messages, "the page map: check sum mismatch")) << row;
    } catch (const DwgFormatError&) {
    }
  }
  EXPECT_GT(decompressed, map.compressedSize / 4);
}

TEST(DwgContainerR21, DamagedBytesNeverCrash) {
  std::string bytes = corpusBytes("dwg/2007/Line.dwg");
  // Every byte of the file header's code words and of the page map, then random damage anywhere.
  for (size_t at = 0x80; at < 0x880; at += 3) {
    std::string damaged = bytes;
    damaged[at] = char(damaged[at] ^ 0xA5);
    outcome(damaged);
  }
  std::mt19937 random(2007);
  for (int copy = 0; copy < 200; ++copy) {
    std::string damaged = bytes;
    for (int k = 0; k < 8; ++k) damaged[random() % damaged.size()] = char(random());
    outcome(damaged);
  }
}

}  // namespace
