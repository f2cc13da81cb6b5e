// The extents of what an entity draws, added to the current viewport's box in the sink's
// coordinates, so that the box covers lines and areas as well as the sink's circles and texts.
#include "kit/gs/GeomExtents.h"
#include "services/Trace.h"
#include "vectorizer/EntityRules.h"
#include "vectorizer/ViewportExtents.h"

void AddEntityExtents(const EntityRuleInput& input, const Entity& entity) {
  // Entities inside a block reference lie within the reference's own extents, which are taken
  // whole: measuring them again would only repeat the work.
  if (input.blockDepth > 0 || !input.database) return;
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
