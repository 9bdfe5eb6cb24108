#include "simulator_side/controller_session.h"

#include <algorithm>

#include <boost/system/system_error.hpp>

#include "client/wire_format.h"
#include "text/failure_text.h"

namespace gantry::simulator {

namespace {

constexpr std::string_view kProtocolVersion = "V2";

const char* NameOf(Stop stop) {
  static constexpr const char* kNames[] = {"MODEL_DEFINITION", "BEGIN_NEWTON", "END_SIMULATE"};
  return kNames[static_cast<size_t>(stop)];
}

/// A fault is the one error of the answer; an empty text is none.
void AnswerSetUp(ByteChannel& channel, const std::string& fault) {
  Strings errors;
  if (!fault.empty()) errors.push_back(fault);
  MessageStream(channel)
      .CreateOutgoingMessage()
      .AppendMarker("STARTED")
      .AppendStrings("ERRORS", errors)
      .AppendMarker("END")
      .Send();
}

}  // namespace

const std::vector<ControllerSession::Operation> ControllerSession::kOperations = {
    {"CONTINUE", "", &ControllerSession::Continue},
    {"CONTINUE_UNTIL", "", &ControllerSession::ContinueUntil},
    {"SHUTDOWN", "", &ControllerSession::Shutdown},
    {"QUERY", "QWELLS", &ControllerSession::QueryWells},
    {"QUERY", "QWELLS_STR", &ControllerSession::QueryWellTexts},
    {"QUERY", "QRESVR", &ControllerSession::QueryReservoir},
    {"QUERY", "QRESVR_STR", &ControllerSession::QueryReservoirTexts},
    {"QUERY", "QWCONSTRAINTS", &ControllerSession::QueryConstraints},
    {"QUERY", "QIPRDATA", &ControllerSession::QueryInflow},
    {"QUERY", "QFMFLUIDMODEL", &ControllerSession::QueryFluidModel},
    {"QUERY", "QRFLUIDMODEL", &ControllerSession::QueryReservoirFluids},
    {"SET", "SETWCONSTRAINTS", &ControllerSession::SetConstraints},
    {"SET", "SETWSTATUS", &ControllerSession::SetStatus},
    {"SET", "SETWELLS", &ControllerSession::SetWells},
    {"SET", "CREATE_FLDSRCEXT", &ControllerSession::CreateFluidSource},
    {"SET", "SETWSTRE", &ControllerSession::SetFluidSource},
};

ControllerSession::ControllerSession(ControlledSimulator& simulator, ByteChannel& channel)
    : simulator_(simulator), channel_(channel), stream_(channel), wells_(simulator.WellNames()) {
  stream_.CreateOutgoingMessage().AppendMarker("READY").AppendMarker("END").KeepAs(ready_);
}

void ControllerSession::Run() {
  SetUp();
  while (running_) {
    IncomingMessage message = stream_.ReceiveMessage();
    try {
      Serve(message);
    } catch (const boost::system::system_error&) {
      throw;
    } catch (const std::exception& failure) {
      Refuse(FailureText(failure));
      throw;
    }
  }
}

void ControllerSession::SetUp() {
  const std::string fault = ReadSetUp();
  AnswerSetUp(channel_, fault);
  if (!fault.empty()) throw RequestRefused(fault);
  SendPosition();
}

std::string ControllerSession::ReadSetUp() {
  IncomingMessage message = stream_.ReceiveMessage();
  try {
    message.ExpectMarker("SETUP");
    const std::string version = message.ReadStrings("VERSION", 1).front();
    FinishRequest(message);
    if (version == kProtocolVersion) return {};
    return "The simulator doesn't speak version \"" + version +
           "\" of the external-controller protocol: it speaks \"" + std::string(kProtocolVersion) +
           "\".";
  } catch (const std::exception& failure) {
    return std::string("Malformed set-up: ") + failure.what();
  }
}

void ControllerSession::Serve(IncomingMessage& message) {
  const Header first = message.ReadHeader();
  IncomingMessage::CheckMarker(first);
  std::string_view name;
  if (first.name == "QUERY" || first.name == "SET") {
    const Header second = message.ReadHeader();
    IncomingMessage::CheckMarker(second);
    name = second.name;
  }
  const auto found = std::ranges::find_if(kOperations, [&](const Operation& operation) {
    return operation.verb == first.name && operation.name == name;
  });
  if (found == kOperations.end()) {
    throw RequestRefused("Unknown message " + std::string(first.name) +
                         (name.empty() ? "" : " " + std::string(name)));
  }
  (this->*found->serve)(message);
}

void ControllerSession::Refuse(std::string_view reason) {
  const std::string text = "ERROR: " + std::string(reason);
  // A stream of its own: what the failed request left in the session's must not stand in the way.
  MessageStream(channel_)
      .CreateOutgoingMessage()
      .AppendMarker(std::string_view(text).substr(0, wire::kLongestName))
      .AppendMarker("END")
      .Send();
}

void ControllerSession::Continue(IncomingMessage& message) {
  FinishRequest(message);
  simulator_.ContinueToFirstNewton();
  SendPosition();
}

void ControllerSession::ContinueUntil(IncomingMessage& message) {
  const double days = message.ReadDoubles("TIME", 1).front();
  FinishRequest(message);
  simulator_.ContinueUntil(days);
  SendPosition();
}

void ControllerSession::Shutdown(IncomingMessage& message) {
  FinishRequest(message);
  simulator_.Shutdown();
  running_ = false;
  stream_.CreateOutgoingMessage().AppendMarker("FINISHED").AppendMarker("END").Send();
}

void ControllerSession::SendPosition() {
  const RunPosition position = simulator_.Position();
  stream_.CreateOutgoingMessage()
      .AppendMarker("STEP")
      .AppendString("POSITION", NameOf(position.stop))
      .AppendDouble("TIME", position.days)
      .AppendInts("DATE", position.date)
      .AppendMarker("END")
      .Send();
}

std::vector<size_t> ControllerSession::KnownWells(const Strings& names) const {
  std::vector<size_t> known;
  if (names.size() == 1 && names.front() == "*") {
    known.resize(simulator_.WellNames().size());
    for (size_t i = 0; i < known.size(); ++i) known[i] = i;
    return known;
  }
  known.reserve(names.size());
  for (const std::string& name : names) {
    if (const auto well = wells_.Find(name)) known.push_back(*well);
  }
  return known;
}

size_t ControllerSession::WellNamed(const std::string& name) const {
  const auto well = wells_.Find(name);
  if (!well) throw RequestRefused("Unknown well " + name);
  return *well;
}

OutgoingMessage ControllerSession::StartReply() {
  OutgoingMessage reply = stream_.CreateOutgoingMessage();
  reply.AppendMarker("REPLY");
  return reply;
}

void ControllerSession::FinishReply(OutgoingMessage& reply) {
  reply.AppendMarker("END").SendAheadOf(ready_);
}

void FinishRequest(IncomingMessage& message) {
  message.ExpectMarker("END");
  message.EndOfMessage();
}

void RefuseController(ByteChannel& channel, const std::string& reason) {
  MessageStream(channel).ReceiveMessage();
  AnswerSetUp(channel, reason);
}

}  // namespace gantry::simulator
