#include "flowlink/sweep_foresight.h"

#include <cmath>
#include <optional>

#include "client/inflow_sweep.h"
#include "flowlink/flow_items.h"

namespace gantry::flowlink {

namespace {

using simulator::WellConstraint;

constexpr double kSameShare = 1e-9;
constexpr double kSkewnessDigits = 1e6;
constexpr double kLeastSkewness = 0.01;
constexpr double kMostSkewness = 20.0;

std::optional<double> RateOf(const WellConstraint& limit, const std::vector<double>& values) {
  const auto item = FindFlowItem(limit.item);
  if (!item) return std::nullopt;
  return FlowItemValue(*item, values);
}

/// The skewness of a ladder whose second rung these limits are; of the first limit that tells.
std::optional<double> SkewnessOf(const std::vector<HostControls>& present,
                                 const WellValues& before) {
  for (size_t well = 0; well < present.size(); ++well) {
    for (const WellConstraint& limit : present[well].constraints) {
      const double rate = RateOf(limit, before[well]).value_or(0.0);
      if (!(rate > 0.0 && limit.value > 0.0 && limit.value < rate)) continue;
      const double skewness = std::log(limit.value / rate) / std::log(ShareAfter(1, 1.0));
      return std::round(skewness * kSkewnessDigits) / kSkewnessDigits;
    }
  }
  return std::nullopt;
}

bool AreAt(double share, const std::vector<HostControls>& present, const WellValues& before) {
  for (size_t well = 0; well < present.size(); ++well) {
    for (const WellConstraint& limit : present[well].constraints) {
      const auto rate = RateOf(limit, before[well]);
      if (!rate || !(std::abs(limit.value - share * *rate) <= kSameShare * std::abs(*rate))) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace

Sweep ForeseeSweep(const std::vector<HostControls>& present, const WellValues& before) {
  const double skewness = SkewnessOf(present, before).value_or(0.0);
  if (!(skewness >= kLeastSkewness && skewness <= kMostSkewness)) return {};
  if (!AreAt(ShareAfter(1, skewness), present, before)) return {};
  Sweep sweep = {{1.0, ShareAfter(1, skewness)}, {present}};
  for (int rung = 2; rung < kSweepRungs; ++rung) {
    sweep.shares.push_back(ShareAfter(rung, skewness));
    std::vector<HostControls>& controls = sweep.controls.emplace_back(present);
    for (size_t well = 0; well < controls.size(); ++well) {
      for (WellConstraint& limit : controls[well].constraints) {
        limit.value = sweep.shares.back() * RateOf(limit, before[well]).value_or(0.0);
      }
    }
  }
  return sweep;
}

}  // namespace gantry::flowlink
