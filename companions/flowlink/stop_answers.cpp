#include "flowlink/stop_answers.h"

#include <algorithm>
#include <array>
#include <utility>

#include "flowlink/deck_composer.h"
#include "flowlink/flow_items.h"
#include "flowlink/flow_log.h"
#include "flowlink/solved_rungs.h"
#include "text/number_text.h"

namespace gantry::flowlink {

namespace {

/// By which a question is asked until there is an answer.
constexpr std::array<double, 4> kStepDays = {kFirstStepDays, kFirstStepDays * 10,
                                             kFirstStepDays * 100, kFirstStepDays / 10};

constexpr const char* kReadOff = "read off the limits of the inflow curve that flow could solve";
constexpr const char* kStopBefore = "the answer of the step before stands in";
constexpr const char* kPresent = "what the wells make now stands in";

/// The limits of the well that flow speaks of, or else of the first.
std::string Describe(const NamedLimits& limits, const std::string& said) {
  if (limits.empty()) return "the deck's own limits";
  const auto isNamed = [&](const NamedLimit& limit) {
    return said.find(limit.well) != std::string::npos;
  };
  auto limit = std::ranges::find_if(limits, isNamed);
  if (limit == limits.end()) limit = limits.begin();
  std::string text;
  for (const NamedLimit& other : limits) {
    if (other.well != limit->well) continue;
    text += (text.empty() ? "" : ", ") + LimitName(other) + " " + FormatDouble(other.value);
  }
  const bool isAlone = limits.front().well == limits.back().well;
  return "well " + limit->well + " at " + text + (isAlone ? "" : ", the others at theirs");
}

}  // namespace

void StopAnswers::Begin(const FlowStop& stop, const std::string& key) {
  stop_ = stop;
  // A stop at which nothing was asked leaves the answers of the one before.
  if (answers_.size() > 1) answersBefore_ = std::move(answers_);
  answers_ = {{key, stop.values}};
  if (!sweep_.empty()) sweepBefore_ = std::exchange(sweep_, {});
  last_ = nullptr;
  stepDays_ = kFirstStepDays;
}

const WellValues& StopAnswers::Of(FlowLink& link, const std::vector<HostControls>& controls,
                                  const QuestionOf& questionOf) {
  const Question question = questionOf(controls);
  if (!answers_.contains(question.key)) {
    const Sweep sweep = last_ != nullptr ? ForeseeSweep(controls, *last_) : Sweep();
    if (!AskSweep(link, sweep, questionOf)) AskAlone(link, question);
  }
  last_ = &answers_.at(question.key);
  return *last_;
}

void StopAnswers::AskAlone(FlowLink& link, const Question& question) {
  Answers answers = Solve(link, {&question, 1});
  if (!answers.front()) {
    const auto before = answersBefore_.find(question.key);
    const bool isKnown = before != answersBefore_.end();
    Note(question, 1, isKnown ? kStopBefore : kPresent);
    answers.front() = StandIn(isKnown ? &before->second : nullptr);
  }
  answers_.emplace(question.key, std::move(*answers.front()));
}

/// False when these limits are no sweep.
bool StopAnswers::AskSweep(FlowLink& link, const Sweep& sweep, const QuestionOf& questionOf) {
  std::vector<Question> questions;
  for (const auto& controls : sweep.controls) {
    questions.push_back(questionOf(controls));
    if (questions.back().keywords != questions.front().keywords) return false;
  }
  if (questions.empty()) return false;
  most_ = *last_;
  SolvedRungs rungs(sweep.shares, most_, solvesAllRungs_);
  std::vector<size_t> unsolved;
  for (auto next = rungs.Next(); !next.empty(); next = rungs.Next()) {
    std::vector<Question> asked;
    for (const size_t rung : next) asked.push_back(questions[rung - 1]);
    Answers answers = Solve(link, asked);
    for (size_t i = 0; i < next.size(); ++i) {
      if (!answers[i]) unsolved.push_back(next[i]);
      rungs.Take(next[i], std::move(answers[i]));
    }
  }
  Answers read;
  for (size_t rung = 1; rung < sweep.shares.size(); ++rung) read.push_back(rungs.At(rung));
  KeepSweep(questions, read, unsolved);
  return true;
}

void StopAnswers::KeepSweep(const std::vector<Question>& questions, const Answers& read,
                            const std::vector<size_t>& unsolved) {
  const bool isKnown = sweepBefore_.size() == questions.size();
  if (!unsolved.empty()) {
    const size_t first = unsolved.front() - 1;
    Note(questions[first], unsolved.size(),
         read[first] ? kReadOff
         : isKnown   ? kStopBefore
                     : kPresent);
  }
  for (size_t i = 0; i < questions.size(); ++i) {
    sweep_.push_back(read[i] ? *read[i] : StandIn(isKnown ? &sweepBefore_[i] : nullptr));
    answers_.emplace(questions[i].key, sweep_.back());
  }
}

StopAnswers::Answers StopAnswers::Solve(FlowLink& link, std::span<const Question> questions) {
  Answers answers(questions.size());
  // What has helped one question of a stop is what the others are asked with first.
  std::vector<double> steps(kStepDays.begin(), kStepDays.end());
  const auto helped = std::ranges::find(steps, stepDays_);
  std::rotate(steps.begin(), helped, helped + 1);
  for (const double days : steps) {
    std::vector<size_t> open;
    std::vector<NamedLimits> sets;
    for (size_t i = 0; i < questions.size(); ++i) {
      if (answers[i]) continue;
      open.push_back(i);
      sets.push_back(questions[i].numbers);
    }
    if (open.empty()) break;
    std::vector<FlowAnswer> found = link.Ask(questions.front().keywords, days, sets);
    std::vector<size_t> solved;
    for (size_t i = 0; i < open.size(); ++i) {
      if (found[i].values) solved.push_back(open[i]);
      if (!found[i].values) said_ = found[i].said;
      answers[open[i]] = std::move(found[i].values);
    }
    if (days == stepDays_ || solved.empty()) continue;
    stepDays_ = days;
    Note(
        questions[solved.front()], solved.size(),
        "answered with a step of " + FormatDouble(days) + " days, as are others of this day first");
  }
  return answers;
}

/// With the totals of the present.
WellValues StopAnswers::StandIn(const WellValues* before) const {
  if (before == nullptr) return stop_.values;
  WellValues values = *before;
  for (size_t well = 0; well < values.size(); ++well) CopyTotals(stop_.values[well], values[well]);
  return values;
}

void StopAnswers::Note(const Question& question, size_t count, const std::string& outcome) {
  const std::string reason = LastErrorIn(said_);
  const std::string more =
      count > 1 ? ", and for " + std::to_string(count - 1) + " other sets of limits" : "";
  notes_->Add("warning: day " + FormatDouble(stop_.days) + ": flow found no solution for " +
              Describe(question.numbers, said_) + more +
              (reason.empty() ? "" : " (" + reason + ")") + "; " + outcome);
}

}  // namespace gantry::flowlink
