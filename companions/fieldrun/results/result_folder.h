#pragma once

#include <functional>
#include <memory>
#include <string>

namespace gantry::platform {
class NamedMutex;
}

namespace gantry::fieldrun {

/// The files of a run. The first says which run the folder holds, so that it goes last.
inline constexpr const char* kRunFile = "run.json";
inline constexpr const char* kWellsFile = "wells.csv";
inline constexpr const char* kInflowFile = "inflow.csv";
inline constexpr const char* kFieldFile = "field.csv";
inline constexpr const char* kEventsFile = "events.csv";
inline constexpr const char* kProfileFile = "profile.csv";
/// What a run needs to be resumed.
inline constexpr const char* kResumeFile = "resume.json";
inline constexpr const char* kReportFile = "report.html";
inline constexpr const char* kWatchFile = "report.watch.js";
/// For post-processors of reservoir simulators; written by a program of its own where that is
/// there.
inline constexpr const char* kSummaryNames = "FORECAST.SMSPEC";
inline constexpr const char* kSummaryValues = "FORECAST.UNSMRY";

/// The folder that holds the results of one run, and of no second one beside it. Made where it
/// doesn't exist. Throws runtime_error where it can't be made, where another run on this machine is
/// writing, and where files of these names stand that no run has written.
class ResultFolder {
 public:
  explicit ResultFolder(const std::string& path);
  ~ResultFolder();

  /// Takes the results of an earlier run away and lets `begin` write its own. When one can't be
  /// taken away, or `begin` throws, all of the earlier run stay.
  void ReplaceBy(const std::function<void()>& begin);

  /// True while a run on this machine writes into the folder.
  static bool IsBeingWritten(const std::string& path);

  std::string FileOf(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
  std::unique_ptr<platform::NamedMutex> lock_;
};

}  // namespace gantry::fieldrun
