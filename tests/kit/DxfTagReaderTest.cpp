// The tag splitter: line ends and padding of ASCII files, the typed values of binary files (two-
// and one-byte group codes), comments, and the two ways a tag stream breaks.
#include <gtest/gtest.h>

#include <cstring>

#include "kit/dxf/DxfTagReader.h"

namespace {

struct Tag {
  int code;
  std::string value;
  bool operator==(const Tag&) const = default;
};

std::vector<Tag> allTags(std::string_view data, DxfTagReader::Error* error = nullptr) {
  DxfTagReader reader(data);
  std::vector<Tag> tags;
  DxfTag tag;
  while (reader.next(tag)) tags.push_back({tag.code, std::string(tag.value)});
  if (error) *error = reader.error();
  return tags;
}

// Binary DXF bytes: the sentinel, then tags appended with the helpers below.
class BinaryDxf {
public:
  explicit BinaryDxf(bool oneByteCodes = false) : oneByte_(oneByteCodes) {
    bytes_.assign(DxfTagReader::kBinarySentinel);
  }
  BinaryDxf& code(int c) {
    if (oneByte_ && c < 255) {
      bytes_ += char(c);
    } else {
      if (oneByte_) bytes_ += char(255);
      int16_t v = int16_t(c);
      append(&v, 2);
    }
    return *this;
  }
  BinaryDxf& text(int c, const std::string& s) {
    code(c);
    bytes_ += s;
    bytes_ += '\0';
    return *this;
  }
  template <class T>
  BinaryDxf& number(int c, T v) {
    code(c);
    append(&v, sizeof v);
    return *this;
  }
  BinaryDxf& chunk(int c, const std::string& data) {
    code(c);
    bytes_ += char(data.size());
    bytes_ += data;
    return *this;
  }
  const std::string& bytes() const { return bytes_; }

private:
  void append(const void* p, size_t n) { bytes_.append(static_cast<const char*>(p), n); }
  bool oneByte_;
  std::string bytes_;
};

}  // namespace

TEST(DxfTagReader, SplitsAsciiLinesWhateverTheirEnds) {
  const std::vector<Tag> expected = {{0, "SECTION"}, {2, "HEADER"}, {9, "$ACADVER"}, {1, "AC1015"}};
  struct Case {
    const char* name;
    std::string text;
  } cases[] = {
      {"line feeds", "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1015\n"},
      {"carriage return and line feed", "0\r\nSECTION\r\n2\r\nHEADER\r\n9\r\n$ACADVER\r\n1\r\nAC1015\r\n"},
      {"carriage returns only", "0\rSECTION\r2\rHEADER\r9\r$ACADVER\r1\rAC1015\r"},
      {"padded codes", "  0\nSECTION\n  2 \nHEADER\n\t9\n$ACADVER\n  1\nAC1015"},
      {"byte order mark", "\xEF\xBB\xBF" "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1015\n"},
      {"comments", "999\nwritten by hand\n0\nSECTION\n2\nHEADER\n999\nmore\n9\n$ACADVER\n1\nAC1015\n"},
      {"blank last line", "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1015\n \n"},
  };
  for (const Case& c : cases) {
    DxfTagReader::Error error;
    EXPECT_EQ(allTags(c.text, &error), expected) << c.name;
    EXPECT_EQ(error, DxfTagReader::Error::kNone) << c.name;
  }
}

TEST(DxfTagReader, KeepsStringValuesAsWritten) {
  // Only the line end goes; blanks inside and around a string value are part of it.
  std::vector<Tag> tags = allTags("1\n  two words  \r\n");
  ASSERT_EQ(tags.size(), 1u);
  EXPECT_EQ(tags[0].value, "  two words  ");
}

TEST(DxfTagReader, ReportsWhereTheStreamBreaks) {
  struct Case {
    const char* text;
    DxfTagReader::Error error;
    size_t tagsBefore;
    size_t line;
  } cases[] = {
      {"0\nSECTION\n2\n", DxfTagReader::Error::kTruncated, 1, 3},
      {"0\nSECTION\nXY\nHEADER\n", DxfTagReader::Error::kBadGroupCode, 1, 3},
      {"0\nSECTION\n12345678\nA\n", DxfTagReader::Error::kBadGroupCode, 1, 3},
      {"0\nSECTION\n1.5\nA\n", DxfTagReader::Error::kBadGroupCode, 1, 3},
  };
  for (const Case& c : cases) {
    DxfTagReader reader(c.text);
    DxfTag tag;
    size_t n = 0;
    while (reader.next(tag)) ++n;
    EXPECT_EQ(reader.error(), c.error) << c.text;
    EXPECT_EQ(n, c.tagsBefore) << c.text;
    EXPECT_EQ(reader.position(), c.line) << c.text;
  }
}

TEST(DxfTagReader, PushBackRepeatsTheLastTag) {
  DxfTagReader reader("0\nLINE\n8\nWALLS\n");
  DxfTag tag;
  ASSERT_TRUE(reader.next(tag));
  reader.pushBack();
  ASSERT_TRUE(reader.next(tag));
  EXPECT_EQ(tag.value, "LINE");
  ASSERT_TRUE(reader.next(tag));
  EXPECT_EQ(tag.value, "WALLS");
}

