#include "fieldrun/results/report_data.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include <nlohmann/json.hpp>

#include "fieldrun/results/json_text.h"
#include "fieldrun/results/packed_numbers.h"

namespace gantry::fieldrun {
namespace {

using enum Quantity;

constexpr size_t kMostMoments = 240'000;  // of one well in one step: what a page can carry
constexpr int kDigits = 5;
constexpr int kCurveDigits = 4;
constexpr int kFieldDigits = 7;

struct UnitOfPage {
  const char* name;
  Quantity quantity;
};
constexpr UnitOfPage kUnits[] = {
    {"liquidRate", kLiquidRate}, {"gasRate", kGasRate},     {"pressure", kGaugePressure},
    {"ratio", kGasLiquidRatio},  {"liquid", kLiquidVolume}, {"gas", kGasVolume},
};

struct FieldColumn {
  const char* name;
  Quantity quantity;
  double (*value)(const FieldMoment&);
};
using Moment = const FieldMoment&;
constexpr FieldColumn kFieldColumns[] = {
    {"oil", kLiquidRate, [](Moment m) { return m.rates.produced.oil; }},
    {"water", kLiquidRate, [](Moment m) { return m.rates.produced.water; }},
    {"gas", kGasRate, [](Moment m) { return m.rates.produced.gas; }},
    {"waterIn", kLiquidRate, [](Moment m) { return m.rates.injected.water; }},
    {"gasIn", kGasRate, [](Moment m) { return m.rates.injected.gas; }},
    {"ratio", kGasLiquidRatio, [](Moment m) { return m.rates.GasOilRatio(); }},
    {"waterCut", kNone, [](Moment m) { return m.rates.WaterCut(); }},
    {"totalOil", kLiquidVolume, [](Moment m) { return m.totals.produced.oil; }},
    {"totalWater", kLiquidVolume, [](Moment m) { return m.totals.produced.water; }},
    {"totalGas", kGasVolume, [](Moment m) { return m.totals.produced.gas; }},
    {"totalWaterIn", kLiquidVolume, [](Moment m) { return m.totals.injected.water; }},
    {"totalGasIn", kGasVolume, [](Moment m) { return m.totals.injected.gas; }},
    {"producers", kNone, [](Moment m) { return static_cast<double>(m.rates.openProducers); }},
    {"injectors", kNone, [](Moment m) { return static_cast<double>(m.rates.openInjectors); }},
};

// As the simulator's own choice of a well's controlling rate: by gas above 10000 scf/STB.
bool FlowsMostlyGas(const std::vector<InflowPoint>& inflow) {
  Rates sum;
  for (const InflowPoint& point : inflow) sum += point.rates;
  return sum.gas * 1e6 > 10000 * sum.Liquid();
}

// Null for what isn't known, which JSON has no number for.
Json Known(double value) { return std::isfinite(value) ? Json(value) : Json(nullptr); }

// Composes the data. Holds what every part of it needs.
class DataOfRun {
 public:
  DataOfRun(const CaseModel& model, const RunHistory& history);

  Json All() const;

 private:
  double Show(double value, Quantity quantity) const {
    return FromField(value, quantity, model_.Units());
  }
  Json ShowRates(const Rates& rates, Quantity liquid, Quantity gas) const {
    return {Known(Show(rates.oil, liquid)), Known(Show(rates.water, liquid)),
            Known(Show(rates.gas, gas))};
  }
  template <class Value>
  Json Column(int digits, Value valueAt) const;

  Json Run() const;
  Json Units() const;
  Json Totals() const;
  Json Field() const;
  Json Well(size_t place) const;
  Json HeldBy(const WellHistory& well) const;
  Json Curves(size_t place, bool showsGas) const;
  Json Groups() const;
  Json Events() const;
  Json Warnings() const;
  Json Profile() const;

