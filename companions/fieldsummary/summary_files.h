#pragma once

#include <functional>
#include <string>
#include <vector>

#include "fieldrun/run/run_record.h"

namespace gantry::fieldrun {

/// One vector of a summary file, and how a step gives its value.
struct SummaryVector {
  std::string keyword;                             ///< "FOPR", "WBHP"
  std::string name;                                ///< of the well or group; empty for the field
  std::string unit;                                ///< as summary files spell it: "SM3/DAY"
  std::function<double(const StepRecord&)> value;  ///< not a number where nobody tells it
};

/// A phase that is produced or injected, as the keywords of its vectors tell it.
struct SummaryPhase {
  const char* word;  ///< "OP", "WI"
  double Rates::*rate;
  WellKind kind;  ///< of the wells that make or take it
};

/// Collects a run and writes it as FORECAST.SMSPEC and FORECAST.UNSMRY, the summary files that
/// post-processors of reservoir simulators read. A value stands at the end of its step. Rates of
/// wells are those of the moment, those of groups and the field count each well for its uptime. Gas
/// is in SM3 or MSCF, pressure absolute.
class SummaryFiles : public RunListener {
 public:
  /// `model` must outlive the object.
  explicit SummaryFiles(const CaseModel& model) : model_(model) {}

  void Started(const RunStart& start) override;
  void StepDone(const StepRecord& record) override;

  /// Both files whole, in place of older ones. Throws runtime_error when one can't be written.
  void Write(const std::string& folder) const;

 private:
  using Places = std::vector<size_t>;  ///< of wells, in start_
  using Sum = std::function<Rates(const StepRecord&)>;

  void Add(const std::string& keyword, const std::string& name, const char* unit,
           std::function<double(const StepRecord&)> value);
  /// The vector of the phase's rate and that of its total.
  void AddPhase(char prefix, const std::string& name, const SummaryPhase& phase, Sum rates,
                Sum totals);
  void AddSums(char prefix, const std::string& name, const Places& places);
  void AddWell(size_t place);
  Places MembersOf(const GroupSpec& group) const;
  void WriteSpecification(const std::string& path) const;
  void WriteSteps(const std::string& path) const;

  const CaseModel& model_;
  RunStart start_;
  std::vector<SummaryVector> vectors_;
  std::vector<std::vector<float>> steps_;
};

}  // namespace gantry::fieldrun
