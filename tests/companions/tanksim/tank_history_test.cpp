#include <algorithm>

#include <fmt/format.h>

#include "support/cases.h"
#include "support/test_folder.h"
#include "tanksim/deck_reader.h"
#include "tanksim/tank_run.h"

namespace gantry::simulator::test {
namespace {

using gantry::test::Columns;

std::string Changed(const Columns& given) {
  const bool isExample = given[0] == "GAS_CYCLING.afi";
  std::string text = gantry::test::TestFolder::Read(
      (isExample ? GANTRY_EXAMPLES "/gas_cycling/" : GANTRY_SAMPLE_DECKS "/") + given[0]);
  for (size_t i = 1; i + 2 < given.size(); i += 2) {
    const auto lines = [](std::string part) {
      std::ranges::replace(part, '~', '\n');
      return part;
    };
    const std::string old = lines(given[i]);
    text.replace(text.find(old), old.size(), lines(given[i + 1]));
  }
  return text;
}

std::string Told(const TankRun& run) {
  std::string told;
  for (const Tank& tank : run.Tanks()) told += fmt::format("{:.6g}", tank.Pressure());
  for (const Well& well : run.Wells()) {
    const WellFlow& flow = well.Flow();
    told += fmt::format("; {:.6g} {:.6g}", flow.bottomHolePressure, flow.tubingHeadPressure);
    for (const WellVolume& volume : kWellVolumes) {
      const double total = well.Totals().*volume.volume;
      told += fmt::format(" {:.6g}", total < 1e-6 ? 0.0 : total);
    }
  }
  return told;
}

Columns AfterAYear(const Columns& given) {
  const Deck deck = ReadDeckText(Changed(given), given[0]);
  TankRun run(deck);
  for (double day = 30.0; day <= 360.0; day += 30.0) run.AdvanceTo(day);
  return {Told(run)};
}

TEST(TankHistory, ComesToWhatStandsInTheCases) {
  gantry::test::ExpectCases(TANK_HISTORY_CASES, {{"deck", AfterAYear}});
}

}  // namespace
}  // namespace gantry::simulator::test
