#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "flowlink/deck_wells.h"
#include "simulator/server/controlled_simulator.h"

namespace gantry::flowlink {

enum class WellKind { kProducer, kWaterInjector, kGasInjector };

/// What the host has decided for a well; the well is the deck's until it has decided something.
struct HostControls {
  std::vector<simulator::WellConstraint> constraints;
  std::string status;  ///< the protocol's word; empty for the deck's
  std::optional<double> uptime;

  bool IsTakenOver() const { return !constraints.empty() || !status.empty() || uptime; }
};

/// Throws `RequestRefused` for a limit that flow can't hold.
void CheckConstraint(const std::string& item, WellKind kind, const std::string& well);

/// Limits of the deck that hold beside the host's, in the host's words.
std::vector<simulator::WellConstraint> KeptLimits(const DeckWell& deck, WellKind kind,
                                                  std::span<const std::string> kept);

/// A well's limit under the name that stands for it in a keyword.
struct NamedLimit {
  std::string well;
  std::string name;
  double value = 0.0;
};
using NamedLimits = std::vector<NamedLimit>;

/// The well's WCONPROD or WCONINJE. Of two limits on the same thing the tighter one holds. With
/// `named`, names stand in the keyword for the limits, which are added there.
std::string ControlKeyword(const std::string& well, WellKind kind, const HostControls& host,
                           std::span<const simulator::WellConstraint> kept,
                           NamedLimits* named = nullptr);

/// The word of flow's for the limit that the name stands for.
std::string LimitName(const NamedLimit& limit);

/// What makes the names of limits known to flow, as quantities that nobody computes.
std::string NamesKeyword();

/// The keyword for the part of the time that a well is up.
std::string UptimeKeyword(const std::string& well, double fraction);

}  // namespace gantry::flowlink
