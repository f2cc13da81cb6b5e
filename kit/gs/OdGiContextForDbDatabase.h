// The drawing context a device draws for: the database, the paper colour behind it, and the plot
// style table that plotting applies.
#pragma once

#include <istream>
#include <memory>
#include <vector>

#include "kit/base/OdRxObject.h"
#include "kit/db/OdDbDatabase.h"
#include "kit/gs/OdGsPalette.h"
#include "kit/gs/PlotStyleTable.h"

class OdGiContextForDbDatabase : public OdRxObject {
public:
  static OdSmartPtr<OdGiContextForDbDatabase> createObject();

  // `enableGsModel` is accepted for the callers' sake; this kit keeps no cached graphics.
  void setDatabase(OdDbDatabase* database, bool enableGsModel = true);
  OdDbDatabase* getDatabase() const { return database_; }
  bool isGsModelEnabled() const { return gsModel_; }

  ODCOLORREF paletteBackground() const { return paletteBackground_; }
  void setPaletteBackground(ODCOLORREF color) { paletteBackground_ = color; }

  // Plot style tables: false when the data is not a colour-dependent table.
  bool loadPlotStyleTable(std::istream& stream);
  bool loadPlotStyleTable(const std::vector<uint8_t>& bytes);
  const PlotStyleTable& plotStyleTable() const { return plotStyles_; }
  // 1: colour-dependent plot styles apply.
  void setPlotStyleMode(int mode) { plotStyleMode_ = mode; }
  int plotStyleMode() const { return plotStyleMode_; }
  void setPlotGeneration(bool on) { plotGeneration_ = on; }
  bool isPlotGeneration() const { return plotGeneration_; }

private:
  OdDbDatabase* database_ = nullptr;
  bool gsModel_ = true;
  ODCOLORREF paletteBackground_ = ODRGB(255, 255, 255);
  PlotStyleTable plotStyles_;
  int plotStyleMode_ = 0;
  bool plotGeneration_ = false;
};

using OdGiContextForDbDatabasePtr = OdSmartPtr<OdGiContextForDbDatabase>;
