// The keyword tables: names, aliases, prefixes, two-letter keys, value forms and the messages of
// refused values. Every case parses "in.dwg" followed by its arguments.
#include <climits>
#include <functional>
#include <string>
#include <vector>

#include "projects/common/LayerList.h"
#include "tests/common/ParameterTestSupport.h"

using parameter_test::ParseCapturing;
using parameter_test::Utf8;

namespace {

using P = CParseCommandLine;

std::vector<std::string> withInput(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "in.dwg");
  return arguments;
}

// ---- Numeric fields ----------------------------------------------------------------------------------

struct NumberCase {
  std::vector<std::string> arguments;
  std::function<double(const P&)> field;
  double expected;
};

class NumericKeywords : public testing::TestWithParam<NumberCase> {};

TEST_P(NumericKeywords, SetTheirField) {
  P p;
  ParseCapturing(p, withInput(GetParam().arguments));
  EXPECT_DOUBLE_EQ(GetParam().field(p), GetParam().expected);
}

const auto background = [](const P& p) { return p.GetBackground(); };
const auto units = [](const P& p) { return p.GetUnits(); };
const auto drawingSize = [](const P& p) { return p.GetDrawingSize(); };
const auto sizeMode = [](const P& p) { return p.GetDrawingSizeMode(); };
const auto precision = [](const P& p) { return p.GetPrecision(); };
const auto width = [](const P& p) { return p.GetWidth(); };
const auto viewMode = [](const P& p) { return p.GetViewMode(); };
const auto encoding = [](const P& p) { return p.GetEncoding(); };
const auto format = [](const P& p) { return p.GetOutputFormat(); };
const auto colorMode = [](const P& p) { return p.GetColorMode(); };

INSTANTIATE_TEST_SUITE_P(
    Background, NumericKeywords,
    testing::Values(NumberCase{{"-B=BLACK"}, background, 0}, NumberCase{{"-b=black"}, background, 0},
                    NumberCase{{"-B=0", "-B=WHITE"}, background, 255}, NumberCase{{"-B=17"}, background, 17},
                    NumberCase{{"-B=0", "-B=RED"}, background, 0}, NumberCase{{"-BACKGROUND=0"}, background, 0},
                    NumberCase{{"-BGD=BLACK"}, background, 0}, NumberCase{{"-BLAH"}, background, 0},
                    NumberCase{{"-BLACK", "-WHITEBG"}, background, 255}));

INSTANTIATE_TEST_SUITE_P(
    Units, NumericKeywords,
    testing::Values(NumberCase{{"-INCH"}, units, 1}, NumberCase{{"-feet"}, units, 2},
                    NumberCase{{"-YARDS"}, units, 3}, NumberCase{{"-MILE"}, units, 4}, NumberCase{{"-MM"}, units, 5},
                    NumberCase{{"-CM"}, units, 6}, NumberCase{{"-M"}, units, 7}, NumberCase{{"-METRES"}, units, 7},
                    NumberCase{{"-UNIT=FT"}, units, 2}, NumberCase{{"-UNITS=3"}, units, 3},
                    NumberCase{{"-UN=metre"}, units, 7}, NumberCase{{"-MM", "-UNIT=parsec"}, units, 0},
                    NumberCase{{"-UNIT=42"}, units, 42},
                    // Two-character keys only look in the two-letter table, which has no IN or FT.
                    NumberCase{{"-IN"}, units, 0}, NumberCase{{"-FT"}, units, 0}));

INSTANTIATE_TEST_SUITE_P(
    DrawingSizes, NumericKeywords,
    testing::Values(NumberCase{{"-DIN3"}, drawingSize, 9}, NumberCase{{"-DIN3"}, sizeMode, 0},
                    NumberCase{{"-DIN9"}, drawingSize, 0}, NumberCase{{"-DIN"}, sizeMode, 1},
                    NumberCase{{"-USC"}, drawingSize, 3}, NumberCase{{"-ARCHB"}, drawingSize, 13},
                    NumberCase{{"-A4"}, drawingSize, 10}, NumberCase{{"-A0"}, sizeMode, 1},
                    NumberCase{{"-UE"}, drawingSize, 5}, NumberCase{{"-US=c"}, drawingSize, 3},
                    NumberCase{{"-US=4"}, drawingSize, 4}, NumberCase{{"-A1", "-US=Z"}, drawingSize, 7},
                    NumberCase{{"-ADIN=14"}, drawingSize, 14}, NumberCase{{"-PTS"}, sizeMode, 2},
                    NumberCase{{"-DIN", "-ANSI"}, sizeMode, 0}, NumberCase{{"-DRAWSZ=2"}, sizeMode, 2},
                    NumberCase{{"-DRAWSZ=5"}, sizeMode, 0}));

