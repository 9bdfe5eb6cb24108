#pragma once

#include <map>
#include <string>
#include <vector>

#include "fieldrun/run/run_record.h"

namespace gantry::fieldrun {

/// What resume.json tells of a run that was left, beside what it has to remember.
struct LeftRun {
  RunMemory memory;
  size_t warnings = 0;                       ///< of run.json, that stood there by then
  std::string caseFile;                      ///< by its absolute path
  std::string program;                       ///< the simulator's; empty when nobody names it
  std::map<std::string, std::string> files;  ///< checksums of what the run has read, by paths
};

/// Keeps resume.json, by which a run can be resumed behind its last whole step. Replaced after each
/// step, so that it is whole at any moment; docs/fieldrun.md tells what stands there.
class ResumeFile {
 public:
  /// Takes note of the case's files as they stand now.
  ResumeFile(const std::string& folder, const CaseModel& model);

  /// `warnings` are those that run.json has. Throws runtime_error when it can't be written.
  void Write(const RunMemory& memory, const std::string& program, size_t warnings);

 private:
  std::string path_;
  LeftRun run_;
};

/// Throws CaseError for a folder without one, and for one of another version or of anything else.
LeftRun ReadResumeFile(const std::string& folder);

/// The files that aren't any longer what they were when the run began, by their paths.
std::vector<std::string> ChangedFiles(const LeftRun& run);

}  // namespace gantry::fieldrun
