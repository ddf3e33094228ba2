// The controls library's unit table and line stroke.
#include "platform/controls.h"

#include <map>
#include <mutex>

#include "tessaline/host.h"

namespace {

std::mutex table_mutex;

std::map<int32_t, double>& Unit_Table() {
  static std::map<int32_t, double> table = {{1, 1.0},    {2, 10.0}, {3, 100.0},
                                            {4, 1000.0}, {5, 25.4}, {6, 304.8}};
  return table;
}

}  // namespace

double Get_Unit_Factor(int32_t code) {
  std::lock_guard<std::mutex> lock(table_mutex);
  auto it = Unit_Table().find(code);
  return it == Unit_Table().end() ? 1.0 : it->second;
}

void SetUnitFactor(int code, double factor) {
  std::lock_guard<std::mutex> lock(table_mutex);
  Unit_Table()[code] = factor;
}

BOOL Stroke_Line(HDC dc, int x1, int y1, int x2, int y2) {
  if (!MoveToEx(dc, x1, y1, nullptr)) return FALSE;
  return LineTo(dc, x2, y2);
}
