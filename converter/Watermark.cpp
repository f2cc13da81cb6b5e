// The watermark: the user's text added to model space (or to the view it names) before the view
// is vectorized, at a point, at the lower left of a line, or at a percentage of the view.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

#include "converter/CDm2017.h"
#include "converter/WatermarkColor.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

// The vectorizer's entity rules turn this marker into a position relative to the view.
constexpr const char* kPercentMarker = "%% USE PERCENT %%";

// The position of the anchor entity: a point's position, or the smaller coordinates of a line's
// end points. False when the handle names neither.
bool AnchorPosition(const OdDbDatabase& database, const std::string& anchor, OdGePoint3d& position) {
  DbObject* object = database.find(OdDbHandle::fromHex(anchor));
  if (const auto* point = dbCast<OdDbPoint>(object)) {
    position = OdGePoint3d(point->position.x, point->position.y, 0.0);
    return true;
  }
  if (const auto* line = dbCast<OdDbLine>(object)) {
    position = OdGePoint3d(std::min(line->start.x, line->end.x), std::min(line->start.y, line->end.y), 0.0);
    return true;
  }
  return false;
}

LayerRecord* WatermarkLayer(OdDbDatabase& database, const std::string& name) {
  if (name.empty()) return database.layerZero();
  const bool isNew = database.layers().find(name) == nullptr;
  LayerRecord* layer = database.layerNamed(name);
  if (isNew) {
    layer->linetype = database.linetypeContinuous();
    layer->handle = database.allocateHandle();
    database.adoptHandle(layer);
  }
  return layer;
}

TextStyleRecord* WatermarkStyle(OdDbDatabase& database, const std::string& font) {
  if (font.empty()) return database.textStyles().find("Standard");
  const bool isNew = database.textStyles().find(font) == nullptr;
  TextStyleRecord* style = database.textStyleNamed(font);
  if (isNew) {
    style->fontFile = font;
    style->handle = database.allocateHandle();
    database.adoptHandle(style);
  }
  return style;
}

}  // namespace

int CDm2017::ProcessWatermark(const OdString& viewName, OdDbDatabase* database) {
  if (watermarkContent.isEmpty() || !database) return 0;
  const OdString layer = toOdString(watermarkLayer);
  const bool applies = layer.isEmpty() ? viewName == OdString(L"ModelSpace") : viewName.iCompare(layer.c_str()) == 0;
  if (!applies) return 0;
  TraceMessage("Processing Watermark");

  std::string content;
  OdStringToUtf8(content, watermarkContent);
  OdGePoint3d position;
  bool placed = false;
  if (!watermarkAnchor.empty()) {
    placed = AnchorPosition(*database, watermarkAnchor, position);
  } else {
    if (watermarkX.find('%') != std::string::npos || watermarkY.find('%') != std::string::npos) {
      content = kPercentMarker + content;
    }
    position = OdGePoint3d(std::atof(watermarkX.c_str()), std::atof(watermarkY.c_str()), 0.0);
    placed = true;
  }
  if (!placed) return 0;

  const int colorIndex = WatermarkColorIndex(watermarkColor, watermarkRGB, palette, paletteSize);
  OdDbBlockTableRecord* model = database->modelSpace();
  if (!model) return 0;
  auto* text = database->newObject<TextEntity>();
  text->text = content;
  text->position = position;
  text->height = watermarkHeight > 0.0 ? watermarkHeight : database->header().textSize;
  text->rotation = watermarkAngle * kPi / 180.0;
  text->style = WatermarkStyle(*database, watermarkFont.empty() ? defaultFont.str() : watermarkFont);
  text->layer = WatermarkLayer(*database, watermarkLayer);
  text->linetype = database->linetypeByLayer();
  text->color = OdCmEntityColor::fromACI(colorIndex);
  text->ownerHandle = model->handle;
  text->handle = database->allocateHandle();
  database->adoptHandle(text);
  model->entities.push_back(text);
  return 0;
}
