#include "described_toml/described_table.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "described_toml/checked_toml.h"
#include "described_toml/near_word.h"

namespace gantry::toml_reader {

namespace {

using toml::node;

int LineOfNode(const node& at) { return static_cast<int>(at.source().begin.line); }

/// What the numbers of a column must do from row to row, by ColumnKey::Order.
struct OrderRule {
  std::string_view word;
  bool (*holds)(double before, double after);
};
constexpr OrderRule kOrders[] = {
    {"", [](double, double) { return true; }},
    {"rise", [](double before, double after) { return after > before; }},
    {"not fall", [](double before, double after) { return after >= before; }},
    {"fall", [](double before, double after) { return after < before; }},
    {"not rise", [](double before, double after) { return after <= before; }},
};

template <class... Parts>
std::string Filled(std::string_view words, const Parts&... parts) {
  return fmt::format(fmt::runtime(words), parts...);
}

}  // namespace

/// What all tables of a file share.
struct DescribedTable::File {
  toml::table root;
  std::string name;
  Wording wording;
  std::optional<UnitSystem> units = UnitSystem::kField;
  std::vector<Finding> findings = {};
};

struct DescribedTable::Node {
  std::shared_ptr<File> file;
  const toml::table* table;
  std::string section;
  std::vector<std::string_view> asked = {};

  [[noreturn]] static void Fail(const node& at, const std::string& reason) {
    throw Fault{{LineOfNode(at), reason}};
  }
  [[noreturn]] void FailType(const node& at, std::string_view key, std::string_view wanted) const {
    const std::string what = Filled(wanted, fmt::arg("key", key));
    Fail(at, Filled(file->wording.mistyped, fmt::arg("key", key), fmt::arg("what", what)));
  }
  const node* Find(std::string_view key) {
    if (std::ranges::find(asked, key) == asked.end()) asked.push_back(key);
    return table->get(key);
  }
  const node& Get(std::string_view key) {
    const node* found = Find(key);
    if (found == nullptr) FailMissing(key);
    return *found;
  }
  [[noreturn]] void FailMissing(std::string_view key) const {
    Fail(*table, Filled(file->wording.missing, fmt::arg("key", key), fmt::arg("section", section)));
  }
  const toml::array& Array(const node& at, std::string_view key) const {
    const toml::array* array = at.as_array();
    if (array == nullptr) FailType(at, key, file->wording.list);
    return *array;
  }
  double Finite(const node& at, std::string_view key) const {
    const auto number = at.is_number() ? at.value<double>() : std::nullopt;
    if (!number) FailType(at, key, "a number");
    if (!std::isfinite(*number)) FailType(at, key, "a finite number");
    return *number;
  }
  Date Day(const node& at, std::string_view key) const {
    const auto date = at.value_exact<toml::date>();
    if (!date) FailType(at, key, file->wording.date);
    return {date->year, date->month, date->day};
  }
  UnitSystem Units() const { return file->units.value_or(UnitSystem::kField); }
  double InField(double number, Quantity quantity) const {
    return ToField(number, quantity, Units());
  }
  std::string WithUnit(double value, const Key& key) const {
    const std::string_view unit = UnitName(key.quantity, Units());
    return fmt::format("{:g}{}{}", FromField(value, key.quantity, Units()), unit.empty() ? "" : " ",
                       unit);
  }

  void CheckRange(const node& at, const Key& key, double stated) const;
  void WarnOfTheUnusual(const node& at, const Key& key, double stated) const;
  size_t Choice(const node& at, std::string_view key, std::span<const std::string_view> words,
                std::string_view orElse = "") const;

  void Take(const node& at, const Key& key, std::string& value) const;
  void Take(const node& at, const Key& key, double& value) const;
  void Take(const node& at, const Key& key, int& value) const;
  void Take(const node& at, const Key& key, bool& value) const;
  void Take(const node& at, const Key& key, Date& value) const;
  template <class Value>
  void Take(const node& at, const Key& key, std::optional<Value>& value) const {
    Take(at, key, value.emplace());
  }
  template <class Value>
  void Take(const node& at, const Key& key, std::vector<Value>& values) const {
    values.clear();
    for (const node& item : Array(at, key.name)) Take(item, key, values.emplace_back());
  }

