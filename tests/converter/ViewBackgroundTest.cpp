// The palette and background colours of a view for each BG setting.
#include <gtest/gtest.h>

#include "converter/ViewBackground.h"

namespace {

struct BackgroundCase {
  int background;
  bool modelActiveOrDwf;
  bool lightPalette;
  ODCOLORREF device;
  ODCOLORREF paper;
};

TEST(ViewBackground, PaletteAndColoursPerSetting) {
  const ODCOLORREF white = ODRGB(255, 255, 255), black = ODRGB(0, 0, 0), grey = ODRGB(0xA8, 0xA8, 0xA8);
  const BackgroundCase cases[] = {
      {-1, true, true, white, white},
      {-1, false, true, grey, white},  // paper space shows its sheet on grey
      {0, true, false, black, black},
      {255, false, false, white, white},  // dark palette on white
      {254, true, true, grey, white},
      {7, false, true, grey, white},
  };
  for (const BackgroundCase& c : cases) {
    const ViewBackground chosen = ChooseViewBackground(c.background, c.modelActiveOrDwf);
    EXPECT_EQ(chosen.lightPalette, c.lightPalette) << c.background;
    EXPECT_EQ(chosen.device, c.device) << c.background;
    EXPECT_EQ(chosen.paper, c.paper) << c.background;
  }
}

}  // namespace
