// Title-block field texts ("$$$sysdate$$$", "%%%username%%%" ...) filled in from the clock, the
// input drawing's name and the workspace variables.
#pragma once

#include <ctime>
#include <string>
#include <utility>
#include <vector>

// The workspace variables (name, value) the fields read; the program fills them from its
// parameter files.
extern std::vector<std::pair<std::string, std::string>> g_WorkspaceVariables;
// False when no variable of that name (compared without regard to case) is defined.
bool FindWorkspaceVariable(const std::string& name, std::string& value);

// The text with its field replaced; false (text unchanged) when it is no field or nothing
// replaces it. Multi-line texts use their own default date formats. `inputFileName` is the input
// drawing's name (UTF-8); `now` the local time to show.
bool RewriteFieldText(std::string& text, bool multiLine, const std::string& inputFileName, const std::tm& now);

// "This drawing is originated from drawing " and the drawing name with every "." written "%2E".
std::string OriginHyperlinkDescription(const std::string& drawingName);