  DescribedTable Below(const toml::table& other, std::string_view name) const {
    return DescribedTable(std::make_shared<Node>(Node{file, &other, std::string(name)}));
  }
};

void DescribedTable::Node::CheckRange(const node& at, const Key& key, double stated) const {
  if (!file->units && key.quantity != Quantity::kNone) return;
  const double value = InField(stated, key.quantity);
  // What a conversion may lose at the bound itself is no fault of the file.
  const double slack = 1e-9 * std::abs(value);
  const Range& range = key.range;
  const bool isLow = value < range.low - slack;
  if (!isLow && value <= range.high + slack) return WarnOfTheUnusual(at, key, stated);
  const std::string_view unit = UnitName(key.quantity, Units());
  const auto shown = [&](double bound) {
    return fmt::format("{:g}", FromField(bound, key.quantity, Units()));
  };
  Fail(at, Filled(isLow ? file->wording.tooLow : file->wording.tooHigh, fmt::arg("key", key.name),
                  fmt::arg("value", fmt::format("{:g}", stated)), fmt::arg("low", shown(range.low)),
                  fmt::arg("high", shown(range.high)),
                  fmt::arg("unit", unit.empty() ? "" : fmt::format(" {}", unit))));
}

void DescribedTable::Node::WarnOfTheUnusual(const node& at, const Key& key, double stated) const {
  const Range& range = key.range;
  const auto isUsual = [&](double number) {
    return number >= range.usualLow && number <= range.usualHigh;
  };
  const double value = InField(stated, key.quantity);
  if (isUsual(value)) return;
  const bool isLow = value < range.usualLow;
  const UnitSystem other = Units() == UnitSystem::kField ? UnitSystem::kMetric : UnitSystem::kField;
  const std::string_view unit = UnitName(key.quantity, other);
  const bool wouldFit =
      unit != UnitName(key.quantity, Units()) && isUsual(ToField(stated, key.quantity, other));
  file->findings.push_back(
      {LineOfNode(at),
       fmt::format("{} is {}, {} than {}: it can hardly be meant{}", key.name, WithUnit(value, key),
                   isLow ? "less" : "more", WithUnit(isLow ? range.usualLow : range.usualHigh, key),
                   wouldFit ? fmt::format(" ({:g} {} could)", stated, unit) : ""),
       false});
}

/// `orElse` is what the key takes beside its words, with the "or".
size_t DescribedTable::Node::Choice(const node& at, std::string_view key,
                                    std::span<const std::string_view> words,
                                    std::string_view orElse) const {
  const Wording& wording = file->wording;
  std::string list(words.size() > 1 ? wording.firstChoice : "");
  for (size_t i = 0; i < words.size(); ++i) {
    const auto link = i == 0 ? "" : i + 1 == words.size() ? wording.lastChoice : ", ";
    list += fmt::format("{}\"{}\"", link, words[i]);
  }
  list = std::string(orElse) + list;
  const auto text = at.value_exact<std::string>();
  if (!text) FailType(at, key, list);
  const auto found = std::ranges::find(words, *text);
  if (found != words.end()) return static_cast<size_t>(found - words.begin());
  Fail(at, Filled(wording.noChoice, fmt::arg("key", key), fmt::arg("what", list),
                  fmt::arg("value", *text), fmt::arg("hint", DidYouMean(*text, words))));
}

void DescribedTable::Node::Take(const node& at, const Key& key, std::string& value) const {
  const auto text = at.value_exact<std::string>();
  if (!text) FailType(at, key.name, "a text");
  if (text->empty()) FailType(at, key.name, "a text that isn't empty");
  const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20; };
  if (std::ranges::any_of(*text, isControl)) {
    FailType(at, key.name, "a text without control characters");
  }
  value = *text;
}

