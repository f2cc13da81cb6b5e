// Header variables. The ones the converter and regeneration read are typed fields with the
// defaults AutoCAD assumes when a file omits them; every variable read from a file is also kept
// in `variables` in file order, so that none is lost.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kit/base/Color.h"
#include "kit/base/Geometry.h"
#include "kit/db/Handle.h"
#include "kit/db/TaggedValue.h"

struct HeaderVariable {
  std::string name;  // without the leading '$'
  TaggedValues values;
};

struct DatabaseHeader {
  // File identity.
  std::string acadVer = "AC1015";
  int32_t acadMaintVer = 0;
  std::string dwgCodePage = "ANSI_1252";
  std::string lastSavedBy;
  OdDbHandle handSeed;
  // Model space geometry.
  OdGePoint3d insBase;
  OdGePoint3d extMin{1e20, 1e20, 1e20};
  OdGePoint3d extMax{-1e20, -1e20, -1e20};
  OdGePoint2d limMin;
  OdGePoint2d limMax{12.0, 9.0};
  // Paper space geometry.
  OdGePoint3d pinsBase;
  OdGePoint3d pextMin{1e20, 1e20, 1e20};
  OdGePoint3d pextMax{-1e20, -1e20, -1e20};
  OdGePoint2d plimMin;
  OdGePoint2d plimMax{12.0, 9.0};
  // Units.
  int16_t insUnits = 0;
  int16_t measurement = 0;  // 0 imperial, 1 metric
  int16_t lunits = 2;
  int16_t luprec = 4;
  int16_t aunits = 0;
  int16_t auprec = 0;
  double angBase = 0.0;
  bool angDir = false;  // clockwise angles
  // Spaces and linetype scaling.
  bool tileMode = true;
  double ltScale = 1.0;
  double celtScale = 1.0;
  bool psLtScale = true;
  double psvpScale = 0.0;
  // Current settings.
  std::string textStyle = "Standard";
  std::string dimStyle = "Standard";
  std::string cLayer = "0";
  std::string celType = "ByLayer";
  OdCmEntityColor ceColor;
  int16_t celWeight = -1;
  std::string cmlStyle = "Standard";
  double cmlScale = 1.0;
  double elevation = 0.0;
  double thickness = 0.0;
  OdGePoint3d ucsOrg;
  OdGeVector3d ucsXDir{1.0, 0.0, 0.0};
  OdGeVector3d ucsYDir{0.0, 1.0, 0.0};
  // Display settings regeneration reads.
  int16_t pdMode = 0;
  double pdSize = 0.0;
  bool fillMode = true;
  bool mirrText = false;
  bool qTextMode = false;
  bool lwDisplay = false;
  int16_t splineSegs = 8;
  double facetRes = 0.5;
  bool dispSilh = false;
  int16_t xclipFrame = 0;
  double textSize = 0.2;
  double dimScale = 1.0;
  double dimTxt = 0.18;
  double dimAsz = 0.18;
  // Old files keep the current model view in the header.
  OdGePoint3d viewCtr;
  double viewSize = 0.0;
  OdGeVector3d viewDir{0.0, 0.0, 1.0};
  // Links.
  std::string hyperlinkBase;
  std::string projectName;

  std::vector<HeaderVariable> variables;

  // The variable of that name (with or without '$', ignoring case), or null.
  const HeaderVariable* find(std::string_view name) const;
  // "AC1015" -> 1015; versions before AC1001 and unknown text give 0.
  int versionNumber() const;
};
