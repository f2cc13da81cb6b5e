// Reed-Solomon decoding of R2007 pages: both codes correct up to their limit of wrong bytes at any
// positions, report code words beyond it (or, as any decoder must now and then, land on another
// code word), in both page layouts; damaged corpus pages still give the whole drawing.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "kit/db/DatabaseDump.h"
#include "kit/dwg/DwgR2007Header.h"
#include "kit/dwg/DwgR2007Maps.h"
#include "kit/dwg/DwgReedSolomon.h"
#include "kit/dwg/DwgSectionFraming.h"
#include "tests/kit/DwgContainerTestSupport.h"

namespace {

using Bytes = std::vector<uint8_t>;

struct Code {
  const char* name;
  const DwgRsCode& code;
  int limit;  // wrong bytes a code word it corrects
};

const Code kCodes[] = {{"system pages (255, 239)", dwgRsSystemCode(), 8}, {"data pages (255, 251)", dwgRsPageCode(), 2}};

Bytes randomCodeword(const DwgRsCode& code, std::mt19937& random) {
  Bytes word(kDwgRsCodeword);
  for (size_t i = 0; i < code.dataBytes(); ++i) word[i] = uint8_t(random());
  code.encode(word.data());
  return word;
}

// `count` distinct positions get a non-zero error each.
void damage(Bytes& word, int count, std::mt19937& random) {
  std::set<size_t> positions;
  while (positions.size() < size_t(count)) positions.insert(random() % word.size());
  for (size_t p : positions) word[p] ^= uint8_t(1 + random() % 255);
}

int distance(const Bytes& a, const Bytes& b) {
  int d = 0;
  for (size_t i = 0; i < a.size(); ++i) d += a[i] != b[i];
  return d;
}

TEST(DwgReedSolomon, EncodedWordsAreCodewords) {
  std::mt19937 random(1);
  for (const Code& c : kCodes) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.code.parityBytes(), size_t(2 * c.limit));
    for (int n = 0; n < 50; ++n) {
      Bytes word = randomCodeword(c.code, random);
      EXPECT_TRUE(c.code.isCodeword(word.data()));
      Bytes copy = word;
      EXPECT_EQ(c.code.correct(copy.data()), 0);
      EXPECT_EQ(copy, word);
      // Any single changed byte, data or parity, breaks it.
      copy[random() % copy.size()] ^= uint8_t(1 + random() % 255);
      EXPECT_FALSE(c.code.isCodeword(copy.data()));
    }
  }
}

TEST(DwgReedSolomon, CorrectsUpToTheLimitAnywhere) {
  std::mt19937 random(2);
  for (const Code& c : kCodes) {
    for (int errors = 1; errors <= c.limit; ++errors) {
      SCOPED_TRACE(std::string(c.name) + ", errors " + std::to_string(errors));
      for (int n = 0; n < 200; ++n) {
        Bytes word = randomCodeword(c.code, random);
        Bytes received = word;
        damage(received, errors, random);
        ASSERT_EQ(c.code.correct(received.data()), errors);
        ASSERT_EQ(received, word);
      }
    }
    // The first and last bytes are the polynomial's ends.
    Bytes word = randomCodeword(c.code, random);
    Bytes received = word;
    received.front() ^= 0xFF;
    received.back() ^= 0x01;
    EXPECT_EQ(c.code.correct(received.data()), 2) << c.name;
    EXPECT_EQ(received, word) << c.name;
  }
}

// Beyond the limit a decoder either gives up, leaving the bytes as read, or finds a code word
// within the limit of what it received (another one than written). The system code's code words
// lie far apart, so it practically always gives up.
TEST(DwgReedSolomon, ReportsWordsBeyondTheLimit) {
  std::mt19937 random(3);
  for (const Code& c : kCodes) {
    for (int errors : {c.limit + 1, c.limit + 2, 2 * c.limit + 1, 40, 255}) {
      SCOPED_TRACE(std::string(c.name) + ", errors " + std::to_string(errors));
      int reported = 0;
      for (int n = 0; n < 100; ++n) {
        Bytes word = randomCodeword(c.code, random);
        Bytes received = word;
        damage(received, errors, random);
        Bytes before = received;
        int fixed = c.code.correct(received.data());
        if (fixed < 0) {
          ++reported;
          EXPECT_EQ(received, before);
        } else {
          EXPECT_TRUE(c.code.isCodeword(received.data()));
          EXPECT_LE(distance(received, before), c.limit);
          EXPECT_NE(received, word);
        }
      }
      if (c.limit == 8) EXPECT_EQ(reported, 100);
      else EXPECT_GT(reported, 20);
    }
  }
}

// `blocks` code words laid out as a page: interleaved byte by byte, or all data then all parity.
Bytes layOut(const std::vector<Bytes>& words, size_t k, bool interleaved) {
  size_t blocks = words.size();
  Bytes page(blocks * kDwgRsCodeword);
  for (size_t b = 0; b < blocks; ++b) {
    for (size_t j = 0; j < kDwgRsCodeword; ++j) {
      size_t at = interleaved ? j * blocks + b : j < k ? b * k + j : blocks * k + b * (kDwgRsCodeword - k) + (j - k);
      page[at] = words[b][j];
    }
  }
  return page;
}

