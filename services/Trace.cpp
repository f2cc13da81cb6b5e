#include "services/Trace.h"

#include <algorithm>
#include <iostream>
#include <sstream>
#include <vector>

#include "projects/common/CommonRoutines.h"

namespace {

bool traceEnabled = false;
std::vector<std::string> printedLines;
std::vector<std::wstring> printedWideLines;

// Narrow and wide lines share standard output; the wide text is written as UTF-8 bytes so that
// the two streams never fight over the orientation of stdout.
void writeLine(const std::string& line) {
  std::cout << line << '\n';
  std::cout.flush();
}

std::string narrow(const wchar_t* text) {
  std::string out;
  WideToUtf8(out, std::wstring(text ? text : L""));
  return out;
}

std::string joined(const char* label, const std::string& value) {
  return std::string(label ? label : "") + ": " + value;
}

template <typename T>
std::string streamed(const T& value) {
  std::ostringstream os;
  os << value;
  return os.str();
}

void printOnce(const std::string& line) {
  if (std::find(printedLines.begin(), printedLines.end(), line) != printedLines.end()) return;
  printedLines.push_back(line);
  writeLine(line);
}

void printWideOnce(const std::wstring& line) {
  if (std::find(printedWideLines.begin(), printedWideLines.end(), line) != printedWideLines.end())
    return;
  printedWideLines.push_back(line);
  writeLine(narrow(line.c_str()));
}

}  // namespace

void SetTraceEnabled(bool on) { traceEnabled = on; }
bool IsTraceEnabled() { return traceEnabled; }

void TraceMessage(const char* label) {
  if (traceEnabled) writeLine(label ? label : "");
}
void TraceMessage(const char* label, const char* value) {
  if (traceEnabled) writeLine(joined(label, value ? value : ""));
}
void TraceMessage(const char* label, const wchar_t* value) {
  if (traceEnabled) writeLine(joined(label, narrow(value)));
}
void TraceMessage(const char* label, const OdString& value) {
  if (traceEnabled) writeLine(joined(label, narrow(value.c_str())));
}
void TraceMessage(const char* label, const std::string& value) {
  if (traceEnabled) writeLine(joined(label, value));
}
void TraceMessage(const char* label, double value) {
  if (traceEnabled) writeLine(joined(label, streamed(value)));
}
void TraceMessage(const char* label, std::int64_t value) {
  if (traceEnabled) writeLine(joined(label, streamed(value)));
}
void TraceMessage(const char* label, int value) {
  if (traceEnabled) writeLine(joined(label, streamed(value)));
}
void TraceMessage(const wchar_t* label) {
  if (traceEnabled) writeLine(narrow(label));
}
void TraceMessage(const wchar_t* label, const wchar_t* value) {
  if (traceEnabled) writeLine(narrow(label) + ": " + narrow(value));
}

void PrintMessage(const char* label) { writeLine(label ? label : ""); }
void PrintMessage(const char* label, const char* value) { writeLine(joined(label, value ? value : "")); }
void PrintMessage(const char* label, const wchar_t* value) { writeLine(joined(label, narrow(value))); }
void PrintMessage(const wchar_t* label) { writeLine(narrow(label)); }
void PrintMessage(const wchar_t* label, const wchar_t* value) {
  writeLine(narrow(label) + ": " + narrow(value));
}

void PrintMessageOnce(const char* label) { printOnce(label ? label : ""); }
void PrintMessageOnce(const char* label, const char* value) { printOnce(joined(label, value ? value : "")); }
void PrintMessageOnce(const char* label, const wchar_t* value) { printOnce(joined(label, narrow(value))); }
void PrintMessageOnce(const char* label, double value) { printOnce(joined(label, streamed(value))); }
void PrintMessageOnce(const char* label, std::int64_t value) { printOnce(joined(label, streamed(value))); }
void PrintMessageOnce(const char* label, int value) { printOnce(joined(label, streamed(value))); }
void PrintMessageOnce(const wchar_t* label) { printWideOnce(label ? label : L""); }
void PrintMessageOnce(const wchar_t* label, const wchar_t* value) {
  printWideOnce(std::wstring(label ? label : L"") + L": " + (value ? value : L""));
}

void ResetPrintedMessages() {
  printedLines.clear();
  printedWideLines.clear();
}
