#include "replay_peer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <thread>

#include <boost/system/system_error.hpp>

#include "client/tcp_connection.h"
#include "recording.h"

namespace gantry::bench {
namespace {

using FrameHead = std::array<uint64_t, 2>;
constexpr int kAcceptSeconds = 60;

/// Serves the start of a run and its first step; gives the exchanges of the step, or none when the
/// guest has asked for the end of the run instead.
Recording RecordFirstStep(ByteChannel& guest, ModelSize size) {
  RecordingChannel channel(guest);
  MessageStream stream(channel);
  SyntheticSimulator simulator(size);
  size_t firstOfStep = 0;
  for (;;) {
    const std::string word = simulator.AnswerOne(stream);
    if (word == "QWELLS" && firstOfStep == 0) firstOfStep = channel.Exchanges().size() - 1;
    if (word == "SHUTDOWN") return {};
    if (word == "CONTINUE_UNTIL") break;
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
void AnswerToTheEnd(const Recording& recording, ByteChannel& guest) {
  Replay replay(recording);
  try {
    while (replay.AnswerOne(guest)) {
    }
  } catch (const boost::system::system_error&) {
  }
}

}  // namespace

void RunReplayPeer(uint16_t port, ModelSize size) {
  auto listener = std::make_unique<TcpListener>(port);
  const auto module = listener->Accept(kAcceptSeconds);
  if (module == nullptr) throw std::runtime_error("nobody came");
  const Recording recording = RecordFirstStep(*module, size);
  if (recording.empty()) {
    // The next simulator may want the port as soon as the guest knows of the end.
    listener.reset();
    MessageStream(*module)
        .CreateOutgoingMessage()
        .AppendMarker("FINISHED")
        .AppendMarker("END")
        .Send();
    return;
  }
  const auto raw = listener->Accept(kAcceptSeconds);
  if (raw == nullptr) throw std::runtime_error("nobody came for the raw exchange");
  SendRecording(*raw, recording);

  std::jthread rawAnswers([&] { AnswerToTheEnd(recording, *raw); });
  AnswerToTheEnd(recording, *module);
}

}  // namespace gantry::bench
