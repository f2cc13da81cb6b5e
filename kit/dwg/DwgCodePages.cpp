#include "kit/dwg/DwgCodePages.h"

std::string dwgCodePageName(int number) {
  static const char* const kNames[] = {
      "UTF-8",     "ASCII",     "ISO8859-1", "ISO8859-2", "ISO8859-3", "ISO8859-4", "ISO8859-5", "ISO8859-6",
      "ISO8859-7", "ISO8859-8", "ISO8859-9", "DOS437",    "DOS850",    "DOS852",    "DOS855",    "DOS857",
      "DOS860",    "DOS861",    "DOS863",    "DOS864",    "DOS865",    "DOS869",    "DOS932",    "MAC-ROMAN",
      "BIG5",      "KSC5601",   "JOHAB",     "DOS866",    "ANSI_1250", "ANSI_1251", "ANSI_1252", "GB2312",
      "ANSI_1253", "ANSI_1254", "ANSI_1255", "ANSI_1256", "ANSI_1257", "ANSI_874",  "ANSI_932",  "ANSI_936",
      "ANSI_949",  "ANSI_950",  "ANSI_1361", "UTF-16",    "ANSI_1258",
  };
  if (number < 0 || number >= int(sizeof kNames / sizeof kNames[0])) return "ANSI_1252";
  return kNames[number];
}