INSTANTIATE_TEST_SUITE_P(
    Precision, NumericKeywords,
    testing::Values(NumberCase{{"-PREC=LOW"}, precision, 0}, NumberCase{{"-PREC=med"}, precision, 1},
                    NumberCase{{"-LOW", "-PREC=HI"}, precision, 2}, NumberCase{{"-PREC=7"}, precision, 7},
                    NumberCase{{"-PREC=9"}, precision, 2}, NumberCase{{"-LOW", "-PREC=X"}, precision, 0},
                    NumberCase{{"-LOW", "-HIGH"}, precision, 2}, NumberCase{{"-MEDIUM"}, precision, 1},
                    NumberCase{{"-HP=5"}, precision, 5},
                    NumberCase{{"-HP=5"}, [](const P& p) { return p.GetHighResolution(); }, 1}));

INSTANTIATE_TEST_SUITE_P(
    Sizes, NumericKeywords,
    testing::Values(NumberCase{{"-RWD=800"}, width, 800}, NumberCase{{"-WIDTH", "640"}, width, 640},
                    NumberCase{{"-RSZ=1200"}, [](const P& p) { return p.GetHeight(); }, 1200},
                    NumberCase{{"-RWD=800"}, [](const P& p) { return p.GetSizeIsDefault(); }, 0},
                    NumberCase{{"-*RWD=320"}, width, 320}, NumberCase{{"-*RHT=200"}, [](const P& p) { return p.GetHeight(); }, 200},
                    // The value travels as a 16-bit number.
                    NumberCase{{"-SIZE=40000"}, width, -25536},
                    NumberCase{{"-RDPI=300"}, [](const P& p) { return p.GetDPI(); }, 300},
                    NumberCase{{"-RDPI=300"}, [](const P& p) { return p.GetDPISet(); }, 0},
                    NumberCase{{"-RDPI=?"}, [](const P& p) { return p.GetDPISet(); }, 1},
                    NumberCase{{"-RDPI=72.9"}, [](const P& p) { return p.GetDPI(); }, 72},
                    NumberCase{{"-RDPI=1e400"}, [](const P& p) { return p.GetDPI(); }, INT_MAX},
                    NumberCase{{"-ROR=90"}, [](const P& p) { return p.GetRasterOrientation(); }, 90},
                    NumberCase{{"-RQL=80"}, [](const P& p) { return p.GetJpegQuality(); }, 80},
                    NumberCase{{"-RCC=4"}, [](const P& p) { return p.GetCCITTCompression(); }, 4},
                    NumberCase{{"-*RFC=3"}, [](const P& p) { return p.GetFaxCompression(); }, 3},
                    NumberCase{{"-JS"}, width, 3000},
                    NumberCase{{"-JS"}, [](const P& p) { return p.GetMinLineWidth(); }, 0.6}));

INSTANTIATE_TEST_SUITE_P(
    Views, NumericKeywords,
    testing::Values(NumberCase{{"-ALL"}, viewMode, 3}, NumberCase{{"-NOLAST"}, viewMode, 8},
                    NumberCase{{"-MODELONLY"}, viewMode, 11}, NumberCase{{"-BASIC"}, viewMode, 9},
                    NumberCase{{"-ALLPAPER"}, viewMode, 4}, NumberCase{{"-ALLMODEL"}, viewMode, 5},
                    NumberCase{{"-ONLYLAYOUTS"}, viewMode, 6}, NumberCase{{"-FIRSTSHEET"}, viewMode, 10},
                    NumberCase{{"-VIEWSONLY"}, viewMode, 7}, NumberCase{{"-MODEL"}, viewMode, 1},
                    NumberCase{{"-PAPER", "-LAST"}, viewMode, 0}, NumberCase{{"-LAYOUT=S1"}, viewMode, 12},
                    NumberCase{{"-VIEW=Plan"}, viewMode, 13}, NumberCase{{"-MODEL", "-VN=Plan"}, viewMode, 1},
                    NumberCase{{"-SP=M"}, viewMode, 1}, NumberCase{{"-SP=paper"}, viewMode, 2},
                    NumberCase{{"-SP=2"}, viewMode, 2}, NumberCase{{"-MODEL", "-SP=X"}, viewMode, 0}));