TEST(DxfTagReader, ConvertsAsciiNumbersStrictly) {
  struct Case {
    const char* text;
    bool ok;
    double value;
  } reals[] = {
      {"1.5", true, 1.5},     {"  -2.25  ", true, -2.25}, {"+3", true, 3.0},     {"1e3", true, 1000.0},
      {"1.0E+20", true, 1e20}, {".5", true, 0.5},          {"7 \r", true, 7.0},    {"1,5", false, 0},
      {"abc", false, 0},       {"", false, 0},             {"nan", false, 0},      {"1e999", false, 0},
  };
  for (const Case& c : reals) {
    DxfTag tag;
    tag.value = c.text;
    double d = -1.0;
    EXPECT_EQ(tag.toReal(d), c.ok) << c.text;
    if (c.ok) {
      EXPECT_DOUBLE_EQ(d, c.value) << c.text;
    }
  }
  struct IntCase {
    const char* text;
    bool ok;
    int64_t value;
  } ints[] = {{"     42", true, 42}, {"-7", true, -7}, {"1.0", true, 1}, {"2.9", true, 2}, {"x1", false, 0}, {"", false, 0}};
  for (const IntCase& c : ints) {
    DxfTag tag;
    tag.value = c.text;
    int64_t i = -1;
    EXPECT_EQ(tag.toInteger(i), c.ok) << c.text;
    if (c.ok) {
      EXPECT_EQ(i, c.value) << c.text;
    }
  }
}

TEST(DxfTagReader, DecodesBinaryValuesByGroupCode) {
  BinaryDxf dxf;
  dxf.text(0, "SECTION").number<double>(10, 1.25).number<int16_t>(70, -3).number<int32_t>(90, 123456)
      .number<int64_t>(160, int64_t(1) << 40).number<int16_t>(280, 7).number<uint8_t>(290, 1)
      .chunk(310, std::string("\x01\x02\xFF", 3)).text(5, "1A").number<int16_t>(1070, 12).text(1000, "x");
  DxfTagReader reader(dxf.bytes());
  ASSERT_TRUE(reader.isBinary());
  DxfTag t;
  ASSERT_TRUE(reader.next(t));
  EXPECT_EQ(t.value, "SECTION");
  double d;
  int64_t i;
  ASSERT_TRUE(reader.next(t) && t.toReal(d));
  EXPECT_EQ(d, 1.25);
  ASSERT_TRUE(reader.next(t) && t.toInteger(i));
  EXPECT_EQ(i, -3);
  ASSERT_TRUE(reader.next(t) && t.toInteger(i));
  EXPECT_EQ(i, 123456);
  ASSERT_TRUE(reader.next(t) && t.toInteger(i));
  EXPECT_EQ(i, int64_t(1) << 40);
  ASSERT_TRUE(reader.next(t) && t.toInteger(i));
  EXPECT_EQ(i, 7);
  ASSERT_TRUE(reader.next(t) && t.toInteger(i));
  EXPECT_EQ(i, 1);
  ASSERT_TRUE(reader.next(t));
  EXPECT_EQ(t.value, std::string("\x01\x02\xFF", 3));
  ASSERT_TRUE(reader.next(t));
  EXPECT_EQ(t.trimmed(), "1A");
  ASSERT_TRUE(reader.next(t) && t.toInteger(i));
  EXPECT_EQ(i, 12);
  ASSERT_TRUE(reader.next(t));
  EXPECT_EQ(t.value, "x");
  EXPECT_FALSE(reader.next(t));
  EXPECT_EQ(reader.error(), DxfTagReader::Error::kNone);
}

TEST(DxfTagReader, ReadsOneByteCodesOfOldBinaryFiles) {
  BinaryDxf dxf(true);
  dxf.text(0, "SECTION").text(2, "ENTITIES").number<double>(10, 2.0).text(1001, "ACAD").number<int16_t>(1070, 5);
  std::vector<Tag> tags = allTags(dxf.bytes());
  ASSERT_EQ(tags.size(), 5u);
  EXPECT_EQ(tags[1], (Tag{2, "ENTITIES"}));
  EXPECT_EQ(tags[3], (Tag{1001, "ACAD"}));
  EXPECT_EQ(tags[4].code, 1070);
}

TEST(DxfTagReader, StopsAtTruncatedBinaryValues) {
  BinaryDxf dxf;
  dxf.text(0, "SECTION").number<double>(10, 1.0);
  const size_t firstTagEnd = DxfTagReader::kBinarySentinel.size() + 2 + sizeof("SECTION");
  for (size_t cut = DxfTagReader::kBinarySentinel.size() + 1; cut < dxf.bytes().size(); ++cut) {
    if (cut == firstTagEnd) continue;  // a clean end between tags
    DxfTagReader::Error error;
    std::vector<Tag> tags = allTags(std::string_view(dxf.bytes()).substr(0, cut), &error);
    EXPECT_EQ(error, DxfTagReader::Error::kTruncated) << cut;
    EXPECT_LE(tags.size(), 1u);
  }
}
