// What every connector must do, done by the remote one: over real sockets to the service's
// controller, and from there to a simulated field.

#include <thread>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include "client/intersect_client.h"
#include "client/simulator_model.h"
#include "remote/remote_connector.h"
#include "remote/socket.h"
#include "runfactory/controller.h"
#include "runfactory/driver_connection.h"
#include "runfactory/simulator.h"
#include "support/connector_talk.h"
#include "support/free_ports.h"
#include "support/raised.h"
#include "support/scripted_peer.h"

namespace gantry::test {
namespace {

class RemoteRig : public ConnectorRig {
 public:
  RemoteRig(int32_t versionCode, ScriptedPeer::Answering answer)
      : versionCode_(versionCode), port_(static_cast<uint16_t>(FreePorts())), listener_(port_, 1) {
    peer_.Serve(std::move(answer));
    peer_.Start();
    controller_ = std::thread([this] { Control(); });
  }
  ~RemoteRig() override { controller_.join(); }
  RemoteRig(const RemoteRig&) = delete;
  RemoteRig& operator=(const RemoteRig&) = delete;

  std::unique_ptr<CExtConnectorBase> Connect() override {
    const SocketClient socket("127.0.0.1", port_);
    RemoteSessionData data;
    data.VersionCode = versionCode_;
    data.Socket = &socket;
    return CreateRemoteConnector(data);
  }

 private:
  /// What a session's process does once its simulator is up.
  void Control() {
    cluster::DriverConnection driver(
        platform::Descriptor(static_cast<int>(platform::Sockets().Accept(listener_.Listening()))));
    cluster::Simulator simulator(versionCode_);
    ConnectToModel(simulator.Client(), "127.0.0.1", peer_.Port(), 10);
    cluster::Controller controller(simulator, [](const std::string&) {});
    controller.Serve(driver);
  }

  class Listener : public SocketServer {
   public:
    using SocketServer::SocketServer;
    platform::SocketHandle Listening() const { return Handle(); }
  };

  const int32_t versionCode_;
  ScriptedPeer peer_;
  uint16_t port_;
  Listener listener_;
  std::thread controller_;
};

TEST(RemoteConnector, DoesWhatEveryConnectorMust) {
  for (const auto& [code, version] :
       {std::pair{kVersion2016_2, "2016.2"}, {kVersion2017_2, "2017.2"}}) {
    PlayWithField("client/talks/contract.talk", version, [&](ScriptedPeer::Answering answer) {
      return std::make_unique<RemoteRig>(code, std::move(answer));
    });
  }
}

TEST(DriverConnection, TellsThatNobodyTakesWhatItSends) {
  int ends[2] = {};
  ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
  cluster::DriverConnection driver{platform::Descriptor(ends[0])};
  ::close(ends[1]);
  EXPECT_EQ(Raised([&] { driver.SendText("OK"); }), "exception: cannot send to it: Broken pipe");
}

}  // namespace
}  // namespace gantry::test
