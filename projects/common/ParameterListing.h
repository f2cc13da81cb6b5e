// The three texts the command line can ask for while its arguments are parsed: the parameter
// listing ("-?"), the output-format list ("-F=?") and the program history ("-HIS"). Each is printed
// to standard output; none of them ends the run.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>

// One row of the parameter listing. A row with an empty keyword is a section title whose
// description is the title; the row with keyword "Z" is the last one.
struct ParameterHelpRow {
  std::string keyword;
  std::string marker;  // "*R " for parameters of raster output, otherwise three spaces
  std::string description;
};

// The listing table, built before the entry runs (ParameterHelpTable.cpp).
extern const ParameterHelpRow g_ParameterHelpRows[];
extern const std::size_t g_ParameterHelpRowCount;

// The program history, two printed lines per entry, newest generation first
// (ProgramHistoryTable.cpp).
extern const char* const g_ProgramHistoryLines[];
extern const std::size_t g_ProgramHistoryLineCount;

void ListParameters();
void ListOutputFormats();
void ListProgramHistory();

// The same texts written to any stream, so that they can be checked byte for byte.
void WriteParameterListing(std::ostream& out);
void WriteParameterRow(std::ostream& out, const ParameterHelpRow& row);
void WriteOutputFormatList(std::ostream& out);
void WriteProgramHistory(std::ostream& out);
