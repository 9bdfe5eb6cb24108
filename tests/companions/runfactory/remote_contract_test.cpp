// What every connector must do, done by the remote one: over real sockets to the service's
// controller, and from there to a simulated field.

#include <thread>

#include "client/connector_contract.h"
#include "client/intersect_client.h"
#include "client/simulator_model.h"
#include "remote/remote_connector.h"
#include "remote/socket.h"
#include "runfactory/controller.h"
#include "runfactory/driver_connection.h"
#include "runfactory/simulator.h"
#include "support/free_ports.h"
#include "support/scripted_peer.h"

namespace gantry::test {
namespace {

template <int32_t kVersionCode>
class RemoteRig {
 public:
  static constexpr bool kSetsInjection = kVersionCode >= kVersion2017_2;

  explicit RemoteRig(SimulatedField& field)
      : port_(static_cast<uint16_t>(FreePorts())), listener_(port_, 1) {
    peer_.Greet()
        .Serve([&field](const Entries& request) { return AnswerOnWire(field, request); })
        .Start();
    controller_ = std::thread([this] { Control(); });
  }
  ~RemoteRig() { controller_.join(); }
  RemoteRig(const RemoteRig&) = delete;
  RemoteRig& operator=(const RemoteRig&) = delete;

  std::unique_ptr<CExtConnectorBase> Connect() {
    const SocketClient socket("127.0.0.1", port_);
    RemoteSessionData data;
    data.VersionCode = kVersionCode;
    data.Socket = &socket;
    return CreateRemoteConnector(data);
  }

 private:
  /// What a session's process does once its simulator is up.
  void Control() {
    cluster::DriverConnection driver(
        platform::Descriptor(static_cast<int>(platform::Sockets().Accept(listener_.Listening()))));
    const std::unique_ptr<cluster::Simulator> simulator = cluster::MakeSimulator(kVersionCode);
    ConnectToModel(simulator->Client(), "127.0.0.1", peer_.Port(), 10);
    cluster::Controller controller(*simulator, [](const std::string&) {});
    controller.Serve(driver);
  }

  class Listener : public SocketServer {
   public:
    using SocketServer::SocketServer;
    platform::SocketHandle Listening() const { return Handle(); }
  };

  ScriptedPeer peer_;
  uint16_t port_;
  Listener listener_;
  std::thread controller_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(V2016_2, ConnectorContract, RemoteRig<kVersion2016_2>);
INSTANTIATE_TYPED_TEST_SUITE_P(V2017_2, ConnectorContract, RemoteRig<kVersion2017_2>);

}  // namespace
}  // namespace gantry::test
