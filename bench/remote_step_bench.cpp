// What the remote connector adds to the bytes that it moves: the exchanges of one whole step (data
// and inflow of every well, the setters, the run to the next time) beside a raw exchange of the
// very same frames with the same controller in the same run. docs/performance.md tells how to read
// the table.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

#include "../tests/remote/passing_calls.h"
#include "peer_socket.h"
#include "remote/remote_connector.h"
#include "remote/remote_message.h"
#include "remote/socket.h"

namespace gantry::bench {
namespace {

using Clock = std::chrono::steady_clock;
using Bytes = std::vector<std::byte>;

constexpr int kWellCounts[] = {10, 100, 1000, 10000};
constexpr int kComponentCounts[] = {0, 8};
constexpr int kPoints = 10;
constexpr double kSecondsPerCase = 2.0;
constexpr size_t kLeastRepetitions = 5;
constexpr size_t kMostRepetitions = 300;

/// A socket's bytes as they are, without its framing.
class RawSocket : public Socket {
 public:
  explicit RawSocket(const Socket& socket) : Socket(socket) {}

  bool Take(std::span<std::byte> target) const {
    while (!target.empty()) {
      const int64_t count = platform::SystemSockets().Receive(Handle(), target);
      if (count <= 0) return false;
      target = target.subspan(static_cast<size_t>(count));
    }
    return true;
  }
  void Put(std::span<const std::byte> bytes) const {
    platform::SystemSockets().Send(Handle(), bytes);
  }
};

using Replies = std::map<Routine, MessageWriter>;

/// What the controller of a model of this size says to each routine.
Replies MakeReplies(int wells, int components) {
  Replies replies;
  for (const RoutineEntry& entry : RoutineTable()) {
    replies[entry.number].PutInt(static_cast<int32_t>(entry.number));
  }
  replies[Routine::kGetVersion].PutDouble(2017.2);
  replies[Routine::kGetMetricFlag].PutInt(1);
  replies[Routine::kGetTerminationFlag].PutInt(0);
  replies[Routine::kGetWellData].PutInt(wells);
  replies[Routine::kGetWellDataOfOne].PutText("OPEN");
  replies[Routine::kGetWellDataOfOne].PutDoubleArray(Doubles(8, 123.5));
  replies[Routine::kGetWellIPRData].PutInt(wells);
  replies[Routine::kGetWellIPRData].PutInt(kPoints);
  MessageWriter& inflow = replies[Routine::kGetWellIPRDataOfOne];
  for (int list = 0; list < 8; ++list) PutDoubles(inflow, Doubles(kPoints, 123.5));
  for (int point = 0; point < kPoints && components > 0; ++point) {
    PutDoubles(inflow, Doubles(static_cast<size_t>(components), 0.125));
  }
  for (auto& [routine, reply] : replies) reply.PutInt(0);
  return replies;
}

/// Answers one guest until it closes.
void Serve(const Socket& guest, const Replies& replies) {
  RawSocket raw(guest);
  Bytes request(4 * kLargestReply);
  uint32_t length = 0;
  while (raw.Take(std::as_writable_bytes(std::span(&length, 1))) &&
         raw.Take(std::span(request).first(length))) {
    const auto routine = static_cast<Routine>(MessageReader(request).GetInt());
    raw.SendFrame(replies.at(routine).Bytes());
  }
}

/// Two guests, one behind the other: the connector's and the raw one. They take turns.
[[noreturn]] void RunController(SocketServer& server, int wells, int components) {
  const Replies replies = MakeReplies(wells, components);
  const std::unique_ptr<Socket> first = server.Accept();
  std::thread other([&] { Serve(*server.Accept(), replies); });
  Serve(*first, replies);
  other.join();
  std::_Exit(0);
}

/// One request as the connector sent it, and the length of what it read in answer.
struct Exchange {
  Bytes request;
  size_t replyLength = 0;
};

class RecordingCalls : public test::PassingCalls {
 public:
  int64_t Send(platform::SocketHandle socket, std::span<const std::byte> bytes) override {
    exchanges.push_back({Bytes(bytes.begin(), bytes.end())});
    return PassingCalls::Send(socket, bytes);
  }
  int64_t Receive(platform::SocketHandle socket, std::span<std::byte> bytes) override {
    const int64_t count = PassingCalls::Receive(socket, bytes);
    exchanges.back().replyLength += static_cast<size_t>(count);
    return count;
  }

