#include "model/step_orders.h"

#include "client/name_index.h"
#include "client/words.h"
#include "model/ipr_table.h"

namespace gantry {
namespace {

/// Below these a well counts as dead: millions of cubic feet and barrels a day.
constexpr double kDeadGasRate = 0.00001;
constexpr double kDeadLiquidRate = 0.1;

/// Draws up the orders of one well after the other.
class OrderBook {
 public:
  OrderBook(const StepRules& rules, StepOrders& orders) : rules_(rules), orders_(orders) {
    orders_.Clear();
  }

  void AddWell(Source& source, const StaticWellData& well) {
    if (!well.Connected) {
      if (rules_.closeUnconnected) AddStatus(source, words::kCompletionsShut);
    } else if (source.RequestedStatus != kOpen) {
      const bool atSurface = source.RequestedStatus == kShutSurface;
      AddStatus(source, atSurface ? words::kSurfaceShut : words::kCompletionsShut);
    } else {
      AddOpenWell(source, well.OpMode);
    }
  }

  /// Drops the rows of former orders that haven't been written over.
  void Close() { ResizeConstraints(orders_.constraintWells.size()); }

 private:
  void AddStatus(const Source& source, const char* word) {
    orders_.statusWells.push_back(source.Name);
    orders_.statuses.emplace_back(word);
  }

  void AddOpenWell(Source& source, int32_t opMode) {
    if (rules_.reevaluate && !Reevaluate(source)) {
      AddStatus(source, words::kCompletionsShut);
      return;
    }
    AddStatus(source, words::kOpen);
    AddConstraints(source, opMode);
    orders_.uptimeWells.push_back(source.Name);
    orders_.uptimes.push_back(source.OnTimeFraction);
    if (rules_.compositional && source.SourceType == kGasInjector) {
      orders_.injectionSources.push_back(InjectionSourceName(source.Name));
      orders_.compositions.push_back(source.OpPoint.Composition);
    }
  }

  void AddConstraints(const Source& source, int32_t opMode) {
    const size_t row = orders_.constraintWells.size();
    orders_.constraintWells.push_back(source.Name);
    if (row == orders_.items.size()) ResizeConstraints(row + 1);
    ChooseControl(source, opMode, {orders_.items[row], orders_.values[row], orders_.codes[row]});
  }

  void ResizeConstraints(size_t rows) {
    orders_.items.resize(rows);
    orders_.values.resize(rows);
    orders_.codes.resize(rows);
  }

  StepRules rules_;
  StepOrders& orders_;
};

}  // namespace

void StepOrders::Clear() {
  for (Strings* list :
       {&statusWells, &statuses, &uptimeWells, &constraintWells, &injectionSources}) {
    list->clear();
  }
  uptimes.clear();
  compositions.clear();
}

void StepOrders::Send(CExtConnectorBase& connector) const {
  connector.SetWellStatus(statusWells, statuses);
  connector.SetWellUptime(uptimeWells, uptimes);
  connector.SetWellConstraints(constraintWells, items, values, codes);
  connector.SetWellInjectionComposition(injectionSources, compositions);
}

void DrawUpOrders(SourceList& sources, const StaticWellDataCollection& wells,
                  const StepRules& rules, StepOrders& orders) {
  const NameIndex index(wells.Items, &StaticWellData::Name);
  OrderBook book(rules, orders);
  for (Source& source : sources.Items) {
    if (const auto position = index.Find(source.Name)) book.AddWell(source, wells.Items[*position]);
  }
  book.Close();
}

bool Reevaluate(Source& source) {
  const IPRTable table(source.HostIPR, source.SourceType == kProducer);
  if (table.IsDead()) return false;
  const IPRTable::RowValues values = table.Evaluate(source.OpPoint.Pressure);
  source.OpPoint.OilRate = values[IPRTable::kOilColumn];
  source.OpPoint.GasRate = values[IPRTable::kGasColumn];
  source.OpPoint.WaterRate = values[IPRTable::kWaterColumn];
  return !(source.OpPoint.GasRate < kDeadGasRate && source.OpPoint.OilRate < kDeadLiquidRate &&
           source.OpPoint.WaterRate < kDeadLiquidRate);
}

}  // namespace gantry
