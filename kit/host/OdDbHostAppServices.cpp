#include "kit/host/OdDbHostAppServices.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <string>

#include "kit/db/DatabaseCompletion.h"
#include "kit/host/DrawingFileReaders.h"
#include "kit/host/ExternalReferenceLoading.h"
#include "kit/host/ProgressMeter.h"

namespace {

std::string toUtf8(const OdString& text) { return odEncodeUtf8(text.str()); }

bool isRegularFile(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

bool equalIgnoringAsciiCase(const std::string& a, const std::string& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    auto lower = [](char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; };
    if (lower(a[i]) != lower(b[i])) return false;
  }
  return true;
}

// The one regular file of the path's directory whose name matches ignoring case; empty when there
// is none or more than one.
std::string findIgnoringCase(const std::string& path) {
  const auto separator = path.find_last_of('/');
  const std::string directory = separator == std::string::npos ? std::string() : path.substr(0, separator + 1);
  const std::string name = separator == std::string::npos ? path : path.substr(separator + 1);
  if (name.empty()) return {};
  DIR* dir = opendir(directory.empty() ? "." : directory.c_str());
  if (!dir) return {};
  std::string match;
  int matches = 0;
  while (const dirent* entry = readdir(dir)) {
    if (!equalIgnoringAsciiCase(entry->d_name, name) || !isRegularFile(directory + entry->d_name)) continue;
    match = directory + entry->d_name;
    ++matches;
  }
  closedir(dir);
  return matches == 1 ? match : std::string();
}

std::string findExactOrIgnoringCase(const std::string& path) {
  return isRegularFile(path) ? path : findIgnoringCase(path);
}

// The directory part with its final "/", or empty.
std::string directoryOf(const std::string& path) {
  const auto separator = path.find_last_of("/\\");
  return separator == std::string::npos ? std::string() : path.substr(0, separator + 1);
}

// Starts the meter for one load and stops it however the load ends.
class MeteredLoad {
public:
  MeteredLoad(OdDbHostAppProgressMeter* meter, const OdString& path) : meter_(meter) {
    if (meter_) meter_->start(L"Loading " + path);
  }
  ~MeteredLoad() {
    if (meter_) meter_->stop();
  }
  MeteredLoad(const MeteredLoad&) = delete;
  MeteredLoad& operator=(const MeteredLoad&) = delete;

private:
  OdDbHostAppProgressMeter* meter_;
};

}  // namespace

OdString OdDbHostAppServices::findFile(const OdString& fileName, OdDbDatabase* database, int) {
  if (fileName.isEmpty()) return OdString();
  std::string path = toUtf8(fileName);
  std::replace(path.begin(), path.end(), '\\', '/');
  if (database && path.front() != '/') {
    const std::string folder = directoryOf(database->fileName());
    if (!folder.empty()) {
      const std::string found = findExactOrIgnoringCase(folder + path);
      if (!found.empty()) return toOdString(found);
    }
  }
  const std::string found = findExactOrIgnoringCase(path);
  return found.empty() ? OdString() : toOdString(found);
}

OdDbDatabasePtr OdDbHostAppServices::readFile(const OdString& path, bool /*partialLoad*/) {
  OdDbDatabasePtr database;
  {
    MeteredLoad load(progressMeter(), path);
    database = readDrawingFile(toUtf8(path), false);
  }
  loadExternalReferences(*database, *this);
  return database;
}

OdDbDatabasePtr OdDbHostAppServices::recoverFile(const OdString& path, OdDbAuditInfo* auditInfo) {
  OdDbDatabasePtr database;
  {
    MeteredLoad load(progressMeter(), path);
    database = readDrawingFile(toUtf8(path), true);
  }
  loadExternalReferences(*database, *this);
  if (auditInfo) {
    const LoadReport& report = database->loadReport();
    auditInfo->numErrors = report.messages.size() + report.suppressedMessages;
    auditInfo->numFixes = auditInfo->fixErrors ? auditInfo->numErrors : 0;
  }
  return database;
}

OdDbDatabasePtr OdDbHostAppServices::createDatabase() {
  auto database = std::make_shared<OdDbDatabase>();
  completeDatabase(*database);
  return database;
}
