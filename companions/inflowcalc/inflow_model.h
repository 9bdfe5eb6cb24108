#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "inflowcalc/simulator_callbacks.h"

namespace gantry::inflow {

/// One well as the module registers it.
struct InflowWell {
  int32_t index = 0;
  std::string name;
  bool isProducer = true;
  bool isLiquidWell = true;  ///< false for a gas well and a gas injector
};

/// Allows a search by view, without a copy of the name.
struct NameHash {
  using is_transparent = void;
  size_t operator()(std::string_view name) const { return std::hash<std::string_view>()(name); }
};
/// The ratio of a region's productivity index to its block's, by the well's name.
using WellRatios = std::unordered_map<std::string, double, NameHash, std::equal_to<>>;

/// The library's model of the wells of one case: the list of wells, and a ratio for each well that
/// has been tested. The ratios stay with their names when a new list comes. One thread at a time;
/// while a test runs the callbacks come back into the same object, so nothing keeps a reference
/// into it across a callback.
class InflowModel {
 public:
  explicit InflowModel(void* model) : callbacks_(model) {}

  SimulatorCallbacks& Callbacks() { return callbacks_; }

  void StartWells();
  void AddWell(InflowWell well);
  const std::vector<InflowWell>& Wells() const { return wells_; }

  const WellRatios& Ratios() const { return ratios_; }
  void SetRatios(WellRatios ratios) { ratios_ = std::move(ratios); }

  /// Rewrites the table of a well that is in the list. While a test runs no table changes, since
  /// the test needs what the simulator says.
  void Transform(std::string_view wellName, const _tGetSetData& state, _tGetSetData& inflow) const;

  /// Tests all wells, and takes the ratios over when the whole test has gone well. Throws
  /// `CallbackError`, also when a test is running already.
  void Calculate();

 private:
  double RatioOf(std::string_view wellName) const;

  SimulatorCallbacks callbacks_;
  std::vector<InflowWell> wells_;
  std::unordered_set<std::string, NameHash, std::equal_to<>> names_;
  WellRatios ratios_;
  bool isCalculating_ = false;
};

}  // namespace gantry::inflow
