#pragma once

#include <functional>
#include <memory>

#include "client/connector_base.h"
#include "support/play.h"
#include "support/scripted_peer.h"

namespace gantry::test {

/// Asks a connector for the operation that a call names, with arguments by their names, such as
/// `SetWellUptime WELLS{P1} VALUES[0.5]`, and tells what it gives.
void Ask(CExtConnectorBase& connector, const Entries& call, Texts& told);

/// Stands a connector of one kind before a simulated field, and is destroyed after it.
class ConnectorRig {
 public:
  virtual ~ConnectorRig() = default;
  /// Throws as the kind's factory does.
  virtual std::unique_ptr<CExtConnectorBase> Connect() = 0;
};

/// Of what the field answers.
using MakeRig = std::function<std::unique_ptr<ConnectorRig>(ScriptedPeer::Answering)>;

/// Plays the talks of a file with connectors before a simulated field, a new one for each talk;
/// without those that belong to another version, whose name such a talk ends with. Beyond the
/// operations of a connector, a call may be
///
///   Connect                                a new connector, in place of the one before
///   Field VERSION{2016.2} METRIC<0> ...    what is changed of the field
///   Say QWELLS REPLY ... END               its answer to such messages, from now on
///   Requests                               how many messages came since this was asked last
///
/// and what stands behind ">>" is what the field was first told to do for a call.
void PlayWithField(const std::string& file, const std::string& version, const MakeRig& makeRig);

}  // namespace gantry::test
