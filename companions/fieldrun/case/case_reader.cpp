#include "fieldrun/case/case_reader.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>

#include <fmt/format.h>

#include "described_toml/checked_toml.h"
#include "described_toml/near_word.h"
#include "fieldrun/case/case_keys.h"
#include "fieldrun/case/input_file.h"
#include "platform/dynamic_library.h"
#include "platform/file_path.h"

namespace gantry::fieldrun {
namespace {

namespace fs = std::filesystem;

int LineOf(const toml::node& node) { return static_cast<int>(node.source().begin.line); }

/// What is wrong with a place of the file: ends the reading of the key, or of the section.
struct Fault {
  int line;
  std::string reason;
};

template <class Range, class Name>
std::vector<std::string_view> NamesOf(const Range& range, Name name) {
  std::vector<std::string_view> names;
  for (const auto& item : range) names.push_back(name(item));
  return names;
}

// Reads one file by the tables of keys. Holds what every message and every number needs.
class Reader {
 public:
  Reader(CaseModel& model, std::vector<Finding>& findings) : model_(model), findings_(findings) {}

  void ReadAll(const toml::table& file);

 private:
  template <class Spec>
  void ReadSection(const toml::table& file, size_t section, KeyTable<Spec> keys, Spec& spec);
  template <class Spec>
  void ReadList(const toml::table& file, size_t section, KeyTable<Spec> keys,
                std::vector<Spec>& specs);
  template <class Spec>
  void ReadKeys(const toml::table& table, std::string_view section, KeyTable<Spec> keys,
                Spec& spec);
  template <class Spec>
  void Store(const toml::node& node, const KeyRow<Spec>& row, Spec& spec);

  void Take(const toml::node& node, const KeyDescription& about, std::string& value);
  void Take(const toml::node& node, const KeyDescription& about, double& value);
  void Take(const toml::node& node, const KeyDescription& about, int& value);
  void Take(const toml::node& node, const KeyDescription& about, bool& value);
  void Take(const toml::node& node, const KeyDescription& about, Date& value);
  template <class Value>
  void Take(const toml::node& node, const KeyDescription& about, std::optional<Value>& value);
  template <class Value>
  void Take(const toml::node& node, const KeyDescription& about, std::vector<Value>& values);

  int Choice(const toml::node& node, const KeyDescription& about, std::string_view orElse = "");
  void CheckRange(const toml::node& node, const KeyDescription& about, double value);
  void WarnOfTheUnusual(const toml::node& node, const KeyDescription& about, double value);
  std::string WithUnit(double value, const KeyDescription& about) const;
  void RefuseUnknownSections(const toml::table& file);
  /// Does it; a fault is noted, and the answer is false.
  template <class Action>
  bool Try(Action action);
  [[noreturn]] void FailType(const toml::node& node, const KeyDescription& about,
                             std::string_view wanted);

