#include "fieldrun/results/result_folder.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

#include <fmt/format.h>

#include "platform/file_path.h"
#include "platform/named_mutex.h"

namespace gantry::fieldrun {
namespace {

namespace fs = std::filesystem;

constexpr const char* kResultFiles[] = {kReportFile,  kWatchFile,  kSummaryNames, kSummaryValues,
                                        kProfileFile, kResumeFile, kFieldFile,    kEventsFile,
                                        kInflowFile,  kWellsFile,  kRunFile};
constexpr const char* kAside = ".previous";

platform::NamedMutex::Attempt TryLock(const std::string& folder) {
  std::error_code ignored;
  const fs::path whole = fs::weakly_canonical(platform::PathOf(folder), ignored);
  const size_t number = std::hash<std::string>()(platform::NameOf(whole));
  return platform::NamedMutex::TryAcquire(fmt::format("GantryResults{:x}", number));
}

// A run of an earlier fieldrun has left no more than its tables.
bool HasOwnTable(const fs::path& folder) {
  std::ifstream table(folder / kFieldFile);
  std::string heading;
  return std::getline(table, heading) && heading.starts_with("step,date,days,length,");
}

// Moves files back under their own names unless it is told that all went well.
class MovedAside {
 public:
  void Move(const fs::path& file) {
    fs::path aside = file;
    aside += kAside;
    fs::rename(file, aside);
    moved_.push_back(file);
  }
  ~MovedAside() {
    for (const fs::path& file : moved_) {
      fs::path aside = file;
      aside += kAside;
      std::error_code ignored;
      isDone ? static_cast<void>(fs::remove(aside, ignored)) : fs::rename(aside, file, ignored);
    }
  }

  bool isDone = false;

 private:
  std::vector<fs::path> moved_;
};

}  // namespace

ResultFolder::ResultFolder(const std::string& path) : path_(path) {
  std::error_code error;
  const fs::path folder = platform::PathOf(path);
  fs::create_directories(folder, error);
  if (error) {
    throw std::runtime_error(fmt::format("The folder {} can't be made: {}", path, error.message()));
  }
  auto attempt = TryLock(path);
  if (attempt.outcome == platform::NamedMutex::Outcome::kHeldElsewhere) {
    throw std::runtime_error(
        fmt::format("Another run is writing its results into {}; choose another folder with "
                    "--output",
                    path));
  }
  lock_ = std::move(attempt.mutex);
  if (fs::exists(folder / kRunFile) || HasOwnTable(folder)) return;
  for (const char* name : kResultFiles) {
    if (!fs::exists(folder / name)) continue;
    throw std::runtime_error(fmt::format(
        "The folder {0} has a {1} but no {2}, so that no run is known to have written it: move it, "
        "or choose another folder with --output",
        path, name, kRunFile));
  }
}

ResultFolder::~ResultFolder() = default;

void ResultFolder::ReplaceBy(const std::function<void()>& begin) {
  MovedAside aside;
  for (const char* name : kResultFiles) {
    const fs::path file = platform::PathOf(FileOf(name));
    try {
      if (fs::exists(file)) aside.Move(file);
    } catch (const fs::filesystem_error& error) {
      throw std::runtime_error(fmt::format("The file {} of an earlier run can't be replaced: {}",
                                           FileOf(name), error.code().message()));
    }
  }
  begin();
  aside.isDone = true;
}

bool ResultFolder::IsBeingWritten(const std::string& path) {
  return TryLock(path).outcome == platform::NamedMutex::Outcome::kHeldElsewhere;
}

}  // namespace gantry::fieldrun
