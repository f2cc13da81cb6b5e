// Load benchmark for the DWG reader: loads each file repeatedly (at least a second's worth) and
// reports the best wall time, the throughput, and the peak heap the load takes beside the file
// (counted by the allocation hooks below), with the process's peak resident memory.
//
//   dwg_load_bench <file.dwg>...      (the corpus's largest: example_2000.dwg, example_r13.dwg)
#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <new>

#include "kit/base/OdError.h"
#include "kit/dwg/DwgReader.h"

namespace {

// Heap in use and its peak, kept by the global allocation functions.
std::atomic<size_t> g_inUse{0};
std::atomic<size_t> g_peak{0};

void* allocate(size_t size) {
  void* block = std::malloc(size + 16);
  if (!block) throw std::bad_alloc();
  *static_cast<size_t*>(block) = size;
  size_t now = g_inUse += size;
  size_t peak = g_peak.load();
  while (now > peak && !g_peak.compare_exchange_weak(peak, now)) {
  }
  return static_cast<char*>(block) + 16;
}

void release(void* p) {
  if (!p) return;
  void* block = static_cast<char*>(p) - 16;
  g_inUse -= *static_cast<size_t*>(block);
  std::free(block);
}

struct Result {
  double bestSeconds = 1e300;
  size_t peakHeap = 0;
  size_t entities = 0;
  size_t decodedBytes = 0;
};

Result measure(const char* path) {
  Result r;
  double total = 0;
  for (int i = 0; i < 1000 && (i < 3 || total < 1.0); ++i) {
    size_t base = g_inUse;
    g_peak = base;
    auto start = std::chrono::steady_clock::now();
    OdDbDatabasePtr db = readDwgFile(path);
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    r.entities = db->entityCount();
    r.decodedBytes = db->loadReport().decodedBytes;
    db.reset();
    r.peakHeap = std::max(r.peakHeap, g_peak - base);
    total += seconds;
    if (seconds < r.bestSeconds) r.bestSeconds = seconds;
  }
  return r;
}

}  // namespace

void* operator new(size_t size) { return allocate(size); }
void* operator new[](size_t size) { return allocate(size); }
void operator delete(void* p) noexcept { release(p); }
void operator delete[](void* p) noexcept { release(p); }
void operator delete(void* p, size_t) noexcept { release(p); }
void operator delete[](void* p, size_t) noexcept { release(p); }

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: dwg_load_bench <file.dwg>...\n");
    return 2;
  }
  int status = 0;
  for (int i = 1; i < argc; ++i) {
    try {
      Result r = measure(argv[i]);
      double megabytes = double(std::filesystem::file_size(argv[i])) / 1048576.0;
      double heapMb = double(r.peakHeap) / 1048576.0;
      double decodedMb = double(r.decodedBytes) / 1048576.0;
      std::printf("%s: %.2f MB (%.2f MB decoded), %zu entities, best %.4f s, %.1f MB/s, peak heap %.2f MB (%.2fx file, "
                  "%.2fx decoded)\n",
                  argv[i], megabytes, decodedMb, r.entities, r.bestSeconds, megabytes / r.bestSeconds, heapMb,
                  heapMb / megabytes, heapMb / decodedMb);
    } catch (const OdError&) {
      std::fprintf(stderr, "%s: load failed\n", argv[i]);
      status = 1;
    }
  }
  struct rusage usage {};
  getrusage(RUSAGE_SELF, &usage);
  std::printf("peak resident memory of the process %.1f MB\n", double(usage.ru_maxrss) / 1024.0);
  return status;
}
