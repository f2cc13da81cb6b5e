// The kit's strings: OdString holds one 32-bit code point per character; OdAnsiString holds 8-bit
// text in the process code page (Latin-1 here). Both are thin value types over the standard strings
// so that the system can hand them to the C library and streams without copies it does not need.
#pragma once

#include <cstddef>
#include <string>

static_assert(sizeof(wchar_t) == 4, "OdString needs a 32-bit wchar_t");

typedef wchar_t OdChar;

class OdAnsiString;

class OdString {
public:
  OdString() = default;
  OdString(const OdChar* text) : s_(text ? text : L"") {}
  OdString(const OdChar* text, std::size_t length) : s_(text, length) {}
  OdString(std::wstring text) : s_(std::move(text)) {}
  OdString(OdChar ch, std::size_t count) : s_(count, ch) {}
  // Narrow text is taken as the process code page, as the kit does.
  explicit OdString(const char* text);
  explicit OdString(const std::string& text);
  OdString(const OdAnsiString& text);

  int getLength() const { return static_cast<int>(s_.size()); }
  bool isEmpty() const { return s_.empty(); }
  const OdChar* c_str() const { return s_.c_str(); }
  operator const OdChar*() const { return s_.c_str(); }
  const std::wstring& str() const { return s_; }
  std::wstring& str() { return s_; }

  OdChar getAt(int index) const { return s_[static_cast<std::size_t>(index)]; }
  void setAt(int index, OdChar ch) { s_[static_cast<std::size_t>(index)] = ch; }
  OdChar operator[](int index) const { return getAt(index); }

  // Searches return -1 when nothing is found.
  int find(OdChar ch, int start = 0) const;
  int find(const OdChar* text, int start = 0) const;
  int reverseFind(OdChar ch) const;
  int findOneOf(const OdChar* set) const;

  OdString left(int count) const;
  OdString right(int count) const;
  OdString mid(int start) const;
  OdString mid(int start, int count) const;

  OdString& makeUpper();
  OdString& makeLower();
  OdString& trimLeft();
  OdString& trimRight();
  int replace(OdChar from, OdChar to);
  int replace(const OdChar* from, const OdChar* to);
  int remove(OdChar ch);
  OdString& insert(int index, const OdChar* text);
  OdString& deleteChars(int index, int count = 1);
  void empty() { s_.clear(); }

  int compare(const OdChar* other) const { return s_.compare(other ? other : L""); }
  int iCompare(const OdChar* other) const;

  // printf-style formatting with wide format text (%ls for wide strings, %hs for narrow).
  OdString& format(const OdChar* fmt, ...);

  OdString& operator+=(const OdString& other) { s_ += other.s_; return *this; }
  OdString& operator+=(const OdChar* other) { s_ += other ? other : L""; return *this; }
  OdString& operator+=(OdChar ch) { s_ += ch; return *this; }

  friend OdString operator+(const OdString& a, const OdString& b) { return OdString(a.s_ + b.s_); }
  friend OdString operator+(const OdString& a, const OdChar* b) { return OdString(a.s_ + (b ? b : L"")); }
  friend OdString operator+(const OdChar* a, const OdString& b) { return OdString((a ? a : L"") + b.s_); }
  friend OdString operator+(const OdString& a, OdChar b) { return OdString(a.s_ + b); }
  friend bool operator==(const OdString& a, const OdString& b) { return a.s_ == b.s_; }
  friend bool operator==(const OdString& a, const OdChar* b) { return a.s_ == (b ? b : L""); }
  friend bool operator<(const OdString& a, const OdString& b) { return a.s_ < b.s_; }

  static const OdString kEmpty;

private:
  std::wstring s_;
};

class OdAnsiString {
public:
  OdAnsiString() = default;
  OdAnsiString(const char* text) : s_(text ? text : "") {}
  OdAnsiString(const char* text, std::size_t length) : s_(text, length) {}
  OdAnsiString(std::string text) : s_(std::move(text)) {}
  // Wide text goes to the process code page; characters it cannot hold become '?'.
  explicit OdAnsiString(const OdString& text);

  int getLength() const { return static_cast<int>(s_.size()); }
  bool isEmpty() const { return s_.empty(); }
  const char* c_str() const { return s_.c_str(); }
  operator const char*() const { return s_.c_str(); }
  const std::string& str() const { return s_; }
  std::string& str() { return s_; }

  OdAnsiString& makeUpper();
  OdAnsiString& makeLower();
  int iCompare(const char* other) const;

  OdAnsiString& operator+=(const OdAnsiString& other) { s_ += other.s_; return *this; }
  friend bool operator==(const OdAnsiString& a, const OdAnsiString& b) { return a.s_ == b.s_; }
  friend bool operator<(const OdAnsiString& a, const OdAnsiString& b) { return a.s_ < b.s_; }

private:
  std::string s_;
};

// UTF-8 decoding as the kit does it: malformed bytes become U+FFFD, never dropped silently.
std::wstring odDecodeUtf8(const char* bytes, std::size_t length);
// UTF-8 encoding of wide text (the names of files as the system takes them).
std::string odEncodeUtf8(const std::wstring& text);
