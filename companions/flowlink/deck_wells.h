#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace gantry::flowlink {

/// A well as the deck has it at a time of its schedule.
struct DeckWell {
  bool isDrilled = false;
  bool isProducer = true;
  std::string status;                    ///< flow's word
  std::map<std::string, double> limits;  ///< by flow's names, in the deck's units; 0 for none
};

/// What the deck says of its wells from a time on, by their positions.
struct DeckChange {
  double days = 0.0;
  std::vector<std::pair<size_t, DeckWell>> wells;
};

/// What the deck says of its wells at the time that the run has come to.
class DeckWells {
 public:
  DeckWells() = default;
  /// The changes in the order of their times.
  DeckWells(std::vector<DeckChange> changes, size_t wellCount);

  /// Forwards or back.
  void GoTo(double days);
  const DeckWell& operator[](size_t well) const { return wells_[well]; }

 private:
  std::vector<DeckChange> changes_;
  std::vector<DeckWell> wells_;
  size_t taken_ = 0;  ///< of the changes
};

}  // namespace gantry::flowlink
