// The DXF writer's pieces and its behaviour on awkward input: number and angle text that reads
// back exactly, text encoding per version, versions, handles, file handling and bad values.
#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <set>

#include "kit/base/OdError.h"
#include "kit/dxf/DxfTagWriter.h"
#include "kit/dxf/DxfTextDecoder.h"
#include "kit/dxf/DxfTextEncoder.h"
#include "kit/dxf/DxfWriter.h"
#include "tests/kit/DxfTestSupport.h"

namespace {

double parse(const std::string& text) {
  double d = std::nan("");
  std::from_chars(text.data(), text.data() + text.size(), d);
  return d;
}

std::string narrow(const OdString& s) {
  std::string out;
  for (OdChar c : s.str()) out += c < 0x80 ? char(c) : '?';
  return out;
}

// The values of every group with this code in DXF text, in order.
std::vector<std::string> groupValues(const std::string& dxf, int code) {
  std::vector<std::string> values;
  size_t pos = 0;
  while (pos < dxf.size()) {
    size_t codeEnd = dxf.find('\n', pos);
    if (codeEnd == std::string::npos) break;
    size_t valueEnd = dxf.find('\n', codeEnd + 1);
    if (valueEnd == std::string::npos) valueEnd = dxf.size();
    int c = std::atoi(dxf.c_str() + pos);
    if (c == code) values.push_back(dxf.substr(codeEnd + 1, valueEnd - codeEnd - 1));
    pos = valueEnd + 1;
  }
  return values;
}

class TempDir {
public:
  TempDir() {
    path_ = std::filesystem::temp_directory_path() / ("dxfwriter-test-" + std::to_string(std::random_device()()));
    std::filesystem::create_directories(path_);
  }
  ~TempDir() { std::filesystem::remove_all(path_); }
  std::string file(const std::string& name) const { return (path_ / name).string(); }
  size_t entries() const {
    return size_t(std::distance(std::filesystem::directory_iterator(path_), std::filesystem::directory_iterator()));
  }

private:
  std::filesystem::path path_;
};

}  // namespace

TEST(DxfTagWriter, RealsReadBackExactlyAndLookLikeReals) {
  DxfTagWriter w;
  const double values[] = {0.0, 1.0, -1.0, 0.1, 1.0 / 3.0, 1e20, -1e-20, 123456789.123456789, 5e-324,
                           std::numeric_limits<double>::max(), 2.5, -0.0};
  for (double v : values) {
    std::string text = w.formatReal(v);
    SCOPED_TRACE(text);
    EXPECT_EQ(parse(text), v);
    EXPECT_EQ(std::signbit(parse(text)), std::signbit(v));
    EXPECT_NE(text.find_first_of(".e"), std::string::npos) << "a real needs a point or exponent";
  }
  EXPECT_EQ(w.formatReal(5.0), "5.0");
  EXPECT_EQ(w.formatReal(0.1), "0.1");
}

TEST(DxfTagWriter, ValuesThatAreNotNumbersAreWrittenAsZero) {
  DxfTagWriter w;
  for (double v : {std::nan(""), double(INFINITY), -double(INFINITY)}) {
    EXPECT_EQ(w.formatReal(v), "0.0");
    EXPECT_EQ(w.formatAngle(v), "0.0");
  }
}

TEST(DxfTagWriter, FixedPrecisionWritesThatManyDigits) {
  DxfTagWriter w;
  w.setPrecision(6);
  EXPECT_EQ(w.formatReal(1.0 / 3.0), "0.333333");
  EXPECT_EQ(w.formatReal(2.0), "2.0");
}

// Angles are stored in radians and written in degrees: the degrees must give the stored radians
// back through the reader's conversion, and read as the round numbers they were.
TEST(DxfTagWriter, AnglesGiveTheStoredRadiansBack) {
  DxfTagWriter w;
  auto radians = [](double degrees) { return degrees * (kPi / 180.0); };
  struct Case {
    double degrees;
    const char* text;
  } cases[] = {{45.0, "45.0"}, {90.0, "90.0"}, {30.0, "30.0"}, {359.9, "359.9"}, {-12.5, "-12.5"}, {1e-9, "1e-09"}};
  for (const Case& c : cases) {
    EXPECT_EQ(w.formatAngle(radians(c.degrees)), c.text);
  }
  // Any angle a file gave comes back exactly; any other within one unit in the last place.
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> anyDegrees(-720.0, 720.0);
  for (int i = 0; i < 20000; ++i) {
    double r = radians(anyDegrees(random));
    ASSERT_EQ(radians(parse(w.formatAngle(r))), r) << r;
    double other = std::nextafter(r, INFINITY);
    ASSERT_LE(std::fabs(radians(parse(w.formatAngle(other))) - other), std::fabs(std::nextafter(other, INFINITY) - other));
  }
}

TEST(DxfTagWriter, GroupCodesAreRightAlignedAndLineBreaksInTextAreEscaped) {
  DxfTagWriter w;
  w.raw(0, "LINE");
  w.integer(1001, 5);
  w.text(1, "two\nlines\r");
  EXPECT_EQ(w.buffer(), "  0\nLINE\n1001\n5\n  1\ntwo^Jlines^M\n");
}

