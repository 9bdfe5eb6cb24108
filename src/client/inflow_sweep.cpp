#include "client/inflow_sweep.h"

#include <algorithm>
#include <array>
#include <span>
#include <stdexcept>
#include <utility>

#include "client/intersect_client.h"
#include "client/item_names.h"
#include "client/well_lookup.h"
#include "client/words.h"

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
    words::kOilProductionRate,  words::kGasProductionRate,  words::kWaterProductionRate,
    words::kWaterInjectionRate, words::kGasInjectionRate,   words::kTemperature,
    words::kGasDensity,         words::kWaterDensity,       words::kOilDensity,
    words::kBottomHolePressure, words::kTubingHeadPressure,
};

/// How a kind of well is forced to a rate, and where its rates are read.
struct WellKind {
  Strings constraintItems;  ///< the limit on liquid, then that on gas
  bool isProducer;
  bool takesLiquid;
  bool takesGas;
  ResultItem gasRate = isProducer ? kGasProduction : kGasInjection;
  ResultItem waterRate = isProducer ? kWaterProduction : kWaterInjection;
};

const WellKind& KindOf(const std::string& type) {
  static const WellKind producer = {
      {words::kLiquidProductionRate, words::kGasProductionRate}, true, true, true};
  static const WellKind waterInjector = {{words::kWaterInjectionRate}, false, true, false};
  static const WellKind gasInjector = {{words::kGasInjectionRate}, false, false, true};
  if (type == words::kProducer) return producer;
  return type == words::kWaterInjector ? waterInjector : gasInjector;
}

[[noreturn]] void FailInflow() {
  throw std::runtime_error("Unexpected answer when querying the well IPR data.");
}

/// One well on its way down the ladder.
struct Ladder {
  const WellKind* kind;
  double baseLiquidRate;
  double baseGasRate;
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
  const double* values = nullptr;
  const size_t* columns = nullptr;

  double operator[](size_t item) const { return values[columns[item]]; }
};

using RungRows = std::array<RungRow, kSweepRungs>;

/// Makes the list longer and returns where the new elements begin.
double* Grow(Doubles& values, size_t count) {
  values.resize(values.size() + count);
  return values.data() + values.size() - count;
}

void AppendColumn(const RungRows& rows, size_t item, Doubles& points) {
  double* point = Grow(points, kSweepRungs);
  for (const RungRow& row : rows) *point++ = row[item];
}

class Sweep {
 public:
  Sweep(IntersectClientBase& client, const Strings& wells, const InflowRequest& request,
        InflowWorkspace& workspace, std::vector<ConnectorWellRecord>& records);

  void Run(const UnitConverter& units, const RecordWork& finish);

 private:
  using Rung = InflowWorkspace::Rung;

  void FindKinds(const UnitConverter& units);
  void EncodeRequests();
  void ReadRung(Rung& rung);
  void FindColumns(Rung& rung);
  void FindRows(Rung& rung);
  void NoteBaseRates(const Rung& first);
  void LimitWell(size_t well, double fraction);
  void LimitTo(double fraction);
  const WellKind& KindOfRecord(size_t place) const;
  void FillRecord(size_t place);
  void AppendCompositions(const RungRows& rows, RowTable<double>& compositions) const;

  static RungRow RowOf(const Rung& rung, size_t record) {
    return {rung.values[rung.rows[record]].data(), rung.columns.data()};
  }

  IntersectClientBase& client_;
  const Strings& wells_;
  const InflowRequest& request_;
  InflowWorkspace& workspace_;
  std::vector<ConnectorWellRecord>& records_;
  const Strings recordNames_;
  WellLookup recordLookup_;
  std::vector<size_t> wellOfRecord_;  ///< its place among `wells_`, or `WellLookup::kMissing`
  Strings items_;
  std::vector<Ladder> ladders_;
};

