// The diagnostic line printers every part of the program uses. Three kinds share one shape
// (label, then ": " and the value when there is one, then a line end):
//   TraceMessage      printed only while tracing is on (VERBOSE or TRACE),
//   PrintMessage      always printed,
//   PrintMessageOnce  always printed, but each distinct line only once per process.
// Everything goes to standard output, so a log file that replaces it catches every line.
#pragma once

#include <cstdint>
#include <string>

#include "kit/base/OdString.h"

// The process-wide trace switch.
void SetTraceEnabled(bool on);
bool IsTraceEnabled();

void TraceMessage(const char* label);
void TraceMessage(const char* label, const char* value);
void TraceMessage(const char* label, const wchar_t* value);
void TraceMessage(const char* label, const OdString& value);
void TraceMessage(const char* label, const std::string& value);
void TraceMessage(const char* label, double value);
void TraceMessage(const char* label, std::int64_t value);
void TraceMessage(const char* label, int value);
void TraceMessage(const wchar_t* label);
void TraceMessage(const wchar_t* label, const wchar_t* value);

void PrintMessage(const char* label);
void PrintMessage(const char* label, const char* value);
void PrintMessage(const char* label, const wchar_t* value);
void PrintMessage(const wchar_t* label);
void PrintMessage(const wchar_t* label, const wchar_t* value);

void PrintMessageOnce(const char* label);
void PrintMessageOnce(const char* label, const char* value);
void PrintMessageOnce(const char* label, const wchar_t* value);
void PrintMessageOnce(const char* label, double value);
void PrintMessageOnce(const char* label, std::int64_t value);
void PrintMessageOnce(const char* label, int value);
void PrintMessageOnce(const wchar_t* label);
void PrintMessageOnce(const wchar_t* label, const wchar_t* value);

// Forgets the lines printed once (tests only: a process prints each line once for its whole life).
void ResetPrintedMessages();
