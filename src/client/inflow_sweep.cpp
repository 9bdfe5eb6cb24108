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

struct ResultUnit {
  const char* item;
  int32_t code;
};

constexpr std::array<ResultUnit, kFirstMoleFraction> kResultItems = {{
    {words::kOilProductionRate, kLiquidRate},
    {words::kGasProductionRate, kGasRate},
    {words::kWaterProductionRate, kLiquidRate},
    {words::kWaterInjectionRate, kLiquidRate},
    {words::kGasInjectionRate, kGasRate},
    {words::kTemperature, UnitCode::kTemperature},
    {words::kGasDensity, kDensity},
    {words::kWaterDensity, kDensity},
    {words::kOilDensity, kDensity},
    {words::kBottomHolePressure, kPressure},
    {words::kTubingHeadPressure, kPressure},
}};

Strings ItemsOf(int32_t componentCount) {
  Strings items;
  for (const ResultUnit& result : kResultItems) items.emplace_back(result.item);
  AppendMoleFractionItems(componentCount, items);
  return items;
}

}  // namespace

double UnlimitedRate(std::string_view limit, const UnitConverter& units) {
  constexpr double kUnlimited = 100000.0;
  return units.ToSimulator(kUnlimited, limit.starts_with("GAS_") ? kGasRate : kLiquidRate);
}

/// How a kind of well is forced to a rate, and where its rates are read.
struct WellKind {
  Strings constraintItems;  ///< the limit on liquid, then that on gas
  bool isProducer;
  bool takesLiquid;
  bool takesGas;
  ResultItem gasRate = isProducer ? kGasProduction : kGasInjection;
  ResultItem waterRate = isProducer ? kWaterProduction : kWaterInjection;
};

namespace {

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

/// What the records are called, in place of the names that stand in `names`. False when those are
/// the same.
bool TakeNames(const std::vector<ConnectorWellRecord>& records, Strings& names) {
  if (std::ranges::equal(records, names, {}, &ConnectorWellRecord::name)) return false;
  names.clear();
  for (const ConnectorWellRecord& record : records) names.push_back(record.name);
  return true;
}

/// The simulator may have answered in an order of its own, so a record finds its well by its name;
/// one of a name that wasn't asked for takes the well in its position, unless that has its record,
/// or else none. What such a record is worth is for the caller to judge.
std::vector<size_t> WellsOf(const Strings& recordNames, const Strings& wells) {
  std::vector<size_t> places = WellLookup(recordNames).PlacesIn(wells);
  if (std::ranges::find(places, WellLookup::kMissing) == places.end()) return places;
  const std::vector<size_t> recordOfWell = WellLookup(wells).PlacesIn(recordNames);
  for (size_t i = 0; i < std::min(places.size(), wells.size()); ++i) {
    const bool isFree = recordOfWell[i] == WellLookup::kMissing;
    if (places[i] == WellLookup::kMissing && isFree) places[i] = i;
  }
  return places;
}

/// Where each item asked for stands in a row of the reply.
std::vector<size_t> ColumnsOf(const Strings& items, const Strings& replied) {
  std::vector<size_t> columns;
  for (const std::string& item : items) {
    const auto found = std::find(replied.begin(), replied.end(), item);
    if (found == replied.end()) FailInflow();
    columns.push_back(static_cast<size_t>(found - replied.begin()));
  }
  return columns;
}

/// A record's answers at all rungs.
using RungRows = std::array<const double*, kSweepRungs>;

/// For each result the scale that its numbers are to be taken out of.
using Scales = std::array<UnitScale, kFirstMoleFraction>;

Scales ScalesOf(const UnitConverter& units, bool inDriverUnits) {
  Scales scales;
  for (size_t item = 0; item < scales.size(); ++item) {
    scales[item] = inDriverUnits ? *units.ScaleOf(kResultItems[item].code) : kSameUnit;
  }
  return scales;
}

// The column is converted apart from its collection, and in one piece, which takes half the time.
void AppendColumn(const RungRows& rows, size_t item, const Scales& scales, Doubles& points) {
  std::array<double, kSweepRungs> column;
  for (size_t rung = 0; rung < kSweepRungs; ++rung) column[rung] = rows[rung][item];
  const UnitScale scale = scales[item];
  for (double& value : column) value = FromSimulator(value, scale);
  points.insert(points.end(), column.begin(), column.end());
}

void AppendCompositions(const RungRows& rows, size_t components, RowTable<double>& compositions) {
  Doubles& flat = compositions.Flat();
  flat.reserve(flat.size() + kSweepRungs * components);
  for (const double* row : rows) {
    const double* const fractions = row + kFirstMoleFraction;
    flat.insert(flat.end(), fractions, fractions + components);
  }
  compositions.EndRows(kSweepRungs, components);
}

class Sweep {
 public:
  Sweep(IntersectClientBase& client, const Strings& wells, const InflowRequest& request,
        InflowWorkspace& workspace, std::vector<ConnectorWellRecord>& records);

