// Builds a large ASCII DXF for load benchmarks: the model space entities of a source drawing,
// repeated on a grid (each copy shifted by the drawing's extent) until the output reaches the
// wanted size. Handles are renumbered so that every copy is a distinct object; everything outside
// the ENTITIES section is copied as it is.
//
//   make_large_dxf <source.dxf> <output.dxf> [megabytes = 100]
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Tag {
  std::string code;
  std::string value;
};

std::vector<Tag> readTags(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::vector<Tag> tags;
  std::string code, value;
  while (std::getline(in, code) && std::getline(in, value)) {
    if (!code.empty() && code.back() == '\r') code.pop_back();
    if (!value.empty() && value.back() == '\r') value.pop_back();
    tags.push_back({code, value});
  }
  return tags;
}

int codeOf(const Tag& t) { return std::atoi(t.code.c_str()); }

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: make_large_dxf <source.dxf> <output.dxf> [megabytes]\n");
    return 2;
  }
  const double megabytes = argc > 3 ? std::atof(argv[3]) : 100.0;
  std::vector<Tag> tags = readTags(argv[1]);
  // Split into: before the entities, the entities, after them.
  size_t begin = 0, end = 0;
  for (size_t i = 0; i + 1 < tags.size(); ++i) {
    if (codeOf(tags[i]) == 2 && tags[i].value == "ENTITIES" && i > 0) begin = i + 1;
    if (begin && !end && i > begin && codeOf(tags[i]) == 0 && tags[i].value == "ENDSEC") end = i;
  }
  if (!begin || !end) {
    std::fprintf(stderr, "no ENTITIES section in %s\n", argv[1]);
    return 1;
  }
  // Model space entities only, and their extent for the grid step.
  double minX = 1e300, maxX = -1e300, minY = 1e300, maxY = -1e300;
  std::vector<Tag> entities;
  bool paper = false;
  size_t start = begin;
  for (size_t i = begin; i <= end; ++i) {
    if (i == end || (codeOf(tags[i]) == 0 && i > start)) {
      if (!paper) entities.insert(entities.end(), tags.begin() + long(start), tags.begin() + long(i));
      start = i;
      paper = false;
    }
    if (i == end) break;
    int c = codeOf(tags[i]);
    if (c == 67 && std::atoi(tags[i].value.c_str()) == 1) paper = true;
    if (c == 10) minX = std::min(minX, std::atof(tags[i].value.c_str())), maxX = std::max(maxX, std::atof(tags[i].value.c_str()));
    if (c == 20) minY = std::min(minY, std::atof(tags[i].value.c_str())), maxY = std::max(maxY, std::atof(tags[i].value.c_str()));
  }
  double stepX = (maxX > minX ? maxX - minX : 100.0) * 1.1;
  double stepY = (maxY > minY ? maxY - minY : 100.0) * 1.1;
  std::ofstream out(argv[2], std::ios::binary);
  auto write = [&out](const std::string& code, const std::string& value) { out << code << '\n' << value << '\n'; };
  for (size_t i = 0; i < begin; ++i) write(tags[i].code, tags[i].value);
  const double target = megabytes * 1024 * 1024;
  // New handles continue after the highest of the source, as a drawing that grew would have them.
  unsigned long long handle = 1;
  for (const Tag& t : tags) {
    if (codeOf(t) == 5) handle = std::max(handle, std::strtoull(t.value.c_str(), nullptr, 16) + 1);
  }
  size_t copies = 0, entityCount = 0;
  char buf[64];
  while (double(out.tellp()) < target) {
    double dx = stepX * double(copies % 100), dy = stepY * double(copies / 100);
    for (const Tag& t : entities) {
      int c = codeOf(t);
      if (c == 0) ++entityCount;
      if (c == 5) {
        std::snprintf(buf, sizeof buf, "%llX", handle++);
        write(t.code, buf);
      } else if (c >= 10 && c <= 18) {
        std::snprintf(buf, sizeof buf, "%.12g", std::atof(t.value.c_str()) + dx);
        write(t.code, buf);
      } else if (c >= 20 && c <= 28) {
        std::snprintf(buf, sizeof buf, "%.12g", std::atof(t.value.c_str()) + dy);
        write(t.code, buf);
      } else {
        write(t.code, t.value);
      }
    }
    ++copies;
  }
  for (size_t i = end; i < tags.size(); ++i) write(tags[i].code, tags[i].value);
  std::printf("%zu copies, %zu entities, %.1f MB\n", copies, entityCount, double(out.tellp()) / 1048576.0);
  return 0;
}
