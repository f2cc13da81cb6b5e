// The order in which the entity rules run around the kit's drawing of one entity.
#include "drivers/TRANS_BASE2.h"
#include "kit/db/SymbolTables.h"
#include "services/Trace.h"
#include "vectorizer/EntityRules.h"
#include "vectorizer/OutputDriverPointer.h"

bool DrawWithEntityRules(const EntityRuleInput& input, const Entity& entity,
                         const std::function<void(const Entity&)>& baseDraw) {
  if (!BeginEntityRules(input, entity)) return false;
  bool groupOpened = false;
  RewrittenEntity rewritten;
  try {
    AddEntityExtents(input, entity);
    ApplyLayerRules(input, entity);
    ApplyHandleAndHyperlinkRules(input, entity);
    ApplyRoomLabelRules(entity);
    groupOpened = ApplyBlockRules(input, entity);
    ApplyFillRules(input, entity);
    ApplyRasterRules(input, entity);
    ApplyOleFrameRules(entity);
    RewriteEntityText(input, entity, rewritten);
  } catch (const std::exception& error) {
    // The entity is still drawn as far as the rules got.
    TraceMessage("Error in entity rules", error.what());
  }
  const Entity* drawn = rewritten.get();
  auto closeGroup = [&] {
    if (!groupOpened) return;
    if (TRANS_BASE2* driver = g_pOutputDriver) {
      driver->EndGroup(static_cast<const BlockReferenceEntity&>(entity).block->getName());
    }
  };
  try {
    baseDraw(drawn ? *drawn : entity);
  } catch (...) {
    closeGroup();
    throw;
  }
  closeGroup();
  return true;
}
