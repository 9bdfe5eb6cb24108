#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "flowlink/deck_wells.h"
#include "flowlink/flow_process.h"
#include "flowlink/well_controls.h"

namespace gantry::flowlink {

/// For each well its values in the order of the vectors asked for.
using WellValues = std::vector<std::vector<double>>;

/// The end of a report step, where the run stands until it is told to go on.
struct FlowStop {
  double days = 0.0;
  int report = 0;  ///< the number of the report step that has ended, from 1
  bool isLast = false;
  WellValues values;
};

/// What one set of limits came to.
struct FlowAnswer {
  std::optional<WellValues> values;  ///< none where flow found no solution
  std::string said;                  ///< the last of what flow said then
};

/// The dialogue with the script inside flow. An operation that flow doesn't survive, or that its
/// answer doesn't fit, throws `LinkFault` with the reason.
class FlowLink {
 public:
  /// Waits for the first stop.
  FlowLink(FlowProcess& process, const std::vector<std::string>& vectors, const std::string& units,
           int secondsForQuestion);

  const std::vector<std::string>& Wells() const { return wells_; }
  const std::array<int32_t, 6>& StartDate() const { return start_; }
  /// What the deck says of the wells from the run's begin on.
  const std::vector<DeckChange>& DeckChanges() const { return changes_; }
  const FlowStop& Stop() const { return stop_; }

  /// What the wells would do for so many days under these keywords with each set of numbers in
  /// place of the names, without going on.
  std::vector<FlowAnswer> Ask(const std::string& keywords, double days,
                              std::span<const NamedLimits> sets);
  /// Runs the next report step under these keywords, beside those of the steps before, and with
  /// these numbers in place of the names.
  void Advance(const std::string& keywords, const NamedLimits& numbers);
  /// Lets flow end the run here and close its files. Ahead of the deck's end flow calls this a
  /// failure of its own, so that its status tells nothing.
  void Finish();

 private:
  void Send(const nlohmann::json& order);
  nlohmann::json Receive();
  void AwaitStop();

  FlowProcess& process_;
  size_t vectorCount_;
  std::vector<std::string> wells_;
  std::array<int32_t, 6> start_{};
  std::vector<DeckChange> changes_;
  FlowStop stop_;
};

}  // namespace gantry::flowlink
