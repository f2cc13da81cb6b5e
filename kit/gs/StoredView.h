// A view as drawings store it (the active viewport, a named view, a paper-space viewport): a
// target, a direction from the target towards the eye, a twist, a field centred in display
// coordinates, and the front and back clipping planes. Applied to a kit view as AutoCAD shows it.
#pragma once

#include "kit/db/OdDbDatabase.h"
#include "kit/gs/OdGsView.h"

struct StoredView {
  OdGePoint2d center;  // display coordinates: along the screen axes, relative to the target
  OdGePoint3d target;
  OdGeVector3d direction{0.0, 0.0, 1.0};
  double twist = 0.0;
  double width = 1.0;
  double height = 1.0;
  bool perspective = false;  // seen from a camera at target + direction, else in parallel
  double lensLength = 50.0;
  // Clip distances along the direction from the target (positive towards the eye).
  bool frontClip = false;
  bool frontClipAtEye = true;  // then the front plane is at the eye: nothing is cut in front
  bool backClip = false;
  double frontDistance = 0.0;
  double backDistance = 0.0;
};

// VIEWMODE bits of view and viewport records (the status flags of viewport entities share them).
enum StoredViewMode : int {
  kViewPerspective = 0x1,
  kViewFrontClip = 0x2,
  kViewBackClip = 0x4,
  kViewFrontClipNotAtEye = 0x10,
};

StoredView storedViewOf(const ViewportRecord& record);
StoredView storedViewOf(const ViewRecord& record);
StoredView storedViewOf(const ViewportEntity& viewport);

// True when the view looks straight down the world z axis without twist: the drawing's own plan.
bool isPlanView(const StoredView& stored);

// Sets the eye, field and clipping planes of `view`. A zero or non-finite direction looks down z;
// a zero or non-finite field is 1.
void applyStoredView(OdGsView& view, const StoredView& stored);
