// Block references: the by-block line weight for their contents, viewport blocks whose frame is
// not drawn, and table cells drawn as node groups.
#include "drivers/TRANS_BASE2.h"
#include "kit/db/SymbolTables.h"
#include "vectorizer/EntityDrawState.h"
#include "vectorizer/EntityRuleState.h"
#include "vectorizer/EntityRules.h"
#include "vectorizer/OutputDriverPointer.h"

namespace {

int32_t ReferenceLineWeight(const EntityRuleInput& input, const Entity& reference) {
  int32_t weight = reference.lineweight;
  if (weight == kLnWtByLayer) weight = input.layer ? int32_t(input.layer->lineweight) : int32_t(kLnWtByLwDefault);
  else if (weight == kLnWtByBlock) weight = g_EntityRuleState.blockLineWeight;
  return weight < 0 ? 0 : weight;
}

}  // namespace

bool ApplyBlockRules(const EntityRuleInput& input, const Entity& entity) {
  if (entity.type == DbType::kViewport) {
    g_EntityDrawState.skipNextFrame = 1;
    return false;
  }
  const auto* reference = dbCast<BlockReferenceEntity>(&entity);
  if (!reference || !reference->block) return false;
  g_EntityRuleState.blockLineWeight = ReferenceLineWeight(input, entity);
  const std::string& name = reference->block->name;
  if (name.find("Viewport") != std::string::npos) {
    g_EntityDrawState.skipNextFrame = 1;
    AddEntityExtents(input, entity);
  }
  TRANS_BASE2* driver = g_pOutputDriver;
  if (driver && input.driverFlag && name.find("AnonymusCell") != std::string::npos) {
    driver->BeginGroup(reference->block->getName());
    return true;
  }
  return false;
}
