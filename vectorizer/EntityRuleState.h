// Process-wide state of the entity rules that other parts of the vectorizer read: the room label
// being captured, the viewport being drawn, the layer last sent to the driver.
#pragma once

#include <cstdint>
#include <string>

#include "kit/base/Geometry.h"
#include "kit/base/OdString.h"

class OdDbDatabase;

struct EntityRuleState {
  int32_t currentViewportIndex = -1;
  // Two view transforms captured the first time an entity is drawn after a reset.
  OdGeMatrix3d viewMatrices[2];
  uint8_t captureViewMatrices = 1;
  // While set, the next text drawn becomes a room label at its position.
  uint8_t roomLabelCapture = 0;
  std::string pendingRoomLabel;  // UTF-8
  int32_t blockLineWeight = 0;
  uint8_t layerLineWeightFromTable = 1;
  OdString currentLayerName;
  // The output's y axis runs down (the view's mapping mirrors the drawing): text angles measured
  // in output coordinates are turned back.
  uint8_t outputYDown = 1;
  // The database of the last view created.
  const OdDbDatabase* database = nullptr;
};

extern EntityRuleState g_EntityRuleState;

// Forgets what the last view left behind (viewport boxes, the layer and colour last sent, the
// captured view transforms): the device runs it before it draws its views.
void ResetVectorizationState();

// Output font names of texts without a typeface of their own; the device replaces them with the
// driver's defaults.
extern std::string g_DefaultFontName;
extern std::string g_DefaultItalicFontName;
