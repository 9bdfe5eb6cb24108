#include "fieldrun/case/condition.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include <fmt/format.h>

#include "described_toml/near_word.h"
#include "text/number_text.h"
#include "text/pieces.h"

namespace gantry::fieldrun {
namespace {

using enum Quantity;

constexpr std::string_view kField = "field";
constexpr double kScfPerMMscf = 1e6;

/// Nothing of the one counts as none of the other.
double Ratio(double part, double whole) {
  if (!(whole <= 0)) return part / whole;
  return part > 0 ? std::numeric_limits<double>::infinity() : part;
}

constexpr Measure kMeasures[] = {
    {"oil", kLiquidRate, [](const Standing& s) { return s.oil; }},
    {"water", kLiquidRate, [](const Standing& s) { return s.water; }},
    {"liquid", kLiquidRate, [](const Standing& s) { return s.oil + s.water; }},
    {"gas", kGasRate, [](const Standing& s) { return s.gas; }},
    {"water_cut", kNone, [](const Standing& s) { return Ratio(s.water, s.oil + s.water); }},
    {"gas_oil_ratio", kGasLiquidRatio,
     [](const Standing& s) { return Ratio(kScfPerMMscf * s.gas, s.oil); }},
    {"water_injection", kLiquidRate, [](const Standing& s) { return s.waterInjected; }},
    {"gas_injection", kGasRate, [](const Standing& s) { return s.gasInjected; }},
    {"total_oil", kLiquidVolume, [](const Standing& s) { return s.totalOil; }},
    {"total_water", kLiquidVolume, [](const Standing& s) { return s.totalWater; }},
    {"total_gas", kGasVolume, [](const Standing& s) { return s.totalGas; }},
    {"total_water_injection", kLiquidVolume,
     [](const Standing& s) { return s.totalWaterInjected; }},
    {"total_gas_injection", kGasVolume, [](const Standing& s) { return s.totalGasInjected; }},
    {"bottom_hole_pressure", kGaugePressure, [](const Standing& s) { return s.pressure; }, true},
};

/// Whom a condition is about, as far as the case knows it.
void FindSubject(const CaseModel& model, int line, const std::string& name, Condition& condition) {
  const auto well = std::ranges::find(model.wells, name, &WellSpec::name);
  const bool isWell = well != model.wells.end();
  const bool isGroup =
      std::ranges::find(model.groups, name, &GroupSpec::name) != model.groups.end();
  if (isWell && isGroup) {
    model.Fail(
        line, fmt::format("\"{}\" is a well and a group: a condition can't tell them apart", name));
  }
  if (isWell && !well->connected) {
    model.Fail(line, fmt::format("well \"{}\" isn't connected", name));
  }
  condition.isGroup = isGroup;
  if (isWell || isGroup) condition.subject = name;
  if (isWell || isGroup || name == kField) return;
  std::vector<std::string_view> known{kField};
  for (const WellSpec& other : model.wells) known.push_back(other.name);
  for (const GroupSpec& group : model.groups) known.push_back(group.name);
  model.Fail(line, fmt::format("there is no well or group \"{}\"{}", name,
                               toml_reader::DidYouMean(name, known)));
}

const Measure& MeasureNamed(const CaseModel& model, int line, const std::string& name) {
  if (const Measure* const measure = FindMeasure(name)) return *measure;
  std::vector<std::string_view> names;
  for (const Measure& measure : kMeasures) names.push_back(measure.name);
  model.Fail(line, fmt::format("\"{}\" isn't measured{}; there are {}", name,
                               toml_reader::DidYouMean(name, names), fmt::join(names, ", ")));
}

}  // namespace

const Measure* FindMeasure(std::string_view name) {
  const auto* const found = std::ranges::find(kMeasures, name, &Measure::name);
  return found == std::end(kMeasures) ? nullptr : found;
}

bool Condition::Holds(const Standing& standing) const {
  const double value = measure->of(standing);
  return isAbove ? value > limit : value < limit;
}

Condition ParseCondition(const CaseModel& model, const EventSpec& event) {
  constexpr size_t kAfterSubject = 3;  // what is measured, the comparison, the number
  const int line = event.LineOf("when");
  std::vector<std::string> words = SplitAt(event.when, " \t\n\v\f\r");
  const size_t subject = words.size() < kAfterSubject ? 0 : words.size() - kAfterSubject;
  Condition condition;
  condition.limit = subject == 0 ? HUGE_VAL : ParseNumber<double>(words.back()).value_or(HUGE_VAL);
  if (!std::isfinite(condition.limit) || (words[subject + 1] != "<" && words[subject + 1] != ">")) {
    model.Fail(line,
               fmt::format("when must be like \"P1 water_cut > 0.8\", not \"{}\"", event.when));
  }
  condition.isAbove = words[subject + 1] == ">";
  words.resize(subject + 1);
  const std::string measure = words.back();
  words.pop_back();
  FindSubject(model, line, fmt::format("{}", fmt::join(words, " ")), condition);
  condition.measure = &MeasureNamed(model, line, measure);
  if (condition.measure->isOfWell && (condition.isGroup || condition.subject.empty())) {
    model.Fail(line, fmt::format("{} is that of a single well", measure));
  }
  condition.limit = ToField(condition.limit, condition.measure->quantity, model.Units());
  return condition;
}

}  // namespace gantry::fieldrun