INSTANTIATE_TEST_SUITE_P(
    FormatsAndColours, NumericKeywords,
    testing::Values(NumberCase{{"-F=PNG"}, format, 2001}, NumberCase{{"-F=.pdf"}, format, 1007},
                    NumberCase{{"-F=2002"}, format, 2002}, NumberCase{{"-F=ABC"}, format, 0},
                    NumberCase{{"-F=TOOLONG"}, format, 1016}, NumberCase{{"-F=WINFAX"}, format, 2107},
                    NumberCase{{"-F=RPDF"}, format, 1007}, NumberCase{{"-RPDF"}, format, 2017},
                    NumberCase{{"-F=RPDF"}, [](const P& p) { return p.GetRasterFormat(); }, 2001},
                    NumberCase{{"-RFMT=gif", "-F=RPDF"}, [](const P& p) { return p.GetRasterFormat(); }, 2002},
                    NumberCase{{"-RASTERFORMAT=JPEG"}, [](const P& p) { return p.GetRasterFormat(); }, 2000},
                    NumberCase{{"-JSR"}, [](const P& p) { return p.GetRasterFormat(); }, 2001},
                    NumberCase{{"-F=SVG"}, [](const P& p) { return p.GetMinLineWidth(); }, 0.6},
                    NumberCase{{"-SVG"}, [](const P& p) { return p.GetMinLineWidth(); }, 0.1},
                    NumberCase{{"-F=JPG0"}, [](const P& p) { return p.GetJpegQuality(); }, 2},
                    NumberCase{{"-JPG0"}, [](const P& p) { return p.GetJpegQuality(); }, 2},
                    NumberCase{{"-TIF"}, format, 2003}, NumberCase{{"-CCITT"}, format, 2102},
                    NumberCase{{"-F=CALS"}, colorMode, 1}, NumberCase{{"-RPDF"}, colorMode, 1},
                    NumberCase{{"-BW"}, colorMode, 1}, NumberCase{{"-GS"}, colorMode, 2},
                    NumberCase{{"-GREYSCALE"}, colorMode, 2}, NumberCase{{"-BINARY"}, encoding, 2},
                    NumberCase{{"-COMPRESSED"}, encoding, 3}, NumberCase{{"-BIN", "-TEXT"}, encoding, 1},
                    NumberCase{{"-EN=binary"}, encoding, 2}, NumberCase{{"-CE=3"}, encoding, 3},
                    NumberCase{{"-EN=7"}, encoding, 1}));

