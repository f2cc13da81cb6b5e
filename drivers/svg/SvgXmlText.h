// Texts of the drawing made safe for an XML file. Drawing texts, layer names and links may hold
// any character: control characters and other code points that XML 1.0 forbids are dropped (a
// numeric reference to them would be just as invalid), markup characters are escaped, and the
// "\U+XXXX" escapes that travel inside texts can become numeric character references.
#pragma once

#include <string>
#include <string_view>

enum class XmlEscapeMode {
  // Element content: "&", "'", '"' and "<" escaped; ">" stays as it is except after "]]".
  kContent,
  // Attribute values (either quote style): "&" (unless it already starts "&amp;"), "<", '"' and
  // "'" escaped.
  kAttribute,
};

// True for the code points XML 1.0 allows in a document.
bool IsXmlChar(char32_t code);

void AppendUtf8(std::string& out, char32_t code);

// Appends the text as UTF-8, escaped for the given place. With escapesToReferences a "\U+" and
// four hexadecimal digits become "&#x" + the digits + ";" (dropped when the code is not an XML
// character). Narrow input is UTF-8; a byte that starts no valid sequence is taken as Latin-1.
void AppendXml(std::string& out, std::wstring_view text, XmlEscapeMode mode, bool escapesToReferences = false);
void AppendXml(std::string& out, std::string_view utf8, XmlEscapeMode mode, bool escapesToReferences = false);
std::string XmlText(std::wstring_view text, XmlEscapeMode mode, bool escapesToReferences = false);
std::string XmlText(std::string_view utf8, XmlEscapeMode mode, bool escapesToReferences = false);

// Decodes UTF-8 as above (malformed bytes as Latin-1).
std::u32string DecodeUtf8Lenient(std::string_view utf8);
