#include "wells/source.h"

#include <array>
#include <memory>
#include <sstream>

#include <gtest/gtest.h>

#include "client/connector_base.h"
#include "support/well_messages.h"
#include "wells/static_well_data.h"

namespace gantry::test {
namespace {

/// What a tag of well P1 answers to a new value, or without one to a question.
std::string Ask(Source& source, const std::string& tag, const char* value = nullptr,
                TagContext context = nullptr) {
  std::array<char, 512> reply = {"done"};
  TagParser parser =
      value == nullptr ? TagParser::ForReading(tag, reply) : TagParser::ForWriting(tag, value);
  const bool handled = source.Handle(parser, context);
  EXPECT_EQ(handled, parser.ErrorText.empty());
  return handled ? reply.data() : parser.ErrorText;
}

TEST(Source, ReadsAndWritesEachOfItsNumbersByItsOwnTag) {
  Source source;
  const std::pair<const char*, double*> tags[] = {
      {"OnTimeFraction", &source.OnTimeFraction},  {"CurGasRate", &source.Current.GasRate},
      {"CurOilRate", &source.Current.OilRate},     {"CurPressure", &source.Current.Pressure},
      {"CurWaterRate", &source.Current.WaterRate}, {"GasGravity", &source.GasGravity},
      {"OilGravity", &source.OilGravity},          {"WaterGravity", &source.WaterGravity},
  };
  EXPECT_EQ(source.Current.GasRate, -9999.9999) << "none has come yet";
  int number = 0;
  for (const auto& [tag, field] : tags) {
    const std::string text = std::to_string(++number);
    EXPECT_EQ(Ask(source, tag, text.c_str()), "done") << tag;
    EXPECT_EQ(*field, number) << tag;
    EXPECT_EQ(Ask(source, tag), text) << tag;
  }
  EXPECT_EQ(Ask(source, "Name", "P 2"), "done");
  EXPECT_EQ(Ask(source, "name"), "P 2");
}

TEST(Source, PassesAnyOtherVariableToTheSimulator) {
  struct Case {
    const char* tag;
    const char* item;  ///< as the simulator knows it
    double value;      ///< there
    const char* text;  ///< here
  };
  const Case reads[] = {
      {"WATER_PRODUCTION_RATE_FIELD", "WATER_PRODUCTION_RATE", 15.8987, "100"},
      {"water_production_rate_FIELD", "water_production_rate", 15.8987, "100"},
      {"GAS_INJECTION_RATE_FIELD", "GAS_INJECTION_RATE", 28174.0, "1"},
      {"RES_VOLUME_PRODUCTION_CUML_FIELD", "RES_VOLUME_PRODUCTION_CUML", 158987.0, "1"},
      {"RES_VOLUME_INJECTION_RATE_FIELD_2", "RES_VOLUME_INJECTION_RATE", 15.8987, "100"},
      {"WATER_PRODUCTION_RATE_field", "WATER_PRODUCTION_RATE_field", 15.8987, "15.8987"},
      {"WATER_CUT_FIELD", "WATER_CUT", 0.5, "0.5"},
      {"CurGasRates", "CurGasRates", 3.0, "3"},
      {"A(B)", "A(B)", 3.0, "3"},
  };
  const Case writes[] = {
      {"OIL_PRODUCTION_RATE_FIELD", "OIL_PRODUCTION_RATE", 100.0 * 0.158987, "100"},
      {"OIL_PRODUCTION_RATE", "OIL_PRODUCTION_RATE", 100.0, "100"},
      {"ANYTHING", "ANYTHING", 0.0, "none"},
  };
  ScriptedPeer peer;
  GreetMetricConnector(peer);
  for (const auto& [tag, item, value, text] : reads) {
    peer.Answer(WellQuestion("P1", item), WellAnswer("P1", item, value));
  }
  for (const auto& [tag, item, value, text] : writes) {
    peer.Answer(WellConstraint("P1", item, value));
  }
  peer.Answer(WellQuestion("P1", "X"), WellAnswer("P1", "Y", 1.0))
      .Expect(WellConstraint("P1", "X", 1.0))
      .Start();
  const auto connector = CreateLocalConnector(kVersion2017_2, peer.Port());
  Source source;
  source.Name = "P1";
  const auto ask = [&](const char* tag, const char* value = nullptr) {
    return Ask(source, tag, value, connector.get());
  };
  for (const Case& c : reads) EXPECT_EQ(ask(c.tag), c.text) << c.tag;
  for (const Case& c : writes) EXPECT_EQ(ask(c.tag, c.text), "done") << c.tag;
  EXPECT_EQ(ask("X_FIELD"), "Error retrieving X, Unexpected answer when querying the well data.");
  EXPECT_TRUE(ask("X", "1").starts_with("Error setting X, "));
}

TEST(Source, IsClassifiedByTheSimulatorsExactWords) {
  int32_t type = 0;
  for (const char* word : {"PRODUCER", "WATER_INJECTOR", "GAS_INJECTOR", "INJECTOR"}) {
    EXPECT_EQ(ClassifyWellType(word), type++) << word;
  }
  EXPECT_EQ(ClassifyWellType("else"), kProducer);
}

TEST(Source, IsAGasWellWhenItsWholeInflowMakesMuchGasToItsLiquid) {
  const auto isGasWell = [](const std::vector<std::array<double, 3>>& gasOilWater) {
    Source source;
    for (const auto& [gas, oil, water] : gasOilWater) {
      source.SimulatorIPR.push_back({0.0, oil, gas, water, {}});
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
  Strings items;
  Doubles values;
  std::vector<int32_t> codes;
  for (const auto& [type, opMode, oil, water, gas, expected] : cases) {
    Source source;
    source.SourceType = type;
    source.OpPoint = {0.0, oil, gas, water, {}};
    ChooseControl(source, opMode, {items, values, codes});
    std::ostringstream shown;
    for (size_t i = 0; i < items.size(); ++i) {
      shown << items[i] << ' ' << values.at(i) << ' ' << codes.at(i) << ';';
    }
    EXPECT_EQ(shown.str(), expected) << "type " << type << ", mode " << opMode;
  }
}

}  // namespace
}  // namespace gantry::test
