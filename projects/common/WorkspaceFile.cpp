// The workspace file: a list of xref directories on a server, written against a placeholder that
// stands for the server path of this run (SPATH).
#include <fstream>
#include <string>

#include "projects/common/CommonRoutines.h"
#include "projects/common/ParseCommandLine.h"
#include "services/Trace.h"

namespace {

// The placeholder includes its closing backslash: "MS_RFDIR > (your server path)\xrefs/site".
const std::string kServerPlaceholder = "MS_RFDIR > (your server path)\\";

std::string serverPathWithSeparator(const OdString& serverPath) {
  std::string server;
  OdStringToUtf8(server, serverPath);
  if (!server.empty() && server.back() != '\\' && server.back() != '/') server += '/';
  return server;
}

// The line with the placeholder replaced by the server path, or empty when the line names no
// server directory.
std::string serverDirectoryOf(std::string line, const std::string& server) {
  Trim(line);
  if (line.empty() || line[0] == '#' || server.empty()) return std::string();
  std::size_t at = line.rfind(kServerPlaceholder);
  if (at == std::string::npos) return std::string();
  line.replace(at, kServerPlaceholder.size(), server);
  return line;
}

}  // namespace

void CParseCommandLine::ReadWorkspaceFile() {
  if (workspaceFile.isEmpty()) return;
  const std::string server = serverPathWithSeparator(serverPath);
  std::string fileName;
  OdStringToUtf8(fileName, workspaceFile);
  std::ifstream in(fileName);
  if (!in) {
    PrintMessageOnce("Error Opening Workspace File", fileName.c_str());
    return;
  }
  std::string line;
  while (std::getline(in, line)) {
    std::string directory = serverDirectoryOf(line, server);
    if (directory.empty()) continue;
    OdString wide;
    Utf8ToOdString(wide, OdAnsiString(directory));
    xrefPath += L';';
    xrefPath += wide;
    PrintMessageOnce("Add to XREF Path", directory.c_str());
  }
  if (in.bad()) PrintMessageOnce("Error while reading workspace file", fileName.c_str());
}
