#include "fieldsummary/summary_files.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <stdexcept>

#include <opm/io/eclipse/EclOutput.hpp>

#include "fieldrun/results/result_folder.h"
#include "fieldrun/run/field_totals.h"

namespace gantry::fieldrun {
namespace {

using Opm::EclIO::EclOutput;
using enum Quantity;

constexpr const char* kNobody = ":+:+:+:+";  // in place of a name
constexpr size_t kShortName = 8;

struct Units {
  int code;
  const char *liquidRate, *gasRate, *liquid, *gas, *pressure, *gasOilRatio;
  double absolute;  ///< what a pressure of the tables lacks to be absolute
};
constexpr Units kField{2, "STB/DAY", "MSCF/DAY", "STB", "MSCF", "PSIA", "MSCF/STB", kAtmosphere};
constexpr Units kMetric{1, "SM3/DAY", "SM3/DAY", "SM3", "SM3", "BARSA", "SM3/SM3", 0};

const Units& UnitsOf(const CaseModel& model) {
  return model.Units() == UnitSystem::kMetric ? kMetric : kField;
}

constexpr SummaryPhase kPhases[] = {{"OP", &Rates::oil, WellKind::kProducer},
                                    {"WP", &Rates::water, WellKind::kProducer},
                                    {"GP", &Rates::gas, WellKind::kProducer},
                                    {"WI", &Rates::water, WellKind::kWaterInjector},
                                    {"GI", &Rates::gas, WellKind::kGasInjector}};

/// Tables have gas in thousands of sm3 or in MMscf: a thousand of the files' units either way.
double InUnits(double value, Quantity quantity, const CaseModel& model) {
  const bool isGas = quantity == kGasRate || quantity == kGasVolume;
  return FromField(value, quantity, model.Units()) * (isGas ? 1000 : 1);
}

/// The run as some of its wells make it.
struct Part {
  std::vector<RunWell> wells;
  StepRecord record;
};

Part PartOf(const RunStart& start, const StepRecord& record, const std::vector<size_t>& places) {
  Part part;
  for (const size_t place : places) {
    part.wells.push_back(start.wells[place]);
    part.record.wells.push_back(record.wells[place]);
  }
  return part;
}

void CheckWritten(const std::string& path) {
  if (std::filesystem::file_size(path) == 0) throw std::runtime_error("couldn't write " + path);
}

}  // namespace

void SummaryFiles::Add(const std::string& keyword, const std::string& name, const char* unit,
                       std::function<double(const StepRecord&)> value) {
  vectors_.push_back({keyword, name, unit, std::move(value)});
}

void SummaryFiles::Started(const RunStart& start) {
  start_ = start;
  Add("TIME", "", "DAYS", [](const StepRecord& record) { return record.days + record.length; });
  Add("YEARS", "", "YEARS",
      [](const StepRecord& record) { return (record.days + record.length) / 365.25; });
  Places all(start_.wells.size());
  for (size_t i = 0; i < all.size(); ++i) all[i] = i;
  AddSums('F', "", all);
  for (const GroupSpec& group : model_.groups) AddSums('G', group.name, MembersOf(group));
  for (const size_t place : all) AddWell(place);
}

SummaryFiles::Places SummaryFiles::MembersOf(const GroupSpec& group) const {
  Places places;
  for (size_t i = 0; i < start_.wells.size(); ++i) {
    const std::string& name = start_.wells[i].spec->name;
    if (group.wells.empty() || std::ranges::find(group.wells, name) != group.wells.end()) {
      places.push_back(i);
    }
  }
  return places;
}

void SummaryFiles::AddPhase(char prefix, const std::string& name, const SummaryPhase& phase,
                            Sum rates, Sum totals) {
  const Units& units = UnitsOf(model_);
  const auto add = [&](const char* suffix, const char* unit, Quantity quantity, Sum sum) {
    Add(prefix + std::string(phase.word) + suffix, name, unit,
        [this, rate = phase.rate, quantity, sum = std::move(sum)](const StepRecord& record) {
          return InUnits(sum(record).*rate, quantity, model_);
        });
  };
  if (phase.rate == &Rates::gas) {
    add("R", units.gasRate, kGasRate, std::move(rates));
    add("T", units.gas, kGasVolume, std::move(totals));
  } else {
    add("R", units.liquidRate, kLiquidRate, std::move(rates));
    add("T", units.liquid, kLiquidVolume, std::move(totals));
  }
}

void SummaryFiles::AddSums(char prefix, const std::string& name, const Places& places) {
  const auto rates = [this, places](const StepRecord& record) {
    const Part part = PartOf(start_, record, places);
    return SumWells(part.wells, part.record);
  };
  const auto totals = [this, places](const StepRecord& record) {
    const Part part = PartOf(start_, record, places);
    return SumTotals(part.wells, part.record);
  };
  for (const SummaryPhase& phase : kPhases) {
    const bool isInjected = phase.kind != WellKind::kProducer;
    const auto side = [isInjected](const auto& sums) {
      return isInjected ? sums.injected : sums.produced;
    };
    AddPhase(
        prefix, name, phase, [=](const StepRecord& record) { return side(rates(record)); },
        [=](const StepRecord& record) { return side(totals(record)); });
  }
  Add(prefix + std::string("WCT"), name, "",
      [=](const StepRecord& record) { return rates(record).WaterCut(); });
  Add(prefix + std::string("GOR"), name, UnitsOf(model_).gasOilRatio,
      [this, rates](const StepRecord& record) {
        const Rates made = rates(record).produced;
        const double oil = InUnits(made.oil, kLiquidRate, model_);
        return oil <= 0 ? 0 : InUnits(made.gas, kGasRate, model_) / oil;
      });
}

void SummaryFiles::AddWell(size_t place) {
  const Units& units = UnitsOf(model_);
  const WellSpec& spec = *start_.wells[place].spec;
  for (const SummaryPhase& phase : kPhases) {
    if (phase.kind != spec.Kind()) continue;
    AddPhase(
        'W', spec.name, phase,
        [place](const StepRecord& record) { return record.wells[place].Made(); },
        [place](const StepRecord& record) { return record.wells[place].total; });
  }
  Add("WBHP", spec.name, units.pressure, [this, place, &units](const StepRecord& record) {
    const std::optional<InflowPoint>& reported = record.wells[place].reported;
    if (!reported) return std::numeric_limits<double>::quiet_NaN();
    return InUnits(reported->pressure, kGaugePressure, model_) + units.absolute;
  });
}

void SummaryFiles::StepDone(const StepRecord& record) {
  std::vector<float>& values = steps_.emplace_back();
  for (const SummaryVector& vector : vectors_) {
    values.push_back(static_cast<float>(vector.value(record)));
  }
}

void SummaryFiles::WriteSpecification(const std::string& path) const {
  std::vector<std::string> keywords;
  std::vector<std::string> names;
  std::vector<std::string> units;
  size_t longest = kShortName;
  for (const SummaryVector& vector : vectors_) {
    keywords.push_back(vector.keyword);
    names.push_back(vector.name.empty() ? kNobody : vector.name);
    units.push_back(vector.unit);
    longest = std::max(longest, vector.name.size());
  }
  EclOutput file(path, false);
  file.write("INTEHEAD", std::vector<int>{UnitsOf(model_).code, 100});
  file.write("RESTART", std::vector<std::string>(9));
  file.write("DIMENS", std::vector<int>{static_cast<int>(vectors_.size()), 1, 1, 1, 0, -1});
  file.write("KEYWORDS", keywords);
  if (longest == kShortName) {
    file.write("WGNAMES", names);
  } else {
    file.write("NAMES", names, static_cast<int>(longest));
  }
  file.write("NUMS", std::vector<int>(vectors_.size()));
  file.write("UNITS", units);
  const Date& day = start_.start;
  file.write("STARTDAT", std::vector<int>{day.day, day.month, day.year, 0, 0, 0});
}

void SummaryFiles::WriteSteps(const std::string& path) const {
  EclOutput file(path, false);
  for (size_t i = 0; i < steps_.size(); ++i) {
    file.write("SEQHDR", std::vector<int>{0});
    file.write("MINISTEP", std::vector<int>{static_cast<int>(i)});
    file.write("PARAMS", steps_[i]);
  }
}

void SummaryFiles::Write(const std::string& folder) const {
  const std::string specification = folder + "/" + kSummaryNames;
  const std::string steps = folder + "/" + kSummaryValues;
  WriteSpecification(specification + ".new");
  WriteSteps(steps + ".new");
  CheckWritten(specification + ".new");
  if (!steps_.empty()) CheckWritten(steps + ".new");
  std::filesystem::rename(steps + ".new", steps);
  std::filesystem::rename(specification + ".new", specification);
}

}  // namespace gantry::fieldrun