  void Run(const UnitConverter& units);

 private:
  void EncodeRequests();
  void FindKinds();
  void EncodeConstraints();
  void FindRecords();
  void ReadRung(int rung);
  void FindRows();
  EvenRows<double> Rearranged() const;
  void NoteBaseRates();
  void LimitWell(size_t well, double fraction);
  void LimitTo(double fraction);
  const WellKind& KindOfRecord(size_t place) const;
  void FillRecord(size_t place, const Scales& scales);

  IntersectClientBase& client_;
  const Strings& wells_;
  const InflowRequest& request_;
  InflowWorkspace& kept_;
  std::vector<ConnectorWellRecord>& records_;
  Strings items_;
};

Sweep::Sweep(IntersectClientBase& client, const Strings& wells, const InflowRequest& request,
             InflowWorkspace& workspace, std::vector<ConnectorWellRecord>& records)
    : client_(client),
      wells_(wells),
      request_(request),
      kept_(workspace),
      records_(records),
      items_(ItemsOf(request.componentCount)) {}

// The records are filled at the end, one after the other: to visit them all at each rung would
// fetch them from memory ten times over.
void Sweep::Run(const UnitConverter& units) {
  const double liquidRate = UnlimitedRate(words::kLiquidProductionRate, units);
  const double gasRate = UnlimitedRate(words::kGasProductionRate, units);
  EncodeRequests();
  client_.set_status_for_wells(kept_.opening);
  FindKinds();
  FindRecords();
  for (size_t well = 0; well < wells_.size(); ++well) {
    kept_.ladders[well].baseLiquidRate = liquidRate;
    kept_.ladders[well].baseGasRate = gasRate;
    LimitWell(well, 1.0);
  }
  for (int rung = 0; rung < kSweepRungs; ++rung) ReadRung(rung);
  const Scales scales = ScalesOf(units, request_.inDriverUnits);
  for (size_t i = 0; i < records_.size(); ++i) FillRecord(i, scales);
}

void Sweep::EncodeRequests() {
  if (kept_.wells == wells_ && kept_.items == items_) return;
  kept_ = {};
  kept_.wells = wells_;
  kept_.items = items_;
  kept_.ladders.resize(wells_.size());
  client_.encode_status_for_wells(wells_, Strings(wells_.size(), words::kOpen), words::kUser,
                                  kept_.opening);
  client_.encode_well_query_as_strings(wells_, {words::kType}, kept_.typesQuery);
  client_.encode_well_query(wells_, items_, kept_.query);
}

void Sweep::FindKinds() {
  WellQueryStringResult& types = kept_.types;
  client_.query_wells_as_strings(kept_.typesQuery, types);
  const bool isKnown = types.sameWells && kept_.typeRows.size() == wells_.size();
  if (!isKnown) kept_.typeRows = WellLookup(wells_).PlacesIn(types.wells);
  bool areSame = true;
  for (size_t well = 0; well < wells_.size(); ++well) {
    const size_t row = kept_.typeRows[well];
    if (row == WellLookup::kMissing || types.values[row].empty()) {
      throw std::runtime_error("Unexpected answer when querying the well status data.");
    }
    const WellKind* kind = &KindOf(types.values[row].front());
    areSame = areSame && kind == kept_.ladders[well].kind;
    kept_.ladders[well].kind = kind;
  }
  if (!areSame) EncodeConstraints();
}

void Sweep::EncodeConstraints() {
  std::vector<const Strings*> items;
  items.reserve(wells_.size());
  for (const Ladder& ladder : kept_.ladders) items.push_back(&ladder.kind->constraintItems);
  client_.encode_user_constraints(wells_, items, kept_.constraints);
}

void Sweep::FindRecords() {
  if (!TakeNames(records_, kept_.recordNames)) return;
  kept_.wellOfRecord = WellsOf(kept_.recordNames, wells_);
  kept_.reply = {};
  kept_.replyRows.clear();
  kept_.inOrder = false;
}

// From the second rung on the limits of the next don't depend on the answer, so they are found
// while the simulator works on it.
void Sweep::ReadRung(int rung) {
  const bool isFirst = rung == 0;
  const auto limitNext = [&] { LimitTo(ShareAfter(rung + 1, request_.skewness)); };
  client_.set_constraints_for_wells(kept_.constraints);
  client_.query_wells(kept_.query, kept_.reply, isFirst ? Meanwhile() : limitNext);
  FindRows();
  EvenRows<double>& values = kept_.rungs[static_cast<size_t>(rung)];
  if (kept_.inOrder && kept_.reply.items == items_) {
    std::swap(values, kept_.reply.values);
  } else {
    values = Rearranged();
  }
  if (!isFirst) return;
  NoteBaseRates();
  limitNext();
}

void Sweep::FindRows() {
  if (kept_.reply.sameWells && kept_.replyRows.size() == records_.size()) return;
  kept_.replyRows = WellLookup(kept_.recordNames).PlacesIn(kept_.reply.wells);
  if (std::ranges::find(kept_.replyRows, WellLookup::kMissing) != kept_.replyRows.end()) {
    FailInflow();
  }
  size_t next = 0;
  kept_.inOrder =
      std::ranges::all_of(kept_.replyRows, [&next](size_t row) { return row == next++; });
}

/// The reply as it would be with its rows in the order of the records and its columns in that of
/// the items.
EvenRows<double> Sweep::Rearranged() const {
  const std::vector<size_t> columns = ColumnsOf(items_, kept_.reply.items);
  EvenRows<double> rows;
  rows.Begin(columns.size());
  for (const size_t place : kept_.replyRows) {
    const std::span<const double> from = kept_.reply.values[place];
    const std::span<double> row = rows.Append();
    for (size_t i = 0; i < columns.size(); ++i) row[i] = from[columns[i]];
  }
  return rows;
}

void Sweep::NoteBaseRates() {
  for (size_t i = 0; i < records_.size(); ++i) {
    if (kept_.wellOfRecord[i] == WellLookup::kMissing) continue;
    Ladder& ladder = kept_.ladders[kept_.wellOfRecord[i]];
    const std::span<const double> row = kept_.rungs.front()[i];
    ladder.baseGasRate = row[ladder.kind->gasRate];
    ladder.baseLiquidRate = row[ladder.kind->waterRate];
    if (ladder.kind->isProducer) ladder.baseLiquidRate += row[kOilProduction];
  }
}

void Sweep::LimitWell(size_t well, double fraction) {
  const Ladder& ladder = kept_.ladders[well];
  size_t item = 0;
  if (ladder.kind->takesLiquid) {
    kept_.constraints.Set(well, item++, fraction * ladder.baseLiquidRate);
  }
  if (ladder.kind->takesGas) {
    kept_.constraints.Set(well, item, fraction * ladder.baseGasRate);
  }
}

void Sweep::LimitTo(double fraction) {
  for (const size_t well : kept_.wellOfRecord) {
    if (well != WellLookup::kMissing) LimitWell(well, fraction);
  }
}

const WellKind& Sweep::KindOfRecord(size_t place) const {
  const size_t well = kept_.wellOfRecord[place];
  return well == WellLookup::kMissing ? KindOf("") : *kept_.ladders[well].kind;
}

void Sweep::FillRecord(size_t place, const Scales& scales) {
  ConnectorWellRecord& record = records_[place];
  const WellKind& kind = KindOfRecord(place);
  RungRows rows;
  for (size_t rung = 0; rung < kSweepRungs; ++rung) rows[rung] = kept_.rungs[rung][place].data();
  const auto append = [&](size_t item, Doubles& points) {
    AppendColumn(rows, item, scales, points);
  };
  append(kOilProduction, record.iprOilRate);
  append(kind.gasRate, record.iprGasRate);
  append(kind.waterRate, record.iprWaterRate);
  append(request_.useBottomHolePressure ? kBottomHolePressure : kTubingHeadPressure,
         record.iprPressure);
  append(kTemperature, record.iprTemperature);
  append(kOilDensity, record.iprOilDensity);
  append(kGasDensity, record.iprGasDensity);
  append(kWaterDensity, record.iprWaterDensity);
  if (request_.componentCount <= 0) return;
  AppendCompositions(rows, items_.size() - kFirstMoleFraction, record.iprComposition);
}

}  // namespace

void MeasureInflow(IntersectClientBase& client, const UnitConverter& units, const Strings& wells,
                   const InflowRequest& request, InflowWorkspace& workspace,
                   std::vector<ConnectorWellRecord>& records) {
  if (wells.empty()) return;
  // A sweep that fails leaves nothing behind that the next one would go by.
  InflowWorkspace kept = std::exchange(workspace, {});
  Sweep(client, wells, request, kept, records).Run(units);
  workspace = std::move(kept);
}

}  // namespace gantry
