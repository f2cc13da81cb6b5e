// Load benchmark for the DXF reader: reads a file several times and reports the best wall time,
// the throughput and the process's peak resident memory.
//
//   dxf_load_bench <file.dxf> [repetitions = 3]
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "kit/base/OdError.h"
#include "kit/dxf/DxfReader.h"

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: dxf_load_bench <file.dxf> [repetitions]\n");
    return 2;
  }
  int repetitions = argc > 2 ? std::atoi(argv[2]) : 3;
  double best = 1e300;
  size_t entities = 0, bytes = 0;
  for (int i = 0; i < repetitions; ++i) {
    auto start = std::chrono::steady_clock::now();
    try {
      OdDbDatabasePtr db = readDxfFile(argv[1]);
      entities = db->entityCount();
    } catch (const OdError& e) {
      std::fprintf(stderr, "load failed\n");
      return 1;
    }
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (seconds < best) best = seconds;
  }
  if (FILE* f = std::fopen(argv[1], "rb")) {
    std::fseek(f, 0, SEEK_END);
    bytes = size_t(std::ftell(f));
    std::fclose(f);
  }
  struct rusage usage {};
  getrusage(RUSAGE_SELF, &usage);
  double megabytes = double(bytes) / 1048576.0;
  double peakMb = double(usage.ru_maxrss) / 1024.0;
  std::printf("file %.1f MB, %zu entities, best %.3f s, %.1f MB/s, peak RSS %.1f MB (%.2fx file)\n", megabytes,
              entities, best, megabytes / best, peakMb, peakMb / megabytes);
  return 0;
}
