// Format names and codes, and the extension each code gives a derived output name.
#include "projects/common/OutputFormatTable.h"


#include "projects/common/ParseCommandLine.h"

namespace {

const OutputFormatName kFormatNames[] = {
    {L"SVG", 1016, nullptr, FormatSideEffect::kThinLines},
    {L"PDF", 1007, nullptr, FormatSideEffect::kNone},
    {L"DXF", 1014, nullptr, FormatSideEffect::kNone},
    {L"DWG", 1013, nullptr, FormatSideEffect::kNone},
    {L"DWF", 1000, nullptr, FormatSideEffect::kNone},
    {L"WMF", 1003, nullptr, FormatSideEffect::kNone},
    {L"TXT", 1017, nullptr, FormatSideEffect::kNone},
    {L"TEXT", 1017, nullptr, FormatSideEffect::kNone},
    {L"DXFB", 1015, L"dxf", FormatSideEffect::kNone},
    {L"JPG", 2000, nullptr, FormatSideEffect::kNone},
    {L"JPEG", 2000, L"jpg", FormatSideEffect::kNone},
    {L"JPG0", 2000, L"jpg", FormatSideEffect::kJpegLowQuality},
    {L"TIFF", 2003, nullptr, FormatSideEffect::kNone},
    {L"TIF", 2003, nullptr, FormatSideEffect::kNone},
    {L"GIF", 2002, nullptr, FormatSideEffect::kNone},
    {L"BMP", 2014, nullptr, FormatSideEffect::kNone},
    {L"WMFR", 2004, nullptr, FormatSideEffect::kNone},
    {L"PSD", 2005, nullptr, FormatSideEffect::kNone},
    {L"PNG", 2001, nullptr, FormatSideEffect::kNone},
    {L"JSR", 2018, nullptr, FormatSideEffect::kNone},
    {L"TGA", 2006, nullptr, FormatSideEffect::kNone},
    {L"EPSR", 2007, L"eps", FormatSideEffect::kNone},
    {L"SUN", 2008, nullptr, FormatSideEffect::kNone},
    {L"WPG", 2009, nullptr, FormatSideEffect::kNone},
    {L"PCT", 2010, nullptr, FormatSideEffect::kNone},
    {L"PICT", 2010, nullptr, FormatSideEffect::kNone},
    {L"GEM", 2011, nullptr, FormatSideEffect::kNone},
    {L"MPNT", 2012, nullptr, FormatSideEffect::kNone},
    {L"PCX", 2013, nullptr, FormatSideEffect::kNone},
    {L"AWD", 2100, nullptr, FormatSideEffect::kNone},
    {L"CALS", 2101, nullptr, FormatSideEffect::kBlackAndWhite},
    {L"CCITT", 2102, L"tiff", FormatSideEffect::kBlackAndWhite},
    {L"RPDF", 1007, L"pdf", FormatSideEffect::kRasterPdf},
    {L"FAX", 2104, nullptr, FormatSideEffect::kNone},
    {L"IOCA", 2105, nullptr, FormatSideEffect::kNone},
    {L"IOCAMO", 2106, nullptr, FormatSideEffect::kNone},
    {L"WINFAX", 2107, L"wfx", FormatSideEffect::kNone},
};

struct CodeExtension {
  int code;
  const wchar_t* extension;
};

// Codes missing here (1003 WMF, 1015 binary DXF, 2014 BMP, ...) get no extension.
const CodeExtension kExtensions[] = {
    {1000, L".dwf"}, {1001, L".svf"}, {1004, L".ai"},  {1005, L".eps"}, {1006, L".ps"},  {1007, L".pdf"},
    {1008, L".plt"}, {1009, L".hp2"}, {1010, L".igs"}, {1011, L".cdl"}, {1012, L".cgm"}, {1013, L".dwg"},
    {1014, L".dxf"}, {1016, L".svg"}, {1017, L".txt"}, {1019, L".swf"}, {1020, L".js"},  {2000, L".jpg"},
    {2001, L".png"}, {2002, L".gif"}, {2003, L".tif"}, {2004, L".wmf"}, {2005, L".psd"}, {2006, L".tga"},
    {2007, L".eps"}, {2008, L".sun"}, {2009, L".wpg"}, {2010, L".pct"}, {2011, L".gem"}, {2012, L".mac"},
    {2013, L".pcx"}, {2017, L".pdf"}, {2018, L".png"}, {2100, L".awd"}, {2101, L".cals"}, {2102, L".tif"},
    {2104, L".fax"}, {2105, L".ica"}, {2106, L".ica"}, {2107, L".wfx"},
};

}  // namespace

const OutputFormatName* FindOutputFormatName(const OdString& upperName) {
  for (const OutputFormatName& entry : kFormatNames)
    if (upperName == entry.name) return &entry;
  return nullptr;
}

const wchar_t* CParseCommandLine::OutputExtension(int format) {
  for (const CodeExtension& entry : kExtensions)
    if (entry.code == format) return entry.extension;
  return L"";
}
