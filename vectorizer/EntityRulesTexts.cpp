// Texts drawn other than as stored: fields filled in, watermark positions given in percent of
// the viewport, attributes with paragraph breaks drawn as multi-line texts.
#include <cmath>
#include <ctime>

#include "vectorizer/EntityRuleState.h"
#include "vectorizer/EntityRules.h"
#include "vectorizer/FieldTexts.h"
#include "vectorizer/ViewportExtents.h"

namespace {

constexpr size_t kPercentMarkerLength = 17;

std::tm LocalNow() {
  std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return local;
}

bool RewriteField(const EntityRuleInput& input, std::string& text, bool multiLine) {
  return RewriteFieldText(text, multiLine, input.inputFileName, LocalNow());
}

// The viewport's box mapped back to the entity's coordinates; false when there is none.
bool PercentPosition(const EntityRuleInput& input, OdGePoint3d& position) {
  const ViewportExtents& extents = g_ViewportExtents;
  if (extents.Count() == 0) return false;
  size_t index = size_t(std::clamp<int>(g_EntityRuleState.currentViewportIndex, 0, int(extents.Count()) - 1));
  if (!extents.valid[index]) return false;
  const OdGeExtents3d& box = extents.boxes[index];
  double px = position.x / 100.0, py = position.y / 100.0;
  OdGePoint3d output(box.minPoint.x + px * (box.maxPoint.x - box.minPoint.x),
                     box.minPoint.y + py * (box.maxPoint.y - box.minPoint.y), box.minPoint.z);
  OdGeMatrix3d toEntity;
  if (!input.blockToOutput.invert(toEntity)) return false;
  position = toEntity.transform(output);
  return true;
}

bool RewritePercentText(const EntityRuleInput& input, std::string& text, OdGePoint3d& position) {
  if (text.rfind(kPercentMarker, 0) != 0) return false;
  text = text.substr(kPercentMarkerLength);
  PercentPosition(input, position);
  return true;
}

// An attribute whose text breaks into paragraphs, as the multi-line text it shows.
MTextEntity AsMultiLineText(const AttributeEntity& attribute) {
  MTextEntity mtext;
  static_cast<Entity&>(mtext) = static_cast<const Entity&>(attribute);
  mtext.type = DbType::kMText;
  OdGeMatrix3d plane = OdGeMatrix3d::planeToWorld(attribute.normal);
  OdGeVector3d up = plane.transform(OdGeVector3d(-std::sin(attribute.rotation), std::cos(attribute.rotation), 0.0));
  // The first baseline stays where the attribute's was.
  mtext.position = plane.transform(attribute.position) + up * attribute.height;
  mtext.normal = attribute.normal;
  mtext.rotation = attribute.rotation;
  mtext.height = attribute.height;
  mtext.style = attribute.style;
  mtext.attachment = MTextData::kTopLeft;
  mtext.text = attribute.text;
  return mtext;
}

AttributeEntity CopyAttribute(const AttributeEntity& attribute) {
  AttributeEntity copy;
  static_cast<Entity&>(copy) = static_cast<const Entity&>(attribute);
  static_cast<TextData&>(copy) = static_cast<const TextData&>(attribute);
  copy.tag = attribute.tag;
  copy.attributeFlags = attribute.attributeFlags;
  copy.fieldLength = attribute.fieldLength;
  copy.lockPosition = attribute.lockPosition;
  if (attribute.multiline) copy.multiline = std::make_unique<MTextData>(*attribute.multiline);
  return copy;
}

}  // namespace

const Entity* RewrittenEntity::get() const {
  if (text) return &*text;
  if (mtext) return &*mtext;
  if (attribute) return &*attribute;
  return nullptr;
}

bool RewriteEntityText(const EntityRuleInput& input, const Entity& entity, RewrittenEntity& rewritten) {
  if (const auto* text = dbCast<TextEntity>(&entity)) {
    TextEntity copy = *text;
    bool changed = RewriteField(input, copy.text, false) | RewritePercentText(input, copy.text, copy.position);
    if (changed) rewritten.text = std::move(copy);
    return changed;
  }
  if (const auto* mtext = dbCast<MTextEntity>(&entity)) {
    MTextEntity copy = *mtext;
    bool changed = RewriteField(input, copy.text, true) | RewritePercentText(input, copy.text, copy.position);
    if (changed) rewritten.mtext = std::move(copy);
    return changed;
  }
  if (const auto* attribute = dbCast<AttributeEntity>(&entity)) {
    AttributeEntity copy = CopyAttribute(*attribute);
    bool changed = RewriteField(input, copy.text, false);
    if (!copy.multiline && copy.text.find("\\P") != std::string::npos) {
      if (copy.isInvisible()) return false;
      rewritten.mtext = AsMultiLineText(copy);
      return true;
    }
    if (changed) rewritten.attribute = std::move(copy);
    return changed;
  }
  return false;
}
