#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

#include <nlohmann/json.hpp>

namespace gantry::simulator {

/// A run that can't be resumed; the text says why, and is fit for the host's user.
class ResumeRefused : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The folder in which a host of this machine keeps the results of its run, as it names it in the
/// environment (GANTRY_RESULTS).
std::optional<std::filesystem::path> ResultsOfHost();

/// Where the host wants the simulator to go on, in days since the simulator's start, as it says in
/// the environment (GANTRY_RESUME); none when it wants a run from the start.
std::optional<double> DaysToResumeAt();

/// What a simulator keeps of its run at each stop so that it can go on there another time: the
/// state at the present stop and at the one before, since a host that was killed may have taken
/// note of no more than that one. JSON, written whole each time: {"format", "deck", "states":
/// [{"days", "state"}]}.
class StateFile {
 public:
  /// `format` names the simulator and the version of its states, `deck` what they are states of.
  StateFile(std::filesystem::path path, std::string format, std::string deck);

  /// Takes note of a state, and keeps the one before it. What can't be written is told once on
  /// standard error: the run itself goes on.
  void Keep(double days, nlohmann::json state);
  /// The state at that time, which is then the present one. Throws ResumeRefused.
  nlohmann::json Take(double days);

 private:
  nlohmann::json Read() const;

  std::filesystem::path path_;
  std::string format_;
  std::string deck_;
  std::string present_;  ///< as it stands in the file; empty when there is none yet
  bool hasFailed_ = false;
};

}  // namespace gantry::simulator
