#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "flowlink/deck_wells.h"
#include "flowlink/flow_moment.h"
#include "flowlink/flow_run.h"
#include "flowlink/link_settings.h"
#include "flowlink/run_notes.h"
#include "flowlink/stop_answers.h"
#include "flowlink/well_controls.h"
#include "flowlink/work_folder.h"
#include "simulator_side/controlled_simulator.h"
#include "simulator_side/state_file.h"

namespace gantry::flowlink {

/// flow as an external controller sees it.
///
/// The run stands at the end of a report step. What the wells would do under the controller's
/// limits is asked of a fork of flow; the run itself takes the limits when it goes on, as numbers
/// in place of names where only these have changed: flow takes its time over keywords, and settles
/// each well anew. Every report step is run under the keywords of the wells that the
/// host has taken over, so that those of the deck never take a well back. To an earlier time leads
/// a run of its own, from the restart files.
class FlowSimulator : public simulator::ControlledSimulator {
 public:
  /// Starts flow in a folder, which is emptied or made, and runs it through its first tiny step.
  /// Throws `LinkFault`.
  FlowSimulator(LinkSettings settings, const std::string& caseName,
                const std::filesystem::path& folder);
  /// Goes on where an earlier session in that folder has come to by that day, from flow's restart
  /// files. Throws `LinkFault` and ResumeRefused.
  FlowSimulator(LinkSettings settings, const std::string& caseName,
                const std::filesystem::path& folder, double resumeAt);

  const simulator::ModelDescription& Description() const override { return description_; }
  const Strings& WellNames() const override { return wellNames_; }
  simulator::RunPosition Position() const override;

  std::optional<size_t> FindWellNumber(std::string_view item) const override;
  double WellNumber(size_t well, size_t item) override;
  std::string_view TypeOf(size_t well) const override { return WordOf(KindOf(well)); }
  std::string_view StatusOf(size_t well) const override;
  simulator::InflowTable MeasureInflow(size_t well, std::string_view pressureType,
                                       int32_t pointCount, double skewness) override;

  std::vector<simulator::WellConstraint> Constraints(size_t well) const override;
  void SetConstraints(size_t well, std::span<const simulator::WellConstraint> constraints) override;
  void SetStatus(size_t well, std::string_view status, std::string_view closure) override;
  void SetUptime(size_t well, double fraction) override;
  bool CreateFluidSource(size_t well, const std::string& source, const std::string& phase) override;
  void SetFluidSource(const std::string& source, std::span<const std::string> items,
                      std::span<const double> values, const std::string& phase) override;

  void ContinueToFirstNewton() override { isRunning_ = true; }
  void ContinueUntil(double days) override;
  void Shutdown() override { run_->Finish(); }

 private:
  FlowSimulator(LinkSettings settings, const std::string& caseName, WorkFolder folder,
                const std::string& firstRun);
  void GoOn(const FlowMoment& moment);
  bool HasWayTo(const PastStop& stop) const;
  void RunOn(double target);
  void KeepState(double days);
  /// The day of the stop, reached or not, that a run until that day is meant for.
  double TargetOf(double days) const;
  /// Gives those wells back to the deck of which it has said something since that day.
  void ReleaseChanged(double since);
  /// Takes note of the wells that flow has shut by an economic limit, and of those that the deck
  /// has opened again.
  void NoteShutWells();
  bool IsLeftShut(size_t well) const;
  void TellOverrides();
  void TellOverridesOf(const std::vector<size_t>& wells);

  void Describe();
  const FlowStop& Stop() const { return run_->Link().Stop(); }
  /// Takes note of the stop that the run has come to under the limits of a question's key.
  void TakeStop(const std::string& key);
  void GoBackTo(double days);
  /// In place of the present run.
  void BeginRun(const RunBegin& begin);

  double OwnNumber(size_t well, size_t item) const;
  const WellValues& Values();
  /// Keywords of the wells that the host has taken over, as `write(well, kind, limits)` has them.
  template <class Write>
  std::string ControlKeywords(const std::vector<HostControls>& controls, Write write) const;
  std::string KeywordsOf(const std::vector<HostControls>& controls) const;
  Question QuestionOf(const std::vector<HostControls>& controls) const;
  std::vector<HostControls> ControlsOfRun() const;
  /// Runs the next report step.
  void RunUnder(const Question& limits);
  void NoteWhoWantsMost();
  std::string UptimeKeywords() const;
  HeldByDeck DeckLimits(size_t well, const HostControls& host) const;
  WellType KindOf(size_t well) const { return deckWells_[well].kind; }
  HostControls& Take(size_t well);

  LinkSettings settings_;
  std::string caseName_;
  WorkFolder folder_;
  std::unique_ptr<FlowRun> run_;
  int runs_ = 1;
  Strings wellNames_;
  DeckWells deckWells_;
  simulator::ModelDescription description_;
  std::vector<HostControls> controls_;
  std::vector<std::optional<double>> shutByFlow_;  ///< since which day
  std::vector<bool> isTold_;  ///< for each well, whether its overrides have been told
  RunNotes notes_;

  std::vector<PastStop> stops_;  ///< up to the present one

  std::string ordered_;  ///< the keywords that this run has been given last
  StopAnswers answers_;
  const WellValues* inForce_ = nullptr;  ///< the answer to the present limits, once known
  bool isRunning_ = false;
  bool isResumed_ = false;
  std::optional<simulator::StateFile> states_;  ///< none without a way back
};

}  // namespace gantry::flowlink
