#include "fieldrun/results/run_json.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "fieldrun/platform/terminal.h"
#include "fieldrun/results/json_text.h"

namespace gantry::fieldrun {
namespace {

void PrintLine(const Json& json) {
  fmt::print(UserOutput(), "{}", JsonText(json));
  std::fflush(UserOutput());
}

/// An event of that name, with what there is to tell of it.
void PrintEvent(const char* name, const Json& told) {
  Json line{{"event", name}};
  line.update(told);
  PrintLine(line);
}

/// Oil, water and gas; `liquid` and `gas` are what they are measured in.
Json Phases(const Rates& rates, Quantity liquid, Quantity gas, UnitSystem units) {
  return {{"oil", FromField(rates.oil, liquid, units)},
          {"water", FromField(rates.water, liquid, units)},
          {"gas", FromField(rates.gas, gas, units)}};
}

}  // namespace

void RunJson::Started(const RunStart& start) {
  wells_ = start.wells;
  PrintLine({{"event", "start"},
             {"run", start.id},
             {"title", model_.general.title},
             {"units", model_.Units() == UnitSystem::kMetric ? "metric" : "field"},
             {"date", ToText(start.start)},
             {"steps", start.stepCount},
             {"steps_done", start.doneSteps},
             {"days", start.totalDays},
             {"wells", start.wells.size()},
             {"case_warnings", model_.warnings}});
}

void RunJson::StepDone(const StepRecord& record) {
  for (const EventReport& event : record.events) PrintEvent("change", ToJson(event));
  const FieldRates rates = SumWells(wells_, record);
  const FieldTotals totals = SumTotals(wells_, record);
  const auto perDay = [this](const Rates& values) {
    return Phases(values, Quantity::kLiquidRate, Quantity::kGasRate, model_.Units());
  };
  const auto inAll = [this](const Rates& values) {
    return Phases(values, Quantity::kLiquidVolume, Quantity::kGasVolume, model_.Units());
  };
  PrintLine({{"event", "step"},
             {"step", record.step + 1},
             {"date", ToText(record.date)},
             {"days", record.days},
             {"length", record.length},
             {"produced", perDay(rates.produced)},
             {"injected", perDay(rates.injected)},
             {"total_produced", inAll(totals.produced)},
             {"total_injected", inAll(totals.injected)},
             {"open_wells", rates.openProducers + rates.openInjectors}});
}

void RunJson::Timed(std::optional<size_t> /*step*/, const StepTimes& times) {
  for (const TimePart& part : kTimeParts) times_.*part.seconds += times.*part.seconds;
}

void RunJson::Ended(const RunEnd& end) {
  Json seconds;
  for (const TimePart& part : kTimeParts) seconds[part.name] = times_.*part.seconds;
  PrintLine({{"event", "end"},
             {"steps", end.steps},
             {"warnings", end.warnings.size()},
             {"ended_by_simulator", end.endedBySimulator},
             {"ended_by_user", end.endedByUser},
             {"failure", end.failure},
             {"seconds", seconds},
             {"results", model_.general.output}});
}

void RunJson::Warned(const RunWarning& warning) { PrintEvent("warning", ToJson(warning)); }

}  // namespace gantry::fieldrun
