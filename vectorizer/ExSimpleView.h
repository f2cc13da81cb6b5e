// The system's view: records its settings when updated, tessellates with its own deviations,
// runs the entity rules before the kit draws each entity, and passes changed colours and fill to
// the driver.
#pragma once

#include <string>

#include <cstdint>
#include <vector>

#include "kit/gs/OdGsBaseVectorizeView.h"
#include "vectorizer/EntityRules.h"

class ExSimpleView : public OdGsBaseVectorizeViewDef {
public:
  void update() override;
  void beginViewVectorization() override;
  void draw(const OdGiDrawable* drawable) override;
  void onTraitsModified() override;

  uint8_t driverFlag = 0;

  // The view's settings as its last update saw them.
  struct Settings {
    bool perspective = false;
    bool frontClipped = false;
    bool backClipped = false;
    double frontClip = 0.0;
    double backClip = 0.0;
    OdGePoint3d eye;
    OdGePoint3d target;
    double halfFieldWidth = 0.0;
    double halfFieldHeight = 0.0;
    std::vector<OdGePoint2d> clipPoints;
    OdGeMatrix3d eyeToWorld;
  };
  const Settings& settings() const { return settings_; }
  // The deviations of the five kinds asked for when vectorization started.
  const double* deviations() const { return deviations_; }

private:
  void RecordSettings();
  EntityRuleInput RuleInput(const Entity& entity) const;
  int32_t ViewportIndex() const;

  Settings settings_;
  double deviations_[5] = {0.0, 0.0, 0.0, 0.0, 0.0};
  // Taken once when vectorization starts: the view does not move while its entities are drawn.
  OdGeMatrix3d worldToDevice_;
  std::string inputFileName_;
};
