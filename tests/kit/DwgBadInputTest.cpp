// Bad DWG input ends in one OdError with a message naming the file and the problem, or (when
// only some objects are damaged) in the drawing without them, never in a crash or a hang:
// cut-off files, garbage after a valid release mark, flipped bytes anywhere.
#include <gtest/gtest.h>

#include <random>

#include "kit/db/DatabaseDump.h"
#include "tests/kit/DwgTestSupport.h"

namespace {

// The result of a read: eOk, or the error's code with its message in `message`.
OdResult readResult(const std::string& bytes, bool recover, std::string* message = nullptr) {
  DwgReadOptions options;
  options.recover = recover;
  try {
    OdDbDatabasePtr db = readDwgBuffer(bytes, options, "bad.dwg");
    (void)dumpDatabase(*db, {.maxVerticesPerEntity = 4});
    return eOk;
  } catch (const OdError& e) {
    if (message) *message = narrowText(e.description());
    return e.code();
  }
}

const char* const kSeeds[] = {"dwg/2000/entities-2d.dwg", "dwg/r14/v.dwg", "dwg/example_r13.dwg"};

}  // namespace

TEST(DwgBadInput, ReleaseMarksAndGarbage) {
  struct Case {
    std::string bytes;
    OdResult code;
    const char* says;
  };
  const Case cases[] = {
      {"", eNotDrawingFile, "not a DWG file"},
      {"AC10", eNotDrawingFile, "not a DWG file"},
      {"ACAD15 and more", eNotDrawingFile, "not a DWG file"},
      {std::string("AC1006") + std::string(200, '\0'), eEndOfFile, "ends within its header"},
      {std::string("AC1009") + std::string(200, '\0'), eEndOfFile, "ends within its header"},
      {std::string("AC1.50") + std::string(200, '\0'), eUnsupportedFileFormat, "before R13"},
      {"AC1015", eEndOfFile, "cut off"},
      {std::string("AC1015") + std::string(200, '\0'), eInvalidDrawing, "sections"},
      {std::string("AC1015") + std::string(200, '\xFF'), eInvalidDrawing, "sections"},
  };
  for (const Case& c : cases) {
    std::string message;
    EXPECT_EQ(readResult(c.bytes, false, &message), c.code) << c.bytes.substr(0, 6);
    EXPECT_NE(message.find("bad.dwg: "), std::string::npos) << message;
    EXPECT_NE(message.find(c.says), std::string::npos) << message;
  }
}

// Every cut of a file gives an error or a drawing, and cuts inside the file header or its
// section locators give a message saying so.
TEST(DwgBadInput, TruncatedFiles) {
  for (const char* seed : kSeeds) {
    const std::string bytes = readBytes(corpusPath(seed));
    std::string message;
    EXPECT_EQ(readResult(bytes.substr(0, 0x20), false, &message), eEndOfFile) << seed;
    EXPECT_NE(message.find("cut off"), std::string::npos) << message;
    for (size_t cut : {size_t(0x60), bytes.size() / 7, bytes.size() / 3, bytes.size() / 2, bytes.size() - 40}) {
      for (bool recover : {false, true}) {
        std::string text;
        OdResult result = readResult(bytes.substr(0, cut), recover, &text);
        if (result != eOk) {
          EXPECT_FALSE(text.empty()) << seed << " cut at " << cut;
        }
      }
    }
  }
}

// Flipped bytes anywhere: no crash, an error with a message, or a drawing. Recovery never gives
// less than the strict read.
TEST(DwgBadInput, FlippedBytes) {
  std::mt19937 random(20260522);
  for (const char* seed : kSeeds) {
    const std::string original = readBytes(corpusPath(seed));
    for (int round = 0; round < 60; ++round) {
      std::string bytes = original;
      int flips = 1 + int(random() % 16);
      for (int i = 0; i < flips; ++i) {
        size_t at = 6 + random() % (bytes.size() - 6);  // keep the release mark
        bytes[at] = char(bytes[at] ^ (1 + random() % 255));
      }
      std::string message;
      OdResult strict = readResult(bytes, false, &message);
      if (strict != eOk) {
        EXPECT_NE(message.find("bad.dwg: "), std::string::npos) << message;
      } else {
        EXPECT_EQ(readResult(bytes, true), eOk) << seed << " round " << round;
      }
    }
  }
}

// A damaged header section or damaged objects still give the objects that can be read when
// recovering; the load report says what was lost.
TEST(DwgBadInput, RecoveryKeepsWhatCanBeRead) {
  const std::string original = readBytes(corpusPath("dwg/2000/entities-2d.dwg"));
  auto u32 = [&](size_t at) {
    uint32_t v = 0;
    for (int i = 3; i >= 0; --i) v = (v << 8) | uint8_t(original[at + size_t(i)]);
    return v;
  };
  // Section locators 0, 1 and 2: header, classes and object map, each where it lies and how long
  // it is; this writer puts the objects between the classes and the map.
  for (int i = 0; i < 3; ++i) ASSERT_EQ(original[0x19 + 9 * i], i);
  const size_t headerAt = u32(0x1A), headerSize = u32(0x1E);
  const size_t objectsFrom = u32(0x23) + u32(0x27), objectsTo = u32(0x2C);
  ASSERT_LT(objectsFrom, objectsTo);

  const size_t originalCount = readDwgBuffer(original)->modelSpace()->entities.size();
  auto damaged = [&](size_t from, size_t to) {
    std::string bytes = original;
    for (size_t i = from; i < to; i += 3) bytes[i] = char(0xA5);
    return bytes;
  };

  // A damaged header: an error, unless recovering.
  const std::string badHeader = damaged(headerAt, headerAt + headerSize);
  std::string message;
  EXPECT_EQ(readResult(badHeader, false, &message), eInvalidDrawing);
  EXPECT_NE(message.find("header section"), std::string::npos) << message;
  DwgReadOptions recovering;
  recovering.recover = true;
  OdDbDatabasePtr db = readDwgBuffer(badHeader, recovering, "bad.dwg");
  EXPECT_EQ(db->modelSpace()->entities.size(), originalCount);
  EXPECT_TRUE(db->loadReport().recovered);

  // Damaged objects are left out, each with a line in the report; the rest loads.
  db = readDwgBuffer(damaged(objectsFrom + (objectsTo - objectsFrom) / 4, objectsFrom + (objectsTo - objectsFrom) / 2));
  EXPECT_LT(db->modelSpace()->entities.size(), originalCount);
  EXPECT_GT(db->modelSpace()->entities.size(), 0u);
  EXPECT_FALSE(db->loadReport().messages.empty());
}
