// The start of every entity: per-entity state reset, viewport changes, the layer sent to the
// driver, line weight and line type.
#include "drivers/TRANS_BASE2.h"
#include "services/Trace.h"
#include "vectorizer/EntityDrawState.h"
#include "vectorizer/EntityRuleState.h"
#include "vectorizer/EntityRules.h"
#include "vectorizer/OutputDriverPointer.h"
#include "vectorizer/ViewportExtents.h"

namespace {

void ResetPerEntityState() {
  EntityDrawState& s = g_EntityDrawState;
  s.suppressFillOnce = 0;
  s.rasterFileName.empty();
  s.forceFill = 0;
  s.circleCandidate = 0;
  s.circleRadius = 0.0;
  s.pathStyle = 0;
  s.colorDirty = 0;
  s.isBackgroundMask = 0;
  s.maskFilled = 0;
  g_EntityRuleState.roomLabelCapture = 0;
}

int32_t ResolveLineWeight(const EntityRuleInput& input, const Entity& entity) {
  EntityRuleState& rules = g_EntityRuleState;
  int32_t weight = entity.lineweight;
  if (weight == kLnWtByLayer) {
    weight = rules.layerLineWeightFromTable ? (input.layer ? int32_t(input.layer->lineweight) : int32_t(kLnWtByLwDefault))
                                            : rules.blockLineWeight;
  } else if (weight == kLnWtByBlock) {
    weight = rules.blockLineWeight;
  }
  return weight < 0 ? 0 : weight;
}

// The line type the entity is drawn with, by layer and by block resolved; null: continuous.
const LinetypeRecord* ResolveLinetype(const EntityRuleInput& input, const Entity& entity) {
  const LinetypeRecord* linetype = entity.linetype;
  if (!linetype || linetype->isByLayer()) linetype = input.layer ? input.layer->linetype : nullptr;
  else if (linetype->isByBlock()) linetype = input.byBlockLinetype;
  if (linetype && (linetype->isByLayer() || linetype->isByBlock())) return nullptr;
  return linetype;
}

}  // namespace

bool BeginEntityRules(const EntityRuleInput& input, const Entity& entity) {
  EntityRuleState& rules = g_EntityRuleState;
  if (input.viewportIndex != rules.currentViewportIndex) {
    rules.currentViewportIndex = input.viewportIndex;
    g_ViewportExtents.SelectViewport(input.viewportIndex);
  }
  g_ViewportExtents.SetWorldToDevice(input.viewportIndex, input.viewMatrices[1]);
  ResetPerEntityState();
  if (rules.captureViewMatrices) {
    rules.captureViewMatrices = 0;
    rules.viewMatrices[0] = input.viewMatrices[0];
    rules.viewMatrices[1] = input.viewMatrices[1];
  }
  return entity.type != DbType::kUnknown && *dbTypeName(entity.type) != '\0';
}

void ApplyLayerRules(const EntityRuleInput& input, const Entity& entity) {
  try {
    EntityDrawState& s = g_EntityDrawState;
    TRANS_BASE2* driver = g_pOutputDriver;
    if (input.layer && driver) {
      OdString name = input.layer->getName();
      if (!(name == g_EntityRuleState.currentLayerName)) {
        g_EntityRuleState.currentLayerName = name;
        driver->SetLayer(name, input.layer->color.colorIndex());
        s.colorDirty = 1;
      }
    }
    s.lineWidth = ResolveLineWeight(input, entity);
    s.widthIsGeometric = 0;
    const LinetypeRecord* linetype = ResolveLinetype(input, entity);
    if (!linetype || equalsIgnoringCase(linetype->name, "CONTINUOUS")) ResetLineType();
    else SetLineType(linetype->getName(), entity.linetypeScale);
  } catch (const std::exception&) {
    TraceMessage("Warning: Problem Setting Color and LineType");
  }
}
