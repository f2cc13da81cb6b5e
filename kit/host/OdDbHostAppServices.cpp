#include "kit/host/OdDbHostAppServices.h"

#include <dirent.h>
#include <sys/stat.h>

#include <memory>
#include <string>

#include "kit/db/DatabaseCompletion.h"
#include "kit/host/DrawingFileReaders.h"
#include "kit/host/ProgressMeter.h"

namespace {

std::string toUtf8(const OdString& text) {
  std::string out;
  for (const OdChar* p = text.c_str(); *p; ++p) {
    const auto c = static_cast<char32_t>(*p);
    if (c < 0x80) {
      out += static_cast<char>(c);
    } else if (c < 0x800) {
      out += static_cast<char>(0xC0 | (c >> 6));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      out += static_cast<char>(0xE0 | (c >> 12));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
      out += static_cast<char>(0xF0 | ((c >> 18) & 0x07));
      out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return out;
}

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

OdString OdDbHostAppServices::findFile(const OdString& fileName, OdDbDatabase*, int) {
  if (fileName.isEmpty()) return OdString();
  const std::string path = toUtf8(fileName);
  if (isRegularFile(path)) return fileName;
  const std::string found = findIgnoringCase(path);
  return found.empty() ? OdString() : toOdString(found);
}

OdDbDatabasePtr OdDbHostAppServices::readFile(const OdString& path, bool /*partialLoad*/) {
  MeteredLoad load(progressMeter(), path);
  return readDrawingFile(toUtf8(path), false);
}

OdDbDatabasePtr OdDbHostAppServices::recoverFile(const OdString& path, OdDbAuditInfo* auditInfo) {
  MeteredLoad load(progressMeter(), path);
  OdDbDatabasePtr database = readDrawingFile(toUtf8(path), true);
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