void DescribedTable::Node::Take(const node& at, const Key& key, double& value) const {
  if (!key.choices.empty() && !at.is_number()) {
    const std::vector<std::string_view> words = SplitChoices(key.choices);
    Choice(at, key.name, words,
           fmt::format("a number of {}{}", UnitName(key.quantity, Units()),
                       words.size() > 1 ? ", " : " or "));
    value = 0;
    return;
  }
  const double stated = Finite(at, key.name);
  CheckRange(at, key, stated);
  value = InField(stated, key.quantity);
}

void DescribedTable::Node::Take(const node& at, const Key& key, int& value) const {
  if (!key.choices.empty()) {
    value = static_cast<int>(Choice(at, key.name, SplitChoices(key.choices)));
    return;
  }
  const auto number = at.value_exact<int64_t>();
  if (!number) FailType(at, key.name, "a whole number");
  if (*number > std::numeric_limits<int>::max()) FailType(at, key.name, "smaller");
  CheckRange(at, key, static_cast<double>(*number));
  value = static_cast<int>(*number);
}

void DescribedTable::Node::Take(const node& at, const Key& key, bool& value) const {
  const auto flag = at.value_exact<bool>();
  if (!flag) FailType(at, key.name, "true or false");
  value = *flag;
}

void DescribedTable::Node::Take(const node& at, const Key& key, Date& value) const {
  value = Day(at, key.name);
  if (!IsValid(value) || value.year < 1900) FailType(at, key.name, "a day from 1900 on");
}

DescribedTable DescribedTable::ReadText(std::string_view text, const std::string& fileName,
                                        const Wording& wording) {
  try {
    auto file = std::make_shared<File>(File{Parse(text), fileName, wording});
    const toml::table& root = file->root;
    return DescribedTable(std::make_shared<Node>(Node{std::move(file), &root, {}}));
  } catch (const TomlError& error) {
    throw FileError(fileName, static_cast<int>(error.Line), error.what());
  }
}

void DescribedTable::UseUnits(std::optional<UnitSystem> units) const { node_->file->units = units; }

bool DescribedTable::Has(std::string_view key) const { return node_->Find(key) != nullptr; }

std::string DescribedTable::Text(std::string_view key) const {
  const node& found = node_->Get(key);
  const auto text = found.value_exact<std::string>();
  if (!text) node_->FailType(found, key, "a text");
  return *text;
}

std::string DescribedTable::Text(std::string_view key, std::string_view fallback) const {
  return Has(key) ? Text(key) : std::string(fallback);
}

size_t DescribedTable::Word(std::string_view key, std::string_view fallback,
                            std::span<const std::string_view> words) const {
  const node* found = node_->Find(key);
  const std::string word = fallback.empty() ? Text(key) : Text(key, fallback);
  if (found != nullptr) return node_->Choice(*found, key, words);
  return static_cast<size_t>(std::ranges::find(words, word) - words.begin());
}

bool DescribedTable::Flag(std::string_view key, bool fallback) const {
  const node* found = node_->Find(key);
  if (found == nullptr) return fallback;
  const auto flag = found->value<bool>();
  if (!flag) node_->FailType(*found, key, "true or false");
  return *flag;
}

Date DescribedTable::Day(std::string_view key) const { return node_->Day(node_->Get(key), key); }

double DescribedTable::Number(const Key& key) const {
  double number = 0;
  Take(key, &number);
  return number;
}

std::vector<double> DescribedTable::Numbers(const Key& key) const {
  std::vector<double> numbers;
  Take(key, &numbers);
  return numbers;
}

void DescribedTable::Take(const Key& key, const Target& target) const {
  const node* found = node_->Find(key.name);
  if (found != nullptr) {
    return std::visit([&](auto* value) { node_->Take(*found, key, *value); }, target);
  }
  if (key.isRequired) node_->FailMissing(key.name);
  if (key.standard && std::holds_alternative<double*>(target)) {
    *std::get<double*>(target) = *key.standard;
  }
}

