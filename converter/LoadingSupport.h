// What the input loading routes share: the host services the kit was started with, and the
// working directory as a search directory.
#pragma once

#include <filesystem>
#include <system_error>

#include "kit/host/OdKit.h"
#include "services/MyServices.h"

// The services given to the kit at its start; the program's own when the kit was not started.
inline OdDbHostAppServices& HostServices() {
  OdDbHostAppServices* services = odHostAppServices();
  return services ? *services : TheServices();
}

// The working directory with a trailing separator; empty when it cannot be read.
inline OdString CurrentDirectory() {
  std::error_code failed;
  const std::filesystem::path cwd = std::filesystem::current_path(failed);
  return failed ? OdString() : toOdString(cwd.string() + "/");
}
