// MLINE: each element of the style as a line through the vertices, offset along the miters.
#include <algorithm>

#include "kit/gi/regen/RegenEntities.h"
#include "kit/gi/regen/RegenPrimitives.h"

namespace gi {

void regenMLine(GiRegenContext& ctx, const MLineEntity& e) {
  if (e.vertices.size() < 2) return;
  const MLineStyleObject* style = ctx.database().findAs<MLineStyleObject>(e.style);
  size_t elements = style && !style->elements.empty() ? style->elements.size() : 2;
  bool closed = (e.flags & MLineEntity::kClosed) != 0;
  OdGiSubEntityTraitsData entityTraits = ctx.effectiveTraits();
  for (size_t k = 0; k < elements; ++k) {
    // Each vertex keeps the element's distance along its miter as the first element parameter.
    std::vector<OdGePoint3d> points;
    for (const MLineVertex& v : e.vertices) {
      double along = k < v.elementParams.size() && !v.elementParams[k].empty() ? v.elementParams[k][0] : 0.0;
      points.push_back(v.position + v.miter * along);
    }
    if (closed) points.push_back(points.front());
    if (style && k < style->elements.size() && !style->elements[k].color.isByLayer()) {
      ctx.setTraitsColor(style->elements[k].color);
    }
    drawChain(ctx, points);
    ctx.traits().setAll(entityTraits);
  }
}

}  // namespace gi
