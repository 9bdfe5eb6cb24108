#include "client/inflow_sweep.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <stdexcept>

#include "client/intersect_client.h"
#include "client/item_names.h"
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

/// The simulator may have answered in an order of its own, so a record finds its well by its name.
std::vector<size_t> WellsOf(const std::vector<ConnectorWellRecord>& records, const Strings& wells) {
  Strings names;
  names.reserve(records.size());
  for (const ConnectorWellRecord& record : records) names.push_back(record.name);
  std::vector<size_t> places = WellLookup(names).PlacesIn(wells);
  const bool allFound = std::ranges::find(places, WellLookup::kMissing) == places.end();
  if (!allFound || records.size() != wells.size()) FailInflow();
  return places;
}

class Sweep {
 public:
  Sweep(IntersectClientBase& client, const Strings& wells, const InflowSweepRequest& request,
        std::vector<ConnectorWellRecord>& records);

  void Run();

 private:
  void FindKinds();
  void ReserveRecords();
  void FindItems(const Strings& replied);
  void ReadRung(bool isFirst);
  void AppendPoint(const WellKind& kind, std::span<const double> row, ConnectorWellRecord& record);
  void NoteBaseRates(std::span<const double> row, Ladder& ladder);
  void LimitTo(double fraction);

  double At(std::span<const double> row, size_t item) const { return row[itemPlaces_[item]]; }

  IntersectClientBase& client_;
  const Strings& wells_;
  const InflowSweepRequest& request_;
  std::vector<ConnectorWellRecord>& records_;
  std::vector<size_t> wellOfRecord_;  ///< the place of each record's well among `wells_`
  WellLookup lookup_;
  Strings items_;
  std::vector<size_t> itemPlaces_;
  std::vector<Ladder> ladders_;
  std::vector<WellConstraints> constraints_;
  WellQueryResult reply_;
};

Sweep::Sweep(IntersectClientBase& client, const Strings& wells, const InflowSweepRequest& request,
             std::vector<ConnectorWellRecord>& records)
    : client_(client),
      wells_(wells),
      request_(request),
      records_(records),
      lookup_(wells),
      items_(kResultItems.begin(), kResultItems.end()) {
  AppendMoleFractionItems(request.componentCount, items_);
  itemPlaces_.resize(items_.size());
}

void Sweep::Run() {
  FindKinds();
  wellOfRecord_ = WellsOf(records_, wells_);
  ReserveRecords();
  for (Ladder& ladder : ladders_) ladder.Limit(request_.firstLiquidRate, request_.firstGasRate);
  for (int rung = 0; rung < kSweepRungs; ++rung) {
    client_.set_constraints_for_wells(wells_, constraints_);
    ReadRung(rung == 0);
    const double share = static_cast<double>(kSweepRungs - (rung + 1)) / kSweepRungs;
    LimitTo(std::pow(share, request_.skewness));
  }
}

void Sweep::FindKinds() {
  const WellQueryStringResult types = client_.query_wells_as_strings(wells_, {"TYPE"});
  const std::vector<size_t>& places = lookup_.PlacesIn(types.wells);
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

void Sweep::ReserveRecords() {
  for (ConnectorWellRecord& record : records_) {
    for (Doubles* points : {&record.iprPressure, &record.iprOilRate, &record.iprWaterRate,
                            &record.iprGasRate, &record.iprTemperature, &record.iprGasDensity,
                            &record.iprOilDensity, &record.iprWaterDensity}) {
      points->reserve(points->size() + kSweepRungs);
    }
    if (request_.componentCount <= 0) continue;
    record.iprComposition.Reserve(kSweepRungs, kSweepRungs * (items_.size() - kFirstMoleFraction));
  }
}

void Sweep::ReadRung(bool isFirst) {
  client_.query_wells(wells_, items_, reply_);
  FindItems(reply_.items);
  const std::vector<size_t>& places = lookup_.PlacesIn(reply_.wells);
  for (size_t i = 0; i < records_.size(); ++i) {
    const size_t well = wellOfRecord_[i];
    if (places[well] == WellLookup::kMissing) FailInflow();
    const std::span<const double> row = reply_.values[places[well]];
    AppendPoint(*ladders_[well].kind, row, records_[i]);
    if (isFirst) NoteBaseRates(row, ladders_[well]);
  }
}

void Sweep::FindItems(const Strings& replied) {
  for (size_t item = 0; item < items_.size(); ++item) {
    const auto found = std::find(replied.begin(), replied.end(), items_[item]);
    if (found == replied.end()) FailInflow();
    itemPlaces_[item] = static_cast<size_t>(found - replied.begin());
  }
}

void Sweep::AppendPoint(const WellKind& kind, std::span<const double> row,
                        ConnectorWellRecord& record) {
  record.iprOilRate.push_back(At(row, kOilProduction));
  record.iprGasRate.push_back(At(row, kind.gasRate));
  record.iprWaterRate.push_back(At(row, kind.waterRate));
  record.iprPressure.push_back(
      At(row, request_.useBottomHolePressure ? kBottomHolePressure : kTubingHeadPressure));
  record.iprTemperature.push_back(At(row, kTemperature));
  record.iprOilDensity.push_back(At(row, kOilDensity));
  record.iprGasDensity.push_back(At(row, kGasDensity));
  record.iprWaterDensity.push_back(At(row, kWaterDensity));
  if (request_.componentCount <= 0) return;
  Doubles& fractions = record.iprComposition.Flat();
  for (size_t i = kFirstMoleFraction; i < items_.size(); ++i) fractions.push_back(At(row, i));
  record.iprComposition.EndRow();
}

void Sweep::NoteBaseRates(std::span<const double> row, Ladder& ladder) {
  ladder.baseGasRate = At(row, ladder.kind->gasRate);
  ladder.baseLiquidRate = At(row, ladder.kind->waterRate);
  if (ladder.kind->isProducer) ladder.baseLiquidRate += At(row, kOilProduction);
}

void Sweep::LimitTo(double fraction) {
  for (Ladder& ladder : ladders_) {
    ladder.Limit(fraction * ladder.baseLiquidRate, fraction * ladder.baseGasRate);
  }
}

}  // namespace

void MeasureInflow(IntersectClientBase& client, const Strings& wells,
                   const InflowSweepRequest& request, std::vector<ConnectorWellRecord>& records) {
  if (wells.empty()) return;
  Sweep(client, wells, request, records).Run();
}

}  // namespace gantry
