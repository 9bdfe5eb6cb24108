#include "fieldrun/results/report_html.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "fieldrun/network/tubing.h"
#include "fieldrun/results/result_tables.h"
#include "fieldrun/results/svg_chart.h"

namespace gantry::fieldrun {
namespace {

using enum Quantity;

constexpr size_t kMostWellCards = 40;
constexpr size_t kMostWarnings = 40;

void AddPoint(ChartSeries& series, double x, double y) {
  if (std::isfinite(x) && std::isfinite(y)) series.points.emplace_back(x, y);
}

// As the simulator's own choice of a well's controlling rate: by gas above 10000 scf/STB.
bool FlowsMostlyGas(const std::vector<InflowPoint>& inflow) {
  Rates sum;
  for (const InflowPoint& point : inflow) sum += point.rates;
  return sum.gas * 1e6 > 10000 * sum.Liquid();
}

// Composes the page. Holds what every part of it needs.
class Report {
 public:
  Report(const CaseModel& model, const RunHistory& history) : model_(model), history_(history) {}

  std::string Page() const;

 private:
  double Show(double value, Quantity quantity) const {
    return FromField(value, quantity, model_.Units());
  }
  std::string Unit(Quantity quantity) const {
    return std::string(UnitName(quantity, model_.Units()));
  }
  bool Has(WellKind kind) const;

  std::string Head() const;
  std::string HowItEnded() const;
  std::string Failure() const;
  std::string Warnings() const;
  std::string Tiles() const;
  std::string Tile(const std::string& name, double value, Quantity quantity) const;
  std::string FieldCharts() const;
  std::string WellTable() const;
  std::string GroupTable() const;
  std::string WellCard(size_t place) const;

  template <class Value>
  ChartSeries FieldSeries(const char* name, const char* colour, Quantity quantity,
                          Value value) const;
  template <class Value>
  ChartSeries WellSeries(size_t place, const char* name, const char* colour, Quantity quantity,
                         Value value) const;
  Chart OverTime(const char* title, Quantity quantity, std::vector<ChartSeries> series) const;
  std::string RateCharts(size_t place) const;
  Chart InflowChart(size_t place) const;
  void AddInflow(Chart& chart, const InflowMoment& moment, const char* colour, bool showsGas) const;
  void AddLift(Chart& chart, const WellSpec& spec, const InflowMoment& moment, bool showsGas) const;

