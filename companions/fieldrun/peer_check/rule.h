#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "fieldrun/peer_check/checked_session.h"

namespace gantry::fieldrun {

/// An answer of the right form with what mustn't stand there; the text says what came.
class RuleBroken : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

/// This model can't be asked; the text says why.
class NotAsked : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

/// One rule of the protocol. `hold` returns when the simulator keeps it; any exception tells that
/// it doesn't. A session that a rule leaves sound serves the next one.
struct Rule {
  std::string_view name;
  std::string_view sent;
  std::string_view due;                 ///< what must follow
  std::string_view reason;              ///< why it matters
  std::string_view section;             ///< of docs/wire-protocol.md
  std::vector<std::string_view> bases;  ///< rules without which this one can't be tried
  std::function<void(CheckedSession&)> hold;
  Stand needs = Stand::kBeginNewton;  ///< wells can be asked for from there on
};

using Rules = std::vector<Rule>;

/// In the order in which they are tried.
Rules AllRules();

// The parts of that table.
Rules SessionRules();
Rules WellRules();
Rules RefusalRules();
Rules EndRules();

inline void Require(bool holds, const std::string& came) {
  if (!holds) throw RuleBroken(came);
}

}  // namespace gantry::fieldrun
