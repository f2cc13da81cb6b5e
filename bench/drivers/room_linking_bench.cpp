// Room linking on a large floor: a grid of room outlines and many texts scattered over it, some inside
// rooms and some in the corridors between them. Prints the seconds spent collecting and linking.
//   room_linking_bench [rooms per side (100)] [texts (100000)] [work directory (/tmp)]
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include "drivers/TRANS_BASE2.h"
#include "projects/common/ProgramInfo.h"

namespace {

double secondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

int main(int argc, char** argv) {
  const int side = argc > 1 ? std::atoi(argv[1]) : 100;
  const int textCount = argc > 2 ? std::atoi(argv[2]) : 100000;
  const std::filesystem::path work = argc > 3 ? argv[3] : std::filesystem::temp_directory_path();
  g_ProgramDirectory = work.string() + "/";

  TRANS_BASE2 driver;
  driver.ResetFile();
  driver.SetOutputFileName(OdString((work / "room_linking_bench.svg").string()));
  driver.SetRoomLayers("ROOMS");
  driver.SetTextLayers("ROOMNO");
  driver.DefineView(OdString(L"ModelSpace"), kViewModelSpace);

  auto start = std::chrono::steady_clock::now();
  const double pitch = 12.0, size = 10.0;
  driver.SetLayer(OdString(L"ROOMS"), 7);
  for (int row = 0; row < side; ++row) {
    for (int column = 0; column < side; ++column) {
      double x = column * pitch, y = row * pitch;
      driver.SetCurrentHandle(std::to_string(row * side + column + 1));
      driver.DrawPolyline({{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}, {x, y}}, false, 0,
                          OdString(L"CONTINUOUS"), true, 0, 1.0, 0.0);
    }
  }
  std::mt19937 random(42);
  std::uniform_real_distribution<double> coordinate(0.0, side * pitch);
  driver.SetLayer(OdString(L"ROOMNO"), 7);
  TextRecord record;
  record.height = 1.0;
  for (int i = 0; i < textCount; ++i) {
    record.position = {coordinate(random), coordinate(random)};
    record.text = OdString(std::to_wstring(i % 5000));
    driver.DrawText(record);
  }
  const double collecting = secondsSince(start);

  start = std::chrono::steady_clock::now();
  driver.LinkRoomsAndTexts();
  const double linking = secondsSince(start);

  int linked = 0;
  for (const auto& group : driver.GetCurrentView()->layers.at(OdString(L"ROOMS")).colorGroups)
    for (const auto& outline : group.polylines) linked += !outline.roomId.empty();
  std::printf("room outlines: %d, texts: %d, outlines linked: %d\n", side * side, textCount, linked);
  std::printf("collecting: %.3f s\nlinking and report: %.3f s\n", collecting, linking);
  std::filesystem::remove(work / "room_linking_bench.rl");
  return 0;
}
