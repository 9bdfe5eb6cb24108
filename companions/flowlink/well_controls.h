#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "flowlink/deck_wells.h"
#include "simulator_side/controlled_simulator.h"

namespace gantry::flowlink {

/// What the host has decided for a well; the well is the deck's until it has decided something.
struct HostControls {
  std::vector<simulator::WellConstraint> constraints;
  std::string status;  ///< the protocol's word; empty for the deck's
  std::optional<double> uptime;
  bool wantsMost = false;  ///< its rates are all that the well gives: what else limits it holds it

  bool IsTakenOver() const { return !constraints.empty() || !status.empty() || uptime; }
};

/// The fluids that a deck has. flow can't hold a well by one that it doesn't.
struct DeckFluids {
  bool hasOil = false;
  bool hasWater = false;
  bool hasGas = false;
};

/// The limits in terms of the deck's fluids: liquid is oil alone where there is no water, and a
/// limit on a fluid that isn't there limits nothing.
std::vector<simulator::WellConstraint> InFluids(
    std::span<const simulator::WellConstraint> constraints, const DeckFluids& fluids);

/// Whether these rates are all, but for rounding, that the well gives at most.
bool AreMost(std::span<const simulator::WellConstraint> constraints,
             const std::vector<double>& most);

/// With the rates of wells that are to give the most put out of the way: they were that at the
/// beginning of a step.
std::vector<HostControls> BeyondMost(std::vector<HostControls> controls);

/// Throws `RequestRefused` for a limit that flow can't hold.
void CheckConstraint(const std::string& item, WellType kind, const std::string& well);

/// What of the deck's own control of a well holds beside the host's.
struct HeldByDeck {
  std::vector<simulator::WellConstraint> limits;  ///< in the host's words
  std::string mode;       ///< flow's word, where the host has set no limit; empty for any
  std::string liftTable;  ///< of a tubing-head limit among them
  std::string liftAmount;
};

/// The deck's limits of these kinds (`keep` of the settings).
HeldByDeck KeptLimits(const DeckWell& deck, std::span<const std::string> kept);

/// All that the deck holds the well by.
HeldByDeck AllLimits(const DeckWell& deck);

/// A well's limit under the name that stands for it in a keyword.
struct NamedLimit {
  std::string well;
  std::string name;
  double value = 0.0;
};
using NamedLimits = std::vector<NamedLimit>;

/// Whether the well is to flow: the host may have shut it, or want nothing of it.
bool IsHeldOpen(WellType kind, const HostControls& host);

/// The well's WCONPROD or WCONINJE. Of two limits on the same thing the tighter one holds. With
/// `named`, names stand in the keyword for the limits, which are added there.
std::string ControlKeyword(const std::string& well, WellType kind, const HostControls& host,
                           const HeldByDeck& kept, NamedLimits* named = nullptr);

/// The word of flow's for the limit that the name stands for.
std::string LimitName(const NamedLimit& limit);

/// What makes the names of limits known to flow, as quantities that nobody computes.
std::string NamesKeyword();

/// The keyword for the part of the time that a well is up.
std::string UptimeKeyword(const std::string& well, double fraction);

}  // namespace gantry::flowlink