  CaseModel& model_;
  std::vector<Finding>& findings_;
  bool knowsUnits_ = true;
};

template <class Action>
bool Reader::Try(Action action) {
  try {
    action();
    return true;
  } catch (const Fault& fault) {
    findings_.push_back({fault.line, fault.reason});
    return false;
  }
}

void Reader::FailType(const toml::node& node, const KeyDescription& about,
                      std::string_view wanted) {
  throw Fault{LineOf(node), fmt::format("{} must be {}", about.name, wanted)};
}

std::string Reader::WithUnit(double value, const KeyDescription& about) const {
  const std::string_view unit = UnitName(about.quantity, model_.Units());
  return fmt::format("{:g}{}{}", FromInternal(value, about.quantity, model_.Units()),
                     unit.empty() ? "" : " ", unit);
}

void Reader::CheckRange(const toml::node& node, const KeyDescription& about, double value) {
  if (!std::isfinite(value)) FailType(node, about, "a finite number");
  if (!knowsUnits_ && about.quantity != Quantity::kNone) return;
  // What a conversion may lose at the bound itself is no fault of the case.
  const double slack = 1e-9 * std::abs(value);
  if (value < about.low - slack) FailType(node, about, "at least " + WithUnit(about.low, about));
  if (value > about.high + slack) FailType(node, about, "at most " + WithUnit(about.high, about));
  WarnOfTheUnusual(node, about, value);
}

void Reader::WarnOfTheUnusual(const toml::node& node, const KeyDescription& about, double value) {
  const auto isUsual = [&](double number) {
    return number >= about.usualLow && number <= about.usualHigh;
  };
  if (isUsual(value)) return;
  const bool isLow = value < about.usualLow;
  const UnitSystem other =
      model_.Units() == UnitSystem::kField ? UnitSystem::kMetric : UnitSystem::kField;
  const double stated = FromInternal(value, about.quantity, model_.Units());
  const std::string_view unit = UnitName(about.quantity, other);
  const bool wouldFit = unit != UnitName(about.quantity, model_.Units()) &&
                        isUsual(ToInternal(stated, about.quantity, other));
  findings_.push_back({LineOf(node),
                       fmt::format("{} is {}, {} than {}: it can hardly be meant{}", about.name,
                                   WithUnit(value, about), isLow ? "less" : "more",
                                   WithUnit(isLow ? about.usualLow : about.usualHigh, about),
                                   wouldFit ? fmt::format(" ({:g} {} could)", stated, unit) : ""),
                       false});
}

/// `orElse` is what the key takes beside its words, with the "or".
int Reader::Choice(const toml::node& node, const KeyDescription& about, std::string_view orElse) {
  const std::vector<std::string_view> words = SplitChoices(about.choices);
  std::string list;
  for (const std::string_view word : words) {
    list += fmt::format("{}\"{}\"", list.empty() ? "" : ", ", word);
  }
  list = std::string(orElse) + (words.size() > 1 ? "one of " : "") + list;
  const auto* text = node.as_string();
  if (text == nullptr) FailType(node, about, list);
  const auto found = std::find(words.begin(), words.end(), text->get());
  if (found == words.end()) {
    throw Fault{LineOf(node),
                fmt::format("{} can't be \"{}\"; it must be {}{}", about.name, text->get(), list,
                            toml_reader::DidYouMean(text->get(), words))};
  }
  return static_cast<int>(found - words.begin());
}

void Reader::Take(const toml::node& node, const KeyDescription& about, std::string& value) {
  const auto* text = node.as_string();
  if (text == nullptr) FailType(node, about, "a text");
  if (text->get().empty()) FailType(node, about, "a text that isn't empty");
  const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20; };
  if (std::any_of(text->get().begin(), text->get().end(), isControl)) {
    FailType(node, about, "a text without control characters");
  }
  value = text->get();
}

void Reader::Take(const toml::node& node, const KeyDescription& about, double& value) {
  if (!about.choices.empty() && !node.is_number()) {
    Choice(node, about,
           fmt::format("a number of {} or ", UnitName(about.quantity, model_.Units())));
    value = 0;
    return;
  }
  const auto number = node.is_number() ? node.value<double>() : std::nullopt;
  if (!number) FailType(node, about, "a number");
  value = ToInternal(*number, about.quantity, model_.Units());
  CheckRange(node, about, value);
}

void Reader::Take(const toml::node& node, const KeyDescription& about, int& value) {
  if (!about.choices.empty()) {
    value = Choice(node, about);
    return;
  }
  const auto* number = node.as_integer();
  if (number == nullptr) FailType(node, about, "a whole number");
  if (number->get() > std::numeric_limits<int>::max()) FailType(node, about, "smaller");
  CheckRange(node, about, static_cast<double>(number->get()));
  value = static_cast<int>(number->get());
}

void Reader::Take(const toml::node& node, const KeyDescription& about, bool& value) {
  const auto* flag = node.as_boolean();
  if (flag == nullptr) FailType(node, about, "true or false");
  value = flag->get();
}

void Reader::Take(const toml::node& node, const KeyDescription& about, Date& value) {
  const auto* date = node.as_date();
  if (date == nullptr) FailType(node, about, "a date without quotes, like 2015-01-31");
  value = {date->get().year, date->get().month, date->get().day};
  if (!IsValid(value) || value.year < 1900) FailType(node, about, "a day from 1900 on");
}

template <class Value>
void Reader::Take(const toml::node& node, const KeyDescription& about,
                  std::optional<Value>& value) {
  Take(node, about, value.emplace());
}

template <class Value>
void Reader::Take(const toml::node& node, const KeyDescription& about, std::vector<Value>& values) {
  const auto* list = node.as_array();
  if (list == nullptr) FailType(node, about, "a list");
  for (const toml::node& item : *list) Take(item, about, values.emplace_back());
}

template <class Spec>
void Reader::Store(const toml::node& node, const KeyRow<Spec>& row, Spec& spec) {
  std::visit([&](auto member) { Take(node, row.about, spec.*member); }, row.target);
}

template <class Spec>
void Reader::ReadKeys(const toml::table& table, std::string_view section, KeyTable<Spec> keys,
                      Spec& spec) {
  spec.line = LineOf(table);
  const auto names = NamesOf(keys, [](const auto& row) { return row.about.name; });
  for (const auto& [key, node] : table) {
    const std::string_view name = key.str();
    const int line = static_cast<int>(key.source().begin.line);
    const bool isRead = Try([&, &value = node] {
      const auto place = std::ranges::find(names, name) - names.begin();
      if (place == std::ssize(names)) {
        throw Fault{line, fmt::format("[{}] has no key \"{}\"{}", section, name,
                                      toml_reader::DidYouMean(name, names))};
      }
      spec.keyLines[std::string(name)] = LineOf(value);
      Store(value, keys[static_cast<size_t>(place)], spec);
    });
    spec.isSound = spec.isSound && isRead;
  }
  for (const KeyRow<Spec>& row : keys) {
    if (!row.about.isRequired || table.contains(row.about.name)) continue;
    findings_.push_back(
        {spec.line, fmt::format("[{}] needs the key \"{}\"", section, row.about.name)});
    spec.isSound = false;
  }
}

template <class Spec>
void Reader::ReadSection(const toml::table& file, size_t section, KeyTable<Spec> keys, Spec& spec) {
  const std::string_view name = CaseSections()[section].name;
  const toml::node* node = file.get(name);
  static const toml::table kNothing;
  if (node != nullptr && !node->is_table()) {
    findings_.push_back({LineOf(*node), fmt::format("{} must be a section, [{}]", name, name)});
    spec.isSound = false;
    return;
  }
  ReadKeys(node != nullptr ? *node->as_table() : kNothing, name, keys, spec);
}

template <class Spec>
void Reader::ReadList(const toml::table& file, size_t section, KeyTable<Spec> keys,
                      std::vector<Spec>& specs) {
  const std::string_view name = CaseSections()[section].name;
  const toml::node* node = file.get(name);
  if (node == nullptr) return;
  const auto* list = node->as_array();
  if (list == nullptr || !list->is_homogeneous(toml::node_type::table)) {
    findings_.push_back(
        {LineOf(*node), fmt::format("{} must be a list of sections, [[{}]]", name, name)});
    return;
  }
  for (const toml::node& item : *list) ReadKeys(*item.as_table(), name, keys, specs.emplace_back());
}

void Reader::RefuseUnknownSections(const toml::table& file) {
  const auto names =
      NamesOf(CaseSections(), [](const SectionDescription& section) { return section.name; });
  for (const auto& [key, node] : file) {
    if (std::ranges::find(names, key.str()) != names.end()) continue;
    findings_.push_back({static_cast<int>(key.source().begin.line),
                         fmt::format("a case has no section \"{}\"{}", key.str(),
                                     toml_reader::DidYouMean(key.str(), names))});
  }
}

void Reader::ReadAll(const toml::table& file) {
  RefuseUnknownSections(file);
  // First, since every other number is converted by the units that stand here.
  ReadSection(file, 0, GeneralKeys(), model_.general);
  knowsUnits_ = model_.general.isSound;
  ReadSection(file, 1, SimulatorKeys(), model_.simulator);
  ReadSection(file, 2, TimeKeys(), model_.time);
  ReadSection(file, 3, NetworkKeys(), model_.network);
  ReadList(file, 4, TubingKeys(), model_.tubings);
  ReadList(file, 5, WellKeys(), model_.wells);
  ReadList(file, 6, GroupKeys(), model_.groups);
}

std::string FromFolder(const fs::path& folder, const std::string& path) {
  return path.empty() ? path
                      : platform::NameOf((folder / platform::PathOf(path)).lexically_normal());
}

/// One that came with this program: no results belong there.
bool IsInstalledExample(const fs::path& folder) {
  for (const char* examples : {"examples", "../share/gantry/examples"}) {
    std::error_code error;
    const fs::path place = fs::relative(folder, platform::ModuleDirectory() / examples, error);
    if (!error && !place.empty() && *place.begin() != "..") return true;
  }
  return false;
}

void CompletePaths(CaseModel& model) {
  const fs::path file = fs::absolute(platform::PathOf(model.file));
  const fs::path folder = file.parent_path();
  if (model.general.title.empty()) model.general.title = platform::NameOf(file.stem());
  std::string& output = model.general.output;
  const bool isElsewhere = output.empty() && IsInstalledExample(folder);
  output =
      FromFolder(isElsewhere ? fs::current_path() : folder, output.empty() ? "results" : output);
  model.simulator.deck = FromFolder(folder, model.simulator.deck);
  model.simulator.storeFile = FromFolder(folder, model.simulator.storeFile);
  // A bare name is looked for along the search path by whoever starts it.
  if (platform::PathOf(model.simulator.executable).has_parent_path()) {
    model.simulator.executable = FromFolder(folder, model.simulator.executable);
  }
}

}  // namespace

bool CheckedCase::HasErrors() const { return std::ranges::any_of(findings, &Finding::isError); }

CheckedCase ReadAndCheckCase(const std::string& path) {
  CheckedCase checked;
  checked.model.file = path;
  const std::string text = ReadInputFile(path);
  try {
    Reader(checked.model, checked.findings).ReadAll(toml_reader::Parse(text));
    CompletePaths(checked.model);
    CheckCase(checked.model, checked.findings);
  } catch (const toml_reader::TomlError& error) {
    checked.findings.push_back({static_cast<int>(error.Line), error.what()});
  }
  std::ranges::stable_sort(checked.findings, {}, &Finding::line);
  return checked;
}

CaseModel ReadCase(const std::string& path) {
  CheckedCase checked = ReadAndCheckCase(path);
  std::vector<Finding> errors;
  for (const Finding& finding : checked.findings) {
    if (finding.isError) errors.push_back(finding);
    if (!finding.isError) checked.model.warnings.push_back(finding.In(path));
  }
  if (!errors.empty()) throw CaseError(path, errors);
  return std::move(checked.model);
}

}  // namespace gantry::fieldrun
