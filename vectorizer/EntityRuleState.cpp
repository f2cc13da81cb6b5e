#include "vectorizer/EntityRuleState.h"

#include "vectorizer/EntityDrawState.h"
#include "vectorizer/ViewportExtents.h"

EntityRuleState g_EntityRuleState;
std::string g_DefaultFontName = "Arial";
std::string g_DefaultItalicFontName = "Arial Italic";

void ResetVectorizationState() {
  g_ViewportExtents.Clear();
  EntityRuleState& rules = g_EntityRuleState;
  rules.currentViewportIndex = -1;
  rules.captureViewMatrices = 1;
  rules.roomLabelCapture = 0;
  rules.pendingRoomLabel.clear();
  rules.currentLayerName.empty();
  // The driver starts each view without a current colour: the first one is always sent.
  g_EntityDrawState.colorDirty = 1;
  g_EntityDrawState.skipNextFrame = 0;
  g_EntityDrawState.rasterFileName.empty();
  g_EntityDrawState.circleCandidate = 0;
}
