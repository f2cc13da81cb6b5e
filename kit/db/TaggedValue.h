// Group-code/value pairs: the generic form in which the database keeps what it does not model
// field by field (header variables beyond the typed ones, extended data, xrecords, proxy and
// unmodelled objects), so that nothing read from a file is lost.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// What a group code's value is, by the code ranges drawing files use.
enum class GroupValueKind : uint8_t {
  kString,   // text (also names, handles in text form)
  kHandle,   // hexadecimal handle text
  kReal,     // double
  kInt16,
  kInt32,
  kInt64,
  kBool,     // 290..299
  kBinary,   // binary chunk (310..319, 1004): kept as hexadecimal text
};

GroupValueKind groupValueKind(int code);
inline bool isNumericKind(GroupValueKind k) {
  return k == GroupValueKind::kReal || k == GroupValueKind::kInt16 ||
         k == GroupValueKind::kInt32 || k == GroupValueKind::kInt64 || k == GroupValueKind::kBool;
}

struct TaggedValue {
  int16_t code = 0;
  GroupValueKind kind = GroupValueKind::kString;
  double real = 0.0;     // for kReal
  int64_t integer = 0;   // for the integer kinds and kBool
  std::string text;      // for kString, kHandle and kBinary (UTF-8; binary as hex digits)

  static TaggedValue ofString(int code, std::string value);
  static TaggedValue ofReal(int code, double value);
  static TaggedValue ofInteger(int code, int64_t value);

  // The value as a number whatever its kind (text that is not a number gives 0).
  double asReal() const;
  int64_t asInteger() const;
  // The value as text: numbers are written the way the dump prints them.
  std::string asText() const;
};

using TaggedValues = std::vector<TaggedValue>;

// Extended data of one registered application ("1001 APPNAME" followed by 1000..1071 groups).
struct XDataGroup {
  std::string appName;
  TaggedValues values;
};
