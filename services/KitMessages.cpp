#include "services/KitMessages.h"

#include "kit/base/OdError.h"

namespace {

// Numbers from here on are not the kit's messages.
constexpr int kFirstUnknownMessage = 895;

}  // namespace

OdString FormatKitMessage(int code) {
  if (code >= 0 && code < kFirstUnknownMessage && code <= static_cast<int>(eNullPtr))
    return odResultDescription(static_cast<OdResult>(code));
  OdString text;
  text.format(L"Unknown message (code: %d)", code);
  return text;
}