TEST(DxfTagWriter, BinaryDataIsCutIntoChunksOf127Bytes) {
  DxfTagWriter w;
  std::vector<uint8_t> bytes(300, 0xAB);
  w.binary(310, bytes.data(), bytes.size());
  std::vector<std::string> chunks = groupValues(w.buffer(), 310);
  ASSERT_EQ(chunks.size(), 3u);
  EXPECT_EQ(chunks[0].size(), 254u);
  EXPECT_EQ(chunks[2].size(), 2u * (300 - 254));
  EXPECT_EQ(chunks[0].substr(0, 4), "ABAB");
}

TEST(DxfTextEncoder, EncodesForTheCodePage) {
  struct Case {
    const char* codePage;
    bool utf8;
    std::string text;
    std::string expected;
  } cases[] = {
      {"ANSI_1252", false, "plain", "plain"},
      {"ANSI_1252", false, "caf\xC3\xA9", "caf\xE9"},
      {"ANSI_1252", false, "\xE2\x82\xAC", "\x80"},                                // euro sign
      {"ANSI_1252", false, "\xD0\x96", "\\U+0416"},                                // Cyrillic Zhe
      {"ANSI_1252", false, "\xF0\x9F\x98\x80", "\\U+D83D\\U+DE00"},                // beyond the basic plane
      {"ANSI_1251", false, "\xD0\x96", "\xC6"},
      {"ANSI_932", false, "\xE6\x97\xA5", "\x93\xFA"},                             // Shift-JIS
      {"unknown-page", false, "caf\xC3\xA9", "caf\xE9"},                           // read as 1252, so written so
      {"ANSI_1252", true, "\xD0\x96\xE6\x97\xA5", "\xD0\x96\xE6\x97\xA5"},         // R2007 on: UTF-8
      {"ANSI_1252", false, "\\U+0416 kept", "\\U+0416 kept"},                      // escapes stay as read
  };
  for (const Case& c : cases) {
    DxfTextEncoder encoder;
    encoder.setCodePage(c.codePage);
    encoder.setUtf8(c.utf8);
    EXPECT_EQ(encoder.encode(c.text), c.expected) << c.codePage << " " << c.text;
  }
}

// Every byte a single-byte page reads is written back as that byte, including the ones the page
// leaves undefined (the reader keeps them as the code point of the same value).
TEST(DxfTextEncoder, IsTheInverseOfTheDecoder) {
  for (const char* page : {"ANSI_1252", "ANSI_1250", "ANSI_1251", "ANSI_1253", "dos850", "ANSI_874"}) {
    DxfTextDecoder decoder;
    decoder.setCodePage(page);
    DxfTextEncoder encoder;
    encoder.setCodePage(page);
    for (int b = 0x80; b <= 0xFF; ++b) {
      char byte = char(b);
      std::string utf8 = decoder.decode(std::string_view(&byte, 1));
      EXPECT_EQ(encoder.encode(utf8), std::string(1, byte)) << page << " byte " << b;
    }
  }
}

TEST(DxfWriter, ChoosesTheVersionItCanWrite) {
  struct Case {
    const char* drawing;
    const char* requested;
    const char* written;  // empty: refused
  } cases[] = {
      {"AC1009", "", "AC1015"}, {"AC1014", "", "AC1015"}, {"AC1015", "", "AC1015"}, {"AC1018", "", "AC1018"},
      {"AC1032", "", "AC1032"}, {"AC1032", "AC1015", "AC1015"}, {"AC1015", "AC1027", "AC1027"},
      {"AC1015", "AC1009", ""}, {"AC1015", "R2000", ""}, {"AC1015", "AC9999", ""},
  };
  for (const Case& c : cases) {
    OdDbDatabasePtr db = readDxfText(dxfWithEntities({}, c.drawing));
    DxfWriteOptions options;
    options.version = c.requested;
    EXPECT_EQ(dxfOutputVersion(*db, options), c.written) << c.drawing << " " << c.requested;
    if (*c.written) {
      EXPECT_EQ(readDxfText(writeDxfString(*db, options))->header().acadVer, c.written);
    } else {
      EXPECT_THROW(writeDxfString(*db, options), OdError);
    }
  }
}

// A drawing of the latest version written for an older one still loads with every entity.
TEST(DxfWriter, OlderVersionsKeepEveryEntity) {
  OdDbDatabasePtr db = readDxfFile(corpusPath("dwg/example_2018.dxf"));
  for (const char* version : {"AC1015", "AC1018", "AC1024"}) {
    DxfWriteOptions options;
    options.version = version;
    OdDbDatabasePtr again = readDxfText(writeDxfString(*db, options));
    EXPECT_EQ(entityCountsByKind(*again), entityCountsByKind(*db)) << version;
    EXPECT_TRUE(again->loadReport().messages.empty()) << version;
  }
}

