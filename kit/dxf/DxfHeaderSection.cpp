// HEADER section: "9 $NAME" followed by the variable's groups. Every variable is kept as read;
// the ones the database types are applied to their fields.
#include <cstdint>
#include <functional>
#include <unordered_map>

#include "kit/base/OdError.h"
#include "kit/dxf/DxfLoader.h"

namespace {

double realOf(const HeaderVariable& v, int code, double fallback) {
  for (const TaggedValue& t : v.values) {
    if (t.code == code) return t.asReal();
  }
  return fallback;
}

int64_t intOf(const HeaderVariable& v, int64_t fallback) {
  for (const TaggedValue& t : v.values) {
    if (t.kind != GroupValueKind::kString && t.kind != GroupValueKind::kHandle) return t.asInteger();
  }
  return fallback;
}

int16_t int16Of(const HeaderVariable& v, int16_t fallback) {
  int64_t i = intOf(v, fallback);
  return int16_t(i < INT16_MIN ? INT16_MIN : i > INT16_MAX ? INT16_MAX : i);
}

std::string textOf(const HeaderVariable& v) { return v.values.empty() ? std::string() : v.values.front().text; }

OdGePoint3d point3(const HeaderVariable& v, const OdGePoint3d& fallback) {
  return {realOf(v, 10, fallback.x), realOf(v, 20, fallback.y), realOf(v, 30, fallback.z)};
}

OdGePoint2d point2(const HeaderVariable& v, const OdGePoint2d& fallback) {
  return {realOf(v, 10, fallback.x), realOf(v, 20, fallback.y)};
}

OdGeVector3d vector3(const HeaderVariable& v, const OdGeVector3d& fallback) {
  return {realOf(v, 10, fallback.x), realOf(v, 20, fallback.y), realOf(v, 30, fallback.z)};
}

double firstReal(const HeaderVariable& v, double fallback) {
  for (const TaggedValue& t : v.values) {
    if (t.kind != GroupValueKind::kString && t.kind != GroupValueKind::kHandle) return t.asReal();
  }
  return fallback;
}

using Apply = std::function<void(DatabaseHeader&, const HeaderVariable&)>;

const std::unordered_map<std::string, Apply>& typedVariables() {
  static const std::unordered_map<std::string, Apply> table = {
      {"ACADVER", [](DatabaseHeader& h, const HeaderVariable& v) { h.acadVer = textOf(v); }},
      {"ACADMAINTVER", [](DatabaseHeader& h, const HeaderVariable& v) { h.acadMaintVer = int32_t(intOf(v, 0)); }},
      {"DWGCODEPAGE", [](DatabaseHeader& h, const HeaderVariable& v) { h.dwgCodePage = textOf(v); }},
      {"LASTSAVEDBY", [](DatabaseHeader& h, const HeaderVariable& v) { h.lastSavedBy = textOf(v); }},
      {"HANDSEED", [](DatabaseHeader& h, const HeaderVariable& v) { h.handSeed = OdDbHandle::fromHex(textOf(v)); }},
      {"INSBASE", [](DatabaseHeader& h, const HeaderVariable& v) { h.insBase = point3(v, h.insBase); }},
      {"EXTMIN", [](DatabaseHeader& h, const HeaderVariable& v) { h.extMin = point3(v, h.extMin); }},
      {"EXTMAX", [](DatabaseHeader& h, const HeaderVariable& v) { h.extMax = point3(v, h.extMax); }},
      {"LIMMIN", [](DatabaseHeader& h, const HeaderVariable& v) { h.limMin = point2(v, h.limMin); }},
      {"LIMMAX", [](DatabaseHeader& h, const HeaderVariable& v) { h.limMax = point2(v, h.limMax); }},
      {"PINSBASE", [](DatabaseHeader& h, const HeaderVariable& v) { h.pinsBase = point3(v, h.pinsBase); }},
      {"PEXTMIN", [](DatabaseHeader& h, const HeaderVariable& v) { h.pextMin = point3(v, h.pextMin); }},
      {"PEXTMAX", [](DatabaseHeader& h, const HeaderVariable& v) { h.pextMax = point3(v, h.pextMax); }},
      {"PLIMMIN", [](DatabaseHeader& h, const HeaderVariable& v) { h.plimMin = point2(v, h.plimMin); }},
      {"PLIMMAX", [](DatabaseHeader& h, const HeaderVariable& v) { h.plimMax = point2(v, h.plimMax); }},
      {"INSUNITS", [](DatabaseHeader& h, const HeaderVariable& v) { h.insUnits = int16Of(v, 0); }},
      {"MEASUREMENT", [](DatabaseHeader& h, const HeaderVariable& v) { h.measurement = int16Of(v, 0); }},
      {"LUNITS", [](DatabaseHeader& h, const HeaderVariable& v) { h.lunits = int16Of(v, 2); }},
      {"LUPREC", [](DatabaseHeader& h, const HeaderVariable& v) { h.luprec = int16Of(v, 4); }},
      {"AUNITS", [](DatabaseHeader& h, const HeaderVariable& v) { h.aunits = int16Of(v, 0); }},
      {"AUPREC", [](DatabaseHeader& h, const HeaderVariable& v) { h.auprec = int16Of(v, 0); }},
      {"ANGBASE", [](DatabaseHeader& h, const HeaderVariable& v) { h.angBase = firstReal(v, 0.0) * kPi / 180.0; }},
      {"ANGDIR", [](DatabaseHeader& h, const HeaderVariable& v) { h.angDir = intOf(v, 0) != 0; }},
      {"TILEMODE", [](DatabaseHeader& h, const HeaderVariable& v) { h.tileMode = intOf(v, 1) != 0; }},
      {"LTSCALE", [](DatabaseHeader& h, const HeaderVariable& v) { h.ltScale = firstReal(v, 1.0); }},
      {"CELTSCALE", [](DatabaseHeader& h, const HeaderVariable& v) { h.celtScale = firstReal(v, 1.0); }},
      {"PSLTSCALE", [](DatabaseHeader& h, const HeaderVariable& v) { h.psLtScale = intOf(v, 1) != 0; }},
      {"PSVPSCALE", [](DatabaseHeader& h, const HeaderVariable& v) { h.psvpScale = firstReal(v, 0.0); }},
      {"TEXTSTYLE", [](DatabaseHeader& h, const HeaderVariable& v) { h.textStyle = textOf(v); }},
      {"DIMSTYLE", [](DatabaseHeader& h, const HeaderVariable& v) { h.dimStyle = textOf(v); }},
      {"CLAYER", [](DatabaseHeader& h, const HeaderVariable& v) { h.cLayer = textOf(v); }},
      {"CELTYPE", [](DatabaseHeader& h, const HeaderVariable& v) { h.celType = textOf(v); }},
      {"CECOLOR", [](DatabaseHeader& h, const HeaderVariable& v) { h.ceColor = OdCmEntityColor::fromACI(int(intOf(v, 256))); }},
      {"CELWEIGHT", [](DatabaseHeader& h, const HeaderVariable& v) { h.celWeight = int16Of(v, -1); }},
      {"CMLSTYLE", [](DatabaseHeader& h, const HeaderVariable& v) { h.cmlStyle = textOf(v); }},
      {"CMLSCALE", [](DatabaseHeader& h, const HeaderVariable& v) { h.cmlScale = firstReal(v, 1.0); }},
      {"ELEVATION", [](DatabaseHeader& h, const HeaderVariable& v) { h.elevation = firstReal(v, 0.0); }},
      {"THICKNESS", [](DatabaseHeader& h, const HeaderVariable& v) { h.thickness = firstReal(v, 0.0); }},
      {"UCSORG", [](DatabaseHeader& h, const HeaderVariable& v) { h.ucsOrg = point3(v, h.ucsOrg); }},
      {"UCSXDIR", [](DatabaseHeader& h, const HeaderVariable& v) { h.ucsXDir = vector3(v, h.ucsXDir); }},
      {"UCSYDIR", [](DatabaseHeader& h, const HeaderVariable& v) { h.ucsYDir = vector3(v, h.ucsYDir); }},
      {"PDMODE", [](DatabaseHeader& h, const HeaderVariable& v) { h.pdMode = int16Of(v, 0); }},
      {"PDSIZE", [](DatabaseHeader& h, const HeaderVariable& v) { h.pdSize = firstReal(v, 0.0); }},
      {"FILLMODE", [](DatabaseHeader& h, const HeaderVariable& v) { h.fillMode = intOf(v, 1) != 0; }},
      {"MIRRTEXT", [](DatabaseHeader& h, const HeaderVariable& v) { h.mirrText = intOf(v, 0) != 0; }},
      {"QTEXTMODE", [](DatabaseHeader& h, const HeaderVariable& v) { h.qTextMode = intOf(v, 0) != 0; }},
      {"LWDISPLAY", [](DatabaseHeader& h, const HeaderVariable& v) { h.lwDisplay = intOf(v, 0) != 0; }},
      {"SPLINESEGS", [](DatabaseHeader& h, const HeaderVariable& v) { h.splineSegs = int16Of(v, 8); }},
      {"FACETRES", [](DatabaseHeader& h, const HeaderVariable& v) { h.facetRes = firstReal(v, 0.5); }},
      {"DISPSILH", [](DatabaseHeader& h, const HeaderVariable& v) { h.dispSilh = intOf(v, 0) != 0; }},
      {"XCLIPFRAME", [](DatabaseHeader& h, const HeaderVariable& v) { h.xclipFrame = int16Of(v, 0); }},
      {"TEXTSIZE", [](DatabaseHeader& h, const HeaderVariable& v) { h.textSize = firstReal(v, 0.2); }},
      {"DIMSCALE", [](DatabaseHeader& h, const HeaderVariable& v) { h.dimScale = firstReal(v, 1.0); }},
      {"DIMTXT", [](DatabaseHeader& h, const HeaderVariable& v) { h.dimTxt = firstReal(v, 0.18); }},
      {"DIMASZ", [](DatabaseHeader& h, const HeaderVariable& v) { h.dimAsz = firstReal(v, 0.18); }},
      {"VIEWCTR", [](DatabaseHeader& h, const HeaderVariable& v) { h.viewCtr = point3(v, h.viewCtr); }},
      {"VIEWSIZE", [](DatabaseHeader& h, const HeaderVariable& v) { h.viewSize = firstReal(v, 0.0); }},
      {"VIEWDIR", [](DatabaseHeader& h, const HeaderVariable& v) { h.viewDir = vector3(v, h.viewDir); }},
      {"HYPERLINKBASE", [](DatabaseHeader& h, const HeaderVariable& v) { h.hyperlinkBase = textOf(v); }},
      {"PROJECTNAME", [](DatabaseHeader& h, const HeaderVariable& v) { h.projectName = textOf(v); }},
  };
  return table;
}

}  // namespace

