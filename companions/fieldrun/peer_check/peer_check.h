#pragma once

#include <functional>
#include <string>

#include "fieldrun/peer_check/rule.h"

namespace gantry::fieldrun {

enum class RuleResult { kHolds, kFails, kNotAsked, kNotReached };

/// What has come of one rule.
struct RuleVerdict {
  const Rule* rule;
  RuleResult result;
  std::string came;   ///< where it fails: what came instead; else why it wasn't tried
  std::string bytes;  ///< the first of the last answer
  std::string said;   ///< the simulator's last words
};

/// Holds a simulator to every rule of the protocol, one after the other, each in a session that is
/// sound: after a failure in one of its own. A rule of which a basis doesn't hold isn't tried.
/// Tells each verdict as it comes; the rules live for as long as the caller keeps `rules`.
void CheckPeer(const PeerSetting& setting, const Rules& rules,
               const std::function<void(const RuleVerdict&)>& tell);

}  // namespace gantry::fieldrun
