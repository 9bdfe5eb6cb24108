#include "client/inflow_sweep.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <stdexcept>
#include <utility>

#include "client/intersect_client.h"
#include "client/item_names.h"
#include "client/record_fields.h"
#include "client/well_lookup.h"

namespace gantry {

namespace {

/// What is read at each rung. The mole fractions follow behind the last.
enum ResultItem : size_t {
  kOilProduction,
  kGasProduction,
  kWaterProduction,
  kWaterInjection,
  kGasInjection,
  kTemperature,
  kGasDensity,
  kWaterDensity,
  kOilDensity,
  kBottomHolePressure,
  kTubingHeadPressure,
  kFirstMoleFraction,
};

constexpr std::array<const char*, kFirstMoleFraction> kResultItems = {
    "OIL_PRODUCTION_RATE", "GAS_PRODUCTION_RATE",  "WATER_PRODUCTION_RATE", "WATER_INJECTION_RATE",
    "GAS_INJECTION_RATE",  "TEMPERATURE",          "GAS_DENSITY",           "WATER_DENSITY",
    "OIL_DENSITY",         "BOTTOM_HOLE_PRESSURE", "TUBING_HEAD_PRESSURE",
};

/// How a kind of well is forced to a rate, and where its rates are read.
struct WellKind {
  WellKind(const Strings& items, bool isAProducer, bool limitsLiquid, bool limitsGas)
      : limitCount(items.size()),
        isProducer(isAProducer),
        takesLiquid(limitsLiquid),
        takesGas(limitsGas),
        gasRate(isAProducer ? kGasProduction : kGasInjection),
        waterRate(isAProducer ? kWaterProduction : kWaterInjection) {
    constraintItems.AppendStrings("ITEMS", items);
    setters.AppendStrings("SETTERS", Strings(items.size(), "USER"));
  }

  size_t limitCount;
  bool isProducer;
  bool takesLiquid;
  bool takesGas;
  ResultItem gasRate;
  ResultItem waterRate;
  EncodedEntries constraintItems;
  EncodedEntries setters;
};

const WellKind& KindOf(const std::string& type) {
  static const WellKind producer({"LIQUID_PRODUCTION_RATE", "GAS_PRODUCTION_RATE"}, true, true,
                                 true);
  static const WellKind waterInjector({"WATER_INJECTION_RATE"}, false, true, false);
  static const WellKind gasInjector({"GAS_INJECTION_RATE"}, false, false, true);
  if (type == "PRODUCER") return producer;
  return type == "WATER_INJECTOR" ? waterInjector : gasInjector;
}

[[noreturn]] void FailInflow() {
  throw std::runtime_error("Unexpected answer when querying the well IPR data.");
}

/// One well on its way down the ladder.
struct Ladder {
  const WellKind* kind;
  double baseLiquidRate = 0.0;
  double baseGasRate = 0.0;
  std::array<double, 2> limits{};

  void Limit(double liquidRate, double gasRate) {
    size_t next = 0;
    if (kind->takesLiquid) limits[next++] = liquidRate;
    if (kind->takesGas) limits[next++] = gasRate;
  }
};

Strings NamesOf(const std::vector<ConnectorWellRecord>& records) {
  Strings names;
  names.reserve(records.size());
  for (const ConnectorWellRecord& record : records) names.push_back(record.name);
  return names;
}

/// The simulator may have answered in an order of its own, so a record finds its well by its name;
/// one of a name that wasn't asked for takes the well in its position, unless that has its record,
/// or else none. What such a record is worth is for the caller to judge.
std::vector<size_t> WellsOf(WellLookup& records, const Strings& wells) {
  std::vector<size_t> places = records.PlacesIn(wells);
  if (std::ranges::find(places, WellLookup::kMissing) == places.end()) return places;
  const std::vector<size_t> recordOfWell = WellLookup(wells).PlacesIn(records.Asked());
  for (size_t i = 0; i < std::min(places.size(), wells.size()); ++i) {
    const bool isFree = recordOfWell[i] == WellLookup::kMissing;
    if (places[i] == WellLookup::kMissing && isFree) places[i] = i;
  }
  return places;
}

/// A well's answer at one rung, its elements by the items that were asked for.
struct RungRow {
  std::span<const double> values;
  const std::vector<size_t>& columns;

