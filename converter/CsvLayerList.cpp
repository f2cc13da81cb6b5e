#include "converter/CsvLayerList.h"

#include <cmath>
#include <cstdio>
#include <fstream>
#include <vector>

#include "converter/CDm2017.h"
#include "converter/OutputNaming.h"
#include "kit/db/Entities.h"
#include "kit/db/OdDbDatabase.h"
#include "kit/db/SymbolTables.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

int g_CsvValue = 1;

namespace {

// A field with a separator, a quote or a line break is quoted, so that every line keeps its count
// of fields whatever the layer names hold.
std::string Field(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

// An indexed colour as its number, a true colour as "#RRGGBB".
std::string ColourText(const OdCmEntityColor& colour) {
  char text[16];
  if (colour.isByColor()) {
    std::snprintf(text, sizeof text, "#%02X%02X%02X", colour.red(), colour.green(), colour.blue());
  } else {
    std::snprintf(text, sizeof text, "%d", colour.colorIndex());
  }
  return text;
}

const char* Visibility(const LayerRecord* layer) {
  return layer && (layer->isOff() || layer->isFrozen()) ? "hidden" : "visible";
}

std::string LayerName(const LayerRecord* layer) { return layer ? layer->name : std::string("0"); }

struct Vertex {
  double x, y, bulge;
};

// Shoelace area plus the circular segment of every bulged side.
double EnclosedArea(const std::vector<Vertex>& ring) {
  double twiceArea = 0.0;
  double segments = 0.0;
  for (size_t i = 0; i < ring.size(); ++i) {
    const Vertex& a = ring[i];
    const Vertex& b = ring[(i + 1) % ring.size()];
    twiceArea += a.x * b.y - b.x * a.y;
    if (a.bulge == 0.0) continue;
    const double chord = std::hypot(b.x - a.x, b.y - a.y);
    const double angle = 4.0 * std::atan(a.bulge);
    const double radius = chord / (2.0 * std::sin(angle / 2.0));
    segments += radius * radius / 2.0 * (angle - std::sin(angle));
  }
  return std::fabs(twiceArea / 2.0 + segments);
}

// Drawing units to metres; unitless drawings keep their own unit.
double MetresPerUnit(int insUnits) {
  switch (insUnits) {
    case 1: return 0.0254;
    case 2: return 0.3048;
    case 4: return 0.001;
    case 5: return 0.01;
    case 6: return 1.0;
    case 10: return 0.9144;
    default: return 1.0;
  }
}

bool ClosedRing(const Entity* entity, std::vector<Vertex>& ring) {
  if (const auto* light = dbCast<LwPolylineEntity>(entity)) {
    if (!light->isClosed()) return false;
    for (size_t i = 0; i < light->points.size(); ++i)
      ring.push_back({light->points[i].x, light->points[i].y, light->bulgeAt(i)});
  } else if (const auto* heavy = dbCast<PolylineEntity>(entity)) {
    if (!heavy->isClosed() || heavy->kind() != PolylineEntity::Kind::k2d) return false;
    for (const PolylineVertex& v : heavy->vertices)
      if ((v.flags & PolylineVertex::kSplineFrame) == 0) ring.push_back({v.position.x, v.position.y, v.bulge});
  } else {
    return false;
  }
  return ring.size() >= 2;  // two bulged vertices make a circle
}

// "P", handle, layer, area in square metres (square drawing units when the drawing has no unit),
// vertex count, visibility.
std::string ShapeLine(const Entity& entity, const std::vector<Vertex>& ring, double areaScale) {
  char area[64];
  std::snprintf(area, sizeof area, "%.3f", EnclosedArea(ring) * areaScale);
  return "P," + entity.handle.toHex() + "," + Field(LayerName(entity.layer)) + "," + area + "," +
         std::to_string(ring.size()) + "," + Visibility(entity.layer) + "\n";
}

}  // namespace

OdString CsvListName(const OdString& outputName, const OdString& csvFileName) {
  if (!csvFileName.isEmpty()) return csvFileName;
  return StripExtension(outputName, OdString(L".svg")) + L".csv";
}

std::string CsvListText(const OdDbDatabase& database) {
  std::string text;
  for (const LayerRecord* layer : database.layers()) {
    text += "L," + ColourText(layer->color) + "," + Field(layer->name) + ",0," + std::to_string(g_CsvValue) +
            "," + Visibility(layer) + "\n";
  }
  const BlockRecord* model = database.modelSpace();
  if (!model) return text;
  const double metres = MetresPerUnit(database.header().insUnits);
  for (const Entity* entity : model->entities) {
    std::vector<Vertex> ring;
    if (entity && ClosedRing(entity, ring)) text += ShapeLine(*entity, ring, metres * metres);
  }
  return text;
}

void CDm2017::WriteCSVLayerList(const OdString& name) {
  if (!g_pDb) return;
  const OdString listName = CsvListName(name, csvFileName);
  TraceMessage("CSV File", listName);
  std::string path;
  std::ofstream file(OdStringToUtf8(path, listName), std::ios::binary | std::ios::trunc);
  if (file) file << CsvListText(*g_pDb);
}
