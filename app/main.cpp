// Process entry: one run converts one drawing. The order of the steps below is part of the
// program's contract (what is printed, what is checked, when the converter sees each setting).
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <string>

#include "app/CrashHandler.h"
#include "app/ParameterTransfer.h"
#include "converter/CDm2017.h"
#include "projects/common/CommonRoutines.h"
#include "projects/common/ParseCommandLine.h"
#include "projects/common/ProgramInfo.h"
#include "services/Trace.h"

namespace {

constexpr int kMissingFile = -666;

void SeedRandomGenerator() {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  const auto millis = std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count();
  std::srand(static_cast<unsigned>(millis % 32000));
}

void RememberProgramDirectory(const char* programPath) {
  g_ProgramDirectory = programPath;
  const int separator = LastSeparator(g_ProgramDirectory);
  if (separator > 0) g_ProgramDirectory.resize(static_cast<size_t>(separator) + 1);
}

void PrintBanner() {
  std::cout << "                 Draftmill 2020 " << g_VersionText << "\n";
  std::cout << "Draftmill CAD drawing converter, made by the Draftmill team.\n";
  std::cout << "Converts DWG, DXF, DGN, DWF and PDF drawings for the web drawing viewer.\n";
  std::cout << "\n";
  std::cout << "Draftmill: right, fast, and never losing a drawing.\n";
  std::cout << std::string(60, '=') << "\n";
  std::cout.flush();
}

// The input must exist and the output's directory, when one is named, must too.
bool CheckFiles(CParseCommandLine& parameters) {
  const OdString input = parameters.GetInputFile();
  // Names reach the file system as the UTF-8 bytes the shell gave, as the loader opens them.
  std::string inputPath;
  if (!fileExists(OdStringToUtf8(inputPath, input))) {
    PrintMessage("Input File Does Not Exist", input.c_str());
    return false;
  }
  std::string output, directory, baseName, extension;
  SplitPath(OdStringToUtf8(output, parameters.GetOutputFile()), directory, baseName, extension);
  if (!directory.empty() && !directoryExists(directory)) {
    PrintMessageOnce("Output Directory Does Not Exist", directory.c_str());
    return false;
  }
  return true;
}

void PrintElapsedTime(std::clock_t start) {
  const double seconds = static_cast<double>(std::clock() - start) / 1000000.0;
  std::cout << "\n" << "Elapsed Time: " << seconds << " seconds" << std::endl;
}

int Run(int argc, char** argv, std::clock_t start) {
  CDm2017 converter;
  CParseCommandLine parameters;
  parameters.SetDefaults();
  parameters.ParseArguments(static_cast<short>(argc), argv);
  if (parameters.GetQuiet() == 0) PrintBanner();
  if (!CheckFiles(parameters)) return kMissingFile;
  parameters.ReadWorkspaceFile();
  TransferParameters(parameters, converter);
  converter.ready = true;
  if (converter.ReadInputFile(parameters.GetInputFile()) == 0) {
    converter.StartConversion();
    converter.EndConversion();
  }
  PrintElapsedTime(start);
  TraceMessage("\nDone.\n");
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  InstallCrashHandler();
  const std::clock_t start = std::clock();
  (void)std::time(nullptr);
  SeedRandomGenerator();
  if (argc <= 1) {
    PrintMessageOnce("usage: dm2020 <input file> <output file> <format> <parameters>\n");
    return 1;
  }
  RememberProgramDirectory(argv[0]);
  return Run(argc, argv, start);
}
