#include <cmath>
#include <cstdlib>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "described_toml/calendar.h"
#include "fieldrun/peer_check/rule.h"

// What a controller hears before it asks for wells: the greeting, the model, the first step.

namespace gantry::fieldrun {
namespace {

constexpr double kOldestVersion = 2016.2;  // that a driver takes

void CheckDate(std::span<const int32_t> date) {
  const toml_reader::Date day{date[0], date[1], date[2]};
  Require(toml_reader::IsValid(day), fmt::format("{}, which is no day", fmt::join(date, "-")));
}

void CheckPosition(CheckedSession& session, AlgorithmicPosition due) {
  const auto& client = session.Client();
  Require(client.position() == due, "the position " + position_name(client.position()));
  Require(std::isfinite(client.time()), fmt::format("TIME of {}", client.time()));
  CheckDate(client.date());
}

void CheckGreeting(CheckedSession& session) {
  session.BringTo(Stand::kModelDefinition);
  CheckPosition(session, AlgorithmicPosition::MODEL_DEFINITION);
}

/// The one text that answers for an item of the model.
std::string AskModel(CheckedSession& session, const std::string& item) {
  const auto reply = session.Client().query_reservoir_as_strings({item});
  Require(reply.items == Strings{item}, fmt::format("the items {}", reply.items));
  Require(reply.values[0].size() == 1, fmt::format("{} texts", reply.values[0].size()));
  return reply.values[0].front();
}

void CheckVersion(CheckedSession& session) {
  const std::string text = AskModel(session, "IX_VERSION");
  session.Model().version = std::strtod(text.c_str(), nullptr);
  Require(session.Model().version >= kOldestVersion, '"' + text + '"');
}

void CheckUnits(CheckedSession& session) {
  const std::string text = AskModel(session, "UNIT_SYSTEM");
  Require(!text.empty(), "an empty text");
  session.Model().isMetric = text == "ECLIPSE_METRIC";
}

void CheckFluidModels(CheckedSession& session) {
  const auto reply =
      session.Client().query_reservoir_as_strings({"FM_FLUID_MODEL", "RES_FLUID_MODEL"});
  Require(reply.items == Strings({"FM_FLUID_MODEL", "RES_FLUID_MODEL"}),
          fmt::format("the items {}", reply.items));
  for (size_t row = 0; row < 2; ++row) {
    Require(reply.values[row].size() == 1, fmt::format("{} texts", reply.values[row].size()));
  }
  session.Model().isCompositional = reply.values[0].front() == "COMPOSITIONAL";
}

void CheckStartDate(CheckedSession& session) {
  const auto reply = session.Client().query_reservoir({"START_DATE"});
  Require(reply.items == Strings{"START_DATE"}, fmt::format("the items {}", reply.items));
  Require(reply.values[0].size() == 6, fmt::format("{} integers", reply.values[0].size()));
  CheckDate(reply.values[0]);
}

void CheckComponents(CheckedSession& session) {
  const Strings names = session.Client().get_fm_fluid_model();
  const bool isDue = session.Model().isCompositional;
  Require(!names.empty() || !isDue, "no names of components");
}

void CheckNumbers(std::string_view item, std::span<const double> values) {
  for (const double value : values) {
    Require(std::isfinite(value), fmt::format("{} of {}", item, value));
  }
}

void CheckFluid(CheckedSession& session) {
  const auto fluids = session.Client().get_res_fluid_models();
  Require(!fluids.empty() || !session.Model().isCompositional, "no fluid");
  for (const ReservoirFluidRecord& fluid : fluids) {
    Require(!fluid.componentNames.empty(), "a fluid without components");
    CheckNumbers("BIC", fluid.binaryInteraction);
    for (size_t i = 0; i < fluid.propertyNames.size(); ++i) {
      CheckNumbers(fluid.propertyNames[i], fluid.propertyValues[i]);
    }
  }
}

void CheckFirstStep(CheckedSession& session) {
  session.BringTo(Stand::kBeginNewton);
  CheckPosition(session, AlgorithmicPosition::BEGIN_NEWTON);
}

}  // namespace

Rules SessionRules() {
  using enum Stand;
  return {
      {"start",
       "PROGRAM BASE --dopt=external_controller_port:PORT, in the deck's folder",
       "somebody listens on PORT of 127.0.0.1",
       "the driver knocks for 60 seconds, then gives up",
       "how-the-driver-starts-a-simulator",
       {},
       [](CheckedSession& session) { session.BringTo(kConnected); },
       kNothing},
      {"greeting",
       "SETUP VERSION{V2}",
       "STARTED ERRORS{}, then STEP with POSITION{MODEL_DEFINITION}, a finite TIME and a DATE of "
       "the "
       "calendar",
       "no session begins without",
       "session",
       {"start"},
       CheckGreeting,
       kConnected},
      {"version",
       "QUERY QRESVR_STR QITEMS{IX_VERSION}",
       "that one item with one text, a number from 2016.2",
       "the driver refuses older ones, and texts",
       "queries",
       {"greeting"},
       CheckVersion,
       kModelDefinition},
      {"unit system",
       "QUERY QRESVR_STR QITEMS{UNIT_SYSTEM}",
       "that one item with one text",
       "all numbers are converted by it",
       "units",
       {"greeting"},
       CheckUnits,
       kModelDefinition},
      {"fluid models",
       "QUERY QRESVR_STR QITEMS{FM_FLUID_MODEL, RES_FLUID_MODEL}",
       "both items in this order, with one text each",
       "it tells whether components are asked for",
       "queries",
       {"greeting"},
       CheckFluidModels,
       kModelDefinition},
      {"start date",
       "QUERY QRESVR QITEMS{START_DATE}",
       "that one item with six integers, a day of the calendar",
       "the host's dates count from it",
       "queries",
       {"greeting"},
       CheckStartDate,
       kModelDefinition},
      {"components",
       "QUERY QFMFLUIDMODEL",
       "NCOMPS with the names of the components, or nothing for a black oil",
       "later drivers may ask",
       "queries",
       {"fluid models"},
       CheckComponents,
       kModelDefinition},
      {"equation of state",
       "QUERY QRFLUIDMODEL",
       "a fluid with its components, and of each property as many finite values; nothing for a "
       "black "
       "oil",
       "the host's fluid is made of it",
       "queries",
       {"fluid models"},
       CheckFluid,
       kModelDefinition},
      {"first step",
       "CONTINUE",
       "STEP with POSITION{BEGIN_NEWTON}, a finite TIME and a DATE of the calendar",
       "wells are asked for from here on",
       "session",
       {"greeting"},
       CheckFirstStep,
       kModelDefinition},
  };
}

}  // namespace gantry::fieldrun
