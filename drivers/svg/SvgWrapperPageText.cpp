#include "drivers/svg/SvgWrapperPageText.h"

#include <cctype>
#include <cstring>

#include "drivers/svg/SvgXmlText.h"

namespace {

const char* const kPageTop = R"page(<?xml version="1.0" encoding="utf-8" ?>
<HTML>
 <head>
  <title>{stem}</title>
 </head>
 <body onload="init()">
  <script>
   <!--
var layers = new Array(
)page";

const char* const kScript = R"page("All Off",
"All On");
function init() {
  for (var i=0;i<layers.length;i++)
    window.document.layer_form[i].checked = true;
    window.document.layer_form[layers.length-2].checked = false;
}
function Layerclick(button) {
var svgobj;
var svgstyle;
var svg = document.getElementById("SVGPage");
var svgdoc = svg.contentDocument; 
    if (!svgdoc) return; 
if (button=="on") { // all on
    var i;
    for (i=0;i<layers.length;i++) {
      window.document.layer_form[i].checked = true;
      svgobj = svgdoc.getElementById(layers[i]);
      if (svgobj!=null){
        svgstyle = svgobj.style;
         svgstyle.setProperty('visibility', 'visible');
      }
    } 
    window.document.layer_form[layers.length-2].checked = false;
  }
  else if (button=="off") { // all on
    for (i=0;i<layers.length;i++) {
      window.document.layer_form[i].checked = false;
      svgobj = svgdoc.getElementById(layers[i]);
      if (svgobj!=null){
        svgstyle = svgobj.style;
        svgstyle.setProperty("visibility", "hidden");
      }
    }
    window.document.layer_form[layers.length-2].checked = true;
  }
  else { // change
      svgobj = svgdoc.getElementById(button);
      if (svgobj!=null){
        svgstyle = svgobj.style;
        if (window.document.layer_form[button].checked) {
          svgstyle.setProperty("visibility", "visible");
        } else {
          svgstyle.setProperty("visibility", "hidden");
	  }
      }
  }
}
-->
  </script>
  <table>
   <td>
    <form name="layer_form">
     <table name="layers" style="font-size:10">
)page";

const char* const kLayerRow = R"page(     <tr>
       <td>
        <input name="{id}" onclick="Layerclick(&quot;{id}&quot;)" type="checkbox">{id}</input>
       </td>
      </tr>
)page";

const char* const kPageBottom = R"page(       <tr>
       <td>
        <input name="All Off" onclick="Layerclick(&quot;off&quot;)" type="checkbox">All Off</input>
       </td>
      </tr>
      <tr>
       <td>
        <input name="All On" onclick="Layerclick(&quot;on&quot;)" type="checkbox">All On</input>
       </td>
      </tr>
    </table>
   </form>
   </td>
   <td>
    <object height="600" id="SVGPage" type="image/svg+xml" width="900" data="{stem}.svg"/>
    </object>
   </td>
  </table>
 </body>
</HTML>

)page";

std::string Substitute(std::string text, const std::string& name, const std::string& value) {
  for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + value.size())) {
    text.replace(at, name.size(), value);
  }
  return text;
}

// Inside the script the id is a string literal: quotes and backslashes escaped, and no "<" that
// could end the script early.
std::string ScriptLiteral(const std::string& id) {
  std::string out;
  for (char c : id) {
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (c == '<') {
      out += "\\x3C";
    } else {
      out += c;
    }
  }
  return out;
}

// The SVG file's relative address: blanks, non-ASCII letters and the characters that would end or
// redirect an address ("#", "?", "%") are percent-encoded byte by byte.
std::string AddressText(const std::string& path) {
  static const char kHex[] = "0123456789ABCDEF";
  std::string out;
  for (char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isalnum(byte) || (c != '\0' && std::strchr("-._~/", c) != nullptr)) {
      out += c;
    } else {
      out += '%';
      out += kHex[byte >> 4];
      out += kHex[byte & 15];
    }
  }
  return out;
}

}  // namespace

std::string WrapperPageText(const std::string& stem, const std::string& idPrefix,
                            const std::vector<std::wstring>& layerNames) {
  std::string page = Substitute(kPageTop, "{stem}", XmlText(stem, XmlEscapeMode::kContent));
  std::vector<std::string> ids;
  for (const std::wstring& name : layerNames) {
    std::string id = idPrefix;
    AppendXml(id, name, XmlEscapeMode::kAttribute, true);
    ids.push_back(id);
    page += '"';
    page += ScriptLiteral(id);
    page += "\",\n";
  }
  page += kScript;
  for (const std::string& id : ids) page += Substitute(kLayerRow, "{id}", id);
  page += Substitute(kPageBottom, "{stem}", AddressText(stem));
  return page;
}
