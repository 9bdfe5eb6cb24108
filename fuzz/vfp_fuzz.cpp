// A file of lift tables of any content: it is read, or refused with its line. A table that is read
// gives a finite pressure for all that lies within its axes.
// Reads: companions/fieldrun/case/vfp_reader.cpp companions/fieldrun/case/vfp_table.cpp

#include "fieldrun/case/case_model.h"
#include "fieldrun/case/vfp_table.h"
#include "target.h"

using namespace gantry::fieldrun;
using namespace gantry::fuzz;

namespace {

bool AreFinite(const std::vector<double>& values) {
  return std::ranges::all_of(values, [](double value) { return std::isfinite(value); });
}

void Check(const VfpTable& table) {
  size_t points = 1;
  for (const VfpAxis& axis : table.axes) {
    points *= std::max<size_t>(axis.values.size(), 1);
    Require(AreFinite(axis.values) && std::ranges::is_sorted(axis.values));
  }
  Require(points == table.pressures.size() && AreFinite(table.pressures));
  // Numbers of no field, whose differences are beyond all numbers, aside.
  const auto isUsual = [](double value) { return std::abs(value) < 1e9; };
  if (!std::ranges::all_of(table.pressures, isUsual)) return;
  for (const double rate : {0.0, 1.0, 700.0, 1e5}) {
    for (const double head : {0.0, 300.0, 4000.0}) {
      const Rates rates{rate, 0.3 * rate, 0.001 * rate};
      const double pressure = table.FootPressure(head, rate, rates);
      const bool isWithin = table.BeyondAxes(head, rate, rates).empty();
      Require(!isWithin || std::isfinite(pressure));
    }
  }
}

}  // namespace

FUZZ_TARGET(vfp) {
  const std::string file = WriteFile("P.VFP", input);
  for (const std::optional<int> number : {std::optional<int>(), std::optional<int>(2)}) {
    MayTellOfALine<CaseError>(
        [&] { Check(ReadVfpTable(file, number, gantry::toml_reader::UnitSystem::kField)); }, input);
  }
}
