#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace gantry {

/// Finds the wells that were asked for among the wells of one reply after another. The first equal
/// entry counts. A reply that names the same wells in the same order, as most do, costs one
/// comparison of the two lists. `asked` must outlive the lookup unchanged.
class WellLookup {
 public:
  static constexpr size_t kMissing = static_cast<size_t>(-1);

  explicit WellLookup(std::span<const std::string> asked);

  std::span<const std::string> Asked() const { return asked_; }

  /// For each well asked for, in order, its place in `replied`, or `kMissing`. Good until the next
  /// call.
  const std::vector<size_t>& PlacesIn(std::span<const std::string> replied);

 private:
  std::span<const std::string> asked_;
  std::vector<size_t> placesInAsked_;
  std::vector<size_t> placesInReply_;
};

}  // namespace gantry
