// What a remote controller may answer once a session stands. The input's first byte picks the
// operation, the rest is all that the controller ever says. Every outcome but a standard exception
// or a result is a fault.
// Reads: src/remote/remote_connector.cpp src/remote/remote_connector_wells.cpp
// Reads: src/remote/message_reader.cpp src/remote/remote_message.cpp
// Beyond: ::RunUntil( ::SetWellStatus( ::SetWellUptime( ::SetWellConstraints(
// Beyond: ::SetWellInjectionComposition( PutDoubles PutTextRows PutDoubleRows
// Beyond: ::GetConnectorVersionName(

#include "remote/passing_calls.h"
#include "remote/remote_connector.h"
#include "remote/socket.h"
#include "remote/wire_bytes.h"
#include "target.h"

using namespace gantry::fuzz;

namespace {

using gantry::CExtConnectorBase;
using gantry::Strings;
using gantry::test::Message;

const Strings kWells = {"P1", "P2"};

/// A connection from memory, lost when its bytes are.
class MemorySockets : public gantry::test::PassingCalls {
 public:
  explicit MemorySockets(std::string bytes) : bytes_(std::move(bytes)) {}

  gantry::platform::SocketHandle OpenTcp() override { return 1; }
  void Close(gantry::platform::SocketHandle) override {}
  bool SetBlocking(gantry::platform::SocketHandle, bool) override { return true; }
  std::optional<uint32_t> FindHost(const std::string&) override { return 0; }
  int Connect(gantry::platform::SocketHandle, uint32_t, uint16_t) override { return 0; }
  int64_t Send(gantry::platform::SocketHandle, std::span<const std::byte> bytes) override {
    return static_cast<int64_t>(bytes.size());
  }
  int64_t Receive(gantry::platform::SocketHandle, std::span<std::byte> target) override {
    const size_t count = std::min(target.size(), bytes_.size() - position_);
    if (count == 0) return gantry::platform::kSocketError;
    std::memcpy(target.data(), bytes_.data() + position_, count);
    position_ += count;
    return static_cast<int64_t>(count);
  }

 private:
  std::string bytes_;
  size_t position_ = 0;
};

constexpr std::array<void (*)(CExtConnectorBase&), 8> kOperations = {
    [](CExtConnectorBase& connector) {
      std::vector<gantry::ConnectorWellRecord> records;
      connector.GetWellDataAndIPR(2, kWells, records, true, 2.5);
    },
    [](CExtConnectorBase& connector) {
      std::vector<gantry::ConnectorWellRecord> records(2);
      records[0].name = kWells[0];
      records[1].name = kWells[1];
      connector.GetWellIPRData(3, kWells, records, true, 2.5);
    },
    [](CExtConnectorBase& connector) {
      std::vector<gantry::ConnectorWellStatus> statuses;
      connector.GetWellStatus(statuses);
    },
    [](CExtConnectorBase& connector) {
      gantry::EOSProperties properties;
      connector.GetEOSProperties(properties);
    },
    [](CExtConnectorBase& connector) {
      gantry::Doubles values;
      connector.GetWellVariables("P1", {"A", "B"}, {0, 6}, values);
    },
    [](CExtConnectorBase& connector) { connector.SetInjectionSource("P1", "S"); },
    [](CExtConnectorBase& connector) {
      int32_t day = 0, month = 0, year = 0;
      connector.GetDate(day, month, year);
    },
    [](CExtConnectorBase& connector) { connector.GetTimeDays(); },
};

}  // namespace

FUZZ_TARGET(remote_reply) {
  const auto operation = kOperations[TakeByte(input) % kOperations.size()];
  using gantry::test::Double;
  using gantry::test::kAccepted;
  MemorySockets sockets(Message(1, kAccepted) + Message(17, Double(2017.2) + kAccepted) +
                        Message(3, gantry::test::Int(1) + kAccepted) + std::string(input));
  const gantry::platform::SocketCallsOverride override(sockets);
  const gantry::SocketClient socket("controller", 1);
  gantry::RemoteSessionData session;
  session.VersionCode = gantry::kVersion2017_2;
  session.Socket = &socket;
  const auto connector = gantry::CreateRemoteConnector(session);
  MayRefuse<std::runtime_error>([&] { operation(*connector); });
}