void DxfLoader::readHeaderSection() {
  DatabaseHeader& header = db.header();
  HeaderVariable* current = nullptr;
  auto finish = [&]() {
    if (!current) return;
    auto it = typedVariables().find(toUpperAscii(current->name));
    if (it != typedVariables().end()) it->second(header, *current);
    if (equalsIgnoringCase(current->name, "ACADVER")) {
      version_ = header.versionNumber();
      if (version_ == 0 && !header.acadVer.empty()) version_ = 1000;  // AC2.10 and older
      decoder_.setUtf8(version_ >= 1021);
      db.loadReport().fileVersion = header.acadVer;
      if (decoder_.isUtf8()) db.loadReport().codePage = "UTF-8";
    } else if (equalsIgnoringCase(current->name, "DWGCODEPAGE")) {
      applyCodePage(header.dwgCodePage);
    }
    current = nullptr;
  };
  while (next()) {
    if (tag.code == 0) {
      finish();
      if (tag.trimmed() == "ENDSEC") return;
      // A section that never ends: let the section loop see this tag.
      warn("HEADER section not closed (" + where() + ")");
      pushBack();
      return;
    }
    if (tag.code == 9) {
      finish();
      std::string_view name = tag.trimmed();
      if (!name.empty() && name[0] == '$') name.remove_prefix(1);
      header.variables.push_back(HeaderVariable{std::string(name), {}});
      current = &header.variables.back();
      continue;
    }
    if (current) current->values.push_back(taggedValue());
  }
  structureError(eEndOfFile, "the file ends inside the HEADER section");
}

void DxfLoader::readClassesSection() {
  DatabaseClass* current = nullptr;
  while (next()) {
    if (tag.code == 0) {
      if (tag.trimmed() == "ENDSEC") return;
      if (tag.trimmed() == "CLASS") {
        db.classes().emplace_back();
        current = &db.classes().back();
        continue;
      }
      warn("unexpected " + std::string(tag.trimmed()) + " in the CLASSES section (" + where() + ")");
      current = nullptr;
      continue;
    }
    if (!current) continue;
    switch (tag.code) {
      case 1: current->dxfName = text(); break;
      case 2: current->cppName = text(); break;
      case 3: current->appName = text(); break;
      case 90: current->proxyFlags = int32(); break;
      case 91: current->instanceCount = int32(); break;
      case 280: current->wasProxy = boolean(); break;
      case 281: current->isEntity = boolean(); break;
      default: break;
    }
  }
  structureError(eEndOfFile, "the file ends inside the CLASSES section");
}