  double operator[](size_t item) const { return values[columns[item]]; }
};

class Sweep {
 public:
  Sweep(IntersectClientBase& client, const Strings& wells, const InflowSweepRequest& request,
        InflowWorkspace& workspace, std::vector<ConnectorWellRecord>& records);

  void Run();

 private:
  using Rung = InflowWorkspace::Rung;

  void FindKinds();
  void ReadRung(Rung& rung);
  void FindColumns(Rung& rung);
  void FindRows(Rung& rung);
  void NoteBaseRates(const Rung& first);
  void LimitTo(double fraction);
  const WellKind& KindOfRecord(size_t place) const;
  void FillRecord(size_t place);
  void Reserve(ConnectorWellRecord& record) const;
  void AppendPoint(const WellKind& kind, const RungRow& row, ConnectorWellRecord& record) const;

  static RungRow RowOf(const Rung& rung, size_t record) {
    return {rung.values[rung.rows[record]], rung.columns};
  }

  IntersectClientBase& client_;
  const Strings& wells_;
  const InflowSweepRequest& request_;
  InflowWorkspace& workspace_;
  std::vector<ConnectorWellRecord>& records_;
  const Strings recordNames_;
  WellLookup recordLookup_;
  std::vector<size_t> wellOfRecord_;  ///< its place among `wells_`, or `WellLookup::kMissing`
  Strings items_;
  std::vector<Ladder> ladders_;
  std::vector<WellConstraints> constraints_;
};

Sweep::Sweep(IntersectClientBase& client, const Strings& wells, const InflowSweepRequest& request,
             InflowWorkspace& workspace, std::vector<ConnectorWellRecord>& records)
    : client_(client),
      wells_(wells),
      request_(request),
      workspace_(workspace),
      records_(records),
      recordNames_(NamesOf(records)),
      recordLookup_(recordNames_),
      items_(kResultItems.begin(), kResultItems.end()) {
  AppendMoleFractionItems(request.componentCount, items_);
}

// The records are filled at the end, one after the other: to visit them all at each rung would
// fetch them from memory ten times over.
void Sweep::Run() {
  FindKinds();
  wellOfRecord_ = WellsOf(recordLookup_, wells_);
  for (Ladder& ladder : ladders_) ladder.Limit(request_.firstLiquidRate, request_.firstGasRate);
  for (size_t rung = 0; rung < kSweepRungs; ++rung) {
    client_.set_constraints_for_wells(wells_, constraints_);
    ReadRung(workspace_.rungs[rung]);
    if (rung == 0) NoteBaseRates(workspace_.rungs[rung]);
    const double share = static_cast<double>(kSweepRungs - (rung + 1)) / kSweepRungs;
    LimitTo(std::pow(share, request_.skewness));
  }
  for (size_t i = 0; i < records_.size(); ++i) FillRecord(i);
}

void Sweep::FindKinds() {
  const WellQueryStringResult types = client_.query_wells_as_strings(wells_, {"TYPE"});
  WellLookup lookup(wells_);
  const std::vector<size_t>& places = lookup.PlacesIn(types.wells);
  ladders_.reserve(wells_.size());
  constraints_.reserve(wells_.size());
  for (const size_t place : places) {
    if (place == WellLookup::kMissing || types.values[place].empty()) {
      throw std::runtime_error("Unexpected answer when querying the well status data.");
    }
    const WellKind& kind = KindOf(types.values[place].front());
    Ladder& ladder = ladders_.emplace_back(Ladder{&kind});
    constraints_.push_back(
        {&kind.constraintItems, std::span(ladder.limits).first(kind.limitCount), &kind.setters});
  }
}

void Sweep::ReadRung(Rung& rung) {
  client_.query_wells(wells_, items_, workspace_.reply);
  FindColumns(rung);
  FindRows(rung);
  std::swap(rung.values, workspace_.reply.values);
}

void Sweep::FindColumns(Rung& rung) {
  const Strings& replied = workspace_.reply.items;
  rung.columns.clear();
  for (const std::string& item : items_) {
    const auto found = std::find(replied.begin(), replied.end(), item);
    if (found == replied.end()) FailInflow();
    rung.columns.push_back(static_cast<size_t>(found - replied.begin()));
  }
}

void Sweep::FindRows(Rung& rung) {
  rung.rows = recordLookup_.PlacesIn(workspace_.reply.wells);
  if (std::ranges::find(rung.rows, WellLookup::kMissing) != rung.rows.end()) FailInflow();
}

void Sweep::NoteBaseRates(const Rung& first) {
  for (size_t i = 0; i < records_.size(); ++i) {
    if (wellOfRecord_[i] == WellLookup::kMissing) continue;
    Ladder& ladder = ladders_[wellOfRecord_[i]];
    const RungRow row = RowOf(first, i);
    ladder.baseGasRate = row[ladder.kind->gasRate];
    ladder.baseLiquidRate = row[ladder.kind->waterRate];
    if (ladder.kind->isProducer) ladder.baseLiquidRate += row[kOilProduction];
  }
}

void Sweep::LimitTo(double fraction) {
  for (const size_t well : wellOfRecord_) {
    if (well == WellLookup::kMissing) continue;
    Ladder& ladder = ladders_[well];
    ladder.Limit(fraction * ladder.baseLiquidRate, fraction * ladder.baseGasRate);
  }
}

const WellKind& Sweep::KindOfRecord(size_t place) const {
  const size_t well = wellOfRecord_[place];
  return well == WellLookup::kMissing ? KindOf("") : *ladders_[well].kind;
}

void Sweep::FillRecord(size_t place) {
  ConnectorWellRecord& record = records_[place];
  Reserve(record);
  const WellKind& kind = KindOfRecord(place);
  for (const Rung& rung : workspace_.rungs) AppendPoint(kind, RowOf(rung, place), record);
}

void Sweep::Reserve(ConnectorWellRecord& record) const {
  for (const InflowField& list : kInflowFields) {
    Doubles& points = record.*list.field;
    points.reserve(points.size() + kSweepRungs);
  }
  if (request_.componentCount <= 0) return;
  record.iprComposition.Reserve(kSweepRungs, kSweepRungs * (items_.size() - kFirstMoleFraction));
}

void Sweep::AppendPoint(const WellKind& kind, const RungRow& row,
                        ConnectorWellRecord& record) const {
  record.iprOilRate.push_back(row[kOilProduction]);
  record.iprGasRate.push_back(row[kind.gasRate]);
  record.iprWaterRate.push_back(row[kind.waterRate]);
  record.iprPressure.push_back(
      row[request_.useBottomHolePressure ? kBottomHolePressure : kTubingHeadPressure]);
  record.iprTemperature.push_back(row[kTemperature]);
  record.iprOilDensity.push_back(row[kOilDensity]);
  record.iprGasDensity.push_back(row[kGasDensity]);
  record.iprWaterDensity.push_back(row[kWaterDensity]);
  if (request_.componentCount <= 0) return;
  Doubles& fractions = record.iprComposition.Flat();
  for (size_t i = kFirstMoleFraction; i < items_.size(); ++i) fractions.push_back(row[i]);
  record.iprComposition.EndRow();
}

}  // namespace

void MeasureInflow(IntersectClientBase& client, const Strings& wells,
                   const InflowSweepRequest& request, InflowWorkspace& workspace,
                   std::vector<ConnectorWellRecord>& records) {
  if (wells.empty()) return;
  Sweep(client, wells, request, workspace, records).Run();
}

}  // namespace gantry
