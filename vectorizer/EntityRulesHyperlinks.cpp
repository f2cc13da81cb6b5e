// The handle and hyperlink of the entity being drawn, for the viewer's attributes: a top-level
// entity names its own handle (entities inside a block keep their reference's), and its
// hyperlink is current while it is drawn.
#include "drivers/TRANS_BASE2.h"
#include "vectorizer/EntityRules.h"
#include "vectorizer/OutputDriverPointer.h"

namespace {

OdString Wide(const std::string& utf8) { return OdString(odDecodeUtf8(utf8.data(), utf8.size())); }

}  // namespace

void ApplyHandleAndHyperlinkRules(const EntityRuleInput& input, const Entity& entity) {
  TRANS_BASE2* driver = g_pOutputDriver;
  if (!driver || input.blockDepth > 0) return;
  driver->SetCurrentHandle(entity.handle.isNull() ? std::string() : entity.handle.toHex());
  const Hyperlink* link = entity.extras && !entity.extras->hyperlinks.empty() ? &entity.extras->hyperlinks.front()
                                                                               : nullptr;
  if (link && !link->url.empty()) {
    driver->SetHyperlink(Wide(link->url), Wide(link->description.empty() ? link->url : link->description),
                         driver->IsInGroup());
  } else if (!driver->GetHyperlinkText().isEmpty()) {
    driver->ClearHyperlink();
  }
}
