// The last word of a crashed run: a short backtrace on standard error and exit status 1, so that a
// batch driving thousands of conversions sees which drawing and which routine failed.
#pragma once

void InstallCrashHandler();
