#include "kit/gs/OdGiContextForDbDatabase.h"

OdSmartPtr<OdGiContextForDbDatabase> OdGiContextForDbDatabase::createObject() {
  return OdSmartPtr<OdGiContextForDbDatabase>(new OdGiContextForDbDatabase());
}

void OdGiContextForDbDatabase::setDatabase(OdDbDatabase* database, bool enableGsModel) {
  database_ = database;
  gsModel_ = enableGsModel;
}

bool OdGiContextForDbDatabase::loadPlotStyleTable(std::istream& stream) { return plotStyles_.load(stream); }

bool OdGiContextForDbDatabase::loadPlotStyleTable(const std::vector<uint8_t>& bytes) {
  return plotStyles_.load(bytes);
}