INSTANTIATE_TEST_SUITE_P(
    Reals, NumericKeywords,
    testing::Values(NumberCase{{"-MD=5.0"}, [](const P& p) { return p.GetMaxDash(); }, 5.0},
                    NumberCase{{"-MD=2,5.5"}, [](const P& p) { return p.GetMaxDash(); }, 5.5},
                    NumberCase{{"-MG=0.25"}, [](const P& p) { return p.GetMaxGap(); }, 0.25},
                    NumberCase{{"-ML=0.3"}, [](const P& p) { return p.GetMinLineWidth(); }, 0.3},
                    NumberCase{{"-LW=2"}, [](const P& p) { return p.GetLineWidthScale(); }, 2.0},
                    NumberCase{{"-LTS=0.5"}, [](const P& p) { return p.GetLineTypeScale(); }, 0.5},
                    NumberCase{{"-HS=3"}, [](const P& p) { return p.GetHatchScale(); }, 3.0},
                    NumberCase{{"-PW=3"}, [](const P& p) { return p.GetPenWidthScale(); }, 3.0},
                    NumberCase{{"-STSZ=2.5"}, [](const P& p) { return p.GetStampSize(); }, 2.5},
                    NumberCase{{"-TOL=0.01"}, [](const P& p) { return p.GetTolerance(); }, 0.01},
                    NumberCase{{"-TOL=0.01"}, [](const P& p) { return p.GetToleranceSet(); }, 1},
                    NumberCase{{"-BRIGHTNESS=40"}, [](const P& p) { return p.GetBrightness(); }, 40},
                    NumberCase{{"-BR=0.5"}, [](const P& p) { return p.GetBrightnessSet(); }, 1},
                    NumberCase{{"-WM_SIZE=12"}, [](const P& p) { return p.GetWatermarkHeight(); }, 12},
                    NumberCase{{"-WM_ANGLE=45.5"}, [](const P& p) { return p.GetWatermarkAngle(); }, 45.5},
                    NumberCase{{"-QUANTIZE=8"}, [](const P& p) { return p.GetColorQuantization(); }, 8},
                    NumberCase{{"-TREATAS=dgn"}, [](const P& p) { return p.GetTreatAs(); }, 1018},
                    NumberCase{{"-TA=DXF"}, [](const P& p) { return p.GetTreatAs(); }, 1014},
                    NumberCase{{"-TA=DWF", "-TA=XYZ"}, [](const P& p) { return p.GetTreatAs(); }, 0},
                    NumberCase{{"-ROT=90"}, [](const P& p) { return p.GetRotation(); }, 90},
                    NumberCase{{"-RO=270", "-ROT=45"}, [](const P& p) { return p.GetRotation(); }, 270},
                    NumberCase{{"-LANDSCAPE"}, [](const P& p) { return p.GetOrientation(); }, 1},
                    NumberCase{{"-R=0"}, [](const P& p) { return p.GetOrientation(); }, 0},
                    NumberCase{{"-ORNT=-1", "-R=1"}, [](const P& p) { return p.GetOrientation(); }, 1}));

// ---- Flags ------------------------------------------------------------------------------------------

struct FlagCase {
  std::vector<std::string> arguments;
  std::function<bool(const P&)> flag;
  bool expected;
};

class FlagKeywords : public testing::TestWithParam<FlagCase> {};

TEST_P(FlagKeywords, SetTheirFlag) {
  P p;
  ParseCapturing(p, withInput(GetParam().arguments));
  EXPECT_EQ(GetParam().flag(p), GetParam().expected);
}

const auto blocks = [](const P& p) { return p.GetProcessBlocks(); };

INSTANTIATE_TEST_SUITE_P(
    Switches, FlagKeywords,
    testing::Values(
        // An ON/OFF value becomes the number, so BLOCKS sees no text and keeps blocks on.
        FlagCase{{"-BLOCKS=OFF"}, blocks, true}, FlagCase{{"-BLOCKS=NO"}, blocks, false},
        FlagCase{{"-BLOCKS=ignore"}, blocks, false}, FlagCase{{"-BLOCKS=NO", "-BLOCKS=YES"}, blocks, true},
        FlagCase{{"-BLOCKS=NO", "-BLOCKS"}, blocks, true},
        FlagCase{{"-TOOLTIPS"}, [](const P& p) { return p.GetDoTooltips() && p.GetTooltipsRequested(); }, true},
        FlagCase{{"-TT"}, [](const P& p) { return p.GetDoTooltips(); }, true},
        FlagCase{{"-AU"}, [](const P& p) { return p.GetAutoTrim(); }, true},
        FlagCase{{"-NUI"}, [](const P& p) { return p.GetNoUninit(); }, false},
        FlagCase{{"-LA"}, [](const P& p) { return p.GetListArea(); }, true},
        FlagCase{{"-EXTENTS"}, [](const P& p) { return p.GetZoomExtents(); }, true},
        FlagCase{{"-EXT", "-NOEXTENTS"}, [](const P& p) { return p.GetZoomExtents(); }, false},
        FlagCase{{"-jsunicode"}, [](const P& p) { return p.GetJSUnicode(); }, true},
        FlagCase{{"-savedwg"}, [](const P& p) { return p.GetSaveDwg(); }, true},
        FlagCase{{"-csv"}, [](const P& p) { return p.GetCSVOutput() && p.IsCSVFileNameEmpty(); }, true},
        FlagCase{{"-STRICT"}, [](const P& p) { return p.GetStrictHyperlink(); }, false},
        FlagCase{{"-SU"}, [](const P& p) { return p.GetStrictHyperlink(); }, false},
        FlagCase{{"-RE"}, [](const P& p) { return p.GetRepository(); }, true},
        FlagCase{{"-PTC"}, [](const P& p) { return p.GetPointCircle() == 1; }, true},
        FlagCase{{"-DENY=Ed,Pr(hi"},
                 [](const P& p) {
                   return p.GetDenyEdit() && p.GetDenyPrint() && p.GetDenyHighResolutionPrint() && !p.GetDenyCopy();
                 },
                 true},
        FlagCase{{"-DENY=Co Op\tAc,Se,Fi,An,As"},
                 [](const P& p) {
                   return p.GetDenyCopy() && p.GetDenyOpen() && p.GetDenyAccessSupport() && p.GetDenySecurity() &&
                          p.GetDenyFormFilling() && p.GetDenyAnnotate() && p.GetDenyAssemble() && !p.GetDenyEdit() &&
                          !p.GetDeny(kDenyReserved0);
                 },
                 true},
        FlagCase{{"-DENY=Edit"}, [](const P& p) { return p.GetDenyEdit(); }, false}));

