#include "drivers/svg/SvgHeaderText.h"

#include <initializer_list>

#include "drivers/svg/SvgNumberText.h"
#include "drivers/svg/SvgXmlText.h"

const char* const kSvgMakerAddress = "https://quillwork.example/draftmill";
const char* const kSvgMakerNamespace = "https://quillwork.example/vistrel/2020";

namespace {

const char* const kSvg10SystemId = "http://www.w3.org/TR/2001/REC-SVG-20010904/DTD/svg10.dtd";
const char* const kSvgNamespace = "http://www.w3.org/2000/svg";
const char* const kXlinkNamespace = "http://www.w3.org/1999/xlink";

void AppendLine(std::string& out, const std::string& line) {
  out += line;
  out += '\n';
}

void AppendRule(std::string& out, const std::string& selector, std::initializer_list<std::string> properties) {
  out += "\t\t" + selector + " {\n";
  for (const std::string& property : properties) out += "\t\t    " + property + "\n";
  out += "\t\t}\n";
}

std::string Num(double value) { return DoubleText(value); }

struct NamedColour {
  const char* name;
  const char* rgb;
  const char* grey;  // nullptr: no greyscale rule
};

constexpr NamedColour kNamedColours[] = {
    {"black", "rgb(0,0,0)", nullptr},         {"white", "rgb(255,255,255)", nullptr},
    {"red", "rgb(255,0,0)", "rgb(77,77,77)"}, {"green", "rgb(0,255,0)", "rgb(150,150,150)"},
    {"blue", "rgb(0,0,255)", "rgb(28,28,28)"}, {"yellow", "rgb(255,255,0)", "rgb(227,227,227)"},
    {"cyan", "rgb(0,255,255)", "rgb(179,179,179)"}, {"magenta", "rgb(255,0,255)", "rgb(105,105,105)"},
};

void AppendFixedRules(std::string& out) {
  const std::initializer_list<std::string> technical = {"position: relative;", "z-index: 10;", "fill: red;",
                                                        "opacity: 0.01;", "stroke: none;"};
  AppendRule(out, ".ns-tecnica", technical);
  out += '\n';
  AppendRule(out, ".ns-tecnica path", technical);
  out += '\n';
  AppendRule(out, ".ns-area", {"position: relative;", "z-index: 5;", "opacity: .01;"});
  AppendRule(out, ".qwsPoints",
             {"fill: none;", "stroke-width: var(--qwsMinLineWidth);", "r: calc(var(--qwsMinLineWidth)/2.0);"});
  AppendRule(out, ".ZW", {"stroke-width: var(--qwsMinLineWidth);"});
}

std::string MetadataId(const SvgHeaderValues& values) {
  return values.postfix.empty() ? std::string() : "_" + values.postfix;
}

void AppendWorldUnits(std::string& out, const SvgHeaderValues& v, const std::string& idTail) {
  double x = v.hasExplicitOrigin ? v.originX : (v.worldMinX - v.worldMaxX) / 2;
  double y = v.hasExplicitOrigin ? v.originY : (v.worldMinY - v.worldMaxY) / 2;
  AppendLine(out, "<text id=\"vistrel_worldUnits" + idTail + "\">{ \"globalOrigin\": { \"x\": " + Num(x) +
                      ", \"y\" : " + Num(y) + "}, ");
  AppendLine(out, "\t\t\t\t\t\t\"units\": \"" + XmlText(v.units, XmlEscapeMode::kContent) + "\",");
  AppendLine(out, "\t\t\t\t\t\t\"svgToWorldUnits\": " + Num(v.svgToWorldUnits) + "}");
  AppendLine(out, "</text>");
}

void AppendDrawingCoordinates(std::string& out, const SvgHeaderValues& v, const std::string& idTail) {
  AppendLine(out, "<text id=\"vistrel_drawingCoordinates" + idTail + "\">{ \"DWG\": ");
  AppendLine(out, "    { \"lowerLeft\": { \"x\": " + Num(v.worldMinX) + ", \"y\" : " + Num(v.worldMinY) + "}, ");
  AppendLine(out, "      \"upperRight\": { \"x\": " + Num(v.worldMaxX) + ", \"y\" : " + Num(v.worldMaxY) + "} ");
  AppendLine(out, "    },");
  AppendLine(out, " \"SVG\": ");
  AppendLine(out, "    { \"lowerLeft\": { \"x\": " + Num(v.svgMinX) + ", \"y\" : " + Num(v.svgMaxY) + "}, ");
  AppendLine(out, "      \"upperRight\": { \"x\": " + Num(v.svgMaxX) + ", \"y\" : " + Num(v.svgMinY) + "} ");
  AppendLine(out, "    },");
  AppendLine(out, " \"Drawing Height\": " + std::to_string(v.drawingHeight) + "}");
  AppendLine(out, "</text>");
}

void AppendPages(std::string& out, const SvgHeaderValues& v, const std::string& idTail) {
  AppendPageList(out, v.pages, v.currentPage, idTail);
}

}  // namespace

