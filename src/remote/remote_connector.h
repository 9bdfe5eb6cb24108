#pragma once

#include <cstdint>
#include <memory>

#include "client/connector_base.h"

namespace gantry {

class SocketClient;

/// What a factory's dialogue leaves behind for the connector.
struct RemoteSessionData {
  int32_t VersionCode = 0;  ///< of the case's settings, not read from the simulator
  int32_t AlwaysOne = 1;
  const SocketClient* Socket = nullptr;  ///< the connector takes a copy, sharing the connection
};

/// The connector for a simulator on a cluster, which asks a controller there to do what a local
/// connector does itself: one numbered routine for each operation, in strict alternation over the
/// factory's connection. Throws `ConnectorError` when the session can't be established.
std::unique_ptr<CExtConnectorBase> CreateRemoteConnector(const RemoteSessionData& data);

}  // namespace gantry