// ---- Text fields ------------------------------------------------------------------------------------

struct TextCase {
  std::vector<std::string> arguments;
  std::function<std::string(const P&)> field;
  std::string expected;
};

class TextKeywords : public testing::TestWithParam<TextCase> {};

TEST_P(TextKeywords, SetTheirText) {
  P p;
  ParseCapturing(p, withInput(GetParam().arguments));
  EXPECT_EQ(GetParam().field(p), GetParam().expected);
}

std::string narrow(const OdAnsiString& text) { return text.str(); }

INSTANTIATE_TEST_SUITE_P(
    Paths, TextKeywords,
    testing::Values(TextCase{{"-XPATH=C:\\xref"}, [](const P& p) { return Utf8(p.GetXrefPath()); }, "C:/xref/"},
                    TextCase{{"-XREFPATH=/x/"}, [](const P& p) { return Utf8(p.GetXrefPath()); }, "/x/"},
                    TextCase{{"-XP=C:\\xref"}, [](const P& p) { return Utf8(p.GetXrefPath()); }, "C:/xref\\"},
                    TextCase{{"-FONTPATH=fonts   "}, [](const P& p) { return Utf8(p.GetFontPath()); }, "fonts/"},
                    TextCase{{"-SPATH=/srv/cad'"}, [](const P& p) { return Utf8(p.GetServerPath()); }, "/srv/cad/"},
                    TextCase{{"-RPATH=img"}, [](const P& p) { return Utf8(p.GetRasterPath()); }, "img/"},
                    TextCase{{"-RP=img"}, [](const P& p) { return Utf8(p.GetRasterPath()); }, "img/"},
                    TextCase{{"-ID=in"}, [](const P& p) { return Utf8(p.GetInputDirectory()); }, "in/"},
                    TextCase{{"-WKSP=site.txt"}, [](const P& p) { return Utf8(p.GetWorkspaceFile()); }, "site.txt"},
                    TextCase{{"-CSV=layers.csv"}, [](const P& p) { return Utf8(p.GetCSVFileName()); }, "layers.csv"},
                    TextCase{{"-CTB=mono.ctb"}, [](const P& p) { return Utf8(p.GetCTBFileName()); }, "mono.ctb"},
                    TextCase{{"-LT=layers.txt"}, [](const P& p) { return Utf8(p.GetLayerTable()); }, "layers.txt"},
                    TextCase{{"-CW=widths.txt"}, [](const P& p) { return Utf8(p.GetColorWidthTable()); },
                             "widths.txt"}));