TEST(DwgReedSolomon, PagesOfBothLayoutsAreCorrectedWordByWord) {
  std::mt19937 random(4);
  for (const Code& c : kCodes) {
    for (bool interleaved : {true, false}) {
      SCOPED_TRACE(std::string(c.name) + (interleaved ? ", interleaved" : ", in sequence"));
      const size_t k = c.code.dataBytes();
      std::vector<Bytes> words;
      Bytes data;
      for (int b = 0; b < 5; ++b) {
        words.push_back(randomCodeword(c.code, random));
        data.insert(data.end(), words.back().begin(), words.back().begin() + long(k));
      }
      // Word 1 within the limit, word 3 far beyond it (for the system code, which then surely
      // gives up); the rest sound.
      words[1][0] ^= 0x11;
      words[1][k] ^= 0x22;
      const size_t bad = c.limit == 8 ? 1 : 0;
      for (size_t j = 0; j < 40 * bad; ++j) words[3][j * 5] ^= 0x5A;
      Bytes page = layOut(words, k, interleaved);
      page.resize(page.size() + 7, 0xEE);  // room after the code words is not read

      DwgRsDamage found;
      Bytes out = dwgRsData(page.data(), page.size(), words.size(), c.code, interleaved, found);
      EXPECT_EQ(found.correctedBytes, 2u);
      EXPECT_EQ(found.badCodewords, bad);
      ASSERT_EQ(out.size(), data.size());
      for (size_t b = 0; b < words.size(); ++b) {
        Bytes expected = b == 3 ? Bytes(words[3].begin(), words[3].begin() + long(k))
                                : Bytes(data.begin() + long(b * k), data.begin() + long((b + 1) * k));
        EXPECT_EQ(Bytes(out.begin() + long(b * k), out.begin() + long((b + 1) * k)), expected) << "block " << b;
      }
      std::vector<std::string> messages;
      reportDwgRsDamage(found, "page 7", messages);
      ASSERT_EQ(messages.size(), bad);
      if (bad) {
        EXPECT_NE(messages[0].find("page 7"), std::string::npos);
      }
      EXPECT_THROW(dwgRsData(page.data(), words.size() * kDwgRsCodeword - 1, words.size(), c.code, interleaved, found),
                   DwgFormatError);
    }
  }
  std::vector<std::string> none;
  reportDwgRsDamage(DwgRsDamage{3, 0}, "page 8", none);
  EXPECT_TRUE(none.empty());
}

// Where a page lies in the file, and how many code words it has.
struct PagePlace {
  uint64_t at;
  size_t blocks;
};

PagePlace pageMapPage(const std::string& bytes) {
  std::vector<std::string> messages;
  DwgR2007SystemPage map = readDwgR2007FileHeader(bytes, messages).pageMap;
  return {kDwgR2007PagesAt + map.offset, dwgRsBlocks(((map.compressedSize + 7) & ~uint64_t(7)) * map.repeats, kDwgRsSystemData)};
}

PagePlace objectsPage(const std::string& bytes) {
  std::vector<std::string> messages;
  DwgR2007FileHeader header = readDwgR2007FileHeader(bytes, messages);
  DwgR2007PageIndex pages = parseDwgR2007PageMap(readDwgR2007SystemPage(bytes, header.pageMap, "page map", messages));
  header.sectionMap.offset = pages.at(header.sectionMapId) - kDwgR2007PagesAt;
  auto infos = parseDwgR2007SectionMap(readDwgR2007SystemPage(bytes, header.sectionMap, "section map", messages));
  for (const DwgR2007Section& s : infos) {
    if (s.name == "AcDb:AcDbObjects") {
      const DwgR2007Page& page = s.pages.at(0);
      return {pages.at(page.id), dwgRsBlocks((page.compressedSize + 7) & ~uint64_t(7), kDwgRsPageData)};
    }
  }
  ADD_FAILURE() << "no object section";
  return {0, 0};
}

std::string loaded(const std::string& bytes, std::vector<std::string>* messages = nullptr) {
  OdDbDatabasePtr db = readDwgBuffer(bytes);
  if (messages) *messages = db->loadReport().messages;
  return entityCountsByKind(*db);
}

TEST(DwgReedSolomon, DamagedCorpusPagesLoadAsTheOriginal) {
  const std::string original = corpusBytes("dwg/example_2007.dwg");
  const std::string counts = loaded(original);
  std::mt19937 random(2007);
  const PagePlace page = objectsPage(original);
  ASSERT_GT(page.blocks, 10u);

  // Two wrong bytes in each of many code words of the object page, interleaved as stored.
  std::string damaged = original;
  for (size_t b = 0; b < page.blocks; b += 3) {
    for (size_t row : {random() % 255, 255 + random() % 255}) {
      size_t at = page.at + (row % 255) * page.blocks + b;
      damaged[at] = char(damaged[at] ^ (1 + random() % 255));
    }
  }
  // Eight in the second code word of the file header and in the last of the page map.
  const PagePlace map = pageMapPage(original);
  for (size_t row = 10; row < 250; row += 30) {
    damaged[0x80 + row * 3 + 1] ^= 0x3C;
    damaged[map.at + row * map.blocks + map.blocks - 1] ^= 0xC3;
  }
  std::vector<std::string> messages;
  EXPECT_EQ(loaded(damaged, &messages), counts);
  EXPECT_TRUE(messages.empty()) << messages.front();

  // Beyond the limit in one code word: reported, or (when the decoder lands on another code
  // word) caught by the page's check sum or its decompression.
  damaged = original;
  for (size_t row = 0; row < 6; ++row) damaged[page.at + row * 40 * page.blocks] ^= 0x77;
  try {
    loaded(damaged, &messages);
    EXPECT_FALSE(messages.empty());
  } catch (const OdError&) {
  }
}

}  // namespace
