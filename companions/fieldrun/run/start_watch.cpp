#include "fieldrun/run/start_watch.h"

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include <fmt/format.h>

#include "fieldrun/platform/started_programs.h"

namespace gantry::fieldrun {
namespace {

void Look(const std::stop_token& stop, StartedPrograms& programs) {
  std::mutex mutex;
  std::condition_variable_any wake;
  std::unique_lock lock(mutex);
  while (!stop.stop_requested()) {
    if (const auto end = programs.End()) {
      const std::string text = fmt::format(
          "fieldrun: the simulator has ended {}, before the driver could reach it; what it said "
          "stands above. The driver goes on trying for up to a minute\n",
          end->how);
      std::fputs(text.c_str(), stderr);
      return;
    }
    wake.wait_for(lock, stop, std::chrono::milliseconds(200), [] { return false; });
  }
}

}  // namespace

StartWatch::StartWatch() {
  std::shared_ptr<StartedPrograms> programs = StartedPrograms::Watch();
  thread_ = std::jthread(
      [programs = std::move(programs)](const std::stop_token& stop) { Look(stop, *programs); });
}

}  // namespace gantry::fieldrun
