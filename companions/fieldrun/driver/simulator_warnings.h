#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace gantry::fieldrun {

/// What a simulator has to say of its run: the lines of the files *.warnings in its own folders of
/// the results (GANTRY_RESULTS). Each line is told once.
class SimulatorWarnings {
 public:
  explicit SimulatorWarnings(std::filesystem::path results) : results_(std::move(results)) {}

  /// The lines that have come since the last time. Says nothing of files that can't be read.
  void TellNew(const std::function<void(const std::string&)>& tell);

 private:
  std::filesystem::path results_;
  size_t told_ = 0;
};

}  // namespace gantry::fieldrun