  std::vector<Exchange> exchanges;
};

/// What a model asks of its connector in one step.
class Step {
 public:
  Step(CExtConnectorBase& connector, int wells, int components)
      : connector_(connector), components_(components) {
    for (int i = 0; i < wells; ++i) wells_.push_back("WELL_" + std::to_string(i));
    items_.assign(wells_.size(), {"LIQUID_PRODUCTION_RATE"});
  }

  void Run() {
    std::vector<ConnectorWellRecord> records;
    connector_.GetWellDataAndIPR(components_, wells_, records, true, 2.5);
    connector_.SetWellStatus(wells_, Strings(wells_.size(), "OPEN"));
    connector_.SetWellUptime(wells_, Doubles(wells_.size(), 1.0));
    connector_.SetWellConstraints(wells_, items_, std::vector(wells_.size(), Doubles{500.0}),
                                  std::vector(wells_.size(), std::vector<int32_t>{kLiquidRate}));
    connector_.SetWellInjectionComposition({}, {});
    connector_.RunUntil(days_ += 30.0);
    connector_.GetTerminationFlag();
  }

 private:
  CExtConnectorBase& connector_;
  int components_;
  Strings wells_;
  std::vector<Strings> items_;
  double days_ = 0.0;
};

void RunRaw(const RawSocket& raw, const std::vector<Exchange>& exchanges, Bytes& reply) {
  for (const Exchange& exchange : exchanges) {
    raw.Put(exchange.request);
    raw.Take(std::span(reply).first(exchange.replyLength));
  }
}

template <class Work>
double MillisecondsOf(Work work) {
  const Clock::time_point start = Clock::now();
  work();
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double Median(std::vector<double> times) {
  const auto middle = times.begin() + static_cast<ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

void Measure(int wells, int components) {
  const uint16_t port = FreePort();
  SocketServer server(port, 2);
  const pid_t controller = ::fork();
  if (controller == 0) RunController(server, wells, components);
  const SocketClient driver("127.0.0.1", port);
  RemoteSessionData session;
  session.VersionCode = kVersion2017_2;
  session.Socket = &driver;
  auto connector = CreateRemoteConnector(session);
  Step step(*connector, wells, components);
  std::vector<Exchange> exchanges;
  {
    RecordingCalls recording;
    step.Run();
    exchanges = std::move(recording.exchanges);
  }
  auto raw = std::make_unique<RawSocket>(SocketClient("127.0.0.1", port));
  Bytes reply(kLargestReply + 4);
  std::vector<double> ours;
  std::vector<double> baseline;
  const Clock::time_point end = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                                   std::chrono::duration<double>(kSecondsPerCase));
  while (ours.size() < kLeastRepetitions ||
         (Clock::now() < end && ours.size() < kMostRepetitions)) {
    ours.push_back(MillisecondsOf([&] { step.Run(); }));
    baseline.push_back(MillisecondsOf([&] { RunRaw(*raw, exchanges, reply); }));
  }
  std::printf("%8d %10d %10zu %12.3f %12.3f %8.2f\n", wells, components, exchanges.size(),
              Median(ours), Median(baseline), Median(ours) / Median(baseline));
  std::fflush(stdout);
  raw->Close();
  connector.reset();
  ::waitpid(controller, nullptr, 0);
}

}  // namespace
}  // namespace gantry::bench

int main() {
  std::printf("One remote step, medians in milliseconds\n");
  std::printf("%8s %10s %10s %12s %12s %8s\n", "wells", "components", "exchanges", "connector",
              "raw", "ratio");
  for (const int components : gantry::bench::kComponentCounts) {
    for (const int wells : gantry::bench::kWellCounts) gantry::bench::Measure(wells, components);
  }
  return 0;
}
