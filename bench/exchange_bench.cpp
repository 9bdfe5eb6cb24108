// What the module adds to the bytes that it moves: one read of the wells (command 63: two data
// queries and the ten-rung sweep) and one whole step (63, then 50 and 53 for each well, then 49),
// each beside a raw exchange of the very same frames with the same peer in the same run, and the
// processor time of a start. docs/performance.md tells how to read the table.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "boundary/error_text.h"
#include "client/tcp_connection.h"
#include "client/wire_format.h"
#include "driven_module.h"
#include "recording.h"
#include "replay_peer.h"

namespace gantry::bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kWellCounts[] = {10, 100, 1000, 10000};
constexpr int kComponentCounts[] = {0, 8};
constexpr int kLeastRepetitions = 9;
constexpr int kMostRepetitions = 400;
constexpr double kSecondsPerCase = 3.0;
constexpr int kStarts = 3;
constexpr size_t kReadExchanges = 24;  // 2 for the data, 22 for the inflow

double Milliseconds(Clock::duration time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

double TimeOf(const std::function<void()>& work) {
  const Clock::time_point start = Clock::now();
  work();
  return Milliseconds(Clock::now() - start);
}

/// User and system time of this process, in milliseconds.
double ProcessorTime() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto of = [](const timeval& time) {
    return 1000.0 * static_cast<double>(time.tv_sec) + 0.001 * static_cast<double>(time.tv_usec);
  };
  return of(usage.ru_utime) + of(usage.ru_stime);
}

struct Series {
  std::vector<double> times;

  double Median() {
    const auto middle = times.begin() + static_cast<ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
  }
  double Least() const { return *std::min_element(times.begin(), times.end()); }
};

/// The other side of the comparison: the frames of a step, sent and received as bytes.
class RawExchange {
 public:
  explicit RawExchange(uint16_t port) {
    connection_.Connect("127.0.0.1", port, 60);
    recording_ = ReceiveRecording(connection_);
    size_t longest = 0;
    for (const Exchange& exchange : recording_) longest = std::max(longest, exchange.reply.size());
    reply_.resize(longest);
  }

  void Run(size_t exchanges) {
    for (size_t i = 0; i < exchanges; ++i) {
      WriteFrame(recording_[i].request);
      connection_.Read(std::span(reply_).first(recording_[i].reply.size()));
    }
  }

  size_t ExchangesOfStep() const { return recording_.size(); }
  double BytesOfStep() const {
    double bytes = 0.0;
    for (const Exchange& exchange : recording_)
      bytes += static_cast<double>(exchange.request.size() + exchange.reply.size());
    return bytes;
  }

 private:
  /// In the writes that the format prescribes: the frame's head, then chunk by chunk with a length
  /// word ahead of each but the first.
  void WriteFrame(std::span<const std::byte> frame) {
    constexpr size_t kHeadSize = 16;
    connection_.Write(frame.first(kHeadSize));
    frame = frame.subspan(kHeadSize);
    while (true) {
      const size_t chunk = std::min<size_t>(frame.size(), wire::kChunkSize);
      connection_.Write(frame.first(chunk));
      frame = frame.subspan(chunk);
      if (frame.empty()) return;
      connection_.Write(frame.first(sizeof(uint64_t)));
      frame = frame.subspan(sizeof(uint64_t));
    }
  }

  TcpConnection connection_;
  Recording recording_;
  Bytes reply_;
};

struct Result {
  Series readModule, readRaw, stepModule, stepRaw, wellExchange, start;
  double megabytes = 0.0;
};

Result Measure(const std::filesystem::path& folder, const std::filesystem::path& self,
               ModelSize size) {
  const uint16_t port = TcpListener(0).Port();
  DrivenModule module(folder, self, port, size);
  Result result;
  for (int i = 0; i < kStarts; ++i) {
    const double before = ProcessorTime();
    module.StartSimulator();
    result.start.times.push_back(ProcessorTime() - before);
    if (i + 1 < kStarts) module.CloseSimulator();
  }
  module.StartRun();
  const auto step = [&] {
    module.Read();
    result.wellExchange.times.push_back(TimeOf([&] { module.ExchangeWells(); }));
    module.Advance();
  };
  step();
  RawExchange raw(port);
  result.megabytes = raw.BytesOfStep() / 1e6;

  const Clock::time_point start = Clock::now();
  for (int i = 0; i < kMostRepetitions; ++i) {
    if (i >= kLeastRepetitions && Milliseconds(Clock::now() - start) > 1000.0 * kSecondsPerCase)
      break;
    result.readModule.times.push_back(TimeOf([&] { module.Read(); }));
    result.readRaw.times.push_back(TimeOf([&] { raw.Run(kReadExchanges); }));
    result.stepModule.times.push_back(TimeOf(step));
    result.stepRaw.times.push_back(TimeOf([&] { raw.Run(raw.ExchangesOfStep()); }));
  }
  return result;
}

