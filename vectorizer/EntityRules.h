// The system's rules applied before the kit draws an entity: they fill the per-entity drawing
// state (line type, width, fill, masks, circles, raster files), send the layer to the driver,
// capture room labels, open node groups for table cells and rewrite field and watermark texts.
// The view gathers what the rules need to know about the entity's surroundings.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "kit/db/Entities.h"
#include "kit/db/OdDbDatabase.h"

struct EntityRuleInput {
  const OdDbDatabase* database = nullptr;
  int32_t viewportIndex = 0;
  size_t blockDepth = 0;                       // block references around the entity
  OdGeMatrix3d blockToOutput;                  // block coordinates to the sink's coordinates
  const LayerRecord* layer = nullptr;          // the layer the entity is drawn on
  const LinetypeRecord* byBlockLinetype = nullptr;
  int16_t byBlockLineWeight = kLnWtByLwDefault;
  OdGeMatrix3d viewMatrices[2];                // eye to world, world to device
  uint8_t driverFlag = 0;                      // allows node groups for table cells
  std::string inputFileName;                   // UTF-8
};

// A copy of a text entity with its content rewritten (the drawing itself is never changed).
struct RewrittenEntity {
  std::optional<TextEntity> text;
  std::optional<MTextEntity> mtext;
  std::optional<AttributeEntity> attribute;
  const Entity* get() const;
};

// Runs the rules and then `baseDraw` with the entity as it is to be drawn. Returns false when the
// entity was skipped.
bool DrawWithEntityRules(const EntityRuleInput& input, const Entity& entity,
                         const std::function<void(const Entity&)>& baseDraw);

// The single rules, in the order DrawWithEntityRules runs them.
bool BeginEntityRules(const EntityRuleInput& input, const Entity& entity);
void ApplyLayerRules(const EntityRuleInput& input, const Entity& entity);
void ApplyHandleAndHyperlinkRules(const EntityRuleInput& input, const Entity& entity);
void ApplyRoomLabelRules(const Entity& entity);
// True when a node group was opened for the entity (to be closed after it is drawn).
bool ApplyBlockRules(const EntityRuleInput& input, const Entity& entity);
void ApplyFillRules(const EntityRuleInput& input, const Entity& entity);
void ApplyRasterRules(const EntityRuleInput& input, const Entity& entity);
void ApplyOleFrameRules(const Entity& entity);
// Field texts, percentage watermark positions and multi-line attributes; false when unchanged.
bool RewriteEntityText(const EntityRuleInput& input, const Entity& entity, RewrittenEntity& rewritten);
// Adds the entity's extents (in the sink's coordinates) to the current viewport's box.
void AddEntityExtents(const EntityRuleInput& input, const Entity& entity);

// The room-label block and its attribute tags.
inline constexpr const char* kRoomLabelBlock = "TADS_Mark_RoomLabel";
// Marks a watermark text whose position is given in percent of the viewport's extents.
inline constexpr const char* kPercentMarker = "%% USE PERCENT %%";
