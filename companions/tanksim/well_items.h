#pragma once

#include <optional>
#include <string_view>

#include "described_toml/quantity.h"
#include "tanksim/well.h"

namespace gantry::simulator {

/// The numbers of a well that a controller can ask for, by the controller's names. Handles are
/// stable for the life of the table.
class WellItems {
 public:
  WellItems(toml_reader::UnitSystem units, size_t componentCount)
      : units_(units), componentCount_(componentCount) {}

  /// An item of one value, or an item of a component: "NAME[i]" with i from 1.
  std::optional<size_t> Find(std::string_view item) const;
  /// In the deck's units.
  double Value(const Well& well, size_t handle) const;

 private:
  toml_reader::UnitSystem units_;
  size_t componentCount_;
};

}  // namespace gantry::simulator