void DescribedTable::ReadColumns(std::string_view key, size_t leastRows,
                                 const std::vector<ColumnKey>& columns) const {
  const toml::array& rows = node_->Array(node_->Get(key), key);
  if (rows.size() < leastRows) Fail(key, fmt::format("'{}' needs {} rows", key, leastRows));
  for (const node& row : rows) {
    const toml::array& cells = node_->Array(row, key);
    if (cells.size() != columns.size()) {
      Node::Fail(row, fmt::format("a row of '{}' must have {} numbers", key, columns.size()));
    }
    for (size_t i = 0; i < columns.size(); ++i) {
      const ColumnKey& column = columns[i];
      std::vector<double>& values = *column.target;
      const double value = node_->InField(node_->Finite(cells[i], column.name), column.quantity);
      const OrderRule& order = kOrders[static_cast<size_t>(column.order)];
      if (!values.empty() && !order.holds(values.back(), value)) {
        Node::Fail(cells[i], fmt::format("the {} of '{}' must {} from row to row", column.name, key,
                                         order.word));
      }
      if (value < 0.0) {
        Node::Fail(cells[i], fmt::format("the {} of '{}' is below zero", column.name, key));
      }
      values.push_back(value);
    }
  }
}

DescribedTable DescribedTable::Table(std::string_view key) const {
  const node& found = node_->Get(key);
  if (!found.is_table()) node_->FailType(found, key, node_->file->wording.table);
  return node_->Below(*found.as_table(), key);
}

DescribedTable DescribedTable::Section(std::string_view key) const {
  static const toml::table kNothing;
  return Has(key) ? Table(key) : node_->Below(kNothing, key);
}

std::vector<DescribedTable> DescribedTable::Tables(std::string_view key) const {
  std::vector<DescribedTable> tables;
  const node* found = node_->Find(key);
  if (found == nullptr) return tables;
  const std::string_view wanted = node_->file->wording.tables;
  if (!found->is_array() || found->as_array()->empty()) node_->FailType(*found, key, wanted);
  for (const node& element : *found->as_array()) {
    if (!element.is_table()) node_->FailType(element, key, wanted);
    tables.push_back(node_->Below(*element.as_table(), key));
  }
  return tables;
}

bool DescribedTable::RejectUnknownKeys() const {
  const Wording& wording = node_->file->wording;
  const bool isTop = node_->table == &node_->file->root;
  bool isKnown = true;
  for (const auto& [key, value] : *node_->table) {
    if (std::ranges::find(node_->asked, key.str()) != node_->asked.end()) continue;
    isKnown = false;
    Keep({static_cast<int>(key.source().begin.line),
          Filled(isTop ? wording.unknownAtTop : wording.unknown, fmt::arg("key", key.str()),
                 fmt::arg("section", node_->section),
                 fmt::arg("hint", DidYouMean(key.str(), node_->asked)))});
  }
  return isKnown;
}

void DescribedTable::Keep(const Finding& finding) const {
  node_->file->findings.push_back(finding);
}

void DescribedTable::ThrowFaults() const {
  const std::vector<Finding> findings = Findings();
  if (!findings.empty()) throw FileError(node_->file->name, findings);
}

std::vector<Finding> DescribedTable::Findings() const {
  std::vector<Finding> findings = node_->file->findings;
  std::ranges::stable_sort(findings, {}, &Finding::line);
  return findings;
}

int DescribedTable::Line() const { return LineOfNode(*node_->table); }

int DescribedTable::LineOf(std::string_view key) const {
  const node* found = node_->table->get(key);
  return LineOfNode(found == nullptr ? *node_->table : *found);
}

void DescribedTable::Fail(std::string_view key, const std::string& reason) const {
  throw Fault{{LineOf(key), reason}};
}

}  // namespace gantry::toml_reader
