#include <algorithm>
#include <cmath>
#include <set>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "client/inflow_sweep.h"
#include "client/item_names.h"
#include "client/words.h"
#include "described_toml/calendar.h"
#include "fieldrun/peer_check/well_talk.h"

// What a controller asks of wells and orders, and a step.

namespace gantry::fieldrun {
namespace {

constexpr double kSkewness = 2.5;  // of a driver's sweep
constexpr double kSlack = 1.02;    // what a solver may leave a rate above its limit

void CheckWells(CheckedSession& session) {
  const Strings items = {words::kType, words::kStatus};
  const auto reply = session.Client().query_wells_as_strings({"*"}, items);
  Require(reply.items == items, fmt::format("the items {}", reply.items));
  Require(!reply.wells.empty(), "no well");
  const std::set<std::string> names(reply.wells.begin(), reply.wells.end());
  Require(names.size() == reply.wells.size() && !names.contains(""),
          fmt::format("the wells {}", reply.wells));
  std::vector<PeerWell>& wells = session.Model().wells;
  wells.clear();
  for (size_t i = 0; i < reply.wells.size(); ++i) {
    Require(!reply.values[i][0].empty(), "no TYPE of well " + reply.wells[i]);
    wells.push_back({reply.wells[i], reply.values[i][0]});
  }
}

void CheckWellNumbers(CheckedSession& session) {
  const Strings items = {words::kOilProductionRate,   words::kGasProductionRate,
                         words::kWaterProductionRate, words::kWaterInjectionRate,
                         words::kGasInjectionRate,    words::kUptimeFraction,
                         words::kBottomHolePressure,  words::kTubingHeadPressure};
  constexpr size_t kUptime = 5;
  for (const Doubles& row : AskWells(session, items)) {
    Require(row[kUptime] >= 0.0 && row[kUptime] <= 1.0,
            fmt::format("an UPTIME_FRACTION of {}", row[kUptime]));
  }
}

void CheckOneWell(CheckedSession& session) {
  const Strings last = {session.Model().wells.back().name};
  const auto reply = session.Client().query_wells(last, {words::kBottomHolePressure});
  Require(reply.wells == last, fmt::format("the wells {}", reply.wells));
}

/// The limits of a controller that the simulator tells, of one well.
std::vector<std::pair<std::string, double>> UserLimits(const WellConstraintsResult& told,
                                                       const std::string& well) {
  const auto found = std::ranges::find(told.wells, well);
  Require(found != told.wells.end(), "nothing of well " + well);
  const auto place = static_cast<size_t>(found - told.wells.begin());
  std::vector<std::pair<std::string, double>> limits;
  for (size_t i = 0; i < told.items[place].size(); ++i) {
    if (told.setters[place][i] != words::kUser) continue;
    limits.emplace_back(told.items[place][i], told.values[place][i]);
  }
  return limits;
}

void CheckLimitsTold(CheckedSession& session) {
  constexpr double kLimit = 12.5;
  const std::vector<PeerWell>& wells = session.Model().wells;
  LimitWells(session, Doubles(wells.size(), kLimit));
  const auto told = session.Client().get_constraints_for_wells({"*"});
  for (const PeerWell& well : wells) {
    const auto limits = UserLimits(told, well.name);
    const Strings& due = HeldRateOf(well).limits;
    Require(limits.size() == due.size(), fmt::format("well {} with {}", well.name, limits));
    for (const auto& [item, value] : limits) {
      Require(std::ranges::find(due, item) != due.end(), "the item " + item);
      Require(item != due.front() || IsNear(value, kLimit), fmt::format("{} of {}", item, value));
    }
  }
}

/// The most that the wells make or take by themselves. Nothing can be held when none flows.
Doubles AskMost(CheckedSession& session) {
  OpenWells(session);
  FreeWells(session);
  Doubles most = AskHeldRates(session);
  if (std::ranges::all_of(most, [](double rate) { return rate <= 0.0; })) {
    throw NotAsked("no well of this model flows");
  }
  return most;
}

Doubles HalfOf(Doubles rates) {
  for (double& rate : rates) rate *= 0.5;
  return rates;
}

void CheckLimitsHold(CheckedSession& session) {
  const Doubles most = AskMost(session);
  LimitWells(session, HalfOf(most));
  const Doubles held = AskHeldRates(session);
  for (size_t i = 0; i < held.size(); ++i) {
    Require(held[i] <= kSlack * 0.5 * most[i] + 1e-6,
            fmt::format("a rate of {} of well {} under {}", held[i], session.Model().wells[i].name,
                        0.5 * most[i]));
  }
}

void CheckLimitsReplaced(CheckedSession& session) {
  const Doubles most = AskMost(session);
  LimitWells(session, HalfOf(most));
  FreeWells(session);
  const Doubles freed = AskHeldRates(session);
  for (size_t i = 0; i < freed.size(); ++i) {
    Require(IsNear(freed[i], most[i]),
            fmt::format("a rate of {} of well {}, which made {} under the same limits before",
                        freed[i], session.Model().wells[i].name, most[i]));
  }
}

void CheckShut(CheckedSession& session, const char* status) {
  const Strings wells = session.Model().WellNames();
  session.Client().set_status_for_wells(wells, Strings(wells.size(), status), words::kUser);
  const Doubles rates = AskHeldRates(session);
  OpenWells(session);
  for (size_t i = 0; i < rates.size(); ++i) {
    Require(std::abs(rates[i]) < 1e-6, fmt::format("a rate of {} of well {}", rates[i], wells[i]));
  }
}

void CheckUptime(CheckedSession& session) {
  constexpr double kHalf = 0.5;
  const Strings wells = session.Model().WellNames();
  session.Client().set_uptime_fractions_for_wells(wells, Doubles(wells.size(), kHalf));
  const std::vector<Doubles> rows = AskWells(session, {words::kUptimeFraction});
  session.Client().set_uptime_fractions_for_wells(wells, Doubles(wells.size(), 1.0));
  for (const Doubles& row : rows) {
    Require(IsNear(row[0], kHalf), fmt::format("an UPTIME_FRACTION of {}", row[0]));
  }
}

void CheckInjectedGas(CheckedSession& session) {
  constexpr double kFirstWithSources = 2017.2;
  const PeerModel& model = session.Model();
  const auto isGasInjector = [](const PeerWell& well) { return well.type == words::kGasInjector; };
  const auto well = std::ranges::find_if(model.wells, isGasInjector);
  if (model.version < kFirstWithSources) throw NotAsked("sources come with version 2017.2");
  if (!model.isCompositional) throw NotAsked("the model is a black oil");
  if (well == model.wells.end()) throw NotAsked("the model has no gas injector");
  const std::string source = well->name + "_CHECK";
  Require(session.Client().create_fluid_source_external(well->name, source, "GAS"), "STRET of 0");
  const size_t count = session.Client().get_res_fluid_models().at(0).componentNames.size();
  Strings items;
  AppendMoleFractionItems(static_cast<int32_t>(count), items);
  const Doubles fractions(count, 1.0 / static_cast<double>(count));
  session.Client().set_composition_of_fluid_source_external(source, fractions, items, "");
}

void CheckRung(const Doubles& rates, const std::string& well, const char* what) {
  for (size_t rung = 0; rung < rates.size(); ++rung) {
    Require(std::isfinite(rates[rung]),
            fmt::format("{} of {} of well {}", what, rates[rung], well));
    const double share = ShareAfter(static_cast<int>(rung), kSkewness);
    Require(rung == 0 || rates[rung] <= kSlack * share * rates[0] + 1e-6,
            fmt::format("{} of {} of well {} on rung {}, where {} is the limit", what, rates[rung],
                        well, rung + 1, share * rates[0]));
  }
}

void CheckFinite(const ConnectorWellRecord& record) {
  for (const Doubles* list : {&record.iprPressure, &record.iprOilRate, &record.iprWaterRate,
                              &record.iprGasRate, &record.iprTemperature, &record.iprGasDensity,
                              &record.iprOilDensity, &record.iprWaterDensity}) {
    for (const double value : *list) {
      Require(std::isfinite(value), fmt::format("a value of {} of well {}", value, record.name));
    }
  }
}

/// The rates of a sweep that its limits hold, rung by rung.
Doubles HeldOf(const ConnectorWellRecord& record, const PeerWell& well) {
  if (well.type != words::kProducer && well.type != words::kWaterInjector) return record.iprGasRate;
  Doubles liquid = record.iprWaterRate;
  if (well.type != words::kProducer) return liquid;
  for (size_t i = 0; i < liquid.size(); ++i) liquid[i] += record.iprOilRate[i];
  return liquid;
}

/// As a driver measures; the records stand in the order of the wells.
std::vector<ConnectorWellRecord> Sweep(CheckedSession& session) {
  const PeerModel& model = session.Model();
  std::vector<ConnectorWellRecord> records;
  for (const std::string& well : model.WellNames()) records.emplace_back().name = well;
  InflowRequest request;
  request.skewness = kSkewness;
  if (model.isCompositional) {
    const auto fluids = session.Client().get_res_fluid_models();
    request.componentCount = static_cast<int32_t>(fluids.at(0).componentNames.size());
  }
  InflowWorkspace workspace;
  MeasureInflow(session.Client(), UnitConverter(model.isMetric), model.WellNames(), request,
                workspace, records);
  return records;
}

void CheckSweep(CheckedSession& session) {
  const std::vector<ConnectorWellRecord> records = Sweep(session);
  for (size_t i = 0; i < records.size(); ++i) {
    CheckFinite(records[i]);
    CheckRung(HeldOf(records[i], session.Model().wells[i]), records[i].name, "a rate");
  }
}

void CheckLastRung(CheckedSession& session) {
  const std::vector<ConnectorWellRecord> records = Sweep(session);
  const Doubles rates = AskHeldRates(session);
  for (size_t i = 0; i < rates.size(); ++i) {
    const double due = HeldOf(records[i], session.Model().wells[i]).back();
    Require(IsNear(rates[i], due), fmt::format("a rate of {} of well {}, which made {} there",
                                               rates[i], records[i].name, due));
  }
}

int DayOf(const std::array<int32_t, 6>& date) {
  return toml_reader::DayNumber({date[0], date[1], date[2]});
}

void CheckStep(CheckedSession& session) {
  constexpr double kClose = 0.001;  // some simulators count in minutes
  const double asked = session.StepDays();
  auto& client = session.Client();
  const double before = client.time();
  const auto date = client.date();
  client.continue_simulation_until(before + asked);
  if (client.position() == AlgorithmicPosition::END_SIMULATE) {
    session.SetOver();
    throw NotAsked("the run ends within that step");
  }
  Require(client.position() == AlgorithmicPosition::BEGIN_NEWTON,
          "the position " + position_name(client.position()));
  Require(std::abs(client.time() - before - asked) < kClose,
          fmt::format("TIME of {}, from {}", client.time(), before));
  const double days = DayOf(client.date()) - DayOf(date);
  Require(std::abs(days - asked) <= 1.0, fmt::format("a DATE that is {} days on", days));
}

void CheckAfterStep(CheckedSession& session) {
  OpenWells(session);
  FreeWells(session);
  session.Client().continue_simulation_until(session.Client().time() + session.StepDays());
  if (session.Client().position() == AlgorithmicPosition::END_SIMULATE) {
    session.SetOver();
    throw NotAsked("the run has ended");
  }
  AskHeldRates(session);
}

}  // namespace

Rules WellRules() {
  using enum Stand;
  return {
      {"wells",
       "QUERY QWELLS_STR QITEMS{TYPE, STATUS} WELNAMES{*}",
       "both items in this order, and every well once with its type and its status",
       "the host's wells are made of it",
       "queries",
       {"first step"},
       CheckWells},
      {"well numbers",
       "QUERY QWELLS with four rates, GAS_INJECTION_RATE, UPTIME_FRACTION and two "
       "pressures of all wells by their names",
       "the same items and wells in the same order, a finite value for each item, a "
       "fraction from 0 to 1",
       "the driver ends the run at any other order; a value that is no number spoils the network",
       "queries",
       {"wells"},
       CheckWellNumbers},
      {"one well",
       "QUERY QWELLS QITEMS{BOTTOM_HOLE_PRESSURE} of the last well",
       "that well alone",
       "text paths read single wells",
       "queries",
       {"well numbers"},
       CheckOneWell},
      {"open wells",
       "SET SETWSTATUS with OPEN for all wells",
       "READY",
       "each measurement begins with it",
       "setters",
       {"well numbers"},
       OpenWells},
      {"limits are told",
       "SET SETWCONSTRAINTS for all wells, then QUERY QWCONSTRAINTS WELNAMES{*}",
       "READY; then each well with its limits, those of USER as they were sent",
       "a host's user reads them to see what holds a well",
       "limits-of-wells",
       {"open wells"},
       CheckLimitsTold},
      {"limits hold",
       "SET SETWCONSTRAINTS with half of what each well makes, then QUERY QWELLS",
       "no rate above its limit, at once and without a step",
       "the driver measures inflow by limits",
       "limits-of-wells",
       {"open wells"},
       CheckLimitsHold},
      {"limits are replaced",
       "SET SETWCONSTRAINTS twice: half of the rates, then another limit alone",
       "the rates from before the first",
       "a new list takes the place of the old one",
       "limits-of-wells",
       {"limits hold"},
       CheckLimitsReplaced},
      {"shut at surface",
       "SET SETWSTATUS with SURFACE_SHUTIN for all wells, then QUERY QWELLS",
       "rates of 0",
       "a query behind a setter sees what it has changed",
       "setters",
       {"open wells"},
       [](CheckedSession& session) { CheckShut(session, words::kSurfaceShut); }},
      {"shut in the completions",
       "SET SETWSTATUS with ALL_COMPLETIONS_SHUTIN for all wells, then QUERY QWELLS",
       "rates of 0",
       "a query behind a setter sees what it has changed",
       "setters",
       {"open wells"},
       [](CheckedSession& session) { CheckShut(session, words::kCompletionsShut); }},
      {"uptime",
       "SET SETWELLS with UPTIME_FRACTION of 0.5, then QUERY QWELLS",
       "0.5 for each well",
       "downtime of the host's plan goes this way",
       "setters",
       {"well numbers"},
       CheckUptime},
      {"injected gas",
       "SET CREATE_FLDSRCEXT for a gas injector, then SET SETWSTRE",
       "REPLY STRET<not 0> and READY; then READY",
       "what is injected follows the host's network",
       "setters",
       {"equation of state"},
       CheckInjectedGas},
      {"sweep",
       "OPEN, the types, then ten times SETWCONSTRAINTS and QWELLS, as a driver measures",
       "all items of the ten answers, finite, and rates within their limits on each rung",
       "this is the inflow that the network is solved with",
       "how-the-driver-measures-inflow",
       {"limits hold"},
       CheckSweep},
      {"last rung",
       "QUERY QWELLS behind the sweep",
       "the rates of its last question",
       "wells stand under its limits until the next orders",
       "how-the-driver-measures-inflow",
       {"sweep"},
       CheckLastRung},
      {"step",
       "CONTINUE_UNTIL TIME[two days on, or as --days says]",
       "STEP POSITION{BEGIN_NEWTON} with that TIME and a DATE as many days on",
       "host and simulator would drift apart",
       "session",
       {"first step"},
       CheckStep},
      {"wells after a step",
       "OPEN, SETWCONSTRAINTS, CONTINUE_UNTIL, then QUERY QWELLS",
       "STEP, then the wells with finite values",
       "each step begins with a reading",
       "queries",
       {"well numbers", "step"},
       CheckAfterStep},
  };
}

}  // namespace gantry::fieldrun