Sweep::Sweep(IntersectClientBase& client, const Strings& wells, const InflowRequest& request,
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
void Sweep::Run(const UnitConverter& units, const RecordWork& finish) {
  FindKinds(units);
  wellOfRecord_ = WellsOf(recordLookup_, wells_);
  EncodeRequests();
  for (int rung = 0; rung < kSweepRungs; ++rung) {
    client_.set_constraints_for_wells(workspace_.constraints);
    ReadRung(workspace_.rungs[static_cast<size_t>(rung)]);
    if (rung == 0) NoteBaseRates(workspace_.rungs.front());
    LimitTo(ShareAfter(rung + 1, request_.skewness));
  }
  for (size_t i = 0; i < records_.size(); ++i) {
    FillRecord(i);
    if (finish) finish(records_[i]);
  }
}

void Sweep::FindKinds(const UnitConverter& units) {
  // So high that the well's other limits decide.
  constexpr double kUnlimitedRate = 100000.0;
  const double liquidRate = units.ToSimulator(kUnlimitedRate, kLiquidRate);
  const double gasRate = units.ToSimulator(kUnlimitedRate, kGasRate);
  const WellQueryStringResult types = client_.query_wells_as_strings(wells_, {words::kType});
  WellLookup lookup(wells_);
  const std::vector<size_t>& places = lookup.PlacesIn(types.wells);
  ladders_.reserve(wells_.size());
  for (const size_t place : places) {
    if (place == WellLookup::kMissing || types.values[place].empty()) {
      throw std::runtime_error("Unexpected answer when querying the well status data.");
    }
    const WellKind& kind = KindOf(types.values[place].front());
    ladders_.push_back({&kind, liquidRate, gasRate});
  }
}

void Sweep::EncodeRequests() {
  client_.encode_well_query(wells_, items_, workspace_.query);
  std::vector<const Strings*> constraintItems;
  constraintItems.reserve(ladders_.size());
  for (const Ladder& ladder : ladders_) constraintItems.push_back(&ladder.kind->constraintItems);
  client_.encode_user_constraints(wells_, constraintItems, workspace_.constraints);
  for (size_t well = 0; well < ladders_.size(); ++well) LimitWell(well, 1.0);
}

void Sweep::ReadRung(Rung& rung) {
  client_.query_wells(workspace_.query, workspace_.reply);
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

void Sweep::LimitWell(size_t well, double fraction) {
  const Ladder& ladder = ladders_[well];
  size_t item = 0;
  if (ladder.kind->takesLiquid) {
    workspace_.constraints.Set(well, item++, fraction * ladder.baseLiquidRate);
  }
  if (ladder.kind->takesGas) {
    workspace_.constraints.Set(well, item, fraction * ladder.baseGasRate);
  }
}

void Sweep::LimitTo(double fraction) {
  for (const size_t well : wellOfRecord_) {
    if (well != WellLookup::kMissing) LimitWell(well, fraction);
  }
}

const WellKind& Sweep::KindOfRecord(size_t place) const {
  const size_t well = wellOfRecord_[place];
  return well == WellLookup::kMissing ? KindOf("") : *ladders_[well].kind;
}

void Sweep::FillRecord(size_t place) {
  ConnectorWellRecord& record = records_[place];
  const WellKind& kind = KindOfRecord(place);
  RungRows rows;
  for (size_t rung = 0; rung < kSweepRungs; ++rung) {
    rows[rung] = RowOf(workspace_.rungs[rung], place);
  }
  AppendColumn(rows, kOilProduction, record.iprOilRate);
  AppendColumn(rows, kind.gasRate, record.iprGasRate);
  AppendColumn(rows, kind.waterRate, record.iprWaterRate);
  AppendColumn(rows, request_.useBottomHolePressure ? kBottomHolePressure : kTubingHeadPressure,
               record.iprPressure);
  AppendColumn(rows, kTemperature, record.iprTemperature);
  AppendColumn(rows, kOilDensity, record.iprOilDensity);
  AppendColumn(rows, kGasDensity, record.iprGasDensity);
  AppendColumn(rows, kWaterDensity, record.iprWaterDensity);
  if (request_.componentCount > 0) AppendCompositions(rows, record.iprComposition);
}

void Sweep::AppendCompositions(const RungRows& rows, RowTable<double>& compositions) const {
  const size_t components = items_.size() - kFirstMoleFraction;
  double* fraction = Grow(compositions.Flat(), kSweepRungs * components);
  for (const RungRow& row : rows) {
    for (size_t item = kFirstMoleFraction; item < items_.size(); ++item) *fraction++ = row[item];
  }
  compositions.EndRows(kSweepRungs, components);
}

}  // namespace

void MeasureInflow(IntersectClientBase& client, const UnitConverter& units, const Strings& wells,
                   const InflowRequest& request, InflowWorkspace& workspace,
                   std::vector<ConnectorWellRecord>& records, const RecordWork& finish) {
  if (wells.empty()) return;
  client.set_status_for_wells(wells, Strings(wells.size(), words::kOpen), words::kUser);
  Sweep(client, wells, request, workspace, records).Run(units, finish);
}

}  // namespace gantry
