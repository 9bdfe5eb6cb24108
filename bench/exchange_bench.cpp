// What the module adds to the bytes that it moves: one read of the wells (command 63: two data
// queries and the ten-rung sweep) and one whole step (63, then 50 and 53 for each well, then 49),
// each beside two raw exchanges of the very same frames with the same peer in the same run, and the
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
#include "client/wire_format.h"
#include "driven_module.h"
#include "peer_socket.h"
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
  explicit RawExchange(uint16_t port) : connection_(ConnectTo(port)) {
    recording_ = ReceiveRecording(*connection_);
    size_t longest = 0;
    for (const Exchange& exchange : recording_) longest = std::max(longest, exchange.reply.size());
    reply_.resize(longest);
  }

  using Write = void (RawExchange::*)(std::span<const std::byte>);
  void Run(size_t exchanges, Write write) {
    for (size_t i = 0; i < exchanges; ++i) {
      (this->*write)(recording_[i].request);
      connection_->Read(std::span(reply_).first(recording_[i].reply.size()));
    }
  }
  void WriteWhole(std::span<const std::byte> frame) { connection_->Write(frame); }
  /// The frame's head, then chunk by chunk with a length word ahead of each but the first.
  void WriteInPieces(std::span<const std::byte> frame) {
    constexpr size_t kHeadSize = 16;
    connection_->Write(frame.first(kHeadSize));
    frame = frame.subspan(kHeadSize);
    while (true) {
      const size_t chunk = std::min<size_t>(frame.size(), wire::kChunkSize);
      connection_->Write(frame.first(chunk));
      frame = frame.subspan(chunk);
      if (frame.empty()) return;
      connection_->Write(frame.first(sizeof(uint64_t)));
      frame = frame.subspan(sizeof(uint64_t));
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
  std::unique_ptr<PeerSocket> connection_;
  Recording recording_;
  Bytes reply_;
};

/// One piece of work by the module, and by both baselines.
struct Compared {
  Series module, pieces, gathered;

  void Run(const std::function<void()>& work, RawExchange& raw, size_t exchanges) {
    module.times.push_back(TimeOf(work));
    const auto timeOfRaw = [&](RawExchange::Write write) {
      return TimeOf([&] { raw.Run(exchanges, write); });
    };
    pieces.times.push_back(timeOfRaw(&RawExchange::WriteInPieces));
    gathered.times.push_back(timeOfRaw(&RawExchange::WriteWhole));
  }
};

struct Result {
  Compared read, step;
  Series wellExchange, start;
  double megabytes = 0.0;
};

/// What all sizes are measured with.
struct Setting {
  std::filesystem::path folder;
  std::filesystem::path self;
  std::filesystem::path module = GANTRY_MODULE;
};

Result Measure(const Setting& setting, ModelSize size) {
  const uint16_t port = FreePort();
  DrivenModule module(setting.module, setting.folder, setting.self, port, size);
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
    result.read.Run([&] { module.Read(); }, raw, kReadExchanges);
    result.step.Run(step, raw, raw.ExchangesOfStep());
  }
  return result;
}

void PrintHead() {
  std::puts("One read of the wells and one whole step, the module beside two raw exchanges of the");
  std::puts("same frames: sent in pieces, and each sent at once. Milliseconds, median of the");
  std::puts("repetitions (least in brackets); ratios of the medians and of the least times to the");
  std::puts(
      "frames sent at once. 50+53 is a step's exchange of the wells, start processor time.\n");
  std::printf("%6s %5s %5s %-6s %-4s | %-17s %-17s %-17s | %5s %5s | %6s %6s\n", "wells", "comps",
              "MB", "peer", "", "module", "raw in pieces", "raw at once", "ratio", "least", "50+53",
              "start");
}

std::string Cell(Series& series) {
  return FormatText("%8.2f (%6.2f)", series.Median(), series.Least());
}

void PrintRow(ModelSize size, double megabytes, const char* work, Compared& compared) {
  std::printf("%6d %5d %5.1f %-6s %-4s | %s %s %s | %5.2f %5.2f |", size.wells, size.components,
              megabytes, size.peerSpins != 0 ? "awake" : "asleep", work,
              Cell(compared.module).c_str(), Cell(compared.pieces).c_str(),
              Cell(compared.gathered).c_str(),
              compared.module.Median() / compared.gathered.Median(),
              compared.module.Least() / compared.gathered.Least());
}

void Print(ModelSize size, Result& result) {
  PrintRow(size, result.megabytes, "read", result.read);
  std::puts("");
  PrintRow(size, result.megabytes, "step", result.step);
  std::printf(" %6.2f %6.1f\n", result.wellExchange.Median(), result.start.Median());
  std::fflush(stdout);
}

/// Each size has a process of its own, so that none profits from another's storage.
bool MeasureApart(const Setting& setting, ModelSize size) {
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    int status = EXIT_SUCCESS;
    try {
      Result result = Measure(setting, size);
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
    for (const int wells : kWellCounts) {
      for (const int peerSpins : {0, 1}) sizes.push_back({wells, components, peerSpins});
    }
  }
  return sizes;
}

int RunAll(const std::vector<ModelSize>& sizes, Setting setting = {}) {
  std::string pattern = (std::filesystem::temp_directory_path() / "gantry-bench-XXXXXX").string();
  setting.folder = ::mkdtemp(pattern.data());
  setting.self = std::filesystem::read_symlink("/proc/self/exe");
  PrintHead();
  bool isWhole = true;
  for (const ModelSize size : sizes) isWhole = MeasureApart(setting, size) && isWhole;
  std::filesystem::remove_all(setting.folder);
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
    // WELLS COMPONENTS [MODULE]: that size alone, and another build of the module.
    if (argc < 3) return RunAll(AllSizes());
    Setting setting;
    if (argc > 3) setting.module = argv[3];
    const int wells = std::stoi(argv[1]);
    const int components = std::stoi(argv[2]);
    return RunAll({{wells, components, 0}, {wells, components, 1}}, setting);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s: %s\n", argv[0], failure.what());
    return EXIT_FAILURE;
  }
}
