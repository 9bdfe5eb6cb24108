// Inflow tables and fluids, as model.cases tells of them.

#include <sstream>

#include "model/fluid_record.h"
#include "model/ipr_table.h"
#include "support/cases.h"
#include "text/number_text.h"

namespace gantry::test {
namespace {

using Values = std::vector<double>;

Values ValuesOf(const std::string& text) {
  std::istringstream words(text);
  return {std::istream_iterator<double>(words), {}};
}

/// Of points with a pressure and the rates of oil, water and gas each.
IPRTable TableOf(const std::string& text) {
  const Values values = ValuesOf(text);
  std::vector<IPRPoint> points;
  for (size_t i = 0; i + 3 < values.size(); i += 4) {
    points.push_back({values[i], values[i + 1], values[i + 3], values[i + 2], {}});
  }
  return {points, true};
}

const Kinds kKinds = {{"line",
                       [](const Columns& c) {
                         const Values x = ValuesOf(c[0]), y = ValuesOf(c[1]);
                         return Columns{
                             FormatDouble(InterpolateTable(x, y, std::stod(c[2]), true)),
                             FormatDouble(InterpolateTable(x, y, std::stod(c[2]), false))};
                       }},
                      {"table",
                       [](const Columns& c) {
                         const IPRTable table = TableOf(c[0]);
                         EXPECT_EQ(table.Row(0)[IPRTable::kOilColumn], ValuesOf(c[0])[1]);
                         std::string values = FormatInteger(table.Count) + ":";
                         for (const double value : table.Evaluate(std::stod(c[1])))
                           values += " " + FormatDouble(value);
                         return Columns{values, table.IsDead() ? "dead" : "flows"};
                       }},
                      {"column",
                       [](const Columns& c) {
                         const Values way = ValuesOf(c[1]);
                         return Columns{FormatDouble(TableOf(c[0]).Interpolate(
                             static_cast<int32_t>(way[0]), way[1], static_cast<int32_t>(way[2])))};
                       }},
                      {"fluid", [](const Columns& c) {
                         EOSProperties fluid;
                         fluid.componentCount = std::stoi(c[0]);
                         return Columns{MakeFluidRecord(fluid) != nullptr ? "one" : "none"};
                       }}};

TEST(InflowTablesAndFluids, AreAsTheCasesSay) { ExpectCases(GANTRY_MODEL_CASES, kKinds); }

}  // namespace
}  // namespace gantry::test
