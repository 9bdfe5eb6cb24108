#include "settings/source.h"

#include <array>
#include <memory>
#include <sstream>

#include <gtest/gtest.h>

#include "client/connector_base.h"
#include "settings/static_well_data.h"
#include "support/well_messages.h"

namespace gantry {
namespace {

using test::ScriptedPeer;
using test::WellAnswer;
using test::WellConstraint;
using test::WellQuestion;

struct Answer {
  bool handled;
  std::string text;
  std::string error;
  bool operator==(const Answer&) const = default;
};

Answer Read(Source& source, const std::string& tag, TagContext context = nullptr) {
  std::array<char, 512> reply = {};
  TagParser parser = TagParser::ForReading(tag, reply);
  const bool handled = source.Handle(parser, context);
  return {handled, reply.data(), parser.ErrorText};
}

Answer Write(Source& source, const std::string& tag, const char* value,
             TagContext context = nullptr) {
  TagParser parser = TagParser::ForWriting(tag, value);
  const bool handled = source.Handle(parser, context);
  return {handled, "", parser.ErrorText};
}

Source WellNamed(const std::string& name) {
  Source source;
  source.Name = name;
  return source;
}

TEST(Source, ReadsAndWritesEachOfItsNumbersByItsOwnTag) {
  Source source = WellNamed("P1");
  const std::pair<const char*, double*> tags[] = {
      {"OnTimeFraction", &source.OnTimeFraction},  {"CurGasRate", &source.Current.GasRate},
      {"CurOilRate", &source.Current.OilRate},     {"CurPressure", &source.Current.Pressure},
      {"CurWaterRate", &source.Current.WaterRate}, {"GasGravity", &source.GasGravity},
      {"OilGravity", &source.OilGravity},          {"WaterGravity", &source.WaterGravity},
  };
  double number = 1.25;
  for (const auto& [tag, field] : tags) {
    EXPECT_TRUE(Write(source, tag, std::to_string(++number).c_str()).handled) << tag;
    EXPECT_EQ(*field, number) << tag;
    EXPECT_EQ(Read(source, tag), (Answer{true, std::to_string(number).substr(0, 4), ""})) << tag;
  }
  EXPECT_EQ(Read(source, "name"), (Answer{true, "P1", ""}));
  EXPECT_TRUE(Write(source, "Name", "P 2").handled);
  EXPECT_EQ(source.Name, "P 2");
}

TEST(Source, AsksTheSimulatorForAnyOtherVariable) {
  struct Case {
    const char* tag;
    const char* item;  ///< as the simulator is asked
    double value;      ///< as it answers
    const char* reply;
  };
  const Case cases[] = {
      {"WATER_PRODUCTION_RATE_FIELD", "WATER_PRODUCTION_RATE", 15.8987, "100"},
      {"water_production_rate_FIELD", "water_production_rate", 15.8987, "100"},
      {"GAS_INJECTION_RATE_FIELD", "GAS_INJECTION_RATE", 28174.0, "1"},
      {"RES_VOLUME_PRODUCTION_CUML_FIELD", "RES_VOLUME_PRODUCTION_CUML", 158987.0, "1"},
      {"RES_VOLUME_INJECTION_RATE_FIELD_2", "RES_VOLUME_INJECTION_RATE", 15.8987, "100"},
      {"WATER_PRODUCTION_RATE", "WATER_PRODUCTION_RATE", 15.8987, "15.8987"},
      {"WATER_PRODUCTION_RATE_field", "WATER_PRODUCTION_RATE_field", 15.8987, "15.8987"},
      {"WATER_CUT_FIELD", "WATER_CUT", 0.5, "0.5"},
      {"CurGasRates", "CurGasRates", 3.0, "3"},
      {"A(B)", "A(B)", 3.0, "3"},
  };
  ScriptedPeer peer;
  GreetMetricConnector(peer);
  for (const Case& c : cases) {
    peer.Answer(WellQuestion("P1", c.item), WellAnswer("P1", c.item, c.value));
  }
  peer.Start();
  const auto connector = CreateLocalConnector(kVersion2016_2, peer.Port());
  Source source = WellNamed("P1");
  for (const Case& c : cases) {
    EXPECT_EQ(Read(source, c.tag, connector.get()), (Answer{true, c.reply, ""})) << c.tag;
  }
}

TEST(Source, SetsAnyOtherVariableInTheSimulator) {
  struct Case {
    const char* tag;
    const char* value;
    const char* item;
    double sent;
  };
  const Case cases[] = {
      {"OIL_PRODUCTION_RATE_FIELD", "100", "OIL_PRODUCTION_RATE", 100.0 * 0.158987},
      {"OIL_PRODUCTION_RATE", "100", "OIL_PRODUCTION_RATE", 100.0},
      {"ANYTHING", "none", "ANYTHING", 0.0},
  };
  ScriptedPeer peer;
  GreetMetricConnector(peer);
  for (const Case& c : cases) peer.Answer(WellConstraint("P1", c.item, c.sent));
  peer.Start();
  const auto connector = CreateLocalConnector(kVersion2017_2, peer.Port());
  Source source = WellNamed("P1");
  for (const Case& c : cases) {
    EXPECT_EQ(Write(source, c.tag, c.value, connector.get()), (Answer{true, "", ""})) << c.tag;
  }
}

TEST(Source, TellsWhatFailedInTheSimulatorAndLeavesTheTagUnhandled) {
  ScriptedPeer peer;
  GreetMetricConnector(peer)
      .Answer(WellQuestion("P1", "X"), WellAnswer("P1", "Y", 1.0))
      .Expect(WellConstraint("P1", "X", 1.0))
      .Start();
  const auto connector = CreateLocalConnector(kVersion2017_2, peer.Port());
  Source source = WellNamed("P1");
  EXPECT_EQ(
      Read(source, "X_FIELD", connector.get()),
      (Answer{false, "", "Error retrieving X, Unexpected answer when querying the well data."}));
  const Answer gone = Write(source, "X", "1", connector.get());
  EXPECT_FALSE(gone.handled);
  EXPECT_TRUE(gone.error.starts_with("Error setting X, ")) << gone.error;
}

TEST(Source, IsClassifiedByTheSimulatorsExactWords) {
  const std::pair<const char*, int32_t> types[] = {{"PRODUCER", 0},
                                                   {"WATER_INJECTOR", 1},
                                                   {"GAS_INJECTOR", 2},
                                                   {"INJECTOR", 3},
                                                   {"injector", 0}};
  for (const auto& [text, code] : types) EXPECT_EQ(ClassifyWellType(text), code) << text;
  const std::pair<const char*, int32_t> states[] = {{"OPEN", 2},
                                                    {"SURFACE_SHUTIN", 1},
                                                    {"SURFACE_ABANDONED", 1},
                                                    {"ALL_COMPLETIONS_SHUTIN", 0},
                                                    {"ALL_COMPLETIONS_ABANDONED", 0},
                                                    {"SHUT", 2}};
  for (const auto& [text, code] : states) EXPECT_EQ(ClassifyWellState(text), code) << text;
}

TEST(Source, IsAGasWellWhenItsWholeInflowMakesMuchGasToItsLiquid) {
  const auto isGasWell = [](std::vector<std::array<double, 3>> gasOilWater) {
    Source source;
    for (const auto& [gas, oil, water] : gasOilWater) {
      IPRPoint& point = source.SimulatorIPR.emplace_back();
      point.GasRate = gas;
      point.OilRate = oil;
      point.WaterRate = water;
    }
    return source.IsGasWell();
  };
  EXPECT_FALSE(isGasWell({}));
  EXPECT_FALSE(isGasWell({{20.0, 900.0, 100.0}})) << "exactly the limit";
  EXPECT_TRUE(isGasWell({{20.0, 900.0, 50.0}, {1.0, 10.0, 10.0}}));
  EXPECT_FALSE(isGasWell({{20.0, 0.5, 0.5}})) << "hardly a liquid";
}

TEST(Source, IsControlledByItsTypeItsModeAndItsGasLiquidRatio) {
  struct Case {
    int32_t type;
    int32_t opMode;
    double oil, water, gas;
    const char* expected;  ///< item, value and unit code of each control
  };
  const Case cases[] = {
      {kProducer, 0, 80, 20, 1.0, "LIQUID_PRODUCTION_RATE 100 0;"},
      {kProducer, 0, 80, 20, 1.01, "GAS_PRODUCTION_RATE 1.01 1;"},
      {kProducer, 0, 0.25, 0.25, 0, "GAS_PRODUCTION_RATE 0 1;"},
      {kProducer, 0, 0.5, 0.25, 0, "LIQUID_PRODUCTION_RATE 0.75 0;"},
      {kProducer, 1, 80, 20, 9, "GAS_PRODUCTION_RATE 9 1;LIQUID_PRODUCTION_RATE 100 0;"},
      {kProducer, 2, 80, 20, 9, "LIQUID_PRODUCTION_RATE 100 0;"},
      {kProducer, 3, 80, 20, 9, "GAS_PRODUCTION_RATE 9 1;"},
      {kProducer, 17, 80, 20, 9, "LIQUID_PRODUCTION_RATE 100 0;"},
      {kWaterInjector, 1, 80, 20, 9, "WATER_INJECTION_RATE 20 0;"},
      {kGasInjector, 2, 80, 20, 9, "GAS_INJECTION_RATE 9 1;"},
      {kInjector, 3, 80, 20, 9, "WATER_INJECTION_RATE 20 0;"},
  };
  WellControl control;
  for (const Case& c : cases) {
    Source source;
    source.SourceType = c.type;
    source.OpPoint.OilRate = c.oil;
    source.OpPoint.WaterRate = c.water;
    source.OpPoint.GasRate = c.gas;
    ChooseControl(source, c.opMode, control);
    std::ostringstream shown;
    for (size_t i = 0; i < control.items.size(); ++i) {
      shown << control.items[i] << ' ' << control.values.at(i) << ' ' << control.codes.at(i) << ';';
    }
    EXPECT_EQ(shown.str(), c.expected) << "type " << c.type << ", mode " << c.opMode;
  }
}

}  // namespace
}  // namespace gantry
