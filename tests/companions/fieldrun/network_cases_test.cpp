// The networks of network.cases, solved step by step.

#include <cmath>
#include <map>
#include <optional>
#include <sstream>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "fieldrun/case/case_reader.h"
#include "fieldrun/run/field_state.h"
#include "support/play.h"
#include "support/test_folder.h"

namespace gantry::fieldrun {
namespace {

/// A straight line as a sweep leaves it: ten points, packed towards low rates, none at zero.
std::vector<InflowPoint> Straight(const std::vector<double>& line) {
  std::vector<InflowPoint> points;
  for (int i = 0; i < 10; ++i) {
    const double liquid =
        line[1] * (line[0] - std::min(line[0], 500.0)) * std::pow(1 - 0.1 * i, 2.5);
    const double oil = liquid * (1 - line[2]);
    points.push_back({line[0] - liquid / line[1], {oil, liquid * line[2], oil * line[3] * 1e-6}});
  }
  return points;
}

class NetworkCase {
 public:
  explicit NetworkCase(const std::string& toml) {
    folder_.Write("A.afi", "");
    folder_.Write("I.VFP",
                  "VFPINJ\n1 0 WAT THP FIELD /\n0 2000 /\n0 1000 /\n1 3000 2000 /\n"
                  "2 4000 3000 /\n");
    const std::string start = "simulator.deck = 'A.afi'\ntime.steps = 9\n";
    model_ = ReadCase(folder_.Write("case.toml", start + toml).string());
    for (const WellSpec& well : model_.wells) wells_.push_back({&well, 0});
    state_.emplace(model_, wells_);
    last_.wells.resize(wells_.size());
    for (WellStep& well : last_.wells) well.total = {};
  }

  /// "A B | 3000 0 0 0 | ..."
  void ReadInflow(std::istringstream words) {
    std::vector<std::string> names;
    std::string word;
    while (words >> word && word != "|") names.push_back(word);
    std::vector<std::vector<double>> rows(1);
    while (words >> word) {
      word == "|" ? void(rows.emplace_back()) : rows.back().push_back(std::stod(word));
    }
    std::vector<InflowPoint> points;
    for (const auto& row : rows) points.push_back({row[0], {row[1], row[2], row[3]}});
    for (const std::string& name : names)
      inflow_[name] = rows.size() > 1 ? points : Straight(rows[0]);
  }

  void Lose(const std::string& name) {
    for (size_t i = 0; i < wells_.size(); ++i) {
      if (wells_[i].spec->name == name) last_.wells[i].reported.reset();
    }
  }

  std::string Step(const Date& date) {
    std::string text;
    const auto tell = [&](const std::string& line) { text += "-> " + line + "\n"; };
    for (const EventReport& event : state_->Begin(date, hasLast_ ? &last_ : nullptr)) {
      tell(ToText(event));
    }
    std::vector<NetworkWell> wells;
    for (size_t i = 0; i < wells_.size(); ++i) {
      const WellSpec& spec = state_->Well(i);
      NetworkWell& well = wells.emplace_back(
          spec, InflowCurve(inflow_.at(spec.name), spec.Kind() == WellKind::kProducer));
      well.tubing = model_.TubingOf(spec);
      well.manifoldPressure = state_->ManifoldPressureOf(i);
      if (!state_->ShutBy(i).empty()) well.curve = InflowCurve({}, true);
    }
    const auto groups = SolveNetwork(wells, state_->Groups());
    for (size_t i = 0; i < wells.size(); ++i) tell(TakeDown(i, wells[i].Point()));
    for (const GroupLimitReport& group : groups) {
      tell(fmt::format("group {}: {} {:.5g} {:.5g}", group.group, group.limit, group.before,
                       group.after));
    }
    hasLast_ = true;
    return text;
  }

 private:
  std::string TakeDown(size_t place, const OperatingPoint& point) {
    constexpr double kDays = 30;
    WellStep& made = last_.wells[place];
    made.uptime = 1 - state_->Well(place).downtime;
    made.point = point;
    made.reported = InflowPoint{point.pressure, point.rates};
    made.total += kDays * made.uptime * point.rates;
    const std::string& name = state_->Well(place).name;
    if (const std::string& reason = state_->ShutBy(place); !reason.empty()) {
      return fmt::format("{}{}: {}", name, state_->IsShutForGood(place) ? ", for good" : "",
                         reason);
    }
    return fmt::format("{}: {} {:.5g} {:.5g} {:.5g} {:.5g}", name, point.limitedBy, point.pressure,
                       point.rates.oil, point.rates.water, point.rates.gas);
  }

  test::TestFolder folder_;
  CaseModel model_;
  std::vector<RunWell> wells_;
  std::optional<FieldState> state_;
  std::map<std::string, std::vector<InflowPoint>> inflow_;
  StepRecord last_;
  bool hasLast_ = false;
};

TEST(Network, ComesToStandAsItIsWrittenDown) {
  for (const test::Scene& scene : test::ScenesOf(FIELDRUN_NETWORK_CASES)) {
    std::string toml, expected, found;
    std::optional<NetworkCase> network;
    for (const std::string& line : scene.lines) {
      const std::string rest = line.substr(std::min(line.size(), line.find(' ') + 1));
      const bool isInflow = line.starts_with("| "), isStep = line.starts_with("@ ");
      if (isInflow && !network) network.emplace(toml);
      if (isInflow) network->ReadInflow(std::istringstream(rest));
      if (isStep) found += line + "\n" + network->Step(DateOf(rest));
      if (isStep || line.starts_with("-> ")) expected += line + "\n";
      if (line.starts_with("lost ")) network->Lose(rest);
      if (!network) toml += line + "\n";
    }
    EXPECT_EQ(found, expected) << scene.name;
  }
}

}  // namespace
}  // namespace gantry::fieldrun
