// What changes what holds of wells and groups: events on their days, conditions, economic limits.

#include "fieldrun/run/field_state.h"

#include <optional>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "fieldrun/case/case_reader.h"
#include "support/test_folder.h"

namespace gantry::fieldrun {
namespace {

constexpr const char* kCase = R"(
simulator.deck = "A.afi"
time.steps = 9
network.manifold_pressure = 100
[[well]]
name = "P"
kind = "producer"
min_oil = 100
max_water_cut = 0.9
max_gas_oil_ratio = 5000
[[well]]
name = "I"
kind = "water_injector"
water_rate = 10
[[group]]
name = "all of it"
max_gas = 9
)";

class Events : public ::testing::Test {
 protected:
  /// All that happens before a step that follows one with these rates.
  std::string After(const Rates& made, const std::string& events) {
    folder_.Write("A.afi", "");
    model_ = ReadCase(folder_.Write("case.toml", kCase + events).string());
    state_.emplace(model_, std::vector<RunWell>{{&model_.wells[0], 0}, {&model_.wells[1], 1}});
    state_->Begin({2020, 1, 1}, nullptr);
    for (size_t i = 0; i < 2; ++i) {
      before_.wells.emplace_back().point.isOpen = true;
      before_.wells[i].uptime = 0.5;
      before_.wells[i].reported = InflowPoint{1000, i == 0 ? made : Rates{0, 600, 0}};
      before_.wells[i].total = {1e6, 0, 0};
    }
    return Happens({2020, 2, 1});
  }
  std::string Happens(const Date& date) {
    std::string text;
    for (const EventReport& report : state_->Begin(date, &before_)) text += ToText(report) + "\n";
    return text;
  }

  test::TestFolder folder_;
  CaseModel model_;
  std::optional<FieldState> state_;
  StepRecord before_;
};

TEST_F(Events, ShutAWellForGoodThatPassesAnEconomicLimit) {
  const struct {
    Rates made;
    const char* reason;
  } kCases[] = {{{200, 100, 0.5}, ""},
                {{99, 0, 0}, "oil below its economic limit"},
                {{100, 1000, 0}, "water cut above its limit"},
                {{100, 0, 0.6}, "gas-oil ratio above its limit"},
                {kUnknownRates, ""}};
  for (const auto& [made, reason] : kCases) {
    const std::string happens = *reason == 0 ? "" : fmt::format("P: shut ({})\n", reason);
    EXPECT_EQ(After(made, ""), happens);
    EXPECT_EQ(state_->ShutBy(0), reason);
    EXPECT_EQ(state_->IsShutForGood(0), !happens.empty());
    EXPECT_EQ(Happens({2020, 3, 1}), "") << "it is shut once";
  }
}

// The field makes half of what its wells make while they are up.
TEST_F(Events, HappenOnceWhenTheirConditionComesTrue) {
  const struct {
    const char* when;
    const char* now;
  } kCases[] = {{"P oil > 199", ""},
                {"P oil > 99", "100"},
                {"field water < 51", "50"},
                {"all of it water_injection > 299", "300"},
                {"P liquid < 150", ""},
                {"I bottom_hole_pressure < 1001", "1000"},
                {"P water_cut > 0.3", "0.333333"},
                {"P gas_oil_ratio > 2499", "2500"},
                {"field total_oil > 999999", "1e+06"}};
  for (const auto& [when, now] : kCases) {
    const std::string event =
        fmt::format("[[event]]\nwhen = \"{}\"\nwell = \"P\"\nmax_oil = 5\nnote = \"why\"\n", when);
    const std::string expected =
        *now == 0 ? "" : fmt::format("P: max_oil 5 STB/d ({}, now {}: why)\n", when, now);
    EXPECT_EQ(After({200, 100, 0.5}, event), expected);
    EXPECT_EQ(Happens({2020, 3, 1}), "");
  }
}

TEST_F(Events, ChangeWellsGroupsAndTheFieldOnTheirDays) {
  EXPECT_EQ(After({200, 100, 0.5}, R"(
[[event]]
date = 2020-03-02
well = "P"
action = "shut"
remove = ["min_oil"]
[[event]]
date = 2020-03-01
group = "all of it"
remove = ["max_gas"]
max_oil = 7
manifold_pressure = 50
[[event]]
date = 2020-03-01
manifold_pressure = 60
[[event]]
date = 2020-04-01
well = "I"
bottom_hole_pressure = 3000
[[event]]
date = 2020-04-01
action = "open"
)"),
            "");
  EXPECT_EQ(state_->ManifoldPressureOf(0), 100);
  EXPECT_EQ(Happens({2020, 3, 1}),
            "all of it: max_oil 7 STB/d\n"
            "all of it: max_gas 9 MMscf/d removed\n"
            "P: manifold_pressure 50 psig\n"
            "I: manifold_pressure 50 psig\n"
            "field: manifold_pressure from 100 psig to 60 psig\n");
  EXPECT_EQ(state_->ManifoldPressureOf(0), 50);
  EXPECT_FALSE(state_->Groups()[0].maxGas);
  EXPECT_EQ(Happens({2020, 3, 2}), "P: shut\nP: min_oil 100 STB/d removed\n");
  EXPECT_FALSE(state_->IsShutForGood(0));
  EXPECT_EQ(Happens({2020, 4, 2}), "I: bottom_hole_pressure 3000 psig\nP: opened\n");
  EXPECT_FALSE(state_->Well(1).waterRate) << "an injector goes by the one or the other";
}

TEST_F(Events, LeaveAWellShutThatIsNotDrilledYet) {
  EXPECT_EQ(After({200, 100, 0.5}, R"(
[[event]]
date = 2020-04-01
well = "P"
action = "drill"
[[event]]
date = 2020-02-01
action = "open"
)"),
            "");
  EXPECT_EQ(state_->ShutBy(0), "not drilled yet");
  EXPECT_EQ(Happens({2020, 4, 1}), "P: drilled\n");
  EXPECT_EQ(state_->ShutBy(0), "");
}

}  // namespace
}  // namespace gantry::fieldrun
