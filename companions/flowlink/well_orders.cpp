#include "flowlink/well_orders.h"

#include <algorithm>
#include <iterator>
#include <span>

namespace gantry::flowlink {

namespace {

struct Column {
  size_t place;
  const char* limit;  ///< flow's name
};
constexpr Column kProduction[] = {{3, "oil_rate"},    {4, "water_rate"}, {5, "gas_rate"},
                                  {6, "liquid_rate"}, {7, "resv_rate"},  {8, "bhp_target"},
                                  {9, "thp_target"}};
constexpr Column kInjection[] = {
    {4, "surf_inj_rate"}, {5, "resv_inj_rate"}, {6, "bhp_target"}, {7, "thp_target"}};

struct Target {
  std::string_view mode;
  const char* produced;
  const char* injected;
};
constexpr Target kTargets[] = {
    {"ORAT", "oil_rate", "surf_inj_rate"},  {"WRAT", "water_rate", "surf_inj_rate"},
    {"GRAT", "gas_rate", "surf_inj_rate"},  {"LRAT", "liquid_rate", "surf_inj_rate"},
    {"RESV", "resv_rate", "resv_inj_rate"}, {"BHP", "bhp_target", "bhp_target"},
    {"THP", "thp_target", "thp_target"}};

/// Number 0 means no table.
std::string TableAt(const DeckRecord& record, size_t column) {
  const std::string number = ItemAt(record, column);
  return number == "0" ? "" : number;
}

/// Whether a limit is given as 0; a quantity that the deck computes is none.
bool TakeLimit(const DeckKeyword& keyword, const std::string& item, WellOrder& order) {
  const bool isNumber = item.find_first_not_of("+-.0123456789dDeE") == std::string::npos;
  if (!isNumber) order.quantity = item;
  return isNumber && !item.empty() && DeckNumber(keyword, item) == 0.0;
}

void TakeColumns(const DeckKeyword& keyword, const DeckRecord& record,
                 std::span<const Column> columns, WellOrder& order) {
  for (const Column& column : columns) {
    order.isZero[column.limit] = TakeLimit(keyword, ItemAt(record, column.place), order);
  }
}

void TakeProduction(const DeckKeyword& keyword, const DeckRecord& record, WellOrder& order) {
  order.isWhole = true;
  order.mode = InCapitals(ItemAt(record, 2));
  TakeColumns(keyword, record, kProduction, order);
  order.liftTable = TableAt(record, 10);
  order.liftAmount = ItemAt(record, 11);
}

void TakeHistory(const DeckKeyword&, const DeckRecord& record, WellOrder& order) {
  order.isWhole = order.isHistory = true;
  order.mode = InCapitals(ItemAt(record, 2));
}

void TakeInjection(const DeckKeyword& keyword, const DeckRecord& record, WellOrder& order) {
  order.isWhole = true;
  order.phase = InCapitals(ItemAt(record, 1));
  order.mode = InCapitals(ItemAt(record, 3));
  TakeColumns(keyword, record, kInjection, order);
  order.liftTable = TableAt(record, 8);
}

void TakeInjectedHistory(const DeckKeyword&, const DeckRecord& record, WellOrder& order) {
  order.isWhole = order.isHistory = true;
  order.phase = InCapitals(ItemAt(record, 1));
  order.mode = "RATE";
}

void TakeTarget(const DeckKeyword& keyword, const DeckRecord& record, WellOrder& order) {
  const std::string mode = InCapitals(ItemAt(record, 1));
  const auto target = std::ranges::find(kTargets, mode, &Target::mode);
  if (target == std::end(kTargets)) return;
  const bool isZero = TakeLimit(keyword, ItemAt(record, 2), order);
  order.isZero[target->produced] = isZero;
  order.isZero[target->injected] = isZero;
}

/// One that names connections leaves the well's own status as it is.
void TakeStatus(const DeckKeyword&, const DeckRecord& record, WellOrder& order) {
  for (size_t column = 2; column < record.size(); ++column) {
    if (!record[column].empty()) order.wells.clear();
  }
}

void TakeEconomic(const DeckKeyword&, const DeckRecord&, WellOrder& order) {
  order.isEconomic = true;
}

struct Reader {
  std::string_view keyword;
  void (*take)(const DeckKeyword&, const DeckRecord&, WellOrder&);
};
constexpr Reader kReaders[] = {{"WCONPROD", TakeProduction}, {"WCONHIST", TakeHistory},
                               {"WCONINJE", TakeInjection},  {"WCONINJH", TakeInjectedHistory},
                               {"WELTARG", TakeTarget},      {"WELOPEN", TakeStatus},
                               {"WECON", TakeEconomic}};

}  // namespace

bool MeansWell(std::string_view pattern, std::string_view well) {
  if (pattern.empty()) return well.empty();
  if (pattern[0] == '*') {
    return MeansWell(pattern.substr(1), well) ||
           (!well.empty() && MeansWell(pattern, well.substr(1)));
  }
  if (well.empty() || (pattern[0] != '?' && pattern[0] != well[0])) return false;
  return MeansWell(pattern.substr(1), well.substr(1));
}

bool WellOrder::Means(const std::string& well) const {
  return IsForList() || MeansWell(wells, well);
}

std::vector<WellOrder> OrdersOf(const DeckKeyword& keyword, double days) {
  std::vector<WellOrder> orders;
  const auto reader = std::ranges::find(kReaders, keyword.name, &Reader::keyword);
  if (reader == std::end(kReaders)) return orders;
  for (const DeckRecord& record : RecordsOf(keyword)) {
    if (record.empty()) continue;
    WellOrder& order = orders.emplace_back();
    order.days = days;
    order.keyword = keyword.name;
    order.wells = record[0];
    order.place = keyword.place;
    reader->take(keyword, record, order);
    if (order.wells.empty()) orders.pop_back();
  }
  return orders;
}

}  // namespace gantry::flowlink
