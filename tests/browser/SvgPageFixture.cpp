// Writes a small drawing as an SVG file and its HTML page through the SVG driver, for the browser
// check: three layers side by side (black outline, red fill, blue text) on a 900 x 600 page.
//   svg_page_fixture <output directory>
// Prints the file names and the layer group ids as one JSON line.
#include <unistd.h>

#include <cstdio>
#include <string>

#include "drivers/svg/DRAWSVG.h"
#include "drivers/svg/SvgXmlText.h"

int main(int argc, char** argv) {
  if (argc != 2 || chdir(argv[1]) != 0) {
    std::fprintf(stderr, "usage: svg_page_fixture <existing output directory>\n");
    return 2;
  }
  DRAWSVG svg;
  svg.SetOutputFileName(L"plan.svg");
  svg.SetPointTolerance(0.001);
  svg.SetPostfix(true);
  svg.SetMinLineWidth(1.0);
  svg.DefineView(L"Model", kViewModelSpace);

  svg.SetLayer(L"Walls", 0);
  svg.SetColor(0);
  svg.DrawPolyline({{50, 50}, {250, 50}, {250, 550}, {50, 550}, {50, 50}}, false, 0, L"CONTINUOUS", true, 0, 1.0, 300);
  svg.DrawLine(L"CONTINUOUS", true, 1, 50, 300, 250, 300, 1.0, 0);

  svg.SetLayer(L"Doors", 2);
  svg.SetColor(2);
  svg.DrawPolyline({{350, 100}, {550, 100}, {550, 300}, {350, 300}, {350, 100}}, true, 0, L"CONTINUOUS", true, 1, 1.0, 0);
  svg.DrawCircle(true, L"CONTINUOUS", true, 1, 450, 450, 60, 1.0, 0);

  svg.SetLayer(L"Room Notes", 5);
  svg.SetColor(5);
  TextRecord text;
  text.text = L"Room 101";
  text.position = {620, 300};
  text.height = 50;
  svg.DrawText(text);

  DrvBox page;
  page.extend(0, 0);
  page.extend(900, 600);
  svg.SetPageExtents(page);
  svg.SetSvgExtents(page);
  if (svg.OutputView(false) != 1) return 1;
  svg.WriteWrapperPage();

  std::string layers;
  for (const std::wstring& id : svg.GetWrittenLayerIds()) {
    if (!layers.empty()) layers += ",";
    layers += "\"layer_" + svg.GetIdPostfix() + XmlText(id, XmlEscapeMode::kAttribute) + "\"";
  }
  std::printf("{\"svg\":\"plan.svg\",\"htm\":\"plan.htm\",\"layers\":[%s]}\n", layers.c_str());
  return 0;
}
