#include "host/result_tables.h"

#include <array>

#include <fmt/format.h>

namespace gantry::fieldrun {
namespace {

using enum Quantity;

std::string GroupFields(const std::vector<GroupLimitReport>& groups) {
  std::string text;
  for (const GroupLimitReport& group : groups) {
    text += fmt::format("{}{}: {}", text.empty() ? "" : "; ", group.group, group.limit);
  }
  return CsvField(text);
}

}  // namespace

std::string_view KindName(WellKind kind) {
  constexpr std::array<std::string_view, 3> kNames{"producer", "water injector", "gas injector"};
  return kNames[static_cast<size_t>(kind)];
}

ResultTables::ResultTables(const std::string& folder, UnitSystem units)
    : units_(units),
      wellsFile_(folder + "/wells.csv"),
      inflowFile_(folder + "/inflow.csv"),
      fieldFile_(folder + "/field.csv") {}

std::string ResultTables::Number(double value, Quantity quantity) const {
  return fmt::format("{:.7g}", FromInternal(value, quantity, units_));
}

std::string ResultTables::Heading(std::string_view name, Quantity quantity) const {
  return fmt::format("{} ({})", name, UnitName(quantity, units_));
}

std::string ResultTables::RateFields(const Rates& rates) const {
  return Number(rates.oil, kLiquidRate) + "," + Number(rates.water, kLiquidRate) + "," +
         Number(rates.gas, kGasRate);
}

std::string ResultTables::PointFields(const InflowPoint& point) const {
  return Number(point.pressure, kPressure) + "," + RateFields(point.rates);
}

void ResultTables::Started(const RunStart& start) {
  wells_ = start.wells;
  const auto columns = [&](std::string_view prefix, Quantity liquid, Quantity gas) {
    return fmt::format("{},{},{}", Heading(fmt::format("{}oil", prefix), liquid),
                       Heading(fmt::format("{}water", prefix), liquid),
                       Heading(fmt::format("{}gas", prefix), gas));
  };
  const std::string step = "step,date,days,length,";
  const std::string pressure = Heading("pressure", kPressure);
  const std::string rates = columns("", kLiquidRate, kGasRate);
  wellsFile_.Write(fmt::format("{}well,kind,open,limited by,uptime,{},{},reported {},{}\n", step,
                               pressure, rates, pressure,
                               columns("reported ", kLiquidRate, kGasRate)));
  inflowFile_.Write(fmt::format("{}well,point,{},{}\n", step, pressure, rates));
  fieldFile_.Write(fmt::format(
      "{}{},{},{},water cut,{},{},{},{},{},{},open producers,open injectors,group limits\n", step,
      rates, Heading("water injected", kLiquidRate), Heading("gas injected", kGasRate),
      Heading("gas-oil ratio", kGasLiquidRatio), Heading("total oil", kLiquidVolume),
      Heading("total water", kLiquidVolume), Heading("total gas", kGasVolume),
      Heading("total water injected", kLiquidVolume), Heading("total gas injected", kGasVolume)));
}

void ResultTables::StepDone(const StepRecord& record) {
  const std::string stepFields = fmt::format("{},{},{:.7g},{:.7g},", record.step + 1,
                                             ToText(record.date), record.days, record.length);
  WriteWells(record, stepFields);
  WriteInflow(record, stepFields);
  WriteField(record, stepFields);
}

void ResultTables::WriteWells(const StepRecord& record, const std::string& stepFields) {
  for (size_t i = 0; i < wells_.size(); ++i) {
    const WellStep& well = record.wells[i];
    const WellSpec& spec = *wells_[i].spec;
    wellsFile_.Write(fmt::format("{}{},{},{},{},{:g},{},{}\n", stepFields, CsvField(spec.name),
                                 KindName(spec.Kind()), well.point.isOpen ? 1 : 0,
                                 CsvField(well.point.limitedBy), 1 - spec.downtime,
                                 PointFields({well.point.pressure, well.point.rates}),
                                 well.reported ? PointFields(*well.reported) : ",,,"));
  }
}

void ResultTables::WriteInflow(const StepRecord& record, const std::string& stepFields) {
  for (size_t i = 0; i < wells_.size(); ++i) {
    const std::string name = CsvField(wells_[i].spec->name);
    int number = 0;
    for (const InflowPoint& point : record.wells[i].inflow) {
      inflowFile_.Write(
          fmt::format("{}{},{},{}\n", stepFields, name, ++number, PointFields(point)));
    }
  }
}

void ResultTables::WriteField(const StepRecord& record, const std::string& stepFields) {
  const FieldRates rates = SumWells(wells_, record);
  cumulatives_.Add(rates, record.length);
  const auto total = [&](const Rates& volumes) {
    return Number(volumes.oil, kLiquidVolume) + "," + Number(volumes.water, kLiquidVolume) + "," +
           Number(volumes.gas, kGasVolume);
  };
  fieldFile_.Write(fmt::format(
      "{}{},{},{},{:.6g},{},{},{},{},{},{},{}\n", stepFields, RateFields(rates.produced),
      Number(rates.injected.water, kLiquidRate), Number(rates.injected.gas, kGasRate),
      rates.WaterCut(), Number(rates.GasOilRatio(), kGasLiquidRatio), total(cumulatives_.produced),
      Number(cumulatives_.injected.water, kLiquidVolume),
      Number(cumulatives_.injected.gas, kGasVolume), rates.openProducers, rates.openInjectors,
      GroupFields(record.groups)));
}

void ResultTables::Ended(const RunEnd& /*end*/) {
  wellsFile_.Finish();
  inflowFile_.Finish();
  fieldFile_.Finish();
}

}  // namespace gantry::fieldrun
