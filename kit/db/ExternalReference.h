// An external reference as its host drawing sees it: the drawing that the reference's block
// names, loaded once and kept alive with the host, and the host's records that stand for that
// drawing's layers and linetypes ("block|layer"). Regeneration draws the referenced model space
// through those records, so that the host's layer states, colours and switches apply to it.
#pragma once

#include <string>
#include <unordered_map>

#include "kit/db/OdDbDatabase.h"

enum class XrefStatus {
  kResolved,
  kFileNotFound,
  kUnreadable,     // found, but not a drawing the readers could read
  kCircular,       // names a drawing that is being loaded around it
  kTooDeep,        // nested deeper than references are followed
  kNestedOverlay,  // an overlay inside a referenced drawing: overlays are not carried along
};

struct ExternalReference {
  XrefStatus status = XrefStatus::kFileNotFound;
  std::string foundPath;    // UTF-8, as the lookup gave it
  OdDbDatabasePtr drawing;  // set when resolved; may be shared with other references
  // Records of the referenced drawing to the host's records standing for them.
  std::unordered_map<const LayerRecord*, LayerRecord*> layers;
  std::unordered_map<const LinetypeRecord*, LinetypeRecord*> linetypes;

  bool isResolved() const { return status == XrefStatus::kResolved && drawing; }
  // The host's record for a record of the referenced drawing; other records pass unchanged.
  const LayerRecord* hostRecord(const LayerRecord* layer) const;
  const LinetypeRecord* hostRecord(const LinetypeRecord* linetype) const;
  // What a reference to the block draws: the referenced model space, placed by its insertion base.
  const BlockRecord* content() const { return isResolved() ? drawing->modelSpace() : nullptr; }
  OdGePoint3d basePoint() const { return isResolved() ? drawing->header().insBase : OdGePoint3d(); }
};

// The host's name for a symbol of a referenced drawing: "block|name". Names that already hold a
// "|" come from references nested in the referenced drawing and keep their own prefix.
std::string xrefDependentName(std::string_view blockName, std::string_view name);

// Attaches a loaded drawing to the host's xref block. Every layer and linetype of the drawing
// gets its host record: layer "0", "Defpoints" and the ByLayer, ByBlock and Continuous linetypes
// are the host's own; any other takes or creates the record of its dependent name. A record the
// host file already holds keeps its states, the host having saved them last; a new one copies the
// referenced drawing's. Text styles that shapes and texts of linetypes use come along the same way.
void bindExternalReference(OdDbDatabase& host, const BlockRecord& block, OdDbDatabasePtr drawing,
                           std::string foundPath);
