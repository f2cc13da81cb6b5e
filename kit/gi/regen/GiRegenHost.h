// What regeneration asks of the view it draws for: to draw an entity met inside a block (the
// view applies its own rules first and hands the entity back to regeneration), and to take note
// of changed traits before the next primitive.
#pragma once

#include "kit/gi/OdGiDrawable.h"

class GiRegenHost {
public:
  virtual ~GiRegenHost() = default;
  // Draws one entity; returns false when the view skipped it.
  virtual bool drawNested(const OdGiDrawable& entity) = 0;
  virtual void onTraitsModified() = 0;
};