INSTANTIATE_TEST_SUITE_P(
    Names, TextKeywords,
    testing::Values(
        TextCase{{"-ALL"}, [](const P& p) { return Utf8(p.GetViewName()); }, "*ALL*"},
        TextCase{{"-FIRST"}, [](const P& p) { return Utf8(p.GetViewName()); }, "*FIRSTLAYOUT*"},
        TextCase{{"-VIEW=3"}, [](const P& p) { return Utf8(p.GetViewName()); }, "3"},
        TextCase{{"-VN=Plan"}, [](const P& p) { return Utf8(p.GetViewName()); }, "Plan"},
        TextCase{{"-LAY=Sheet 1"}, [](const P& p) { return Utf8(p.GetLayoutName()); }, "Sheet 1"},
        TextCase{{"-BATTR"}, [](const P& p) { return Utf8(p.GetBlankAttributeText()); }, "**EMPTY**"},
        TextCase{{"-BATTR=n/a"}, [](const P& p) { return Utf8(p.GetBlankAttributeText()); }, "n/a"},
        // "-" passes the number test and arrives as the number 0.
        TextCase{{"-BATTR=-"}, [](const P& p) { return Utf8(p.GetBlankAttributeText()); }, "**EMPTY**"},
        TextCase{{"-BA"}, [](const P& p) { return Utf8(p.GetBlankAttributeText()); }, ""},
        // BLANKATTRIBUTES passes the BLA... rule of the first chain before reaching its own.
        TextCase{{"-BLANKATTRIBUTES"},
                 [](const P& p) { return Utf8(p.GetBlankAttributeText()) + std::to_string(p.GetBackground()); },
                 "**EMPTY**0"},
        TextCase{{"-BLOCKNAME=Door"}, [](const P& p) { return Utf8(p.GetBlockName()); }, "Door"},
        TextCase{{"-BN=Door", "-BLOCKNAME"}, [](const P& p) { return Utf8(p.GetBlockName()); }, "Door"},
        TextCase{{"-RL=Rooms;Areas"}, [](const P& p) { return Utf8(p.GetRLayers()); }, "Rooms;Areas"},
        TextCase{{"-TL=Text"}, [](const P& p) { return Utf8(p.GetTLayers()); }, "Text"},
        TextCase{{"-RA=Attr"}, [](const P& p) { return Utf8(p.GetroomAtt()); }, "Attr"},
        TextCase{{"-HL=http://x/?a=1"}, [](const P& p) { return Utf8(p.GetContentHyperlink()); }, "http://x/?a=1"},
        TextCase{{"-NODEMAP=n.txt"}, [](const P& p) { return Utf8(p.GetNodeMap()); }, "n.txt"},
        TextCase{{"-ND=m.txt"}, [](const P& p) { return Utf8(p.GetNodeMap()); }, "m.txt"},
        TextCase{{"-DF=COURIER"}, [](const P& p) { return Utf8(p.GetDefaultFont()); }, "COURIER"},
        TextCase{{"-DI=TIMESI"}, [](const P& p) { return Utf8(p.GetDefaultItalicFont()); }, "TIMESI"},
        TextCase{{"-WM=DRAFT"}, [](const P& p) { return Utf8(p.GetWatermark()); }, "DRAFT"},
        TextCase{{"-REGEX=^A.*\xC3\xA9$"}, [](const P& p) { return p.GetRegex(); }, "^A.*\xC3\xA9$"},
        TextCase{{"-RX=B"}, [](const P& p) { return p.GetRegex(); }, "B"},
        TextCase{{"-CODEPAGE=ANSI_1252"}, [](const P& p) { return narrow(p.GetCodePage()); }, "ANSI_1252"},
        TextCase{{"-CP=1250"}, [](const P& p) { return narrow(p.GetCodePage()); }, ""},  // a number: no text
        TextCase{{"-AUTHOR=Ann", "-SUBJECT=S", "-KEYWORDS=K", "-TITLE=T"},
                 [](const P& p) {
                   return narrow(p.GetAuthor()) + narrow(p.GetSubject()) + narrow(p.GetKeywords()) +
                          narrow(p.GetTitle());
                 },
                 "AnnSKT"},
        TextCase{{"-UP=u1x", "-MP=m2x"},
                 [](const P& p) { return narrow(p.GetUserPassword()) + narrow(p.GetMasterPassword()); }, "u1xm2x"},
        TextCase{{"-HATCH=ANSI31"}, [](const P& p) { return narrow(p.GetDefaultHatch()); }, "ANSI31"},
        TextCase{{"-F=Png"}, [](const P& p) { return Utf8(p.GetFormatExt()); }, "Png"},
        TextCase{{"-F=.JPEG"}, [](const P& p) { return Utf8(p.GetFormatExt()); }, "jpg"},
        TextCase{{"-F=CCITT"}, [](const P& p) { return Utf8(p.GetFormatExt()); }, "tiff"},
        TextCase{{"-F=ABC"}, [](const P& p) { return Utf8(p.GetFormatExt()); }, "ABC"},
        TextCase{{"-CCITT"}, [](const P& p) { return Utf8(p.GetFormatExt()); }, "tiff"},
        TextCase{{"-JS"}, [](const P& p) { return Utf8(p.GetFormatExt()); }, "js"},
        TextCase{{"-WM_CONTENT=Copy", "-WM_X=10%", "-WM_Y=5", "-WM_FONT=Arial", "-WM_ANCHOR=mc", "-WM_LAYER=W"},
                 [](const P& p) {
                   return Utf8(p.GetWatermarkContent()) + "|" + p.GetWatermarkX() + "|" + p.GetWatermarkY() + "|" +
                          p.GetWatermarkFont() + "|" + p.GetWatermarkAnchor() + "|" + p.GetWatermarkLayer();
                 },
                 // "5" is a whole number and leaves no text
                 "Copy|10%||Arial|mc|W"}));

