#include "vectorizer/ExSimpleView.h"

#include "drivers/TRANS_BASE2.h"
#include "kit/base/OdError.h"
#include "kit/gs/OdGsBaseVectorizeDevice.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"
#include "vectorizer/DeviceColorState.h"
#include "vectorizer/EntityRuleState.h"
#include "vectorizer/OutputDriverPointer.h"

void ExSimpleView::RecordSettings() {
  Settings& s = settings_;
  s.perspective = isPerspective();
  s.frontClipped = isFrontClipped();
  s.backClipped = isBackClipped();
  s.frontClip = frontClip();
  s.backClip = backClip();
  s.eye = position();
  s.target = target();
  s.halfFieldWidth = fieldWidth() / 2;
  s.halfFieldHeight = fieldHeight() / 2;
  std::vector<int> counts;
  s.clipPoints.clear();
  viewportClipRegion(counts, s.clipPoints);
  if (s.clipPoints.empty()) {
    // Without a clip outline the field's corners bound the view.
    double w = s.halfFieldWidth, h = s.halfFieldHeight;
    s.clipPoints = {{-w, -h}, {w, -h}, {w, h}, {-w, h}};
  }
  s.eyeToWorld = eyeToWorldMatrix();
}

void ExSimpleView::update() {
  RecordSettings();
  OdGsBaseVectorizeViewDef::update();
}

void ExSimpleView::beginViewVectorization() {
  OdGsBaseVectorizeViewDef::beginViewVectorization();
  const OdGePoint3d probe(0.1, 0.1, 0.1);
  const OdGiDeviationType kinds[5] = {kOdGiMaxDevForCircle, kOdGiMaxDevForCurve, kOdGiMaxDevForBoundary,
                                      kOdGiMaxDevForIsoline, kOdGiMaxDevForFacet};
  for (int i = 0; i < 5; ++i) deviations_[i] = deviationObject().deviation(kinds[i], probe);
  worldToDevice_ = worldToDeviceMatrix();
  settings_.eyeToWorld = eyeToWorldMatrix();
  inputFileName_.clear();
  if (TRANS_BASE2* driver = g_pOutputDriver) OdStringToUtf8(inputFileName_, driver->GetInputFileName());
  const OdGeMatrix3d& m = worldToDevice_;
  g_EntityRuleState.outputYDown = m.entry[0][0] * m.entry[1][1] - m.entry[0][1] * m.entry[1][0] < 0.0 ? 1 : 0;
  if (auto* sink = dynamic_cast<OdGiGeometrySimplifier*>(baseDevice() ? baseDevice()->destGeometry() : nullptr)) {
    sink->setDeviation(&deviationObject());
  }
}

int32_t ExSimpleView::ViewportIndex() const {
  OdGsBaseVectorizeDevice* device = baseDevice();
  if (!device) return 0;
  for (int i = 0; i < device->numViews(); ++i) {
    if (device->viewAt(i) == this) return i;
  }
  return 0;
}

EntityRuleInput ExSimpleView::RuleInput(const Entity& entity) const {
  EntityRuleInput input;
  input.database = database();
  input.viewportIndex = ViewportIndex();
  input.blockDepth = blockDepth();
  input.blockToOutput = worldToDevice_ * blockToWorldTransform();
  input.viewMatrices[0] = settings_.eyeToWorld;
  input.viewMatrices[1] = worldToDevice_;
  input.driverFlag = driverFlag;
  if (GiRegenContext* ctx = regenContext()) {
    input.layer = ctx->effectiveLayer(entity);
    if (!ctx->blockStack().empty()) {
      input.byBlockLinetype = ctx->blockStack().back().linetype;
      input.byBlockLineWeight = ctx->blockStack().back().lineweight;
    }
  }
  input.inputFileName = inputFileName_;
  return input;
}

void ExSimpleView::draw(const OdGiDrawable* drawable) {
  if (!drawable) return;
  size_t depth = blockDepth();
  // A failure inside one entity ends that entity only; the blocks it entered are left again.
  try {
    DrawWithEntityRules(RuleInput(*drawable), *drawable,
                        [this](const Entity& entity) { OdGsBaseVectorizeViewDef::draw(&entity); });
    return;
  } catch (const OdError& error) {
    TraceMessage("Error drawing entity", error.description());
  } catch (const std::exception& error) {
    TraceMessage("Error drawing entity", error.what());
  }
  if (GiRegenContext* ctx = regenContext()) {
    while (ctx->blockDepth() > depth) ctx->popBlock();
  }
}

void ExSimpleView::onTraitsModified() {
  OdGsBaseVectorizeViewDef::onTraitsModified();
  const OdGiSubEntityTraitsData& traits = effectiveTraits();
  const OdCmEntityColor& color = traits.trueColor;
  if (color.isByColor()) SetDeviceTrueColor(PackTrueColor(color.red(), color.green(), color.blue()));
  else SetDeviceColorIndex(traits.color());
  SetDeviceFillMode(traits.fillType);
}
