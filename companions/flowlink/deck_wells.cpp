#include "flowlink/deck_wells.h"

namespace gantry::flowlink {

namespace {

constexpr double kSameTimeDays = 2e-5;

}  // namespace

DeckWells::DeckWells(std::vector<DeckChange> changes, size_t wellCount)
    : changes_(std::move(changes)), wells_(wellCount) {}

void DeckWells::GoTo(double days) {
  const double last = days + kSameTimeDays;
  if (taken_ > 0 && changes_[taken_ - 1].days > last) {
    wells_.assign(wells_.size(), {});
    taken_ = 0;
  }
  for (; taken_ < changes_.size() && changes_[taken_].days <= last; ++taken_) {
    for (const auto& [well, state] : changes_[taken_].wells) wells_[well] = state;
  }
}

}  // namespace gantry::flowlink
