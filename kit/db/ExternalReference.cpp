#include "kit/db/ExternalReference.h"

#include <utility>

namespace {

constexpr int16_t kDependentFlags = SymbolTableRecord::kXrefDependent | SymbolTableRecord::kXrefResolved;

template <class Record>
Record* mapped(const std::unordered_map<const Record*, Record*>& map, const Record* record) {
  auto it = map.find(record);
  return it == map.end() ? nullptr : it->second;
}

// Layers every drawing shares with the drawings it references.
bool isSharedLayer(const LayerRecord& layer) {
  return layer.name == "0" || equalsIgnoringCase(layer.name, "Defpoints");
}

bool isSharedLinetype(const LinetypeRecord& linetype) {
  return linetype.isByLayer() || linetype.isByBlock() || equalsIgnoringCase(linetype.name, "Continuous");
}

// A host record for the dependent name; true when it had to be created.
template <class Record>
std::pair<Record*, bool> dependentRecord(OdDbDatabase& host, SymbolTable<Record>& table, const std::string& name) {
  if (Record* existing = table.find(name)) return {existing, false};
  Record* record = host.newObject<Record>();
  record->name = name;
  record->flags = kDependentFlags;
  record->ownerHandle = table.handle;
  record->handle = host.allocateHandle();
  host.adoptHandle(record);
  table.add(record);
  return {record, true};
}

// The host's record for a text style that shapes or texts of a linetype use, so that the host's
// linetype names a style of its own drawing.
TextStyleRecord* hostTextStyle(OdDbDatabase& host, const std::string& blockName, const TextStyleRecord& source) {
  auto [record, created] = dependentRecord(host, host.textStyles(), xrefDependentName(blockName, source.name));
  if (created) {
    record->fontFile = source.fontFile;
    record->bigFontFile = source.bigFontFile;
    record->trueTypeFace = source.trueTypeFace;
    record->trueTypeFlags = source.trueTypeFlags;
    record->fixedHeight = source.fixedHeight;
    record->widthFactor = source.widthFactor;
    record->obliqueAngle = source.obliqueAngle;
    record->lastHeight = source.lastHeight;
    record->generationFlags = source.generationFlags;
    record->flags = int16_t((source.flags & ~kDependentFlags) | kDependentFlags);
  }
  return record;
}

// Dashes name their style by a handle of the referenced drawing; the host's copy names the host's.
void bindDashStyles(OdDbDatabase& host, const std::string& blockName, const OdDbDatabase& drawing,
                    LinetypeRecord& linetype) {
  for (LinetypeDash& dash : linetype.dashes) {
    const TextStyleRecord* source = dash.style ? dash.style : drawing.findAs<TextStyleRecord>(dash.styleHandle);
    if (!source) continue;
    dash.style = hostTextStyle(host, blockName, *source);
    dash.styleHandle = dash.style->handle;
  }
}

void bindLinetypes(OdDbDatabase& host, const std::string& blockName, ExternalReference& xref) {
  for (const LinetypeRecord* source : xref.drawing->linetypes()) {
    LinetypeRecord* target = nullptr;
    if (isSharedLinetype(*source)) {
      target = host.linetypes().find(source->name);
    } else {
      auto [record, created] =
          dependentRecord(host, host.linetypes(), xrefDependentName(blockName, source->name));
      if (created) {
        record->description = source->description;
        record->alignment = source->alignment;
        record->patternLength = source->patternLength;
        record->dashes = source->dashes;
        bindDashStyles(host, blockName, *xref.drawing, *record);
      }
      target = record;
    }
    if (target) xref.linetypes[source] = target;
  }
}

void copyLayerStates(const LayerRecord& source, LayerRecord& target, const ExternalReference& xref) {
  target.color = source.color;
  target.linetype = source.linetype ? mapped(xref.linetypes, source.linetype) : nullptr;
  target.lineweight = source.lineweight;
  target.transparency = source.transparency;
  target.description = source.description;
  target.off = source.off;
  target.plottable = source.plottable;
  target.flags = int16_t((source.flags & ~kDependentFlags) | kDependentFlags);
}

void bindLayers(OdDbDatabase& host, const std::string& blockName, ExternalReference& xref) {
  for (const LayerRecord* source : xref.drawing->layers()) {
    LayerRecord* target = nullptr;
    if (isSharedLayer(*source)) {
      target = host.layers().find(source->name);
    } else {
      auto [record, created] = dependentRecord(host, host.layers(), xrefDependentName(blockName, source->name));
      if (created) copyLayerStates(*source, *record, xref);
      target = record;
    }
    if (target) xref.layers[source] = target;
  }
}

}  // namespace

const LayerRecord* ExternalReference::hostRecord(const LayerRecord* layer) const {
  const LayerRecord* host = mapped(layers, layer);
  return host ? host : layer;
}

const LinetypeRecord* ExternalReference::hostRecord(const LinetypeRecord* linetype) const {
  const LinetypeRecord* host = mapped(linetypes, linetype);
  return host ? host : linetype;
}

std::string xrefDependentName(std::string_view blockName, std::string_view name) {
  if (name.find('|') != std::string_view::npos) return std::string(name);
  std::string result(blockName);
  result += '|';
  result += name;
  return result;
}

void bindExternalReference(OdDbDatabase& host, const BlockRecord& block, OdDbDatabasePtr drawing,
                           std::string foundPath) {
  ExternalReference& xref = host.externalReferenceFor(&block);
  xref.status = XrefStatus::kResolved;
  xref.foundPath = std::move(foundPath);
  xref.drawing = std::move(drawing);
  xref.layers.clear();
  xref.linetypes.clear();
  // Linetypes first: the new layer records point at the host's linetypes.
  bindLinetypes(host, block.name, xref);
  bindLayers(host, block.name, xref);
}