// ---- Refused values and conflicts: their messages --------------------------------------------------

struct MessageCase {
  std::vector<std::string> arguments;
  std::string output;
};

class RefusedValues : public testing::TestWithParam<MessageCase> {};

TEST_P(RefusedValues, PrintTheirMessage) {
  P p;
  EXPECT_EQ(ParseCapturing(p, withInput(GetParam().arguments)), GetParam().output);
}

INSTANTIATE_TEST_SUITE_P(
    Messages, RefusedValues,
    testing::Values(
        MessageCase{{"-MD=5"}, "ERROR: No Value given for MD parameter\n"},
        MessageCase{{"-MG"}, "ERROR: No Value given for MG parameter\n"},
        MessageCase{{"-ML=ON"}, "ERROR: No Value given for ML parameter\n"},
        MessageCase{{"-WM_ANGLE=45"}, "ERROR: No Value given for WM_ANGLE parameter\n"},
        MessageCase{{"-R=2"}, "Invalid parameter for Originatation: 2\n"},
        MessageCase{{"-ORNT=-5", "-ORNT=-5"}, "Invalid parameter for Originatation: -5\n"},
        MessageCase{{"-LAYERS_OFF=X", "-LAYER_OFF=Y"},
                    "Layers Off and Layers On are mutually exclusive, ignoring second defined: Layers\n"},
        MessageCase{{"-LOFF=X", "-LON=Y", "-LAYERS_ON=Z"},
                    "Layers Off and Layers On are mutually exclusive, ignoring second defined: Layers\n"},
        MessageCase{{"-LAYERS_ON=Y", "-LAYERS_OFF=X"}, ""},
        MessageCase{{"-WM_COL=3", "-WM_RGB=255,0,0"},
                    "wm_color and wm_rgb are mutually exclusive, wm_color is used\n"},
        MessageCase{{"-WM_RGB=1,2,3", "-WM_COLOR=5"},
                    "wm_color and wm_rgb are mutually exclusive, wm_color is used\n"},
        MessageCase{{"-MD=5.0", "-UNKNOWNKEY=1", "-XYZ", "-Q=3", "-ROT=45", "-DRAWSZ=9", "-PREC=99"}, ""}));

TEST(KeywordConflicts, TheFirstValueStays) {
  P p;
  ParseCapturing(p, withInput({"-LAYERS_OFF=X", "-LAYERS_OFF=Y", "-LON=Z"}));
  EXPECT_EQ(Utf8(p.GetLayersOff()), "X");
  EXPECT_TRUE(p.IsLayersOnEmpty());

  P q;
  ParseCapturing(q, withInput({"-LAYERS_ON=Y", "-LAYERS_OFF=X"}));
  EXPECT_EQ(Utf8(q.GetLayersOn()), "Y");
  EXPECT_EQ(Utf8(q.GetLayersOff()), "X");

  P r;
  ParseCapturing(r, withInput({"-WM_COL=3", "-WM_RGB=255,0,0"}));
  EXPECT_EQ(r.GetWatermarkColor(), 3);
  EXPECT_EQ(r.GetWatermarkRGB(), "");

  P s;
  ParseCapturing(s, withInput({"-WM_RGB=1,2,3", "-WM_COLOR=5"}));
  EXPECT_EQ(s.GetWatermarkColor(), 5);
  EXPECT_EQ(s.GetWatermarkRGB(), "");

  P t;
  ParseCapturing(t, withInput({"-MD=1.5", "-MD=5"}));
  EXPECT_DOUBLE_EQ(t.GetMaxDash(), 1.5);
}

// ---- SplitParameter ---------------------------------------------------------------------------------

