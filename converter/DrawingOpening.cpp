// Opening a DWG or DXF input: a strict read first; a damaged file goes through recovery; a file
// the kit cannot open under its present name is read under a plain temporary name.
#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>
#include <exception>
#include <string>

#include "converter/CDm2017.h"
#include "converter/LoadingSupport.h"
#include "kit/base/OdError.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

const char* const kTemporaryName = "temp.dwg";

bool IsRegularFile(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

std::string Utf8(const OdString& text) {
  std::string out;
  return OdStringToUtf8(out, text);
}

// A file that is there but that the kit could not open: its name is the trouble, not its content.
bool NameIsTheTrouble(const OdError& error, const OdString& path) {
  return error.code() == eCantOpenFile && IsRegularFile(Utf8(path));
}

// Gives the file its name back however the read under the temporary name ends.
class TemporaryRename {
public:
  explicit TemporaryRename(std::string original) : original_(std::move(original)) {
    // Never over an existing file of that name: it may be someone's drawing.
    if (renameat2(AT_FDCWD, original_.c_str(), AT_FDCWD, kTemporaryName, RENAME_NOREPLACE) != 0) {
      throw OdError(eCantOpenFile, toOdString("Cannot rename " + original_ + " to " + kTemporaryName));
    }
  }
  ~TemporaryRename() { std::rename(kTemporaryName, original_.c_str()); }
  TemporaryRename(const TemporaryRename&) = delete;
  TemporaryRename& operator=(const TemporaryRename&) = delete;

private:
  std::string original_;
};

}  // namespace

// Kit errors from the recovery and the rename route reach ReadInputFile, which reports them;
// any other failure leaves no drawing, and StartConversion says so.
void CDm2017::OpenDrawing(const OdString& path) {
  if (g_pDb) return;
  try {
    try {
      g_pDb = HostServices().readFile(path, g_PartialLoad);
      TraceMessage("AutoCAD file succesfully opened");
    } catch (const OdError& error) {
      if (NameIsTheTrouble(error, path)) {
        ReadThroughTemporaryName(path);
      } else {
        RecoverDrawing(path);
      }
    }
  } catch (const OdError&) {
    throw;
  } catch (const std::exception&) {
    TraceMessage("Error reading DWG file", path);
    g_pDb.reset();
  }
}

void CDm2017::RecoverDrawing(const OdString& path) {
  OdDbAuditInfo audit;
  audit.fixErrors = true;
  TraceMessage("Recovering DWG file", path);
  g_pDb = HostServices().recoverFile(path, &audit);
  TraceMessage("AutoCAD file succesfully recovered and open");
}

void CDm2017::ReadThroughTemporaryName(const OdString& path) {
  const std::string name = Utf8(path);
  TraceMessage("Renaming DWG file", name);
  {
    TemporaryRename renamed(name);
    g_pDb = HostServices().readFile(OdString(L"temp.dwg"), false);
  }
  g_pDb->setFileName(name);
  TraceMessage("AutoCAD file succesfully recovered and open");
}
