// Room labels: a reference to the room-label block on a room layer makes the label text from its
// attributes; its "1FL" attribute, drawn later, places the label instead of being drawn.
#include "drivers/TRANS_BASE2.h"
#include "kit/db/SymbolTables.h"
#include "vectorizer/EntityRuleState.h"
#include "vectorizer/EntityRules.h"
#include "vectorizer/OutputDriverPointer.h"

namespace {

std::string AttributeText(const BlockReferenceEntity& reference, const char* tag) {
  for (const AttributeEntity* attribute : reference.attributes) {
    if (attribute && equalsIgnoringCase(attribute->tag, tag)) return attribute->text;
  }
  return std::string();
}

bool IsRoomLabelReference(const BlockReferenceEntity& reference) {
  TRANS_BASE2* driver = g_pOutputDriver;
  if (!driver || !reference.block || !equalsIgnoringCase(reference.block->name, kRoomLabelBlock)) return false;
  return reference.layer && driver->IsRoomLayer(reference.layer->getName());
}

}  // namespace

void ApplyRoomLabelRules(const Entity& entity) {
  EntityRuleState& rules = g_EntityRuleState;
  if (const auto* reference = dbCast<BlockReferenceEntity>(&entity)) {
    rules.pendingRoomLabel.clear();
    if (IsRoomLabelReference(*reference)) {
      rules.pendingRoomLabel = AttributeText(*reference, "1FL") + "_" + AttributeText(*reference, "2SR") + "_" +
                               AttributeText(*reference, "3NO");
    }
    return;
  }
  if (const auto* attribute = dbCast<AttributeEntity>(&entity)) {
    rules.roomLabelCapture = equalsIgnoringCase(attribute->tag, "1FL") ? 1 : 0;
  }
}