struct SplitCase {
  const wchar_t* argument;
  const wchar_t* key;
  short number;
  const wchar_t* text;
};

class SplitParameterForms : public testing::TestWithParam<SplitCase> {};

TEST_P(SplitParameterForms, KeyNumberAndText) {
  OdString key, text(L"stale");
  short number = 9;  // left alone unless the value sets it
  P::SplitParameter(OdString(GetParam().argument), key, number, text);
  EXPECT_EQ(key.str(), std::wstring(GetParam().key));
  EXPECT_EQ(number, GetParam().number);
  EXPECT_EQ(text.str(), std::wstring(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(
    Values, SplitParameterForms,
    testing::Values(SplitCase{L"KEY", L"KEY", 9, L""}, SplitCase{L"K=ON", L"K", 1, L""},
                    SplitCase{L"K=true", L"K", 1, L""}, SplitCase{L"K=Off", L"K", 0, L""},
                    SplitCase{L"K=FALSE", L"K", 0, L""}, SplitCase{L"K=12", L"K", 12, L""},
                    SplitCase{L"K=-3", L"K", -3, L""}, SplitCase{L"K=1.5", L"K", 0, L"1.5"},
                    SplitCase{L"K=abc", L"K", 9, L"abc"}, SplitCase{L"K=a=b", L"K", 9, L"a=b"},
                    SplitCase{L"K=", L"K", 9, L""}, SplitCase{L"K=70000", L"K", 4464, L""},
                    SplitCase{L"=x", L"", 9, L"x"}, SplitCase{L"K=ONE", L"K", 9, L"ONE"}));

// ---- Trailing separators and derived output names -------------------------------------------------

TEST(AddTrailingSlash, FollowsThePathsOwnSeparator) {
  const std::vector<std::pair<std::wstring, std::wstring>> cases = {
      {L"dir", L"dir/"},           {L"C:\\x", L"C:\\x\\"},     {L"a/b\\c", L"a/b\\c\\"},
      {L"a\\b/c", L"a\\b/c/"},     {L"dir/  ", L"dir/"},       {L"\"dir\"", L"\"dir/"},
      {L"a\\b'", L"a\\b\\"},       {L"dir\\", L"dir\\"},       {L"", L"/"},
      {L"   ", L"/"}};
  for (const auto& [path, expected] : cases) {
    OdString value(path);
    P::AddTrailingSlash(value);
    EXPECT_EQ(value.str(), expected) << std::string(path.begin(), path.end());
  }
}

TEST(MakeOutputName, ExtensionFromTheFormatCode) {
  struct Case {
    int format;
    const wchar_t* input;
    const wchar_t* outputDirectory;
    const wchar_t* expected;
  };
  const Case cases[] = {
      {1016, L"a.dwg", L"", L"a.svg"},           {2001, L"dir/a.b.dwg", L"", L"dir/a.b.png"},
      {1003, L"a.dwg", L"", L"a"},               {1016, L"noext", L"", L"noext.svg"},
      {1016, L".hidden", L"", L".hidden.svg"},   {2102, L"a.dwg", L"", L"a.tif"},
      {2101, L"a.dwg", L"", L"a.cals"},          {2105, L"a.dwg", L"", L"a.ica"},
      {1020, L"a.dwg", L"", L"a.js"},            {1016, L"in\\x.dwg", L"out/", L"out/x.svg"},
      {1007, L"x.dwg", L"out/", L"out/x.pdf"},   {-1, L"a.dwg", L"", L"a"}};
  for (const Case& c : cases) {
    OdString output;
    P::MakeOutputName(c.format, OdString(c.input), output, OdString(), OdString(c.outputDirectory), true);
    EXPECT_EQ(output.str(), std::wstring(c.expected)) << c.format;
  }
}

TEST(LayerLists, SplitOnceAtSemicolons) {
  const auto names = SplitLayerList(OdString(L"A;;B ; C;"));
  ASSERT_EQ(names.size(), 3u);
  EXPECT_EQ(names[0].str(), L"A");
  EXPECT_EQ(names[1].str(), L"B ");
  EXPECT_EQ(names[2].str(), L" C");
  EXPECT_TRUE(SplitLayerList(OdString()).empty());
  EXPECT_TRUE(SplitLayerList(OdString(L";;")).empty());
}

}  // namespace
