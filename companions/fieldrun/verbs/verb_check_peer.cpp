#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <random>

#include <fmt/format.h>

#include "fieldrun/case/input_file.h"
#include "fieldrun/peer_check/peer_check.h"
#include "fieldrun/platform/terminal.h"
#include "fieldrun/verbs/verbs.h"
#include "platform/file_path.h"

namespace gantry::fieldrun {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 4> kWords = {"ok", "fails", "not asked", "not tried"};

std::string_view WordOf(RuleResult result) { return kWords[static_cast<size_t>(result)]; }

/// A folder for a log and an empty deck, gone with the object.
class CheckFolder {
 public:
  CheckFolder()
      : path_(fs::temp_directory_path() /
              fmt::format("fieldrun-check-{:x}", std::random_device{}())) {
    fs::create_directories(path_);
  }
  ~CheckFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  CheckFolder(const CheckFolder&) = delete;
  CheckFolder& operator=(const CheckFolder&) = delete;

  std::string File(const char* name) const { return platform::NameOf(path_ / name); }
  std::string EmptyDeck() const {
    std::ofstream(path_ / "CHECK.afi").flush();
    return File("CHECK.afi");
  }

 private:
  fs::path path_;
};

std::string Absolute(const std::string& path) {
  return platform::NameOf(fs::absolute(platform::PathOf(path)));
}

PeerSetting SettingOf(const Options& options, const CheckFolder& folder) {
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
  setting.deck = options.deck.empty() ? folder.EmptyDeck() : Absolute(options.deck);
  setting.arguments = options.words;
  setting.log = folder.File("log");
  setting.limit = std::chrono::seconds(options.limit);
  setting.stepDays = options.days;
  return setting;
}

std::string PlaceOf(const Rule& rule) {
  return fmt::format("docs/wire-protocol.md#{}", rule.section);
}

PrintedRow RowOf(const RuleVerdict& verdict) {
  const Rule& rule = *verdict.rule;
  return {{"rule", std::string(rule.name)},
          {"result", std::string(WordOf(verdict.result))},
          {"sent", std::string(rule.sent)},
          {"due", std::string(rule.due)},
          {"came", verdict.came},
          {"bytes", verdict.bytes},
          {"said", verdict.said},
          {"reason", std::string(rule.reason)},
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
  const CheckFolder folder;
  const PeerSetting setting = SettingOf(options, folder);
  const Rules rules = AllRules();
  std::vector<PrintedRow> rows;
  size_t failures = 0;
  CheckPeer(setting, rules, [&](const RuleVerdict& verdict) {
    rows.push_back(RowOf(verdict));
    if (verdict.result == RuleResult::kFails) ++failures;
    if (options.json) return;
    PrintLine(verdict);
    std::fflush(UserOutput());
  });
  if (options.json) fmt::print(UserOutput(), "{}", ToJson(rows));
  if (failures == 0) return;
  throw std::runtime_error(fmt::format("{} of {} rules of the protocol {} hold", failures,
                                       rules.size(), failures == 1 ? "doesn't" : "don't"));
}

}  // namespace gantry::fieldrun