  const CaseModel& model_;
  const RunHistory& history_;
};

bool Report::Has(WellKind kind) const {
  const auto& wells = history_.start.wells;
  return std::any_of(wells.begin(), wells.end(),
                     [&](const RunWell& well) { return well.spec->Kind() == kind; });
}

std::string Report::Head() const {
  const RunStart& start = history_.start;
  const double days = history_.field.empty() ? 0 : history_.field.back().endDays;
  const Date end = FromDayNumber(DayNumber(start.start) + static_cast<int>(std::lround(days)));
  std::string html = fmt::format(
      "<h1>{}</h1>\n<p class=\"soft\">{} to {} in {}, {}. {}.</p>\n"
      "<p class=\"soft\">Simulator: {}. Run {}.</p>\n",
      EscapeHtml(model_.general.title), ToText(start.start), ToText(end),
      Counted(history_.field.size(), "step"), Counted(start.wells.size(), "well"),
      EscapeHtml(start.driver), EscapeHtml(start.simulator), start.id);
  return html + HowItEnded() + Warnings();
}

std::string Report::HowItEnded() const {
  const RunEnd& end = history_.end;
  if (!history_.hasEnded) {
    return fmt::format("<p class=\"failure\">{} This shows the {} of {} that it has written.</p>\n",
                       history_.isGoingOn ? "The run is going on." : "The run was cut off.",
                       Counted(history_.field.size(), "step"), history_.start.stepCount);
  }
  if (end.endedByUser) {
    return fmt::format("<p class=\"soft\">The run was ended by the user after {} of {}.</p>\n",
                       end.steps, Counted(history_.start.stepCount, "step")) +
           Failure();
  }
  if (!end.failure.empty()) return Failure();
  return end.endedBySimulator ? "<p class=\"soft\">The simulator came to its own end.</p>\n" : "";
}

std::string Report::Failure() const {
  const RunEnd& end = history_.end;
  if (end.failure.empty()) return "";
  return fmt::format("<p class=\"failure\">The run failed in step {}: {}</p>\n", end.steps + 1,
                     EscapeHtml(end.failure));
}

std::string Report::Warnings() const {
  if (history_.warnings.empty()) return "";
  std::string html = fmt::format("<div class=\"failure\"><b>{}</b><ul>\n",
                                 Counted(history_.warnings.size(), "warning"));
  const size_t shown = std::min(history_.warnings.size(), kMostWarnings);
  for (size_t i = 0; i < shown; ++i) {
    html += fmt::format("<li>{}</li>\n", EscapeHtml(ToText(history_.warnings[i])));
  }
  html += "</ul>";
  if (shown < history_.warnings.size()) html += "run.json has them all.";
  return html + "</div>\n";
}

std::string Report::Tile(const std::string& name, double value, Quantity quantity) const {
  const std::string number =
      quantity == kNone ? fmt::format("{:.1f} %", 100 * value) : ShortNumber(Show(value, quantity));
  return fmt::format("<div class=\"tile\"><b>{}</b><span>{}{}{}</span></div>\n", number, name,
                     quantity == kNone ? "" : ", ", Unit(quantity));
}

std::string Report::Tiles() const {
  if (history_.field.empty()) return "";
  const RunHistory& last = history_;
  std::string html = "<div class=\"tiles\">\n";
  if (Has(WellKind::kProducer)) {
    html += Tile("oil produced", last.totals.produced.oil, kLiquidVolume);
    html += Tile("gas produced", last.totals.produced.gas, kGasVolume);
    html += Tile("water produced", last.totals.produced.water, kLiquidVolume);
    html += Tile("oil rate at the end", last.rates.produced.oil, kLiquidRate);
    html += Tile("gas-oil ratio at the end", last.rates.GasOilRatio(), kGasLiquidRatio);
    html += Tile("water cut at the end", last.rates.WaterCut(), kNone);
  }
  if (Has(WellKind::kWaterInjector)) {
    html += Tile("water injected", last.totals.injected.water, kLiquidVolume);
  }
  if (Has(WellKind::kGasInjector)) {
    html += Tile("gas injected", last.totals.injected.gas, kGasVolume);
  }
  return html + "</div>\n";
}

template <class Value>
ChartSeries Report::FieldSeries(const char* name, const char* colour, Quantity quantity,
                                Value value) const {
  ChartSeries series{name, colour, {}, false};
  const bool isTotal = quantity == kLiquidVolume || quantity == kGasVolume;
  AddPoint(series, 0, isTotal ? 0 : Show(value(history_.field.front()), quantity));
  for (const FieldMoment& moment : history_.field) {
    AddPoint(series, moment.endDays, Show(value(moment), quantity));
  }
  return series;
}

template <class Value>
ChartSeries Report::WellSeries(size_t place, const char* name, const char* colour,
                               Quantity quantity, Value value) const {
  ChartSeries series{name, colour, {}, false};
  const std::vector<WellMoment>& moments = history_.wells[place].moments;
  AddPoint(series, 0, Show(value(moments.front()), quantity));
  for (size_t i = 0; i < moments.size(); ++i) {
    AddPoint(series, history_.field[i].endDays, Show(value(moments[i]), quantity));
  }
  return series;
}

Chart Report::OverTime(const char* title, Quantity quantity,
                       std::vector<ChartSeries> series) const {
  Chart chart;
  chart.title = title;
  chart.yUnit = Unit(quantity);
  chart.dateOfX0 = history_.start.start;
  chart.series = std::move(series);
  return chart;
}

std::string Report::FieldCharts() const {
  using Moment = const FieldMoment&;
  const auto oil = [](Moment m) { return m.rates.produced.oil; };
  const auto water = [](Moment m) { return m.rates.produced.water; };
  const auto gas = [](Moment m) { return m.rates.produced.gas; };
  const auto waterIn = [](Moment m) { return m.rates.injected.water; };
  const auto gasIn = [](Moment m) { return m.rates.injected.gas; };
  std::vector<ChartSeries> liquids;
  std::vector<ChartSeries> gases;
  std::vector<ChartSeries> liquidTotals;
  std::vector<ChartSeries> gasTotals;
  if (Has(WellKind::kProducer)) {
    liquids = {FieldSeries("oil", "oil", kLiquidRate, oil),
               FieldSeries("water", "water", kLiquidRate, water)};
    gases = {FieldSeries("gas", "gas", kGasRate, gas)};
    liquidTotals = {
        FieldSeries("oil", "oil", kLiquidVolume, [](Moment m) { return m.totals.produced.oil; }),
        FieldSeries("water", "water", kLiquidVolume,
                    [](Moment m) { return m.totals.produced.water; })};
    gasTotals = {
        FieldSeries("gas", "gas", kGasVolume, [](Moment m) { return m.totals.produced.gas; })};
  }
  if (Has(WellKind::kWaterInjector)) {
    liquids.push_back(FieldSeries("water injected", "inj", kLiquidRate, waterIn));
    liquidTotals.push_back(FieldSeries("water injected", "inj", kLiquidVolume,
                                       [](Moment m) { return m.totals.injected.water; }));
  }
  if (Has(WellKind::kGasInjector)) {
    gases.push_back(FieldSeries("gas injected", "inj", kGasRate, gasIn));
    gasTotals.push_back(FieldSeries("gas injected", "inj", kGasVolume,
                                    [](Moment m) { return m.totals.injected.gas; }));
  }
  std::string html = "<h2>The field</h2>\n<div class=\"charts\">\n";
  if (!liquids.empty()) html += ToHtml(OverTime("Liquid rates", kLiquidRate, liquids));
  if (!gases.empty()) html += ToHtml(OverTime("Gas rates", kGasRate, gases));
  if (!liquidTotals.empty()) html += ToHtml(OverTime("Liquid totals", kLiquidVolume, liquidTotals));
  if (!gasTotals.empty()) html += ToHtml(OverTime("Gas totals", kGasVolume, gasTotals));
  if (Has(WellKind::kProducer)) {
    html += ToHtml(OverTime("Gas-oil ratio", kGasLiquidRatio,
                            {FieldSeries("gas-oil ratio", "gas", kGasLiquidRatio,
                                         [](Moment m) { return m.rates.GasOilRatio(); })}));
    html += ToHtml(OverTime(
        "Water cut", kNone,
        {FieldSeries("water cut", "water", kNone, [](Moment m) { return m.rates.WaterCut(); })}));
  }
  return html + "</div>\n";
}

std::string Report::WellTable() const {
  std::string html = fmt::format(
      "<h2>The wells</h2>\n<div class=\"wide\"><table><thead><tr><th>well</th><th "
      "class=\"left\">kind</th>"
      "<th>days open</th><th>oil, {0}</th><th>water, {0}</th><th>gas, {1}</th>"
      "<th>pressure at the end, {2}</th><th class=\"left\">held by, at the end</th></tr></thead>\n",
      Unit(kLiquidVolume), Unit(kGasVolume), Unit(kGaugePressure));
  for (size_t i = 0; i < history_.wells.size(); ++i) {
    const WellHistory& well = history_.wells[i];
    const WellSpec& spec = *history_.start.wells[i].spec;
    html += fmt::format(
        "<tr><td>{}</td><td class=\"left\">{}</td><td>{:.0f}</td><td>{}</td><td>{}</td><td>{}</td>"
        "<td>{:.1f}</td><td class=\"left\">{}</td></tr>\n",
        EscapeHtml(spec.name), KindName(spec.Kind()), well.daysOpen,
        ShortNumber(Show(well.total.oil, kLiquidVolume)),
        ShortNumber(Show(well.total.water, kLiquidVolume)),
        ShortNumber(Show(well.total.gas, kGasVolume)), Show(well.pressure, kGaugePressure),
        EscapeHtml(well.limitedBy));
  }
  return html + "</table></div>\n";
}

std::string Report::GroupTable() const {
  if (history_.groups.empty()) return "";
  std::string html =
      "<h2>Group limits in force</h2>\n<div class=\"wide\"><table><thead><tr><th>group</th>"
      "<th class=\"left\">limit on</th><th>steps</th><th>most that the wells would have made</th>"
      "</tr></thead>\n";
  for (const GroupHistory& group : history_.groups) {
    const Quantity quantity = QuantityOf({group.group, group.limit, 0, 0});
    html += fmt::format("<tr><td>{}</td><td class=\"left\">{}</td><td>{}</td><td>{} {}</td></tr>\n",
                        EscapeHtml(group.group), group.limit, group.steps,
                        ShortNumber(Show(group.mostBefore, quantity)), Unit(quantity));
  }
  return html + "</table></div>\n";
}

void Report::AddInflow(Chart& chart, const InflowMoment& moment, const char* colour,
                       bool showsGas) const {
  const auto place = [&](const Rates& rates) {
    return showsGas ? Show(rates.gas, kGasRate) : Show(rates.Liquid(), kLiquidRate);
  };
  ChartSeries series{ToText(moment.date), colour, {}, false};
  for (const InflowPoint& point : moment.inflow) {
    AddPoint(series, place(point.rates), Show(point.pressure, kGaugePressure));
  }
  std::sort(series.points.begin(), series.points.end());
  chart.series.push_back(std::move(series));
  if (!moment.point.isOpen) return;
  const double x = place(moment.point.rates);
  const double y = Show(moment.point.pressure, kGaugePressure);
  chart.markers.push_back({x, y, colour,
                           fmt::format("{}: {:.4g} at {:.5g} {}, held by {}", ToText(moment.date),
                                       x, y, Unit(kGaugePressure), moment.point.limitedBy)});
}

// What the tubing needs at its foot along the last inflow: it meets the inflow where the well
// flows.
void Report::AddLift(Chart& chart, const WellSpec& spec, const InflowMoment& moment,
                     bool showsGas) const {
  const TubingSpec* tubing = model_.TubingOf(spec);
  const InflowCurve curve(moment.inflow, true);
  if (tubing == nullptr || curve.IsDead()) return;
  const TubingColumn column(*tubing, moment.gravities);
  ChartSeries series{"tubing", "lift", {}, true};
  constexpr int kPoints = 24;
  for (int i = 1; i <= kPoints; ++i) {
    const Rates rates = curve.At(curve.FullOpening() * i / kPoints).rates;
    const double foot = column.FootPressure(model_.ManifoldPressureOf(spec), rates);
    if (foot > 2 * curve.At(0).pressure) continue;
    series.points.emplace_back(
        showsGas ? Show(rates.gas, kGasRate) : Show(rates.Liquid(), kLiquidRate),
        Show(foot, kGaugePressure));
  }
  chart.series.push_back(std::move(series));
}

Chart Report::InflowChart(size_t place) const {
  const WellSpec& spec = *history_.start.wells[place].spec;
  const WellHistory& well = history_.wells[place];
  const bool showsGas = FlowsMostlyGas(well.first.inflow);
  Chart chart;
  chart.title = "Inflow, first and last";
  chart.yUnit = Unit(kGaugePressure);
  chart.xTitle = (showsGas ? "gas, " + Unit(kGasRate) : "liquid, " + Unit(kLiquidRate));
  chart.startsAtZero = false;
  if (spec.Kind() == WellKind::kProducer) chart.height = 500;  // stands beside two rows
  AddInflow(chart, well.first, "first", showsGas);
  AddInflow(chart, well.last, "last", showsGas);
  if (spec.Kind() == WellKind::kProducer) AddLift(chart, spec, well.last, showsGas);
  return chart;
}

std::string Report::RateCharts(size_t place) const {
  using Moment = const WellMoment&;
  const auto oil = [](Moment m) { return m.rates.oil; };
  const auto water = [](Moment m) { return m.rates.water; };
  const auto gas = [](Moment m) { return m.rates.gas; };
  switch (history_.start.wells[place].spec->Kind()) {
    case WellKind::kWaterInjector:
      return ToHtml(OverTime("Water injected", kLiquidRate,
                             {WellSeries(place, "water", "inj", kLiquidRate, water)}));
    case WellKind::kGasInjector:
      return ToHtml(
          OverTime("Gas injected", kGasRate, {WellSeries(place, "gas", "inj", kGasRate, gas)}));
    case WellKind::kProducer:
      break;
  }
  const auto ratio = [](Moment m) { return m.rates.oil > 0 ? m.rates.gas * 1e6 / m.rates.oil : 0; };
  return ToHtml(OverTime("Liquid rates", kLiquidRate,
                         {WellSeries(place, "oil", "oil", kLiquidRate, oil),
                          WellSeries(place, "water", "water", kLiquidRate, water)})) +
         ToHtml(OverTime("Gas rate", kGasRate, {WellSeries(place, "gas", "gas", kGasRate, gas)})) +
         ToHtml(OverTime("Gas-oil ratio", kGasLiquidRatio,
                         {WellSeries(place, "ratio", "gas", kGasLiquidRatio, ratio)}));
}

std::string Report::WellCard(size_t place) const {
  const WellSpec& spec = *history_.start.wells[place].spec;
  Chart pressure = OverTime("Bottom-hole pressure", kGaugePressure,
                            {WellSeries(place, "pressure", "pressure", kGaugePressure,
                                        [](const WellMoment& m) { return m.pressure; })});
  pressure.startsAtZero = false;
  std::string html = fmt::format(
      "<div class=\"well\"><h3>{} <span class=\"soft\">{}</span></h3>\n"
      "<div class=\"charts{}\">\n",
      EscapeHtml(spec.name), KindName(spec.Kind()),
      spec.Kind() == WellKind::kProducer ? " producer" : "");
  if (!history_.wells[place].first.inflow.empty()) html += ToHtml(InflowChart(place));
  html += RateCharts(place) + ToHtml(pressure);
  return html + "</div></div>\n";
}

std::string Report::Page() const {
  std::string html = fmt::format(
      "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
      "<title>{}</title>\n<style>{}</style>\n</head>\n<body><main>\n",
      EscapeHtml(model_.general.title), kReportStyle);
  html += Head() + Tiles();
  if (!history_.field.empty()) {
    html += FieldCharts() + WellTable() + GroupTable();
    const size_t cards = std::min(history_.wells.size(), kMostWellCards);
    for (size_t i = 0; i < cards; ++i) html += WellCard(i);
    if (cards < history_.wells.size()) {
      html += fmt::format(
          "<p class=\"soft\">Charts of the first {} wells; wells.csv and inflow.csv "
          "hold all {}.</p>\n",
          cards, history_.wells.size());
    }
  }
  return html + "</main></body>\n</html>\n";
}

}  // namespace

std::string ComposeReport(const CaseModel& model, const RunHistory& history) {
  return Report(model, history).Page();
}

}  // namespace gantry::fieldrun
