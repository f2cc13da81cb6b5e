#include "kit/dwg/DwgR12ExtendedData.h"

#include <functional>
#include <vector>

#include "kit/dwg/DwgR12Cursor.h"
#include "kit/dwg/DwgR12Text.h"
#include "kit/dxf/DxfTagWriter.h"

void writeDwgR12ExtendedData(std::string_view data, const DwgR12Tables& tables, DxfTagWriter& out) {
  std::vector<std::function<void()>> groups;
  DwgR12Cursor in(data, "extended data");
  try {
    while (!in.atEnd()) {
      int code = 1000 + in.u8();
      switch (code) {
        case 1000: {
          std::string text = dxfText(in.bytes(in.u8()));
          groups.push_back([&out, text] { out.raw(1000, text); });
          break;
        }
        case 1001: {
          std::string app = dxfText(tables.appName(in.u16()));
          groups.push_back([&out, app] { out.raw(1001, app); });
          break;
        }
        case 1002: {
          const char* brace = in.u8() ? "}" : "{";
          groups.push_back([&out, brace] { out.raw(1002, brace); });
          break;
        }
        case 1010: case 1011: case 1012: case 1013: {
          double x = in.f64();
          double y = in.f64();
          OdGePoint3d p{x, y, in.f64()};
          groups.push_back([&out, code, p] { out.point(code, p); });
          break;
        }
        case 1040: case 1041: case 1042: {
          double v = in.f64();
          groups.push_back([&out, code, v] { out.real(code, v); });
          break;
        }
        case 1070: {
          int v = in.i16();
          groups.push_back([&out, v] { out.integer(1070, v); });
          break;
        }
        case 1071: {
          int32_t v = int32_t(in.u32());
          groups.push_back([&out, v] { out.integer(1071, v); });
          break;
        }
        default: return;
      }
    }
  } catch (const DwgFormatError&) {
    return;  // cut short: the entity keeps its own fields, without the broken data
  }
  for (auto& write : groups) write();
}
