#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "fieldrun/case/input_file.h"
#include "fieldrun/peer_check/peer_check.h"
#include "fieldrun/platform/scratch_folder.h"
#include "fieldrun/platform/terminal.h"
#include "fieldrun/verbs/verbs.h"
#include "platform/file_path.h"

namespace gantry::fieldrun {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 4> kWords = {"ok", "fails", "not asked", "not tried"};

std::string_view WordOf(RuleResult result) { return kWords[static_cast<size_t>(result)]; }

std::string Absolute(const std::string& path) {
  return platform::NameOf(fs::absolute(platform::PathOf(path)));
}

std::string EmptyDeck(const ScratchFolder& folder) {
  const fs::path deck = folder.File("CHECK.afi");
  std::ofstream(deck).flush();
  return platform::NameOf(deck);
}

PeerSetting SettingOf(const Options& options, const ScratchFolder& folder) {
  if (options.simulator.empty()) {
    throw CommandLineError("check needs a case, or a simulator: --simulator PROGRAM");
  }
  const bool isPath = platform::PathOf(options.simulator).has_parent_path();
  if (isPath && !IsFile(options.simulator)) {
    throw CommandLineError("no such simulator: " + options.simulator);
  }
  if (!options.deck.empty() && !IsFile(options.deck)) {
    throw CommandLineError("no such deck: " + options.deck);
  }
  PeerSetting setting;
  setting.program = isPath ? Absolute(options.simulator) : options.simulator;
  setting.deck = options.deck.empty() ? EmptyDeck(folder) : Absolute(options.deck);
  setting.arguments = options.words;
  setting.log = platform::NameOf(folder.File("log"));
  setting.limit = std::chrono::seconds(options.limit);
  setting.stepDays = options.days;
  return setting;
}

std::string PlaceOf(const Rule& rule) {
  return fmt::format("docs/wire-protocol.md#{}", rule.section);
}

Json RowOf(const RuleVerdict& verdict) {
  const Rule& rule = *verdict.rule;
  return {{"rule", rule.name},    {"result", WordOf(verdict.result)},
          {"sent", rule.sent},    {"due", rule.due},
          {"came", verdict.came}, {"bytes", verdict.bytes},
          {"said", verdict.said}, {"reason", rule.reason},
          {"see", PlaceOf(rule)}};
}

void PrintLine(const RuleVerdict& verdict) {
  const bool fails = verdict.result == RuleResult::kFails;
  const std::string why = verdict.came.empty() || fails ? "" : ": " + verdict.came;
  fmt::print(UserOutput(), "{:<9}  {}{}\n", WordOf(verdict.result), verdict.rule->name, why);
  if (!fails) return;
  const std::pair<std::string_view, std::string> lines[] = {
      {"sent", std::string(verdict.rule->sent)},
      {"due", std::string(verdict.rule->due)},
      {"came", verdict.came},
      {"bytes", verdict.bytes},
      {"it said", verdict.said},
      {"why", std::string(verdict.rule->reason)},
      {"see", PlaceOf(*verdict.rule)},
  };
  for (const auto& [name, text] : lines) {
    if (!text.empty()) fmt::print(UserOutput(), "{:<9}  {:<7}  {}\n", "", name, text);
  }
}

}  // namespace

void CheckSimulator(const Options& options) {
  const ScratchFolder folder;
  const PeerSetting setting = SettingOf(options, folder);
  const Rules rules = AllRules();
  std::vector<Json> rows;
  size_t failures = 0;
  CheckPeer(setting, rules, [&](const RuleVerdict& verdict) {
    rows.push_back(RowOf(verdict));
    if (verdict.result == RuleResult::kFails) ++failures;
    if (options.json) return;
    PrintLine(verdict);
    std::fflush(UserOutput());
  });
  if (options.json) fmt::print(UserOutput(), "{}", JsonText(rows, 2));
  if (failures == 0) return;
  throw std::runtime_error(fmt::format("{} of {} rules of the protocol {} hold", failures,
                                       rules.size(), failures == 1 ? "doesn't" : "don't"));
}

}  // namespace gantry::fieldrun
