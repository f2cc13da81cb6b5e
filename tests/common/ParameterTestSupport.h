// Running the parameter parser as the entry does, from plain argument lists, with its standard
// output captured.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "projects/common/CommonRoutines.h"
#include "projects/common/ParseCommandLine.h"
#include "services/Trace.h"

namespace parameter_test {

inline void Parse(CParseCommandLine& parameters, const std::vector<std::string>& arguments) {
  std::vector<const char*> argv{"dm2020"};
  for (const std::string& argument : arguments) argv.push_back(argument.c_str());
  parameters.ParseArguments(static_cast<short>(argv.size()), argv.data());
}

// The standard output of one parse, starting from a clean print-once memory.
inline std::string ParseCapturing(CParseCommandLine& parameters, const std::vector<std::string>& arguments) {
  ResetPrintedMessages();
  testing::internal::CaptureStdout();
  Parse(parameters, arguments);
  return testing::internal::GetCapturedStdout();
}

inline std::string Utf8(const OdString& text) {
  std::string out;
  OdStringToUtf8(out, text);
  return out;
}

}  // namespace parameter_test
