// The extents of what an entity draws, added to the current viewport's box in the sink's
// coordinates, so that the box covers lines and areas as well as the sink's circles and texts.
#include "kit/gs/GeomExtents.h"
#include "services/Trace.h"
#include "vectorizer/EntityRules.h"
#include "vectorizer/ViewportExtents.h"

void AddEntityExtents(const EntityRuleInput& input, const Entity& entity) {
  // Deeper entities are inside a block reference whose own extents already hold them.
  if (input.blockDepth > 1 || !input.database) return;
  try {
    OdGeExtents3d box;
    if (!entityGeomExtents(*input.database, entity, box) || !box.isValidExtents()) return;
    if (box.minPoint.x == box.maxPoint.x && box.minPoint.y == box.maxPoint.y) return;
    OdGeExtents3d output;
    const OdGePoint3d& lo = box.minPoint;
    const OdGePoint3d& hi = box.maxPoint;
    for (const OdGePoint3d& corner : {lo, OdGePoint3d(hi.x, lo.y, lo.z), OdGePoint3d(lo.x, hi.y, hi.z), hi}) {
      output.addPoint(input.blockToOutput.transform(corner));
    }
    g_ViewportExtents.AddBox(output.minPoint, output.maxPoint);
  } catch (const std::exception&) {
    TraceMessage("Error getting extents");
  }
}
