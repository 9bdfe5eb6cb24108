#include "fieldrun/case/case_keys.h"

#include "boundary/parallel_range.h"

namespace gantry::fieldrun {
namespace {

using enum Quantity;

// What is usual is what the largest wells and fields of the world don't reach; a wellhead below the
// air's pressure is rare.
constexpr Range kWellheadPressure{.low = -kAtmosphere, .usualLow = -1, .usualHigh = 10'000};
constexpr Range kBottomHolePressure{.low = -kAtmosphere, .usualLow = -1, .usualHigh = 25'000};
constexpr Range kTubingTemperature{.low = 0, .high = 600, .usualLow = 20, .usualHigh = 500};
constexpr Range kFraction{.low = 0, .high = 1};
constexpr Range kWellLiquid{.low = 0, .usualHigh = 200'000};
constexpr Range kWellGas{.low = 0, .usualHigh = 1000};
constexpr Range kGroupLiquid{.low = 0, .usualHigh = 10'000'000};
constexpr Range kGroupGas{.low = 0, .usualHigh = 20'000};

constexpr unsigned Bit(WellKind kind) { return 1U << static_cast<unsigned>(kind); }
constexpr unsigned kProducers = Bit(WellKind::kProducer);
constexpr unsigned kWaterInjectors = Bit(WellKind::kWaterInjector);
constexpr unsigned kGasInjectors = Bit(WellKind::kGasInjector);
constexpr unsigned kInjectors = kWaterInjectors | kGasInjectors;

constexpr KeyRow<GeneralSpec> kGeneralKeys[] = {
    {Key("title", "what the report is headed with").Else("the file's name"), &GeneralSpec::title},
    {Key("units", "units of every number of this file and of the results")
         .OneOf("field|metric")
         .Else("field"),
     &GeneralSpec::units},
    {Key("output", "folder for the results, from the file's own folder").Else("results"),
     &GeneralSpec::output},
};

constexpr KeyRow<SimulatorSpec> kSimulatorKeys[] = {
    {Key("deck", "the simulator's dataset (.afi), from the file's own folder").Needed(),
     &SimulatorSpec::deck},
    {Key("executable", "the simulator to start")
         .Else("the machine's own, else the tanksim beside fieldrun"),
     &SimulatorSpec::executable},
    {Key("connection", "where the simulator runs").OneOf("local|cluster").Else("local"),
     &SimulatorSpec::connection},
    {Key("head_node", "a cluster's head node"), &SimulatorSpec::headNode},
    {Key("head_node_port", "port of the service on the head node")
         .In({.low = 1, .high = 65535})
         .Else("7777"),
     &SimulatorSpec::headNodePort},
    {Key("cluster_version", "version of the simulator's interface on the cluster")
         .In({.low = 0})
         .Else("100000, the most recent"),
     &SimulatorSpec::clusterVersion},
    {Key("parallel", "number of simulator processes")
         .In({.low = kLeastParallel, .high = kMostParallel})
         .Else("1"),
     &SimulatorSpec::parallel},
    {Key("inflow_model", "how a well's inflow is built").OneOf("block|drainage").Else("drainage"),
     &SimulatorSpec::inflowModel},
    {Key("close_unconnected_wells", "shut the wells that the network doesn't take").Else("false"),
     &SimulatorSpec::closeUnconnectedWells},
    {Key("standard_log", "ask the simulator for its own log").Else("false"),
     &SimulatorSpec::standardLog},
    {Key("label", "name of the simulator in the field model"), &SimulatorSpec::label},
    {Key("store_file",
         "state file of the inflow model, from the file's own folder; read when it exists"),
     &SimulatorSpec::storeFile},
};

constexpr KeyRow<TimeSpec> kTimeKeys[] = {
    {Key("start", "first day of the run; the simulator is run up to it alone")
         .Else("the simulator's date"),
     &TimeSpec::start},
    {Key("end", "day on which the run ends"), &TimeSpec::end},
    {Key("duration", "length of the run", kDays)
         .In({.low = 1e-3, .usualLow = 1, .usualHigh = 36525}),
     &TimeSpec::duration},
    {Key("steps", "number of steps").In({.low = 1, .usualHigh = 10000}), &TimeSpec::steps},
    {Key("step", "length of a step: days, or \"month\" for calendar months", kDays)
         .In({.low = 1e-3, .usualLow = 0.01, .usualHigh = 366})
         .OneOf("month")
         .Else("\"month\""),
     &TimeSpec::stepDays},
};

constexpr KeyRow<NetworkSpec> kNetworkKeys[] = {
    {Key("manifold_pressure", "pressure at the head of every tubing", kGaugePressure)
         .In(kWellheadPressure),
     &NetworkSpec::manifoldPressure},
    {Key("oil_gravity", "stock-tank oil in the tubings, water = 1")
         .In({.low = 0.3, .high = 1.2})
         .Else("as the simulator reports it"),
     &NetworkSpec::oilGravity},
    {Key("gas_gravity", "gas in the tubings, air = 1")
         .In({.low = 0.5, .high = 2})
         .Else("as the simulator reports it, 0.7 if that can't be a surface gas"),
     &NetworkSpec::gasGravity},
    {Key("water_gravity", "water in the tubings, fresh water = 1")
         .In({.low = 0.9, .high = 1.5})
         .Else("as the simulator reports it"),
     &NetworkSpec::waterGravity},
    {Key("apply_early", "send the controls by a command of their own, ahead of the step")
         .Else("false"),
     &NetworkSpec::applyEarly},
};

constexpr KeyRow<TubingSpec> kTubingKeys[] = {
    {Key("name", "by which wells refer to it").Needed(), &TubingSpec::name},
    {Key("vfp",
         "file with its lift table (VFPPROD or VFPINJ), from the file's own folder, in place of "
         "all below but vfp_table")
         .Else("its pressure is computed"),
     &TubingSpec::vfp},
    {Key("vfp_table", "number of the lift table in that file")
         .In({.low = 1})
         .Else("the only one there"),
     &TubingSpec::vfpTable},
    {Key("depth", "vertical depth of its lower end", kLength)
         .In({.low = 1, .high = 50000, .usualLow = 100, .usualHigh = 35000})
         .Else("required without vfp"),
     &TubingSpec::depth},
    {Key("length", "length along the hole", kLength)
         .In({.low = 1, .high = 100000, .usualLow = 100, .usualHigh = 50000})
         .Else("depth"),
     &TubingSpec::length},
    {Key("diameter", "inner diameter", kDiameter)
         .In({.low = 0.1, .high = 60, .usualLow = 0.75, .usualHigh = 20})
         .Else("required without vfp"),
     &TubingSpec::diameter},
    {Key("roughness", "wall roughness", kDiameter)
         .In({.low = 0, .high = 1, .usualHigh = 0.1})
         .Else("0.0006 in"),
     &TubingSpec::roughness},
    {Key("wellhead_temperature", "of the fluid at the upper end", kTemperature)
         .In(kTubingTemperature)
         .Else("100 degF"),
     &TubingSpec::wellheadTemperature},
    {Key("bottom_temperature", "of the fluid at the lower end", kTemperature)
         .In(kTubingTemperature)
         .Else("200 degF"),
     &TubingSpec::bottomTemperature},
};

constexpr KeyRow<WellSpec> kWellKeys[] = {
    {Key("name", "the well's name in the simulator").Needed(), &WellSpec::name},
    {Key("kind", "what the well is in the simulator")
         .OneOf("producer|water_injector|gas_injector")
         .Needed(),
     &WellSpec::kind},
    {Key("connected", "false leaves the well to the simulator").Else("true"), &WellSpec::connected},
    {Key("control", "the rate by which the simulator holds a producer")
         .OneOf("rate|combined|liquid|gas")
         .Else("rate")
         .For(kProducers),
     &WellSpec::control},
    {Key("downtime", "fraction of each step for which the well is down")
         .In({.low = 0, .high = 1, .usualHigh = 0.99})
         .Else("0"),
     &WellSpec::downtime},
    {Key("tubing",
         "the tubing to the manifold, of an injector one with a lift table; none: no lift curve"),
     &WellSpec::tubing},
    {Key("manifold_pressure", "pressure at the head of its tubing", kGaugePressure)
         .In(kWellheadPressure)
         .Else("that of [network]"),
     &WellSpec::manifoldPressure},
    {Key("artificial_lift",
         "producer: artificial lift at which its lift table is read, in the table's units")
         .In({.low = 0})
         .Else("0")
         .For(kProducers),
     &WellSpec::artificialLift},
    {Key("min_bottom_hole_pressure", "producer: lowest flowing pressure", kGaugePressure)
         .In(kBottomHolePressure)
         .For(kProducers),
     &WellSpec::minBottomHolePressure},
    {Key("max_oil", "producer: oil limit", kLiquidRate).In(kWellLiquid).For(kProducers),
     &WellSpec::maxOil},
    {Key("max_water", "producer: water limit", kLiquidRate).In(kWellLiquid).For(kProducers),
     &WellSpec::maxWater},
    {Key("max_liquid", "producer: liquid limit", kLiquidRate).In(kWellLiquid).For(kProducers),
     &WellSpec::maxLiquid},
    {Key("max_gas", "producer: gas limit", kGasRate).In(kWellGas).For(kProducers),
     &WellSpec::maxGas},
    {Key("min_oil", "producer: below this oil rate the well is shut for good", kLiquidRate)
         .In({.low = 0, .usualHigh = 10000})
         .For(kProducers),
     &WellSpec::minOil},
    {Key("max_water_cut", "producer: above this water cut the well is shut for good")
         .In(kFraction)
         .For(kProducers),
     &WellSpec::maxWaterCut},
    {Key("max_gas_oil_ratio", "producer: above this ratio the well is shut for good",
         kGasLiquidRatio)
         .In({.low = 0, .usualLow = 50, .usualHigh = 1e6})
         .For(kProducers),
     &WellSpec::maxGasOilRatio},
    {Key("water_rate", "water injector: rate to inject", kLiquidRate)
         .In(kWellLiquid)
         .For(kWaterInjectors),
     &WellSpec::waterRate},
    {Key("gas_rate", "gas injector: rate to inject", kGasRate).In(kWellGas).For(kGasInjectors),
     &WellSpec::gasRate},
    {Key("bottom_hole_pressure", "injector: pressure to inject at, in place of a rate",
         kGaugePressure)
         .In(kBottomHolePressure)
         .For(kInjectors),
     &WellSpec::bottomHolePressure},
    {Key("max_bottom_hole_pressure", "injector: highest flowing pressure", kGaugePressure)
         .In(kBottomHolePressure)
         .For(kInjectors),
     &WellSpec::maxBottomHolePressure},
    {Key("composition",
         "gas injector of a compositional run: mole fractions, in the simulator's order of "
         "components, sent with each step")
         .In(kFraction)
         .Else("the first component alone")
         .For(kGasInjectors),
     &WellSpec::composition},
};

constexpr KeyRow<GroupSpec> kGroupKeys[] = {
    {Key("name", "as the results call it").Needed(), &GroupSpec::name},
    {Key("wells", "its wells").Else("every connected well"), &GroupSpec::wells},
    {Key("method",
         "how producers give way: all by the same factor, or the one with the most of what is "
         "limited for each barrel of oil first")
         .OneOf("scale|rank")
         .Else("scale"),
     &GroupSpec::method},
    {Key("max_oil", "oil limit", kLiquidRate).In(kGroupLiquid), &GroupSpec::maxOil},
    {Key("max_water", "water limit", kLiquidRate).In(kGroupLiquid), &GroupSpec::maxWater},
    {Key("max_liquid", "liquid limit", kLiquidRate).In(kGroupLiquid), &GroupSpec::maxLiquid},
    {Key("max_gas", "gas limit", kGasRate).In(kGroupGas), &GroupSpec::maxGas},
    {Key("max_water_injection", "limit on the water injected", kLiquidRate).In(kGroupLiquid),
     &GroupSpec::maxWaterInjection},
    {Key("max_gas_injection", "limit on the gas injected", kGasRate).In(kGroupGas),
     &GroupSpec::maxGasInjection},
};

constexpr KeyRow<EventSpec> kEventKeys[] = {
    {Key("date", "first day on which it holds; a step ends there"), &EventSpec::date},
    {Key("when",
         "in place of a date: it happens once, after the step in which this comes true, like \"P1 "
         "water_cut > 0.8\", \"plant liquid < 900\" or \"field oil < 500\""),
     &EventSpec::when},
    {Key("well", "the well that it is about"), &EventSpec::well},
    {Key("wells", "the wells that it is about"), &EventSpec::wells},
    {Key("group", "the group that it is about; what only wells have changes for its wells")
         .Else("without well, wells and group: the field"),
     &EventSpec::group},
    {Key("action",
         "what becomes of the wells; one that is drilled isn't there before, one that is opened "
         "may have passed an economic limit")
         .OneOf("open|shut|drill|workover"),
     &EventSpec::action},
    {Key("remove", "keys of limits that don't hold any longer"), &EventSpec::remove},
    {Key("note", "why, as the results tell it"), &EventSpec::note},
};

/// What says which well or group it is stands first in the rows.
constexpr size_t kIdentityOfWell = 3;
constexpr size_t kIdentityOfGroup = 2;

}  // namespace

const CaseParts& CaseSections() {
  static const CaseParts kSections{
      {"case", "what this case is called, its units and its results", &CaseModel::general,
       kGeneralKeys},
      {"simulator", "the dataset and the program that runs it", &CaseModel::simulator,
       kSimulatorKeys},
      {"time", "the span of the run: one of end, duration and steps, and the length of a step",
       &CaseModel::time, kTimeKeys},
      {"network", "what all wells share above ground", &CaseModel::network, kNetworkKeys},
      {"tubing", "a pipe from the bottom of a well to its manifold", &CaseModel::tubings,
       kTubingKeys},
      {"well", "a well of the network", &CaseModel::wells, kWellKeys},
      {"group", "limits on the sum of several wells, taken in the order of the file",
       &CaseModel::groups, kGroupKeys},
      {"event", "a change on a day, or when a quantity passes a value", &CaseModel::events,
       kEventKeys},
  };
  return kSections;
}

KeyTable<WellSpec> WellKeys() { return kWellKeys; }

KeyTable<WellSpec> ChangesOfWells() { return WellKeys().subspan(kIdentityOfWell); }

KeyTable<GroupSpec> ChangesOfGroups() {
  return KeyTable<GroupSpec>(kGroupKeys).subspan(kIdentityOfGroup);
}

}  // namespace gantry::fieldrun
