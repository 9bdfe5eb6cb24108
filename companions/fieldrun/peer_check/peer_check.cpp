#include "fieldrun/peer_check/peer_check.h"

#include <algorithm>
#include <memory>
#include <set>

namespace gantry::fieldrun {
namespace {

class Trial {
 public:
  Trial(const PeerSetting& setting, const std::function<void(const RuleVerdict&)>& tell)
      : setting_(setting), tell_(tell) {}

  void Try(const Rule& rule) {
    const auto lacking = std::ranges::find_if(
        rule.bases, [this](std::string_view basis) { return !held_.contains(basis); });
    if (lacking != rule.bases.end()) {
      return tell_({&rule, RuleResult::kNotReached,
                    "without \"" + std::string(*lacking) + "\" it can't be tried", "", ""});
    }
    if (!session_ || session_->stand() > rule.needs) {
      session_ = std::make_unique<CheckedSession>(setting_, model_);
    }
    Tell(rule, Hold(rule));
  }

 private:
  struct Outcome {
    RuleResult result;
    std::string came;
  };

  Outcome Hold(const Rule& rule) {
    try {
      session_->BringTo(rule.needs);
      rule.hold(*session_);
      return {RuleResult::kHolds, ""};
    } catch (const NotAsked& reason) {
      return {RuleResult::kNotAsked, reason.what()};
    } catch (const std::exception& error) {
      return {RuleResult::kFails, error.what()};
    }
  }

  void Tell(const Rule& rule, const Outcome& outcome) {
    RuleVerdict verdict{&rule, outcome.result, outcome.came, "", ""};
    if (outcome.result != RuleResult::kFails) held_.insert(rule.name);
    if (outcome.result == RuleResult::kFails) {
      verdict.bytes = session_->ShowReceived();
      verdict.said = session_->LastWords();
      session_.reset();
    }
    tell_(verdict);
  }

  const PeerSetting& setting_;
  const std::function<void(const RuleVerdict&)>& tell_;
  PeerModel model_;
  std::unique_ptr<CheckedSession> session_;
  std::set<std::string_view> held_;
};

}  // namespace

Rules AllRules() {
  Rules all;
  for (const auto part : {SessionRules, WellRules, RefusalRules, EndRules}) {
    for (Rule& rule : part()) all.push_back(std::move(rule));
  }
  return all;
}

void CheckPeer(const PeerSetting& setting, const Rules& rules,
               const std::function<void(const RuleVerdict&)>& tell) {
  Trial trial(setting, tell);
  for (const Rule& rule : rules) trial.Try(rule);
}

}  // namespace gantry::fieldrun
