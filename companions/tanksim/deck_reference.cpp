#include <fmt/format.h>

#include "tanksim/deck_keys.h"
#include "tanksim/deck_reader.h"

namespace gantry::simulator {

namespace {

std::string ShownRange(const Range& range) {
  return fmt::format("{:g} to {}", range.low,
                     range.high >= kNoLimit ? "any" : fmt::format("{:g}", range.high));
}

std::string Line(const Key& key) {
  const std::string fallback = key.standard ? fmt::format("{:g}", *key.standard) : "-";
  return fmt::format("  {:<30} {:<14} {:<12} {:<18} {:<8} {}\n", key.name,
                     UnitName(key.quantity, UnitSystem::kField),
                     UnitName(key.quantity, UnitSystem::kMetric), ShownRange(key.range), fallback,
                     key.meaning);
}

template <class Keys>
std::string Section(std::string_view title, const Keys& keys) {
  std::string text = fmt::format("{}\n", title);
  for (const auto& key : keys) text += Line(key.about);
  return text;
}

}  // namespace

std::string DeckReference() {
  std::string text = fmt::format("  {:<30} {:<14} {:<12} {:<18} {:<8} {}\n", "key", "field",
                                 "metric", "range (field)", "default", "meaning");
  text += Section("at the top", kTopKeys);
  text += Section("[fluid], black oil", kBlackOilKeys);
  text += Section("[fluid.water]", kWaterKeys);
  text += "[fluid], compositional\n" + Line(kBinaryInteraction);
  text += Section("[[fluid.component]]", kComponentKeys);
  text += Section("[[tank]]", kInitialKeys) + Section("", kTankKeys).substr(1);
  text += Section("", kContentKeys).substr(1) + Line(kComposition);
  text += Section("[tank.aquifer]", kAquiferKeys);
  text += "[[well]]\n" + Line(kOilIndex) + Line(kGasIndex) + Line(kWaterInjectivity) +
          Line(kGasInjectivity);
  text += Section("", kWellKeys).substr(1);
  text += Section("", kLimitKeys).substr(1);
  return text;
}

}  // namespace gantry::simulator
