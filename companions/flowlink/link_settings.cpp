#include "flowlink/link_settings.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <span>
#include <sstream>

#include "described_toml/checked_toml.h"
#include "flowlink/link_fault.h"

namespace gantry::flowlink {

namespace {

constexpr std::array<std::string_view, 7> kLimits = {
    "bottom_hole_pressure", "oil_rate",       "water_rate",          "gas_rate",
    "liquid_rate",          "reservoir_rate", "tubing_head_pressure"};
constexpr int64_t kLongestQuestion = 86400;

/// The file's table, key by key; a fault names the line.
class SettingsFile {
 public:
  explicit SettingsFile(const std::filesystem::path& file) : name_(file.string()) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    if (!in || !(text << in.rdbuf())) throw LinkFault(name_ + ":1: the file can't be read");
    try {
      table_ = toml_reader::Parse(text.str());
    } catch (const toml_reader::TomlError& error) {
      throw LinkFault(name_ + ":" + std::to_string(error.Line) + ": " + error.what());
    }
  }

  [[noreturn]] void Fail(const toml::node* node, const std::string& reason) const {
    const size_t line = node != nullptr ? node->source().begin.line : 1;
    throw LinkFault(name_ + ":" + std::to_string(line) + ": " + reason);
  }

  const toml::node* Find(std::string_view key) const { return table_.get(key); }

  std::string Text(std::string_view key, const std::string& fallback) const {
    const toml::node* node = Find(key);
    if (node == nullptr) return fallback;
    const auto text = node->value_exact<std::string>();
    if (!text || text->empty()) Fail(node, "'" + std::string(key) + "' must be a text");
    return *text;
  }

  std::vector<std::string> Texts(std::string_view key, std::vector<std::string> fallback) const {
    const toml::node* node = Find(key);
    if (node == nullptr) return fallback;
    const toml::array* list = node->as_array();
    const auto isText = [](const toml::node& element) { return element.is_string(); };
    if (list == nullptr || !std::all_of(list->begin(), list->end(), isText)) {
      Fail(node, "'" + std::string(key) + "' must be a list of texts");
    }
    std::vector<std::string> texts;
    for (const toml::node& element : *list) texts.push_back(element.value_or(std::string()));
    return texts;
  }

  /// Whether the key gives something to the deck; otherwise it is the host's.
  bool IsDecks(std::string_view key, bool fallback) const {
    const std::string owner = Text(key, fallback ? "deck" : "host");
    if (owner != "deck" && owner != "host") {
      Fail(Find(key), "'" + std::string(key) + "' must be \"deck\" or \"host\"");
    }
    return owner == "deck";
  }

  void RejectOthers(std::span<const std::string_view> known) const {
    for (const auto& [key, node] : table_) {
      if (std::ranges::find(known, key.str()) == known.end()) {
        Fail(&node, "unknown key '" + std::string(key.str()) + "'");
      }
    }
  }

 private:
  std::string name_;
  toml::table table_;
};

ReportGrid ReadGrid(const SettingsFile& file) {
  ReportGrid grid;
  const toml::node* node = file.Find("report_step");
  if (node == nullptr || node->value<std::string>() == "month") return grid;
  if (node->value<std::string>() == "deck") return {ReportGrid::Kind::kDeck, 0.0};
  grid.kind = ReportGrid::Kind::kDays;
  grid.days = node->is_number() ? node->value_or(0.0) : 0.0;
  if (!(grid.days >= 0.01 && grid.days <= 3660.0)) {
    file.Fail(node, "'report_step' must be \"month\", \"deck\" or days from 0.01 to 3660");
  }
  return grid;
}

void ReadTemperature(const SettingsFile& file, LinkSettings& settings) {
  const toml::node* node = file.Find("temperature");
  if (node == nullptr) return;
  if (!node->is_number()) file.Fail(node, "'temperature' must be a number");
  settings.temperature = node->value_or(0.0);
  settings.hasTemperature = true;
}

void ReadQuestionTime(const SettingsFile& file, LinkSettings& settings) {
  const toml::node* node = file.Find("question_seconds");
  if (node == nullptr) return;
  const auto seconds = node->value_exact<int64_t>().value_or(0);
  if (seconds < 1 || seconds > kLongestQuestion) {
    file.Fail(node, "'question_seconds' must be a whole number from 1 to 86400");
  }
  settings.secondsForQuestion = static_cast<int>(seconds);
}

void ReadRungs(const SettingsFile& file, LinkSettings& settings) {
  const std::string rungs = file.Text("rungs", "few");
  if (rungs != "few" && rungs != "all")
    file.Fail(file.Find("rungs"), "'rungs' must be \"few\" or \"all\"");
  settings.solvesAllRungs = rungs == "all";
}

void ReadWayBack(const SettingsFile& file, LinkSettings& settings) {
  const toml::node* node = file.Find("way_back");
  if (node == nullptr) return;
  if (!node->is_boolean()) file.Fail(node, "'way_back' must be true or false");
  settings.keepsWayBack = node->value_or(true);
}

void CheckLimits(const SettingsFile& file, const LinkSettings& settings) {
  for (const std::string& limit : settings.keptLimits) {
    if (std::ranges::find(kLimits, limit) == kLimits.end()) {
      file.Fail(file.Find("keep"), "'keep' knows no limit '" + limit + "'");
    }
  }
}

}  // namespace

LinkSettings ReadLinkSettings(const std::filesystem::path& path) {
  static constexpr std::string_view kKeys[] = {
      "deck",         "report_step",      "keep",     "wells", "temperature", "flow",
      "flow_options", "question_seconds", "way_back", "rungs", "groups",      "shut_wells"};
  const SettingsFile file(path);
  file.RejectOthers(kKeys);
  LinkSettings settings;
  if (file.Find("deck") == nullptr) file.Fail(nullptr, "'deck' is missing");
  settings.deck = path.parent_path() / file.Text("deck", "");
  settings.grid = ReadGrid(file);
  settings.keptLimits = file.Texts("keep", {"bottom_hole_pressure"});
  settings.wells = file.Texts("wells", {});
  settings.program = file.Text("flow", "flow");
  settings.options = file.Texts("flow_options", {});
  settings.leavesGroupsToDeck = file.IsDecks("groups", false);
  settings.opensShutWells = !file.IsDecks("shut_wells", true);
  ReadTemperature(file, settings);
  ReadQuestionTime(file, settings);
  ReadWayBack(file, settings);
  ReadRungs(file, settings);
  CheckLimits(file, settings);
  return settings;
}

}  // namespace gantry::flowlink