  const CaseModel& model_;
  const RunHistory& history_;
  std::vector<size_t> shown_;  ///< the steps on the page: all, or some evenly spread and the last
};

DataOfRun::DataOfRun(const CaseModel& model, const RunHistory& history)
    : model_(model), history_(history) {
  const size_t steps = history.field.size();
  const size_t stride = 1 + steps * std::max<size_t>(history.wells.size(), 10) / kMostMoments;
  for (size_t step = 0; step < steps; step += stride) shown_.push_back(step);
  if (steps > 0 && shown_.back() != steps - 1) shown_.push_back(steps - 1);
}

template <class Value>
Json DataOfRun::Column(int digits, Value valueAt) const {
  std::vector<double> column;
  column.reserve(shown_.size());
  for (const size_t step : shown_) column.push_back(valueAt(step));
  return Packed(column, digits);
}

Json DataOfRun::Run() const {
  const RunStart& start = history_.start;
  const RunEnd& end = history_.end;
  const char* state = end.endedBySimulator ? "simulator" : "complete";
  if (!end.failure.empty()) state = "failed";
  if (end.endedByUser) state = "user";
  if (!history_.hasEnded) state = history_.isGoingOn ? "going" : "cut";
  return {{"id", start.id},
          {"driver", start.driver},
          {"simulator", start.simulator},
          {"start", ToText(start.start)},
          {"planned", start.stepCount},
          {"steps", history_.field.size()},
          {"state", state},
          {"failure", end.failure}};
}

Json DataOfRun::Units() const {
  Json units;
  for (const UnitOfPage& unit : kUnits) units[unit.name] = UnitName(unit.quantity, model_.Units());
  return units;
}

// The last that are told, which may not be those of the last step.
Json DataOfRun::Totals() const {
  const FieldTotals& totals = history_.totals;
  return {{"produced", ShowRates(totals.produced, kLiquidVolume, kGasVolume)},
          {"injected", ShowRates(totals.injected, kLiquidVolume, kGasVolume)},
          {"oilRate", Known(Show(history_.rates.produced.oil, kLiquidRate))},
          {"ratio", Known(Show(history_.rates.GasOilRatio(), kGasLiquidRatio))},
          {"waterCut", Known(history_.rates.WaterCut())}};
}

Json DataOfRun::Field() const {
  Json field;
  for (const FieldColumn& column : kFieldColumns) {
    field[column.name] = Column(kFieldDigits, [&](size_t step) {
      return Show(column.value(history_.field[step]), column.quantity);
    });
  }
  return field;
}

// Places in the list of holds, each with the number of steps that it lasts.
Json DataOfRun::HeldBy(const WellHistory& well) const {
  Json runs = Json::array();
  size_t length = 0;
  for (size_t i = 0; i < shown_.size(); ++i) {
    const size_t held = well.moments[shown_[i]].held;
    ++length;
    if (i + 1 < shown_.size() && well.moments[shown_[i + 1]].held == held) continue;
    runs.insert(runs.end(), {held, length});
    length = 0;
  }
  return runs;
}

// Of each step with curves: the inflow, the lift along it, and the operating point.
Json DataOfRun::Curves(size_t place, bool showsGas) const {
  const auto rateOf = [&](const Rates& rates) {
    return showsGas ? Show(rates.gas, kGasRate) : Show(rates.Liquid(), kLiquidRate);
  };
  std::vector<size_t> lengths;
  std::vector<double> pressures, rates, lifts, points, flows;
  for (const StepRecord& step : history_.curves) {
    const WellStep& well = step.wells[place];
    lengths.push_back(well.inflow.size());
    for (size_t i = 0; i < well.inflow.size(); ++i) {
      const double lift = i < well.lift.size() ? well.lift[i] : kUnknownRates.oil;
      pressures.push_back(Show(well.inflow[i].pressure, kGaugePressure));
      rates.push_back(rateOf(well.inflow[i].rates));
      lifts.push_back(Show(lift, kGaugePressure));
    }
    const bool isOpen = well.point.isOpen;
    points.push_back(isOpen ? Show(well.point.pressure, kGaugePressure) : kUnknownRates.oil);
    flows.push_back(isOpen ? rateOf(well.point.rates) : kUnknownRates.oil);
  }
  Json curves{{"lengths", Json::array()},
              {"pressure", Packed(pressures, kCurveDigits, lengths)},
              {"rate", Packed(rates, kCurveDigits, lengths)},
              {"pointPressure", Packed(points, kDigits)},
              {"pointRate", Packed(flows, kDigits)}};
  const bool isEven = std::ranges::adjacent_find(lengths, std::not_equal_to()) == lengths.end();
  for (size_t i = 0; i < (isEven ? 1 : lengths.size()); ++i)
    curves["lengths"].push_back(lengths[i]);
  const bool hasLift = std::ranges::any_of(lifts, [](double lift) { return std::isfinite(lift); });
  if (hasLift) curves["lift"] = Packed(lifts, kCurveDigits, lengths);
  return curves;
}

Json DataOfRun::Well(size_t place) const {
  const WellHistory& well = history_.wells[place];
  const WellSpec& spec = *history_.start.wells[place].spec;
  const auto column = [&](Quantity quantity, double (*value)(const WellMoment&)) {
    return Column(kDigits, [&](size_t step) { return Show(value(well.moments[step]), quantity); });
  };
  const auto curves = std::ranges::find_if(
      history_.curves, [&](const StepRecord& step) { return !step.wells[place].inflow.empty(); });
  Json json{
      {"name", spec.name},
      {"kind", KindName(spec.Kind())},
      {"daysOpen", well.daysOpen},
      {"total", ShowRates(well.total, kLiquidVolume, kGasVolume)},
      {"endPressure", Known(Show(well.pressure, kGaugePressure))},
      {"held", HeldBy(well)},
      {"pressure", column(kGaugePressure, [](const WellMoment& m) { return m.pressure; })},
      {"oil", column(kLiquidRate, [](const WellMoment& m) { return m.rates.oil; })},
      {"water", column(kLiquidRate, [](const WellMoment& m) { return m.rates.water; })},
      {"gas", column(kGasRate, [](const WellMoment& m) { return m.rates.gas; })},
  };
  if (curves == history_.curves.end()) return json;
  json["showsGas"] = FlowsMostlyGas(curves->wells[place].inflow);
  json["curves"] = Curves(place, json["showsGas"]);
  return json;
}

Json DataOfRun::Groups() const {
  Json groups = Json::array();
  for (const GroupHistory& group : history_.groups) {
    const Quantity quantity = QuantityOf({group.group, group.limit, 0, 0});
    groups.push_back({{"name", group.group},
                      {"limit", group.limit},
                      {"unit", UnitName(quantity, model_.Units())},
                      {"steps", group.before.size()},
                      {"before", Column(kDigits, [&](size_t step) {
                         const auto found = group.before.find(step);
                         return found == group.before.end() ? kUnknownRates.oil
                                                            : Show(found->second, quantity);
                       })}});
  }
  return groups;
}

Json DataOfRun::Events() const {
  Json list = Json::array();
  for (const auto& [days, event] : history_.events) {
    Json& told = list.emplace_back(Json{{"date", ToText(event.date)}, {"days", days}});
    told.update(ToJson(event));
    told["text"] = ToText(event);
  }
  return list;
}

Json DataOfRun::Warnings() const {
  Json list = Json::array();
  for (const RunWarning& warning : history_.warnings) list.push_back(ToJson(warning));
  return list;
}

Json DataOfRun::Profile() const {
  if (history_.times.empty()) return nullptr;
  Json parts = Json::array();
  for (const TimePart& part : kTimeParts) {
    double sum = history_.timesOfStart.*part.seconds;
    for (const StepTimes& times : history_.times) sum += times.*part.seconds;
    parts.push_back({{"name", part.name},
                     {"start", history_.timesOfStart.*part.seconds},
                     {"sum", sum},
                     {"steps", Column(kDigits, [&](size_t step) {
                        const bool isKnown = step < history_.times.size();
                        return isKnown ? history_.times[step].*part.seconds : kUnknownRates.oil;
                      })}});
  }
  return parts;
}

Json DataOfRun::All() const {
  Json holds = Json::array();
  for (const Hold& hold : history_.holds) holds.push_back({hold.reason, hold.isOpen ? 1 : 0});
  Json curveSteps = Json::array();
  for (const StepRecord& step : history_.curves) curveSteps.push_back(step.step);
  Json wells = Json::array();
  for (size_t i = 0; i < history_.wells.size(); ++i) wells.push_back(Well(i));
  return {{"title", model_.general.title},
          {"run", Run()},
          {"units", Units()},
          {"totals", Totals()},
          {"steps", shown_},
          {"days", Column(kFieldDigits + 2, [&](size_t s) { return history_.field[s].endDays; })},
          {"field", Field()},
          {"curveSteps", curveSteps},
          {"holds", holds},
          {"wells", wells},
          {"groups", Groups()},
          {"events", Events()},
          {"warnings", Warnings()},
          {"profile", Profile()}};
}

}  // namespace

Json ReportData(const CaseModel& model, const RunHistory& history) {
  return DataOfRun(model, history).All();
}

}  // namespace gantry::fieldrun
