#include <fmt/format.h>

#include "tanksim/deck_keys.h"
#include "tanksim/deck_reader.h"

namespace gantry::simulator {

namespace {

struct UnitWord {
  std::string_view field;
  std::string_view metric;
};
constexpr std::array<UnitWord, static_cast<size_t>(Quantity::kCount)> kUnitWords = {{
    {"", ""},
    {"stb, stb/d", "sm3, sm3/d"},
    {"Mscf, Mscf/d", "sm3, sm3/d"},
    {"rb, rb/d", "rm3, rm3/d"},
    {"psia", "bara"},
    {"F", "C"},
    {"lb/ft3", "kg/m3"},
    {"ft3/lb-mol", "m3/kg-mol"},
    {"lb-mol", "kg-mol"},
    {"Mscf/stb", "sm3/sm3"},
    {"rb/Mscf", "rm3/sm3"},
    {"1/psi", "1/bar"},
    {"stb/d/psi", "sm3/d/bar"},
    {"Mscf/d/psi", "sm3/d/bar"},
    {"ft", "m"},
}};

std::string Range(const NumberKey& key) {
  const std::string most = key.most >= kNoLimit ? "" : fmt::format("{:g}", key.most);
  return fmt::format("{:g} to {}", key.least, most.empty() ? "any" : most);
}

std::string Line(const NumberKey& key) {
  const UnitWord units = kUnitWords[static_cast<size_t>(key.quantity)];
  const std::string fallback = key.fallback ? fmt::format("{:g}", *key.fallback) : "-";
  return fmt::format("  {:<30} {:<14} {:<12} {:<18} {:<8} {}\n", key.name, units.field,
                     units.metric, Range(key), fallback, key.meaning);
}

template <class Keys>
std::string Section(std::string_view title, const Keys& keys) {
  std::string text = fmt::format("{}\n", title);
  for (const auto& key : keys) text += Line(key.key);
  return text;
}

}  // namespace

std::string DeckReference() {
  std::string text = fmt::format("  {:<30} {:<14} {:<12} {:<18} {:<8} {}\n", "key", "field",
                                 "metric", "range (field)", "default", "meaning");
  text += "at the top\n" + Line(kEndTime);
  text += Section("[fluid], black oil", kBlackOilKeys);
  text += Section("[fluid.water]", kWaterKeys);
  text += "[fluid], compositional\n" + Line(kBinaryInteraction);
  text += Section("[[fluid.component]]", kComponentKeys);
  text += Section("[[tank]]", kInitialKeys) + Section("", kTankKeys).substr(1);
  text += Line(kDissolvedGas) + Line(kComposition);
  text += Section("[tank.aquifer]", kAquiferKeys);
  text += "[[well]]\n" + Line(kOilIndex) + Line(kGasIndex) + Line(kWaterInjectivity) +
          Line(kGasInjectivity);
  text += Section("", kWellKeys).substr(1);
  text += Section("", kLimitKeys).substr(1);
  return text;
}

}  // namespace gantry::simulator
