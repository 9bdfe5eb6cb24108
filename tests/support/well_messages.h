#pragma once

#include <string>

#include "support/scripted_peer.h"

namespace gantry::test {

/// What a simulator says to a local connector until its session stands. A metric one.
ScriptedPeer& GreetMetricConnector(ScriptedPeer& peer);

/// The question for one item of one well, and its answer, in the simulator's units.
Entries WellQuestion(const std::string& well, const std::string& item);
Entries WellAnswer(const std::string& well, const std::string& item, double value);

/// The order to hold one item of one well at a value, in the simulator's units.
Entries WellConstraint(const std::string& well, const std::string& item, double value);

}  // namespace gantry::test