// Files without handles, with duplicates, or with handles only some records have: the written
// file gives every object one handle of its own, all below $HANDSEED.
TEST(DxfWriter, HandlesAreUniqueAndBelowTheSeed) {
  for (const char* file : {"dwg/example_r12.dxf", "dxf/integration/duplicate_handles.dxf",
                           "dxf/integration/empty_handles.dxf", "dwg/example_2018.dxf"}) {
    SCOPED_TRACE(file);
    std::string dxf = writeDxfString(*readDxfFile(corpusPath(file)));
    std::vector<std::string> handles = groupValues(dxf, 5);
    std::vector<std::string> dimStyles = groupValues(dxf, 105);
    handles.insert(handles.end(), dimStyles.begin(), dimStyles.end());
    // The header's $HANDSEED is the first group 5; SORTENTSTABLE sort handles reuse code 5.
    std::string seedText = handles.front();
    handles.erase(handles.begin());
    uint64_t seed = OdDbHandle::fromHex(seedText).value();
    std::set<std::string> seen;
    size_t sortHandles = 0;
    for (const std::string& h : handles) {
      EXPECT_LT(OdDbHandle::fromHex(h).value(), seed) << h;
      if (!seen.insert(h).second) ++sortHandles;
    }
    EXPECT_LE(sortHandles, groupValues(dxf, 331).size()) << "duplicate handles";
  }
}

TEST(DxfWriter, ReplacesTheFileWholeAndLeavesNoTemporaryFile) {
  TempDir dir;
  std::string path = dir.file("out.dxf");
  { std::ofstream(path) << "old content"; }
  OdDbDatabasePtr db = readDxfFile(corpusPath("dxf/3dface.dxf"));
  writeDxfFile(*db, path);
  EXPECT_EQ(dir.entries(), 1u);
  OdDbDatabasePtr again = readDxfFile(path);
  EXPECT_EQ(entityCountsByKind(*again), entityCountsByKind(*db));
}

TEST(DxfWriter, UnwritablePlacesGiveAClearError) {
  TempDir dir;
  OdDbDatabasePtr db = readDxfText(dxfWithEntities({"0 LINE", "8 0", "10 0", "20 0", "11 1", "21 1"}));
  struct Case {
    std::string path;
    OdResult code;
  } cases[] = {
      {dir.file("missing-folder/out.dxf"), eCantOpenFile},
      {dir.file(""), eCantOpenFile},  // the folder itself
      {"", eCantOpenFile},
      {dir.file("") + "/", eCantOpenFile},
  };
  for (const Case& c : cases) {
    try {
      writeDxfFile(*db, c.path);
      ADD_FAILURE() << "no error for " << c.path;
    } catch (const OdError& e) {
      EXPECT_EQ(e.code(), c.code) << c.path;
      if (!c.path.empty()) {
        EXPECT_NE(narrow(e.description()).find(c.path), std::string::npos) << narrow(e.description());
      }
    }
  }
  EXPECT_EQ(dir.entries(), 0u);
}

// Odd values a drawing may hold: the file stays valid DXF and what it can say reads back.
TEST(DxfWriter, OddValuesGiveValidFiles) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities({"0 LINE", "8 0", "10 0", "20 0", "11 1", "21 1"}, "AC1015"));
  LineEntity* line = dbCast<LineEntity>(db->modelSpace()->entities.front());
  line->start = OdGePoint3d(std::nan(""), INFINITY, -INFINITY);
  LayerRecord* layer = db->layerNamed("Bad \"name\"; \xD0\x96 & <tag> %%c");
  line->layer = layer;
  auto* text = db->newObject<MTextEntity>();
  text->layer = layer;
  text->linetype = db->linetypeByLayer();
  text->style = db->textStyles().find("Standard");
  text->text = std::string(249, 'x') + "\xE6\x97\xA5" + std::string(600, 'y') + "\nend";
  text->handle = db->allocateHandle();
  db->reassignHandle(text, text->handle);
  layer->handle = db->allocateHandle();
  db->reassignHandle(layer, layer->handle);
  db->modelSpace()->entities.push_back(text);

  for (const char* version : {"AC1015", "AC1021"}) {
    SCOPED_TRACE(version);
    DxfWriteOptions options;
    options.version = version;
    OdDbDatabasePtr again = readDxfText(writeDxfString(*db, options));
    ASSERT_EQ(again->modelSpace()->entities.size(), 2u);
    const auto* readLine = dbCast<LineEntity>(again->modelSpace()->entities[0]);
    ASSERT_TRUE(readLine);
    EXPECT_EQ(readLine->start, OdGePoint3d(0.0, 0.0, 0.0));
    EXPECT_EQ(readLine->end, OdGePoint3d(1.0, 1.0, 0.0));
    const auto* readText = dbCast<MTextEntity>(again->modelSpace()->entities[1]);
    ASSERT_TRUE(readText);
    std::string expectedText = std::string(version) == "AC1021" ? text->text.substr(0, text->text.size() - 4)
                                                                : std::string(249, 'x') + "\\U+65E5" + std::string(600, 'y');
    EXPECT_EQ(readText->text, expectedText + "^Jend");
    std::string expectedLayer = std::string(version) == "AC1021" ? layer->name : "Bad \"name\"; \\U+0416 & <tag> %%c";
    EXPECT_EQ(readLine->layer->name, expectedLayer);
  }
}
