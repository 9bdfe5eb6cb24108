#include "replay_peer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <thread>

#include "boundary/error_text.h"
#include "peer_socket.h"
#include "recording.h"
#include "support/simulated_field.h"

namespace gantry::bench {
namespace {

using FrameHead = std::array<uint64_t, 2>;

/// Eight wells in ten produce, two inject water, and every hundredth of a compositional model
/// injects gas.
test::SimulatedField FieldOf(ModelSize size) {
  const auto count = static_cast<size_t>(size.components);
  test::SimulatedField field;
  field.isMetric = false;
  field.endOfRun = 1e9;
  field.binaryInteraction.assign(count * (count - 1) / 2, 0.01);
  field.eosProperties = {{"TCrit", test::Numbers(count, 100.0)}};
  field.components.clear();
  for (size_t i = 0; i < count; ++i) field.components.push_back(FormatText("C%zu", i + 1));
  field.wells.clear();
  for (int i = 0; i < size.wells; ++i) {
    const bool injectsGas = count > 0 && i % 100 == 99;
    const char* type = injectsGas ? "GAS_INJECTOR" : i % 10 < 8 ? "PRODUCER" : "WATER_INJECTOR";
    field.wells.push_back({.name = FormatText("WELL-%05d", i + 1), .type = type});
  }
  return field;
}

test::Entries Receive(ByteChannel& channel) {
  FrameHead head;
  channel.Read(std::as_writable_bytes(std::span(head)));
  std::string payload;
  for (uint64_t chunk = head[1];;) {
    const size_t begin = payload.size();
    payload.resize(begin + chunk);
    channel.Read(std::as_writable_bytes(std::span(payload).subspan(begin)));
    if (payload.size() == head[0]) return test::Decode(payload);
    channel.Read(std::as_writable_bytes(std::span(&chunk, 1)));
  }
}

void Send(ByteChannel& channel, const test::Entries& message) {
  const std::string frame = test::Frame(message);
  channel.Write(std::as_bytes(std::span(frame)));
}

/// Serves the start of a run and its first step; gives the exchanges of the step, or none when the
/// guest has asked for the end of the run instead.
Recording RecordFirstStep(ByteChannel& guest, ModelSize size) {
  RecordingChannel channel(guest);
  test::SimulatedField field = FieldOf(size);
  size_t firstOfStep = 0;
  for (std::string word; word != "CONTINUE_UNTIL";) {
    const test::Entries request = Receive(channel);
    word = request[request[0].name == "QUERY" ? 1 : 0].name;
    if (word == "QWELLS" && firstOfStep == 0) firstOfStep = channel.Exchanges().size() - 1;
    if (word == "SHUTDOWN") return {};
    for (const test::Entries& reply : AnswerOnWire(field, request)) Send(channel, reply);
  }
  Recording& all = channel.Exchanges();
  return {std::make_move_iterator(all.begin() + static_cast<ptrdiff_t>(firstOfStep)),
          std::make_move_iterator(all.end())};
}

/// Gives canned answers, by the place of a request in the step and with no look at its content. A
/// request as long as the step's first begins a new one.
class Replay {
 public:
  explicit Replay(const Recording& recording) : recording_(recording) {
    size_t longest = 0;
    for (const Exchange& exchange : recording) longest = std::max(longest, exchange.request.size());
    request_.resize(longest);
  }

  /// False once the guest has asked for the end of the run.
  bool AnswerOne(ByteChannel& guest) {
    FrameHead head;
    guest.Read(std::as_writable_bytes(std::span(head)));
    if (head == HeadOf(recording_.front())) next_ = 0;
    if (next_ == recording_.size() || head != HeadOf(recording_[next_])) return false;
    const Exchange& exchange = recording_[next_++];
    guest.Read(std::span(request_).first(exchange.request.size() - sizeof head));
    guest.Write(exchange.reply);
    return true;
  }

 private:
  static FrameHead HeadOf(const Exchange& exchange) {
    FrameHead head;
    std::memcpy(head.data(), exchange.request.data(), sizeof head);
    return head;
  }

  const Recording& recording_;
  Bytes request_;
  size_t next_ = 0;
};

/// Until the guest asks for the end of the run or has gone.
void AnswerToTheEnd(const Recording& recording, PeerSocket& guest) {
  Replay replay(recording);
  try {
    while (replay.AnswerOne(guest)) {
    }
  } catch (const std::runtime_error&) {
  }
}

/// The same for two guests who take turns, with no thread asleep.
void AnswerAwake(const Recording& recording, PeerSocket& one, PeerSocket& other) {
  Replay replays[] = {Replay(recording), Replay(recording)};
  try {
    while ((!one.HasBytes() || replays[0].AnswerOne(one)) &&
           (!other.HasBytes() || replays[1].AnswerOne(other))) {
    }
  } catch (const std::runtime_error&) {
  }
}

}  // namespace

void RunReplayPeer(uint16_t port, ModelSize size) {
  auto listener = std::make_unique<PeerListener>(port);
  const auto module = listener->Accept(size.peerSpins);
  const Recording recording = RecordFirstStep(*module, size);
  if (recording.empty()) {
    // The next simulator may want the port as soon as the guest knows of the end.
    listener.reset();
    Send(*module, {"FINISHED", "END"});
    return;
  }
  const auto raw = listener->Accept(size.peerSpins);
  SendRecording(*raw, recording);
  if (size.peerSpins) return AnswerAwake(recording, *module, *raw);
  std::jthread rawAnswers([&] { AnswerToTheEnd(recording, *raw); });
  AnswerToTheEnd(recording, *module);
}

}  // namespace gantry::bench
