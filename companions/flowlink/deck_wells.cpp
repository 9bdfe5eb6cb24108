#include "flowlink/deck_wells.h"

#include <algorithm>

namespace gantry::flowlink {

namespace {

constexpr double kSameTimeDays = 2e-5;

WellType KindIn(const WellOrder& order) {
  if (order.phase.empty()) return WellType::kProducer;
  return order.phase.starts_with("GAS") ? WellType::kGasInjector : WellType::kWaterInjector;
}

/// The rate that goes with a well's mode; for a history well the others are only observations.
std::string HeldBy(const DeckWell& well) {
  if (well.kind != WellType::kProducer) return well.mode == "RATE" ? "surf_inj_rate" : "";
  static const std::map<std::string, std::string> kRates = {
      {"ORAT", "oil_rate"}, {"WRAT", "water_rate"}, {"GRAT", "gas_rate"}, {"LRAT", "liquid_rate"}};
  const auto rate = kRates.find(well.mode);
  return rate == kRates.end() ? "" : rate->second;
}

}  // namespace

DeckWells::DeckWells(std::vector<std::string> names, std::vector<DeckChange> changes,
                     std::vector<WellOrder> orders)
    : names_(std::move(names)), changes_(std::move(changes)), orders_(std::move(orders)) {
  Reset();
}

/// A well that isn't drilled yet is of the kind that it will be.
void DeckWells::Reset() {
  wells_.assign(names_.size(), {});
  told_.assign(names_.size(), {});
  zeros_.assign(names_.size(), {});
  takenChanges_ = takenOrders_ = 0;
  for (size_t well = 0; well < names_.size(); ++well) {
    const auto isFor = [&](const WellOrder& order) {
      return order.TellsKind() && order.Means(names_[well]);
    };
    const auto first = std::ranges::find_if(orders_, isFor);
    if (first != orders_.end()) wells_[well].kind = KindIn(*first);
  }
}

void DeckWells::GoTo(double days) {
  if (days < days_) Reset();
  days_ = days;
  const double last = days + kSameTimeDays;
  while (takenOrders_ < orders_.size() && orders_[takenOrders_].days <= last) {
    Take(orders_[takenOrders_++]);
  }
  while (takenChanges_ < changes_.size() && changes_[takenChanges_].days <= last) {
    Take(changes_[takenChanges_++]);
  }
  for (size_t i = 0; i < wells_.size(); ++i) {
    DeckWell& well = wells_[i];
    well.limits = told_[i];
    std::erase_if(well.limits, [&](const auto& limit) {
      const bool isNone = limit.second == 0.0 && !zeros_[i].contains(limit.first);
      const bool isObserved = well.isHistory && limit.first != HeldBy(well);
      return isNone || isObserved;
    });
    const auto rate = well.limits.find(HeldBy(well));
    well.isHeldAtNothing = rate != well.limits.end() && rate->second == 0.0;
  }
}

void DeckWells::Take(const DeckChange& change) {
  for (const auto& [place, state] : change.wells) {
    DeckWell& well = wells_[place];
    well.isDrilled = true;
    well.status = state.status;
    told_[place] = state.limits;
    const bool isKnown = state.isProducer == (well.kind == WellType::kProducer);
    if (!isKnown) well.kind = state.isProducer ? WellType::kProducer : WellType::kWaterInjector;
  }
}

void DeckWells::Take(const WellOrder& order) {
  for (size_t i = 0; i < names_.size(); ++i) {
    if (!order.Means(names_[i])) continue;
    for (const auto& [limit, isZero] : order.isZero) {
      isZero ? (void)zeros_[i].insert(limit) : (void)zeros_[i].erase(limit);
    }
    DeckWell& well = wells_[i];
    well.hasEconomicLimit |= order.isEconomic;
    if (!order.TellsKind()) continue;
    well.kind = KindIn(order);
    well.isHistory = order.isHistory;
    well.mode = order.mode;
    well.liftTable = order.liftTable;
    well.liftAmount = order.liftAmount;
  }
}

const WellOrder* DeckWells::LastOrder(size_t well, double begin, double end) const {
  const WellOrder* last = nullptr;
  for (const WellOrder& order : orders_) {
    const bool isBetween = order.days > begin + kSameTimeDays && order.days <= end + kSameTimeDays;
    if (isBetween && !order.isEconomic && order.Means(names_[well])) last = &order;
  }
  return last;
}

std::vector<const WellOrder*> DeckWells::OrdersFrom(size_t well, double days) const {
  std::vector<const WellOrder*> orders;
  for (const WellOrder& order : orders_) {
    if (order.isEconomic || order.days < days - kSameTimeDays) continue;
    if (order.Means(names_[well])) orders.push_back(&order);
  }
  return orders;
}

const WellOrder* DeckWells::ChangeOfKind(size_t well) const {
  for (const WellOrder* order : OrdersFrom(well, days_)) {
    if (order->TellsKind() && KindIn(*order) != wells_[well].kind) return order;
  }
  return nullptr;
}

const WellOrder* DeckWells::HeldByQuantity(size_t well) const {
  for (const WellOrder* order : OrdersFrom(well, 0.0)) {
    if (!order->quantity.empty()) return order;
  }
  return nullptr;
}

}  // namespace gantry::flowlink
