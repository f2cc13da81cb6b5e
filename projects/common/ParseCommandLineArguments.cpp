// From the process arguments to keywords: collecting, normalising and joining the arguments,
// positional names, the keys handled before the keyword table, and the derived names.
#include "projects/common/ParseCommandLine.h"

#include <cstdlib>
#include <vector>

#include "projects/common/CommonRoutines.h"
#include "projects/common/ParameterListing.h"

namespace {

// The argument that marks the end of the list, so that joining never looks past it.
const OdString kEndMarker(L" ");

bool beginsWith(const OdString& text, OdChar ch) { return !text.isEmpty() && text.getAt(0) == ch; }

// Percent escapes a shell or a web front end leaves in arguments, each replaced over the whole
// argument in turn ("%2520" gives "%20", which the later normalisation turns into a blank).
void decodePercentEscapes(OdString& argument) {
  static const wchar_t* const kEscapes[][2] = {
      {L"%20", L" "}, {L"%21", L"!"}, {L"%22", L"\""}, {L"%23", L"#"}, {L"%24", L"$"},
      {L"%25", L"%"}, {L"%26", L"&"}, {L"%27", L"'"},  {L"%28", L"("}, {L"%29", L")"}};
  for (const auto& escape : kEscapes) argument.replace(escape[0], escape[1]);
}

// Word processors and mail programs turn a leading "-" into an en or em dash.
void normaliseLeadingDash(OdString& argument) {
  if (beginsWith(argument, 0x2013) || beginsWith(argument, 0x2014)) argument.setAt(0, L'-');
}

std::vector<OdString> collectArguments(short argc, const char* const* argv) {
  std::vector<OdString> arguments;
  for (int i = 1; i < argc; ++i) {
    OdString argument;
    Utf8ToOdString(argument, OdAnsiString(argv[i] ? argv[i] : ""));
    decodePercentEscapes(argument);
    normaliseLeadingDash(argument);
    arguments.push_back(argument);
  }
  arguments.push_back(kEndMarker);
  return arguments;
}

// "in.dwg out.svg ..." reads as "-i=in.dwg -o=out.svg ..."; the output is positional only when
// the input is.
void prefixPositionalNames(std::vector<OdString>& arguments) {
  if (arguments.size() < 2 || beginsWith(arguments[0], L'-')) return;
  arguments[0] = OdString(L"-i=") + arguments[0];
  if (arguments.size() > 2 && !beginsWith(arguments[1], L'-')) arguments[1] = OdString(L"-o=") + arguments[1];
}

// "-LOG run.log" becomes "-LOG=run.log": every following argument without a dash is joined on.
void joinSeparatedValues(std::vector<OdString>& arguments) {
  std::size_t count = arguments.size() - 1;  // without the end marker
  for (std::size_t i = 0; i < count; ++i) {
    while (i + 1 < arguments.size() && !beginsWith(arguments[i + 1], L'-') && !(arguments[i + 1] == kEndMarker)) {
      arguments[i] += L'=';
      arguments[i] += arguments[i + 1];
      arguments.erase(arguments.begin() + static_cast<std::ptrdiff_t>(i) + 1);
      --count;
    }
  }
}

bool isParameter(const OdString& argument) {
  return beginsWith(argument, L'-') || beginsWith(argument, L'/') || beginsWith(argument, L'\\');
}

}  // namespace