void PrintHead() {
  std::puts(
      "One read of the wells and one whole step, the module beside a raw exchange of the same");
  std::puts(
      "frames. Milliseconds, median of the repetitions (least in brackets), ratio of medians.");
  std::puts("In a step, 50+53 is the exchange of the wells. Start is processor time.\n");
  std::printf("%6s %5s %5s | %-17s %-17s %5s | %-17s %-17s %5s | %6s | %6s\n", "wells", "comps",
              "MB", "read: module", "raw", "ratio", "step: module", "raw", "ratio", "50+53",
              "start");
}

std::string Cell(Series& series) {
  return FormatText("%8.2f (%6.2f)", series.Median(), series.Least());
}

std::string Compare(Series& module, Series& raw) {
  return FormatText("%s %s %5.2f", Cell(module).c_str(), Cell(raw).c_str(),
                    module.Median() / raw.Median());
}

void Print(ModelSize size, Result& result) {
  std::printf("%6d %5d %5.1f | %s | %s | %6.2f | %6.1f\n", size.wells, size.components,
              result.megabytes, Compare(result.readModule, result.readRaw).c_str(),
              Compare(result.stepModule, result.stepRaw).c_str(), result.wellExchange.Median(),
              result.start.Median());
  std::fflush(stdout);
}

/// Each size has a process of its own, so that none profits from another's storage.
bool MeasureApart(const std::filesystem::path& folder, const std::filesystem::path& self,
                  ModelSize size) {
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    int status = EXIT_SUCCESS;
    try {
      Result result = Measure(folder, self, size);
      Print(size, result);
    } catch (const std::exception& failure) {
      std::fprintf(stderr, "%d wells: %s\n", size.wells, failure.what());
      status = EXIT_FAILURE;
    }
    _exit(status);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return status == 0;
}

std::vector<ModelSize> AllSizes() {
  std::vector<ModelSize> sizes;
  for (const int components : kComponentCounts) {
    for (const int wells : kWellCounts) sizes.push_back({wells, components});
  }
  return sizes;
}

int RunAll(const std::vector<ModelSize>& sizes) {
  std::string pattern = (std::filesystem::temp_directory_path() / "gantry-bench-XXXXXX").string();
  const std::filesystem::path folder = ::mkdtemp(pattern.data());
  const auto self = std::filesystem::read_symlink("/proc/self/exe");
  PrintHead();
  bool isWhole = true;
  for (const ModelSize size : sizes) isWhole = MeasureApart(folder, self, size) && isWhole;
  std::filesystem::remove_all(folder);
  return isWhole ? EXIT_SUCCESS : EXIT_FAILURE;
}

/// The port that the module's command line tells; 0 when this isn't the simulator's role.
uint16_t PortOf(int argc, char** argv) {
  const std::string option = "--dopt=external_controller_port:";
  const std::string last = argc > 2 ? argv[2] : "";
  if (!last.starts_with(option)) return 0;
  return static_cast<uint16_t>(std::stoi(last.substr(option.size())));
}

}  // namespace
}  // namespace gantry::bench

int main(int argc, char** argv) {
  using namespace gantry::bench;
  try {
    const uint16_t port = PortOf(argc, argv);
    if (port != 0) {
      RunReplayPeer(port, SizeOf(argv[1]));
      return EXIT_SUCCESS;
    }
    // WELLS COMPONENTS: that size alone.
    return argc == 3 ? RunAll({{std::stoi(argv[1]), std::stoi(argv[2])}}) : RunAll(AllSizes());
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s: %s\n", argv[0], failure.what());
    return EXIT_FAILURE;
  }
}
