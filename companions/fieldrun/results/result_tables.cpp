#include "fieldrun/results/result_tables.h"

#include <cmath>

#include <fmt/format.h>

#include "fieldrun/case/input_file.h"
#include "fieldrun/results/output_file.h"
#include "fieldrun/results/result_folder.h"
#include "fieldrun/results/table_rows.h"

namespace gantry::fieldrun {
namespace {

using enum Quantity;

constexpr const char* kStepHeadings = "step,date,days,length,";

}  // namespace

ResultTables::ResultTables(const std::string& folder, UnitSystem units)
    : folder_(folder), units_(units) {}

// What isn't known stands empty.
std::string ResultTables::Number(double value, Quantity quantity) const {
  if (!std::isfinite(value)) return "";
  return fmt::format("{:.7g}", FromField(value, quantity, units_));
}

std::string ResultTables::Heading(std::string_view name, Quantity quantity) const {
  return fmt::format("{} ({})", name, UnitName(quantity, units_));
}

std::string ResultTables::PhaseFields(const Rates& values, Quantity liquid, Quantity gas) const {
  return Number(values.oil, liquid) + "," + Number(values.water, liquid) + "," +
         Number(values.gas, gas);
}

std::string ResultTables::PointFields(const InflowPoint& point) const {
  return Number(point.pressure, kGaugePressure) + "," +
         PhaseFields(point.rates, kLiquidRate, kGasRate);
}

// "plant: liquid (1320 without it); ..."
std::string ResultTables::GroupFields(const std::vector<GroupLimitReport>& groups) const {
  std::string text;
  for (const GroupLimitReport& group : groups) {
    text += fmt::format("{}{}: {} ({} without it)", text.empty() ? "" : "; ", group.group,
                        group.limit, Number(group.before, QuantityOf(group)));
  }
  return CsvField(text);
}

void ResultTables::Started(const RunStart& start) {
  wells_ = start.wells;
  run_ = start.id;
  OpenTables(start.doneSteps);
  if (start.doneSteps == 0) WriteHeadings();
}

void ResultTables::OpenTables(size_t doneSteps) {
  const std::pair<std::optional<GrowingTable>*, const char*> tables[] = {
      {&wellsFile_, kWellsFile}, {&inflowFile_, kInflowFile},   {&eventsFile_, kEventsFile},
      {&fieldFile_, kFieldFile}, {&profileFile_, kProfileFile},
  };
  for (const auto& [table, name] : tables) {
    const std::string path = folder_ + "/" + name;
    if (doneSteps == 0) table->emplace(path);
    if (doneSteps > 0) table->emplace(path, LengthOfSteps(ReadInputFile(path), doneSteps));
  }
}

void ResultTables::WriteHeadings() {
  const auto columns = [&](std::string_view prefix, Quantity liquid, Quantity gas) {
    return fmt::format("{},{},{}", Heading(fmt::format("{}oil", prefix), liquid),
                       Heading(fmt::format("{}water", prefix), liquid),
                       Heading(fmt::format("{}gas", prefix), gas));
  };
  const std::string pressure = Heading("pressure", kGaugePressure);
  const std::string rates = columns("", kLiquidRate, kGasRate);
  const std::string totals = columns("total ", kLiquidVolume, kGasVolume);
  wellsFile_->Write(fmt::format(
      "{}well,kind,open,limited by,uptime,{},{},reported {},{},{},totals by,oil gravity,"
      "gas gravity,water gravity,tubing,{},artificial lift,run\n",
      kStepHeadings, pressure, rates, pressure, columns("reported ", kLiquidRate, kGasRate), totals,
      Heading("manifold pressure", kGaugePressure)));
  inflowFile_->Write(fmt::format("{}well,point,{},{},{},run\n", kStepHeadings, pressure, rates,
                                 Heading("lift pressure", kGaugePressure)));
  eventsFile_->Write("step,date,days,cause,target,name,what,reason,run\n");
  fieldFile_->Write(fmt::format(
      "{}{},{},{},water cut,{},{},{},{},open producers,open injectors,group limits,totals by,"
      "run\n",
      kStepHeadings, rates, Heading("water injected", kLiquidRate),
      Heading("gas injected", kGasRate), Heading("gas-oil ratio", kGasLiquidRatio), totals,
      Heading("total water injected", kLiquidVolume), Heading("total gas injected", kGasVolume)));
  std::string profile = "step";
  for (const TimePart& part : kTimeParts) profile += fmt::format(",{} (s)", part.name);
  profileFile_->Write(profile + ",run\n");
}

void ResultTables::StepDone(const StepRecord& record) {
  const std::string stepFields = fmt::format("{},{},{:.7g},{:.7g},", record.step + 1,
                                             ToText(record.date), record.days, record.length);
  wellsFile_->Write(WellRows(record, stepFields));
  inflowFile_->Write(InflowRows(record, stepFields));
  eventsFile_->Write(EventRows(record));
  fieldFile_->Write(FieldRow(record, stepFields));
}

void ResultTables::Timed(std::optional<size_t> step, const StepTimes& times) {
  std::string row = std::to_string(step ? *step + 1 : 0);
  for (const TimePart& part : kTimeParts) row += fmt::format(",{:.6f}", times.*part.seconds);
  profileFile_->Write(row + "," + run_ + "\n");
}

std::string ResultTables::WellRows(const StepRecord& record, const std::string& stepFields) const {
  std::string rows;
  for (size_t i = 0; i < wells_.size(); ++i) {
    const WellStep& well = record.wells[i];
    const WellSpec& spec = *wells_[i].spec;
    const std::string tubing =
        well.tubing.empty()
            ? ",,,,,"
            : fmt::format("{:.5g},{:.5g},{:.5g},{},{},{:g}", well.gravities.oil, well.gravities.gas,
                          well.gravities.water, CsvField(well.tubing),
                          Number(well.manifoldPressure, kGaugePressure), well.artificialLift);
    rows += fmt::format(
        "{}{},{},{},{},{:g},{},{},{},{},{},{}\n", stepFields, CsvField(spec.name),
        KindName(spec.Kind()), well.point.isOpen ? 1 : 0, CsvField(well.point.limitedBy),
        well.uptime, PointFields({well.point.pressure, well.point.rates}),
        well.reported ? PointFields(*well.reported) : ",,,",
        PhaseFields(well.total, kLiquidVolume, kGasVolume), CountedBy(well), tubing, run_);
  }
  return rows;
}

std::string ResultTables::InflowRows(const StepRecord& record,
                                     const std::string& stepFields) const {
  std::string rows;
  for (size_t i = 0; i < wells_.size(); ++i) {
    const std::string name = CsvField(wells_[i].spec->name);
    const WellStep& well = record.wells[i];
    for (size_t point = 0; point < well.inflow.size(); ++point) {
      const std::string lift = well.lift.empty() ? "" : Number(well.lift[point], kGaugePressure);
      rows += fmt::format("{}{},{},{},{},{}\n", stepFields, name, point + 1,
                          PointFields(well.inflow[point]), lift, run_);
    }
  }
  return rows;
}

std::string ResultTables::EventRows(const StepRecord& record) const {
  std::string rows;
  for (const EventReport& event : record.events) {
    rows += fmt::format("{},{},{:.7g},{},{},{},{},{},{}\n", record.step + 1, ToText(event.date),
                        record.days, event.cause, event.target, CsvField(event.name),
                        CsvField(event.what), CsvField(event.reason), run_);
  }
  return rows;
}

std::string ResultTables::FieldRow(const StepRecord& record, const std::string& stepFields) const {
  const FieldRates rates = SumWells(wells_, record);
  const FieldTotals totals = SumTotals(wells_, record);
  return fmt::format(
      "{}{},{},{},{},{},{},{},{},{},{},{},{},{}\n", stepFields,
      PhaseFields(rates.produced, kLiquidRate, kGasRate), Number(rates.injected.water, kLiquidRate),
      Number(rates.injected.gas, kGasRate), Number(rates.WaterCut(), kNone),
      Number(rates.GasOilRatio(), kGasLiquidRatio),
      PhaseFields(totals.produced, kLiquidVolume, kGasVolume),
      Number(totals.injected.water, kLiquidVolume), Number(totals.injected.gas, kGasVolume),
      rates.openProducers, rates.openInjectors, GroupFields(record.groups), totals.by, run_);
}

}  // namespace gantry::fieldrun
