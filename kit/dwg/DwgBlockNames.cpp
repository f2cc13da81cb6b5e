#include "kit/dwg/DwgBlockNames.h"

#include <map>
#include <string>
#include <vector>

#include "kit/db/OdDbDatabase.h"

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// "*D", "*U", "*Paper_Space": an anonymous name still without its number.
bool lacksNumber(const std::string& name) { return name.size() >= 2 && name[0] == '*' && !isDigit(name.back()); }

std::string freeName(const SymbolTable<BlockRecord>& blocks, const std::string& prefix, int& counter) {
  std::string name;
  do {
    name = prefix + std::to_string(counter++);
  } while (blocks.find(name));
  return name;
}

}  // namespace

void numberDwgAnonymousBlocks(OdDbDatabase& db, OdDbHandle paperSpace) {
  SymbolTable<BlockRecord>& blocks = db.blocks();
  std::vector<BlockRecord*> toName;
  for (BlockRecord* block : blocks) {
    if (!lacksNumber(block->name) || block->handle == paperSpace) continue;
    if (block->isPaperSpace() || (block->blockFlags & BlockRecord::kAnonymous)) toName.push_back(block);
  }
  // The active layout keeps the bare "*Paper_Space"; with no header handle, the first one does.
  bool bareTaken = !paperSpace.isNull() && db.find(paperSpace);
  std::map<std::string, int> counters;
  for (BlockRecord* block : toName) {
    bool layoutBlock = block->isPaperSpace();
    if (layoutBlock && !bareTaken) {
      bareTaken = true;
      continue;
    }
    std::string prefix = block->name;
    int& counter = counters.try_emplace(prefix, layoutBlock ? 0 : 1).first->second;
    blocks.rename(block, freeName(blocks, prefix, counter));
  }
}
