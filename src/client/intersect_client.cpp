#include "client/intersect_client.h"

#include <stdexcept>

#include "client/tcp_connection.h"

namespace gantry {

namespace {

struct PositionName {
  AlgorithmicPosition position;
  const char* text;
  bool isReported;  ///< may come from the simulator
};

constexpr std::array<PositionName, 5> kPositions = {{
    {AlgorithmicPosition::UNCONNECTED, "UNCONNECTED", false},
    {AlgorithmicPosition::STARTING, "STARTING", false},
    {AlgorithmicPosition::MODEL_DEFINITION, "MODEL_DEFINITION", true},
    {AlgorithmicPosition::BEGIN_NEWTON, "BEGIN_NEWTON", true},
    {AlgorithmicPosition::END_SIMULATE, "END_SIMULATE", true},
}};

AlgorithmicPosition ReportedPosition(const std::string& text) {
  for (const PositionName& name : kPositions) {
    if (name.isReported && text == name.text) return name.position;
  }
  throw std::invalid_argument("Incorrect algorithmic position received (" + text + ")");
}

}  // namespace

std::string position_name(AlgorithmicPosition position) {
  for (const PositionName& name : kPositions) {
    if (name.position == position) return name.text;
  }
  throw std::invalid_argument("Incorrect algorithmic position");
}

IntersectClientBase::IntersectClientBase()
    : IntersectClientBase(std::make_unique<TcpConnection>()) {}

IntersectClientBase::IntersectClientBase(std::unique_ptr<PeerConnection> connection)
    : connection_(std::move(connection)), stream_(*connection_) {}

IntersectClientBase::~IntersectClientBase() = default;

void IntersectClientBase::connect(const std::string& host, uint32_t port,
                                  uint32_t timeout_seconds) {
  if (position_ != AlgorithmicPosition::UNCONNECTED) {
    throw std::invalid_argument("Already connected to INTERSECT.");
  }
  connection_->Connect(host, port, timeout_seconds);
  SendSetup();
  position_ = AlgorithmicPosition::STARTING;
  receive_position();
}

void IntersectClientBase::SendSetup() {
  stream_.CreateOutgoingMessage()
      .AppendMarker("SETUP")
      .AppendString("VERSION", "V2")
      .AppendMarker("END")
      .Send();
  IncomingMessage reply = stream_.ReceiveMessage();
  reply.ExpectMarker("STARTED");
  const Strings errors = reply.ReadStrings("ERRORS");
  reply.ExpectMarker("END");
  reply.EndOfMessage();
  if (!errors.empty()) throw std::invalid_argument(errors.front());
}

void IntersectClientBase::continue_simulation() {
  SendRunControl(stream_.CreateOutgoingMessage().AppendMarker("CONTINUE"));
}

void IntersectClientBase::continue_simulation_until(double time) {
  SendRunControl(
      stream_.CreateOutgoingMessage().AppendMarker("CONTINUE_UNTIL").AppendDouble("TIME", time));
}

void IntersectClientBase::shutdown() {
  SendRunControl(stream_.CreateOutgoingMessage().AppendMarker("SHUTDOWN"));
}

void IntersectClientBase::SendRunControl(OutgoingMessage message) {
  message.AppendMarker("END").Send();
  receive_position();
}

void IntersectClientBase::receive_position() {
  IncomingMessage message = stream_.ReceiveMessage();
  const Header header = message.ReadHeader();
  IncomingMessage::CheckMarker(header);
  if (header.name == "STEP") {
    ReceiveStep(message);
  } else if (header.name == "FINISHED") {
    message.ExpectMarker("END");
    position_ = AlgorithmicPosition::END_SIMULATE;
  } else {
    throw std::invalid_argument("Incorrect header received (" + std::string(header.name) + ")");
  }
  message.EndOfMessage();
}

void IntersectClientBase::ReceiveStep(IncomingMessage& message) {
  position_ = ReportedPosition(message.ReadStrings("POSITION", 1).front());
  time_ = message.ReadDoubles("TIME", 1).front();
  const std::vector<int32_t> date = message.ReadInts("DATE", date_.size());
  std::copy(date.begin(), date.end(), date_.begin());
  message.ExpectMarker("END");
}

void IntersectClientBase::receive_ready() {
  IncomingMessage message = stream_.ReceiveMessage();
  message.ExpectMarker("READY");
  message.ExpectMarker("END");
  message.EndOfMessage();
}

}  // namespace gantry
