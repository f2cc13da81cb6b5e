// Standard Base64 (RFC 4648 alphabet, "=" padding, no line breaks) for images embedded as data
// addresses.
#pragma once

#include <string>
#include <string_view>

void AppendBase64(std::string& out, std::string_view bytes);
