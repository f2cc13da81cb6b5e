// Which loader an input reaches, from its name's last four characters and TREATAS.
#include <gtest/gtest.h>

#include "converter/InputRoute.h"

namespace {

const char* RouteName(InputRoute route) {
  switch (route) {
    case InputRoute::kDwf: return "DWF";
    case InputRoute::kPdf: return "PDF";
    case InputRoute::kDgn: return "DGN";
    case InputRoute::kRaster: return "raster";
    case InputRoute::kDwg: return "DWG";
    case InputRoute::kDxf: return "DXF";
    case InputRoute::kUnknown: return "unknown";
  }
  return "?";
}

TEST(InputRoute, ByExtensionAndForcedKind) {
  struct Case {
    const wchar_t* path;
    int treatAs;
    const char* route;
  };
  const Case cases[] = {
      {L"plan.dwg", 0, "DWG"},
      {L"C:/Plans/PLAN.DWG", 0, "DWG"},
      {L"plan.dxf", 0, "DXF"},
      {L"plan.dwg.bak", 0, "unknown"},
      {L"plan.dwf", 0, "DWF"},
      {L"scan.pdf", 0, "PDF"},
      {L"model.dgn", 0, "DGN"},
      {L"photo.jpg", 0, "raster"},
      {L"photo.JPG", 0, "raster"},
      {L"photo.tif", 0, "raster"},
      {L"photo.tiff", 0, "unknown"},  // the last four characters are "tiff"
      {L"photo.jpeg", 0, "unknown"},  // five-letter extensions never match
      {L"photo.webp", 0, "unknown"},
      {L"fax.g3x", 0, "raster"},      // ".g3" matches what begins with it
      {L"fax.g3", 0, "unknown"},      // the last four characters are "x.g3"
      {L"a.b", 0, "unknown"},
      {L".dwg", 0, "unknown"},        // four characters or fewer: no extension
      {L"x.dwg", 0, "DWG"},
      {L"", 0, "unknown"},
      // TREATAS forces DWF and DGN only; a PDF stays a PDF under a DGN treatment.
      {L"plan.dxf", 1000, "DWF"},
      {L"plan.bin", 1000, "DWF"},
      {L"plan.dwg", 1018, "DGN"},
      {L"scan.pdf", 1018, "PDF"},
      {L"plan.bin", 1013, "unknown"},
      {L"plan.bin", 1014, "unknown"},
  };
  for (const Case& c : cases) {
    const OdString path(c.path);
    EXPECT_STREQ(RouteName(ChooseInputRoute(InputExtension(path), c.treatAs)), c.route)
        << OdAnsiString(path).c_str() << " treat as " << c.treatAs;
  }
}

TEST(InputRoute, ExtensionIsTheLastFourCharactersLowerCased) {
  EXPECT_EQ(InputExtension(OdString(L"Plan.DwG")).str(), L".dwg");
  EXPECT_EQ(InputExtension(OdString(L"dir.x/file")).str(), L"file");
  EXPECT_EQ(InputExtension(OdString(L"\u00C9.PDF")).str(), L".pdf");
  EXPECT_TRUE(InputExtension(OdString(L"abcd")).isEmpty());
}

}  // namespace
