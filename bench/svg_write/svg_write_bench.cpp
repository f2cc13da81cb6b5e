// Write benchmark for the SVG driver: collects 10^6 line segments and 10^5 polylines of 20 points
// through the driver's intake, writes them as one SVG file, and reports the collection time, the
// writing time, the file size and the process's peak resident memory.
//
//   svg_write_bench [output.svg = /tmp/svg_write_bench.svg] [segments = 1000000] [polylines = 100000]
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "drivers/svg/DRAWSVG.h"

namespace {

double Seconds(std::chrono::steady_clock::time_point since) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

}  // namespace

int main(int argc, char** argv) {
  std::string output = argc > 1 ? argv[1] : "/tmp/svg_write_bench.svg";
  long segments = argc > 2 ? std::atol(argv[2]) : 1000000;
  long polylines = argc > 3 ? std::atol(argv[3]) : 100000;

  auto start = std::chrono::steady_clock::now();
  DRAWSVG svg;
  svg.SetOutputFileName(OdString(output));
  svg.SetPointTolerance(0.001);
  svg.DefineView(L"Model", kViewModelSpace);
  // Ten layers of three colours each, as a plan's walls, doors and furniture might come.
  const int kLayers = 10;
  std::vector<OdString> layers;
  for (int i = 0; i < kLayers; ++i) layers.push_back(OdString(("Layer " + std::to_string(i)).c_str()));
  long stored = 0;
  for (long i = 0; i < segments; ++i) {
    if (i % 1000 == 0) {
      svg.SetLayer(layers[(i / 1000) % kLayers], 7);
      svg.SetColor(static_cast<int>(1 + (i / 1000) % 3));
    }
    double x = static_cast<double>(i % 1000) * 2.0;
    double y = static_cast<double>(i / 1000) * 2.0;
    stored += svg.DrawLine(L"CONTINUOUS", true, 1, x, y, x + 1.5, y + (i % 7) * 0.25, 1.0, 0.0);
  }
  std::vector<OdGePoint2d> points(20);
  for (long i = 0; i < polylines; ++i) {
    if (i % 100 == 0) {
      svg.SetLayer(layers[(i / 100) % kLayers], 7);
      svg.SetColor(static_cast<int>(4 + (i / 100) % 3));
    }
    double x0 = static_cast<double>(i % 316) * 6.0;
    double y0 = static_cast<double>(i / 316) * 6.0;
    for (int k = 0; k < 20; ++k) points[k] = {x0 + k * 0.3, y0 + (k % 2) * 0.7 + (i % 5) * 0.01};
    stored += svg.DrawPolyline(points, false, 0, L"CONTINUOUS", true, 0, 1.0, 25.0);
  }
  double collect = Seconds(start);

  auto writeStart = std::chrono::steady_clock::now();
  int result = svg.OutputView(false);
  double write = Seconds(writeStart);
  if (result != 1) {
    std::fprintf(stderr, "writing %s failed\n", output.c_str());
    return 1;
  }
  struct rusage usage {};
  getrusage(RUSAGE_SELF, &usage);
  std::error_code error;
  double megabytes = static_cast<double>(std::filesystem::file_size(output + ".svg", error)) / 1048576.0;
  if (error) megabytes = static_cast<double>(std::filesystem::file_size(output, error)) / 1048576.0;
  std::printf("%ld segments, %ld polylines of 20 points (%ld stored): collect %.3f s, write %.3f s, total %.3f s, "
              "file %.1f MB, peak RSS %.1f MB\n",
              segments, polylines, stored, collect, write, collect + write, megabytes,
              static_cast<double>(usage.ru_maxrss) / 1024.0);
  return 0;
}