void AppendColourRules(std::string& out, const std::vector<SvgColourRule>& used) {
  for (const NamedColour& c : kNamedColours) {
    AppendRule(out, std::string(".sClr_") + c.name, {std::string("stroke: ") + c.rgb + ";", "fill: none;"});
    if (c.grey != nullptr) {
      AppendRule(out, std::string(".greyscale.sClr_") + c.name, {std::string("stroke: ") + c.grey + ";", "fill: none;"});
    }
  }
  for (const NamedColour& c : kNamedColours) {
    AppendRule(out, std::string(".fClr_") + c.name, {std::string("fill: ") + c.rgb + ";", "stroke: none;", "stroke-width: 0;"});
  }
  for (const SvgColourRule& rule : used) {
    std::string index = std::to_string(rule.index);
    AppendRule(out, ".sClr_" + index, {"stroke: " + rule.colour + ";", "fill: none;"});
    AppendRule(out, ".greyscale.sClr_" + index, {"stroke: " + rule.colour + ";", "fill: none;"});
    AppendRule(out, ".fClr_" + index, {"fill: " + rule.colour + ";", "stroke-width: 0;"});
  }
}

void AppendLineTypeRules(std::string& out, const std::vector<SvgLineTypeRule>& rules) {
  for (const SvgLineTypeRule& rule : rules) {
    AppendRule(out, ".sLt_" + rule.cleanName, {"stroke-dasharray: " + rule.dashArray + ";"});
  }
}

void AppendMetadata(std::string& out, const SvgHeaderValues& v) {
  std::string idTail = MetadataId(v);
  AppendLine(out, "<metadata>");
  if (v.hasWorldExtents) {
    AppendWorldUnits(out, v, idTail);
    AppendDrawingCoordinates(out, v, idTail);
  }
  AppendLine(out, "<text id=\"vistrel_vqBuilding" + idTail + "\">" + XmlText(v.building, XmlEscapeMode::kContent) +
                      "</text>");
  AppendLine(out, "<text id=\"vistrel_vqFloor" + idTail + "\">" + XmlText(v.floor, XmlEscapeMode::kContent) +
                      "</text>");
  AppendPages(out, v, idTail);
  AppendLine(out, "</metadata>");
}

void AppendSvgHeader(std::string& out, const SvgHeaderValues& v) {
  AppendLine(out, "<?xml version=\"1.0\" encoding=\"utf-8\" ?>");
  std::string maker = v.generator.empty() ? std::string("Draftmill") : XmlText(v.generator, XmlEscapeMode::kContent);
  // "--" may not appear inside a comment.
  for (std::size_t at = maker.find("--"); at != std::string::npos; at = maker.find("--")) maker.replace(at, 2, "- ");
  AppendLine(out, "<!-- Generated by " + maker + " " + v.programVersion + " from Quillwork Software -->");
  AppendLine(out, std::string("<!-- ") + kSvgMakerAddress + " -->");
  AppendLine(out, "<!DOCTYPE svg PUBLIC '-//W3C//DTD SVG 1.0//EN' ");
  AppendLine(out, std::string("'") + kSvg10SystemId + "'>");
  AppendLine(out, std::string("<svg contentScriptType=\"text/ecmascript\" xmlns:xlink=\"") + kXlinkNamespace +
                      "\" zoomAndPan=\"magnify\" ");
  AppendLine(out, "contentStyleType=\"text/css\" preserveAspectRatio=\"xMidYMid meet\" ");
  AppendLine(out, "width=\"" + Num(v.pageWidth) + "\" height=\"" + Num(v.pageHeight) + "\" viewBox=\"0 0 " +
                      Num(v.viewWidth) + " " + Num(v.viewHeight) + "\" ");
  AppendLine(out, std::string("version=\"") + (v.outputVersion == 1 ? "1.0" : "1.1") + "\" xmlns=\"" + kSvgNamespace +
                      "\" xmlns:vtrl=\"" + kSvgMakerNamespace +
                      "\" stroke-linecap=\"butt\" stroke-linejoin=\"round\" fill-rule=\"evenodd\" >");
  AppendLine(out, "<defs>");
  AppendLine(out, "\t<style type = \"text/css\">");
  AppendLine(out, "\t    <![CDATA[");
  AppendLine(out, "\t    svg{ background - color: " + v.backgroundColour + "; }");
  AppendLine(out, "\t\t:root {");
  AppendLine(out, "\t\t    --qwsMinLineWidth: " + Num(v.minLineWidth) + ";");
  if (!v.postfix.empty()) {
    AppendLine(out, "\t\t    --qwsbPostFix: 1;");
    AppendLine(out, "\t\t    --qwsPostFix: \"" + v.postfix + "\";");
  } else {
    AppendLine(out, "\t\t    --qwsbPostFix: 0;");
  }
  AppendLine(out, "\t\t}");
  AppendFixedRules(out);
  AppendColourRules(out, v.colourRules);
  AppendLineTypeRules(out, v.lineTypeRules);
  AppendLine(out, "\t]]></style>");
  AppendLine(out, "\t</defs>");
  AppendMetadata(out, v);
}

void AppendPageList(std::string& out, const std::vector<SvgPageEntry>& pages, int currentPage,
                    const std::string& idTail) {
  AppendLine(out, "<text id=\"vistrel_multiPages" + idTail + "\">{ \"multiPages\": " + std::to_string(pages.size()) + ", ");
  AppendLine(out, "                   \"currentPage\":" + std::to_string(currentPage) + ",");
  AppendLine(out, "                   \"pages\" : [");
  for (std::size_t i = 0; i < pages.size(); ++i) {
    std::string line =
        "                        { \"fileName\":\"" + pages[i].fileName + "\", \"pageName\":\"" + pages[i].pageName + "\"}";
    if (i + 1 < pages.size()) line += ',';
    AppendLine(out, line);
  }
  AppendLine(out, "                   ]");
  AppendLine(out, "}");
  AppendLine(out, "</text>");
}
