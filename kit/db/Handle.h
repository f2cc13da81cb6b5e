// Object handles: the 64-bit identifiers that drawing files give every object. Handle 0 means
// "none". Files write them as hexadecimal text without leading zeros.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

class OdDbHandle {
public:
  constexpr OdDbHandle() = default;
  constexpr explicit OdDbHandle(uint64_t value) : value_(value) {}

  // Parses hexadecimal digits, ignoring surrounding blanks; anything else yields the null handle.
  static OdDbHandle fromHex(std::string_view text);

  constexpr uint64_t value() const { return value_; }
  constexpr bool isNull() const { return value_ == 0; }
  // Upper-case hexadecimal without leading zeros ("1BD"); the null handle is "0".
  std::string toHex() const;

  constexpr bool operator==(const OdDbHandle&) const = default;
  constexpr auto operator<=>(const OdDbHandle&) const = default;

private:
  uint64_t value_ = 0;
};

template <>
struct std::hash<OdDbHandle> {
  size_t operator()(const OdDbHandle& h) const noexcept { return std::hash<uint64_t>()(h.value()); }
};
