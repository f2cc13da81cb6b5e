// Strings are decoded once, by the code page $DWGCODEPAGE names for files before R2007 and as
// UTF-8 from R2007 on; escapes stay in the text for the system to decode later.
#include <gtest/gtest.h>

#include "kit/dxf/DxfTextDecoder.h"
#include "tests/kit/DxfTestSupport.h"

TEST(DxfTextDecoder, DecodesEachCodePage) {
  struct Case {
    const char* page;
    const char* raw;
    const char* utf8;
  } cases[] = {
      {"ANSI_1252", "caf\xE9 \x80", "café €"},
      {"ANSI_1252", "\x81", "\xC2\x81"},  // undefined in 1252: kept as its own code point
      {"ansi_1252", "\xFC", "ü"},
      {"ANSI_1250", "\x8A\xE8", "Šč"},
      {"ANSI_1251", "\xCF\xF0\xE8", "При"},
      {"ANSI_1253", "\xC1", "Α"},
      {"ANSI_1254", "\xFD", "ı"},
      {"ANSI_1255", "\xE0", "א"},
      {"ANSI_1256", "\xC7", "ا"},
      {"ANSI_1257", "\xC0", "Ą"},
      {"ANSI_1258", "\xC3", "Ă"},
      {"ANSI_874", "\xA1", "ก"},
      {"ANSI_932", "\x82\xA0\x8A\xBF", "あ漢"},
      {"ANSI_936", "\xC4\xE3\xBA\xC3", "你好"},
      {"ANSI_949", "\xB0\xA1", "가"},
      {"ANSI_950", "\xA4\xA4", "中"},
      {"dos850", "\x81\x82", "üé"},
      {"DOS932", "\x82\xA0", "あ"},
      {"no such page", "\xE9", "é"},  // unknown pages read as 1252
      {"ANSI_1252", "plain \\U+00FC \\M+18140", "plain \\U+00FC \\M+18140"},
  };
  for (const Case& c : cases) {
    DxfTextDecoder decoder;
    decoder.setCodePage(c.page);
    EXPECT_EQ(decoder.decode(c.raw), c.utf8) << c.page;
  }
}

TEST(DxfTextDecoder, ReadsUtf8FilesAndFallsBackOnBadBytes) {
  DxfTextDecoder decoder;
  decoder.setCodePage("ANSI_1251");
  decoder.setUtf8(true);
  EXPECT_EQ(decoder.decode("Grüße \xE2\x82\xAC"), "Grüße €");
  // Bytes that are not UTF-8 are read in the code page instead of being lost.
  EXPECT_EQ(decoder.decode("\xCF\xF0\xE8"), "При");
  // A multi-byte page cut in the middle of a character gives one replacement character.
  DxfTextDecoder japanese;
  japanese.setCodePage("ANSI_932");
  EXPECT_EQ(japanese.decode("a\x82"), "a\xEF\xBF\xBD");
}

TEST(DxfTextDecoder, FollowsTheHeaderOfTheFile) {
  // Layer names before R2007 are in the file's code page; from R2007 they are UTF-8.
  std::string r2000 = dxfText({"0 SECTION", "2 HEADER", "9 $ACADVER", "1 AC1015", "9 $DWGCODEPAGE", "3 ANSI_1251",
                               "0 ENDSEC", "0 SECTION", "2 ENTITIES", "0 LINE", "8 \xD1\xEB\xEE\xE9", "0 ENDSEC",
                               "0 EOF"});
  OdDbDatabasePtr db = readDxfText(r2000);
  EXPECT_TRUE(db->layers().find("Слой"));
  EXPECT_EQ(db->loadReport().codePage, "CP1251");
  std::string r2007 = dxfText({"0 SECTION", "2 HEADER", "9 $ACADVER", "1 AC1021", "9 $DWGCODEPAGE", "3 ANSI_1251",
                               "0 ENDSEC", "0 SECTION", "2 ENTITIES", "0 TEXT", "1 Слой \\U+00FC", "0 ENDSEC", "0 EOF"});
  db = readDxfText(r2007);
  const TextEntity* text = firstModelEntity<TextEntity>(*db);
  ASSERT_TRUE(text);
  EXPECT_EQ(text->text, "Слой \\U+00FC");
}
