// Per-entity drawing state shared by the entity rules (which decide), the geometry sink and its
// dumper (which draw), and the device (colour and fill). Plain process-wide data: everything runs
// on the converting thread.
#pragma once

#include <cstdint>

#include "kit/base/OdString.h"

struct EntityDrawState {
  // Line type and width of the entity being drawn.
  OdString lineTypeName = L"CONTINUOUS";
  double lineTypeScale = 1.0;
  uint8_t isContinuous = 1;
  uint8_t lineTypeKnown = 0;
  double lineWidth = 0.0;        // a line weight (1/100 mm), or a width in output units when widthIsGeometric
  int32_t widthIsGeometric = 0;

  // Set by every conveyor operation before its points reach the dumper.
  uint8_t closedFlag = 0;

  // Fill.
  uint8_t fillOn = 0;
  uint8_t forceFill = 0;         // filled argument of native circles; cleared after each
  uint8_t suppressFillOnce = 0;  // consumed by the fill-mode update
  uint8_t isBackgroundMask = 0;
  uint8_t maskFilled = 0;

  // One-shot requests consumed by the first qualifying point list.
  uint8_t skipNextFrame = 0;     // a viewport's five-point frame
  OdString rasterFileName;       // the image that the next five-point list frames
  int64_t rasterWidth = 0;
  int64_t rasterHeight = 0;
  uint8_t circleCandidate = 0;   // a tessellated circle may come back as one
  double circleRadius = 0.0;     // in drawing units, 0 when unknown

  int32_t pathStyle = 0;

  // Device colour state: unchanged colours are not sent again.
  int16_t lastColorIndex = -1;
  uint32_t lastTrueColor = 0;    // 0xBBGGRR
  uint8_t colorIsTrue = 0;
  uint8_t colorDirty = 0;        // the next colour is sent even if unchanged
  // Two device settings handed over by the kit; nothing reads them.
  int32_t deviceSetting1 = 0;
  int32_t deviceSetting2 = 0;
};

extern EntityDrawState g_EntityDrawState;

// Line type of the entity: the name the driver will see. Returns 1 when the driver knows the name
// with an empty dash pattern, else 0. Dashes themselves arrive already cut by the kit.
int SetLineType(const OdString& name, double scale);
// Back to "CONTINUOUS" at scale 1.0.
void ResetLineType();
