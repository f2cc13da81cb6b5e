// What a reader tells about one load besides the drawing itself: the source format and version,
// repairs it made, objects it could not model, and one line per problem (capped, so that a badly
// damaged file cannot fill memory with messages).
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

struct LoadReport {
  static constexpr size_t kMaxMessages = 200;

  std::string sourceFormat;  // "DXF", "binary DXF", "DWG", ...
  std::string fileVersion;   // "AC1015" ...
  std::string codePage;      // encoding the strings were decoded from
  bool recovered = false;    // the file was damaged; what could be read was kept
  size_t decodedBytes = 0;   // the drawing's data out of its container (DWG pages decompressed)

  size_t proxyEntities = 0;  // entities kept as ProxyEntity
  size_t proxyObjects = 0;   // objects marked as proxies
  size_t unmodelledObjects = 0;  // other objects kept as GenericObject
  size_t damagedObjects = 0;
  size_t reassignedHandles = 0;
  std::map<std::string, size_t> proxyNames;  // per DXF name

  std::vector<std::string> messages;
  size_t suppressedMessages = 0;

  void addMessage(std::string message) {
    if (messages.size() < kMaxMessages) messages.push_back(std::move(message));
    else ++suppressedMessages;
  }
};
