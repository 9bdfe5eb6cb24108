#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "flowlink/well_orders.h"
#include "simulator_side/well_words.h"

namespace gantry::flowlink {

using simulator::WellType;

/// A well as the deck has it at a time of its schedule.
struct DeckWell {
  bool isDrilled = false;
  WellType kind = WellType::kProducer;
  std::string status;                    ///< flow's word
  std::map<std::string, double> limits;  ///< by flow's names, in the deck's units
  bool isHistory = false;                ///< held at observed rates
  bool hasEconomicLimit = false;         ///< by which flow may shut it
  std::string mode;                      ///< by which the deck holds it, flow's word
  bool isHeldAtNothing = false;          ///< by a rate of 0 in that mode
  std::string liftTable;                 ///< of its tubing-head limit; empty for none
  std::string liftAmount;
};

/// What flow says of the deck's wells from a time on, by their positions. A limit of 0 may be none.
struct DeckChange {
  struct Well {
    bool isProducer = true;
    std::string status;
    std::map<std::string, double> limits;
  };
  double days = 0.0;
  std::vector<std::pair<size_t, Well>> wells;
};

/// What the deck says of its wells at the time that the run has come to: flow's numbers, and what
/// flow doesn't tell from the deck's own words.
class DeckWells {
 public:
  DeckWells() = default;
  /// The changes and the orders in the order of their times.
  DeckWells(std::vector<std::string> names, std::vector<DeckChange> changes,
            std::vector<WellOrder> orders);

  /// Forwards or back.
  void GoTo(double days);
  const DeckWell& operator[](size_t well) const { return wells_[well]; }

  /// The last order for a well, other than an economic limit, behind `begin` and up to `end`; null
  /// for none.
  const WellOrder* LastOrder(size_t well, double begin, double end) const;
  /// The orders for a well from a time on, without economic limits.
  std::vector<const WellOrder*> OrdersFrom(size_t well, double days) const;
  /// The first order, from now on, by which the well is something else than it is; null for none.
  const WellOrder* ChangeOfKind(size_t well) const;
  /// The first order that holds the well by a quantity which the deck computes; null for none.
  const WellOrder* HeldByQuantity(size_t well) const;

 private:
  void Reset();
  void Take(const DeckChange& change);
  void Take(const WellOrder& order);

  std::vector<std::string> names_;
  std::vector<DeckChange> changes_;
  std::vector<WellOrder> orders_;
  std::vector<DeckWell> wells_;
  std::vector<std::map<std::string, double>> told_;  ///< limits as flow tells them
  std::vector<std::set<std::string>> zeros_;         ///< limits that the deck gives as 0
  size_t takenChanges_ = 0;
  size_t takenOrders_ = 0;
  double days_ = 0.0;
};

}  // namespace gantry::flowlink
