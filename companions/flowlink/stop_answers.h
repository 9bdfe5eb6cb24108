#pragma once

#include <functional>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "flowlink/flow_link.h"
#include "flowlink/run_notes.h"
#include "flowlink/sweep_foresight.h"

namespace gantry::flowlink {

/// A set of limits as flow is asked about it.
struct Question {
  std::string key;       ///< the same for the same limits
  std::string keywords;  ///< with names for the limits
  NamedLimits numbers;   ///< in place of the names
};

/// What the wells would do under limits at the stop where the run stands; each set of limits is
/// asked of flow once, and an inflow sweep as a whole.
///
/// A question for which flow finds no solution is asked again with a shorter and a longer step.
/// Where that fails too, its answer is read off the rungs of its sweep that have a solution, or is
/// that of the stop before, or, at last, what the wells make now. Each of these leaves a note that
/// names a well, its limits and the day.
class StopAnswers {
 public:
  using QuestionOf = std::function<Question(const std::vector<HostControls>&)>;

  /// `notes` must outlive the object.
  StopAnswers(RunNotes& notes, bool solvesAllRungs)
      : notes_(&notes), solvesAllRungs_(solvesAllRungs) {}

  /// The run has come to a stop, where the wells do this under the limits of that key.
  void Begin(const FlowStop& stop, const std::string& key);
  /// May ask. The answer stays until the next stop.
  const WellValues& Of(FlowLink& link, const std::vector<HostControls>& controls,
                       const QuestionOf& questionOf);
  /// What the wells give at most, the first rung of a sweep; null where none has been asked here.
  const WellValues* Most() const { return sweep_.empty() ? nullptr : &most_; }

 private:
  using Answers = std::vector<std::optional<WellValues>>;

  void AskAlone(FlowLink& link, const Question& question);
  bool AskSweep(FlowLink& link, const Sweep& sweep, const QuestionOf& questionOf);
  void KeepSweep(const std::vector<Question>& questions, const Answers& read,
                 const std::vector<size_t>& unsolved);
  Answers Solve(FlowLink& link, std::span<const Question> questions);
  WellValues StandIn(const WellValues* before) const;
  /// One for the first of so many questions that came to the same.
  void Note(const Question& question, size_t count, const std::string& outcome);

  RunNotes* notes_;
  bool solvesAllRungs_;
  FlowStop stop_;
  double stepDays_ = 0.0;  ///< by which questions are asked here first
  std::string said_;       ///< by flow, where it found no solution last
  std::map<std::string, WellValues> answers_;
  std::map<std::string, WellValues> answersBefore_;  ///< of the stop before
  WellValues most_;
  std::vector<WellValues> sweep_;  ///< its rungs behind the first
  std::vector<WellValues> sweepBefore_;
  const WellValues* last_ = nullptr;  ///< the answer that was given last
};

}  // namespace gantry::flowlink
