#include "converter/ViewBackground.h"

namespace {

constexpr ODCOLORREF kWhite = ODRGB(255, 255, 255);
constexpr ODCOLORREF kBlack = ODRGB(0, 0, 0);
constexpr ODCOLORREF kGrey = ODRGB(0xA8, 0xA8, 0xA8);

}  // namespace

// The 255 row keeps the dark palette on a white background on purpose: files made with BG=255
// have always looked that way.
ViewBackground ChooseViewBackground(int background, bool modelActiveOrDwf) {
  switch (background) {
    case -1: return {true, modelActiveOrDwf ? kWhite : kGrey, kWhite};
    case 0: return {false, kBlack, kBlack};
    case 255: return {false, kWhite, kWhite};
    default: return {true, kGrey, kWhite};
  }
}