int CParseCommandLine::ParseArguments(short argc, const char* const* argv) {
  ResetPerParse();
  std::vector<OdString> arguments = collectArguments(argc, argv);
  prefixPositionalNames(arguments);
  joinSeparatedValues(arguments);
  const std::size_t count = arguments.size() - 1;
  for (std::size_t i = 0; i < count; ++i) {
    arguments[i].replace(L'\\', L'/');
    arguments[i].replace(L"%20", L" ");
  }

  for (std::size_t i = 0; i < count; ++i) {
    const OdString& argument = arguments[i];
    if (!isParameter(argument)) {
      if (i == 0) inputFile = argument;
      else if (i == 1) outputFile = argument;
      continue;
    }
    OdString body = argument.mid(1);
    OdString key, text;
    short number = 0;
    SplitParameter(body, key, number, text);
    if (key.iCompare(L"I") == 0 || key.iCompare(L"O") == 0) {
      OdString& target = key.iCompare(L"I") == 0 ? inputFile : outputFile;
      if (body.getLength() < 3) {
        // The name is the next argument (the end marker when there is none).
        target = arguments[i + 1];
        ++i;
      } else {
        target = body.mid(2);
      }
    } else if (key.iCompare(L"STAMP") == 0) {
      stampName = body.mid(6);
    } else if (key.iCompare(L"Z") == 0) {
      ResetRasterAndView();
    } else if (key == L"?") {
      ListParameters();
    } else {
      ProcessParameter(key, number, text);
    }
  }

  if (!inputFile.isEmpty() && outputFile.isEmpty())
    MakeOutputName(outputFormat, inputFile, outputFile, inputDirectory, outputDirectory, true);
  ApplySubDirectories();
  if (ctbFileName.isEmpty()) {
    std::string value;
    if (GetEnvironmentValue("CTBFILE", value)) Utf8ToOdString(ctbFileName, OdAnsiString(value));
  }
  return 0;
}

// "-SUB": the input and output names keep only their file names; their directories go to the
// directory parameters unless those were given.
void CParseCommandLine::ApplySubDirectories() {
  if (!subDirectories) return;
  if (inputDirectory.isEmpty()) inputDirectory = inputFile;
  inputDirectory = inputDirectory.left(LastSeparator(inputDirectory) + 1);
  int separator = LastSeparator(inputFile);
  if (!inputFile.isEmpty() && separator >= 0) {
    if (inputDirectory.isEmpty()) inputDirectory = inputFile.left(separator);
    inputFile = inputFile.mid(separator + 1);
  }
  if (outputDirectory.isEmpty()) outputDirectory = inputDirectory;
  else outputDirectory = outputDirectory.left(LastSeparator(outputDirectory) + 1);
  separator = LastSeparator(outputFile);
  if (!outputFile.isEmpty() && separator >= 0) outputFile = outputFile.mid(separator + 1);
}

void CParseCommandLine::SplitParameter(const OdString& argument, OdString& key, short& number, OdString& text) {
  int equals = argument.find(L'=');
  if (equals < 0) {
    key = argument;
    text.empty();
    return;
  }
  key = argument.left(equals);
  text = argument.mid(equals + 1);
  if (text.iCompare(L"ON") == 0 || text.iCompare(L"TRUE") == 0) {
    number = 1;
    text.empty();
    return;
  }
  if (text.iCompare(L"OFF") == 0 || text.iCompare(L"FALSE") == 0) {
    number = 0;
    text.empty();
    return;
  }
  std::string narrow;
  OdStringToUtf8(narrow, text);
  if (!IsNumber(narrow)) return;
  if (narrow.find('.') != std::string::npos) {
    number = 0;  // a real: the keyword reads it from the text
    return;
  }
  // atoi's wrap-around into the 16-bit number is kept: a keyword sees what the number holds.
  number = static_cast<short>(static_cast<int>(std::strtol(narrow.c_str(), nullptr, 10)));
  text.empty();
}

void CParseCommandLine::AddTrailingSlash(OdString& path) {
  while (!path.isEmpty() && path.getAt(path.getLength() - 1) == L' ') path = path.left(path.getLength() - 1);
  OdChar separator = L'/';
  PathSeparatorOf(path, separator);
  if (path.isEmpty()) {
    path += separator;
    return;
  }
  OdChar last = path.getAt(path.getLength() - 1);
  if (last == L'"' || last == L'\'') {
    path = path.left(path.getLength() - 1);
    path += separator;
  } else if (last != L'\\' && last != L'/') {
    path += separator;
  }
}

void CParseCommandLine::MakeOutputName(int format, const OdString& inputFile, OdString& outputFile,
                                       const OdString& /*inputDirectory*/, const OdString& outputDirectory,
                                       bool /*replaceExtension*/) {
  if (!outputDirectory.isEmpty()) outputFile = outputDirectory + inputFile.mid(LastSeparator(inputFile) + 1);
  else outputFile = inputFile;
  int dot = outputFile.reverseFind(L'.');
  if (dot > 0) outputFile = outputFile.left(dot);
  outputFile += OutputExtension(format);
}
