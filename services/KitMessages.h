// Texts for the kit's message numbers, as the system services format them for the kit.
#pragma once

#include "kit/base/OdString.h"

// The kit's own text for a message number below 895; "Unknown message (code: <code>)" otherwise,
// and for numbers the kit's table does not hold.
OdString FormatKitMessage(int code);
