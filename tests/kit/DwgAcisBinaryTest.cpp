// Binary ACIS data to SAT text: the exact text AutoCAD writes for known records (checked against
// whole corpus bodies by the DWG/DXF pair test), refusal of what is unknown or cut off.
#include <gtest/gtest.h>

#include <cstring>

#include "kit/dwg/DwgAcisBinary.h"

namespace {

// Builds binary ACIS data value by value.
class Sab {
public:
  Sab() {
    bytes_ = "ACIS BinaryFile";
    for (int32_t v : {20800, 0, 1, 0}) raw(v);
    for (const char* s : {"Autodesk AutoCAD", "ASM 223.0.1.1930 OSX", "Mon Jun 18 11:09:32 2018"}) string(s);
    for (double d : {1.0, 1e-6, 1e-10}) real(d);
  }
  Sab& name(const std::string& full) {
    size_t start = 0;
    for (size_t dash = full.find('-'); dash != std::string::npos; dash = full.find('-', start)) {
      counted(0x0E, full.substr(start, dash - start));
      start = dash + 1;
    }
    counted(0x0D, full.substr(start));
    return *this;
  }
  Sab& pointer(int32_t v) { return tagged(0x0C, v); }
  Sab& integer(int32_t v) { return tagged(0x04, v); }
  Sab& real(double v) { return tagged(0x06, v); }
  Sab& logical(bool v) {
    bytes_ += char(v ? 0x0A : 0x0B);
    return *this;
  }
  Sab& string(const std::string& s) {
    counted(0x07, s);
    return *this;
  }
  Sab& position(double x, double y, double z) {
    bytes_ += char(0x13);
    for (double d : {x, y, z}) raw(d);
    return *this;
  }
  Sab& end() {
    bytes_ += char(0x11);
    return *this;
  }
  std::string finished() { return name("End-of-ACIS-data").bytes_; }

private:
  template <class T>
  void raw(T v) {
    char b[sizeof(T)];
    std::memcpy(b, &v, sizeof(T));
    bytes_.append(b, sizeof(T));
  }
  template <class T>
  Sab& tagged(char tag, T v) {
    bytes_ += tag;
    raw(v);
    return *this;
  }
  void counted(char tag, const std::string& s) {
    bytes_ += tag;
    bytes_ += char(s.size());
    bytes_ += s;
  }
  std::string bytes_;
};

Sab smallBody() {
  Sab sab;
  sab.name("body").pointer(-1).integer(-1).pointer(1).end();
  sab.name("face").pointer(-1).logical(true).logical(false).logical(false).end();
  sab.name("straight-curve").position(1.5, -0.0, 1e-7).logical(true).real(-2.5).logical(false).end();
  sab.name("persubent-acadSolidHistory-attrib").string("AcProfile").end();
  return sab;
}

TEST(DwgAcisBinary, KnownRecordsBecomeAutoCadsText) {
  const std::string data = smallBody().finished();
  std::optional<AcisSatText> sat = acisBinaryToSat(data + "wire data after the body");
  ASSERT_TRUE(sat.has_value());
  EXPECT_EQ(sat->bytesUsed, data.size());
  const std::vector<std::string> expected = {
      "20800 4 1 0",
      "16 Autodesk AutoCAD 20 ASM 223.0.1.1930 OSX 0",
      "1 9.999999999999999547e-07 1.000000000000000036e-10",
      "body $-1 -1 $1 #",
      "face $-1 reversed single out #",
      "straight-curve 1.5 -0 9.999999999999999547e-08 F -2.5 I #",
      "persubent-acadSolidHistory-attrib @9 AcProfile #",
  };
  EXPECT_EQ(sat->lines, expected);
}

TEST(DwgAcisBinary, UnknownOrDamagedDataGivesNothing) {
  // A true/false value in a record whose words are not known, or more of them than known.
  Sab lump = smallBody();
  EXPECT_FALSE(acisBinaryToSat(lump.name("lump").logical(true).end().finished()));
  Sab edge = smallBody();
  EXPECT_FALSE(acisBinaryToSat(edge.name("edge").logical(true).logical(true).end().finished()));
  // An unknown value tag, and a record name in the middle of a record.
  std::string data = smallBody().finished();
  std::string unknownTag = data;
  unknownTag[unknownTag.find("body") + 4] = '\x30';  // in place of the first pointer tag
  EXPECT_FALSE(acisBinaryToSat(unknownTag));
  Sab nested = smallBody();
  EXPECT_FALSE(acisBinaryToSat(nested.name("vertex").name("point").end().finished()));
  // Every cut, and another magic text.
  for (size_t cut = 0; cut < data.size(); ++cut) EXPECT_FALSE(acisBinaryToSat(data.substr(0, cut))) << cut;
  std::string otherMagic = data;
  otherMagic[5] = 'b';
  EXPECT_FALSE(acisBinaryToSat(otherMagic));
}

TEST(DwgAcisBinary, CipherTurnsPrintablesAndUndoesItself) {
  std::string text = "A body #";
  acisCipher(text);
  EXPECT_EQ(text, "^ =0;& |");
  const std::string original = "face $-1 \x7f\t\xe9 ~!";
  text = original;
  acisCipher(text);
  acisCipher(text);
  EXPECT_EQ(text, original);
}

}  // namespace
