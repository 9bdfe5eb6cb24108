// How a run that was left goes on.

#include "flowlink/flow_simulator.h"

namespace gantry::flowlink {

using simulator::ResumeRefused;

// What the deck says of its wells only a run from its start tells.
FlowSimulator::FlowSimulator(LinkSettings settings, const std::string& caseName,
                             const std::filesystem::path& folder, double resumeAt)
    : FlowSimulator(std::move(settings), caseName, WorkFolder(folder, WorkFolder::Content::kKept),
                    caseName + "_0") {
  if (!states_) throw ResumeRefused("There is no way to go on: 'way_back' is false");
  const nlohmann::json state = states_->Take(resumeAt);
  try {
    GoOn(FlowMomentOf(state));
  } catch (const nlohmann::json::exception& error) {
    throw ResumeRefused(std::string("the state isn't one of this deck: ") + error.what());
  }
}

void FlowSimulator::GoOn(const FlowMoment& moment) {
  if (moment.controls.size() != controls_.size() || moment.stops.empty()) {
    throw ResumeRefused("the state isn't one of this deck");
  }
  controls_ = moment.controls;
  shutByFlow_ = moment.shutByFlow;
  isTold_ = moment.isTold;
  stops_ = moment.stops;
  runs_ = moment.runs + 1;
  isResumed_ = true;
  const double days = stops_.back().days;
  if (!HasWayTo(stops_.back())) stops_.pop_back();
  if (stops_.empty() || !HasWayTo(stops_.back())) {
    throw ResumeRefused("flow's restart files don't lead there");
  }
  const std::optional<RestartPoint> way = stops_.back().way;
  stops_.pop_back();
  BeginRun({way, {}});
  TakeStop("");
  RunOn(days);
}

/// flow writes a stop down only as it goes on from there: not if it was killed at the stop.
bool FlowSimulator::HasWayTo(const PastStop& stop) const {
  if (!stop.way) return true;
  ResultFile file(folder_.Path() / (stop.way->caseName + ".UNRST"));
  file.CutToWhole();
  return file.HasReport(stop.way->report);
}

void FlowSimulator::KeepState(double days) {
  if (!states_) return;
  states_->Keep(days, ToJson({runs_, stops_, controls_, shutByFlow_, isTold_}));
}

}  // namespace gantry::flowlink
