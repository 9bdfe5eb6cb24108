#include "tanksim/deck_table.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <map>
#include <set>

#include <fmt/format.h>

#include "described_toml/checked_toml.h"
#include "described_toml/near_word.h"
#include "platform/file_path.h"

namespace gantry::simulator {

namespace {

using toml::node;

std::string PlaceOf(const std::string& file, const toml::source_region& region) {
  return fmt::format("{}:{}", file, region.begin.line);
}

bool IsInOrder(ColumnKey::Order order, double before, double after) {
  switch (order) {
    case ColumnKey::Order::kRising:
      return after > before;
    case ColumnKey::Order::kNotFalling:
      return after >= before;
    case ColumnKey::Order::kFalling:
      return after < before;
    case ColumnKey::Order::kNotRising:
      return after <= before;
    case ColumnKey::Order::kFree:
      break;
  }
  return true;
}

std::string_view WordOf(ColumnKey::Order order) {
  static constexpr std::string_view kWords[] = {"", "rise", "not fall", "fall", "not rise"};
  return kWords[static_cast<size_t>(order)];
}

}  // namespace

/// A fault before it is told.
struct DeckFault : DeckError {
  DeckFault(const std::string& file, const toml::source_region& region, const std::string& reason)
      : DeckError(PlaceOf(file, region) + ": " + reason), line(region.begin.line) {}
  toml::source_index line;
};

struct DeckTable::Node {
  std::shared_ptr<const toml::table> file;  ///< keeps the nodes alive
  std::shared_ptr<const std::string> fileName;
  std::shared_ptr<std::multimap<toml::source_index, std::string>> faults;  ///< by lines
  const toml::table* table;
  std::set<std::string, std::less<>> asked;

  [[noreturn]] void Fail(const node& at, const std::string& reason) const {
    throw DeckFault(*fileName, at.source(), reason);
  }
  const node* Find(std::string_view key) {
    asked.emplace(key);
    return table->get(key);
  }
  const node& Get(std::string_view key) {
    const node* found = Find(key);
    if (found == nullptr) Fail(*table, fmt::format("'{}' is missing", key));
    return *found;
  }
  template <class T>
  T Value(const node& at, std::string_view key, std::string_view kind) const {
    const auto value = at.value<T>();
    if (!value) Fail(at, fmt::format("'{}' must be {}", key, kind));
    return *value;
  }
  double Number(const node& at, std::string_view key) const {
    const double value = Value<double>(at, key, "a number");
    if (!std::isfinite(value)) Fail(at, fmt::format("'{}' must be a finite number", key));
    return value;
  }
  double InRange(const node& at, const NumberKey& key, const DeckUnits& units) const {
    const double value = Number(at, key.name);
    const double field = units.ToField(value, key.quantity);
    // A bound that the deck states in its own unit passes in spite of rounding.
    const double slack = 1e-9 * std::abs(field);
    if (field >= key.least - slack && field <= key.most + slack) return field;
    Fail(at, fmt::format("'{}' is {:g}: it must lie from {:.6g} to {:.6g}", key.name, value,
                         units.FromField(key.least, key.quantity),
                         units.FromField(key.most, key.quantity)));
  }
  const toml::array& Array(const node& at, std::string_view key) const {
    const toml::array* array = at.as_array();
    if (array == nullptr) Fail(at, fmt::format("'{}' must be an array", key));
    return *array;
  }
  std::shared_ptr<Node> Below(const toml::table& other) const {
    return std::make_shared<Node>(Node{file, fileName, faults, &other, {}});
  }
};

DeckTable DeckTable::ReadText(std::string_view text, const std::string& fileName) {
  try {
    auto table = std::make_shared<const toml::table>(toml_reader::Parse(text));
    const toml::table* root = table.get();
    return DeckTable(std::make_shared<Node>(
        Node{std::move(table),
             std::make_shared<const std::string>(fileName),
             std::make_shared<std::multimap<toml::source_index, std::string>>(),
             root,
             {}}));
  } catch (const toml_reader::TomlError& error) {
    throw DeckError(fmt::format("{}:{}: {}", fileName, error.Line, error.what()));
  }
}

bool DeckTable::Has(std::string_view key) const { return node_->Find(key) != nullptr; }

std::string DeckTable::Text(std::string_view key) const {
  return node_->Value<std::string>(node_->Get(key), key, "a text");
}

std::string DeckTable::Text(std::string_view key, std::string_view fallback) const {
  return Has(key) ? Text(key) : std::string(fallback);
}

size_t DeckTable::Word(std::string_view key, std::string_view fallback,
                       std::span<const std::string_view> words) const {
  const std::string word = fallback.empty() ? Text(key) : Text(key, fallback);
  const auto found = std::ranges::find(words, word);
  if (found != words.end()) return static_cast<size_t>(found - words.begin());
  std::string list;
  for (size_t i = 0; i < words.size(); ++i) {
    const char* const link = i == 0 ? "" : i + 1 == words.size() ? " or " : ", ";
    list += fmt::format("{}\"{}\"", link, words[i]);
  }
  Fail(key, fmt::format("'{}' must be {}{}", key, list, toml_reader::DidYouMean(word, words)));
}

bool DeckTable::Flag(std::string_view key, bool fallback) const {
  const node* found = node_->Find(key);
  return found == nullptr ? fallback : node_->Value<bool>(*found, key, "true or false");
}

std::array<int32_t, 3> DeckTable::Date(std::string_view key) const {
  const auto date = node_->Value<toml::date>(node_->Get(key), key, "a date such as 2015-01-31");
  return {date.year, date.month, date.day};
}

double DeckTable::Number(const NumberKey& key, const DeckUnits& units) const {
  const node* found = node_->Find(key.name);
  if (found != nullptr) return node_->InRange(*found, key, units);
  if (key.fallback) return *key.fallback;
  Fail(key.name, fmt::format("'{}' is missing", key.name));
}

std::vector<double> DeckTable::Numbers(const NumberKey& key, const DeckUnits& units) const {
  std::vector<double> numbers;
  for (const node& element : node_->Array(node_->Get(key.name), key.name)) {
    numbers.push_back(node_->InRange(element, key, units));
  }
  return numbers;
}

std::vector<std::vector<double>> DeckTable::Columns(std::string_view key, size_t leastRows,
                                                    const std::vector<ColumnKey>& columns,
                                                    const DeckUnits& units) const {
  const toml::array& rows = node_->Array(node_->Get(key), key);
  if (rows.size() < leastRows) Fail(key, fmt::format("'{}' needs {} rows", key, leastRows));
  std::vector<std::vector<double>> values(columns.size());
  for (const node& row : rows) {
    const toml::array& cells = node_->Array(row, key);
    if (cells.size() != columns.size()) {
      node_->Fail(row, fmt::format("a row of '{}' must have {} numbers", key, columns.size()));
    }
    for (size_t i = 0; i < columns.size(); ++i) {
      const double value =
          units.ToField(node_->Number(cells[i], columns[i].name), columns[i].quantity);
      if (!values[i].empty() && !IsInOrder(columns[i].order, values[i].back(), value)) {
        node_->Fail(cells[i], fmt::format("the {} of '{}' must {} from row to row", columns[i].name,
                                          key, WordOf(columns[i].order)));
      }
      if (value < 0.0) {
        node_->Fail(cells[i], fmt::format("the {} of '{}' is below zero", columns[i].name, key));
      }
      values[i].push_back(value);
    }
  }
  return values;
}

DeckTable DeckTable::Table(std::string_view key) const {
  const node& found = node_->Get(key);
  if (!found.is_table()) node_->Fail(found, fmt::format("'{}' must be a table", key));
  return DeckTable(node_->Below(*found.as_table()));
}

std::vector<DeckTable> DeckTable::Tables(std::string_view key) const {
  std::vector<DeckTable> tables;
  const node* found = node_->Find(key);
  if (found == nullptr) return tables;
  for (const node& element : node_->Array(*found, key)) {
    if (!element.is_table()) {
      node_->Fail(element, fmt::format("'{}' must be written as [[{}]]", key, key));
    }
    tables.push_back(DeckTable(node_->Below(*element.as_table())));
  }
  return tables;
}

void DeckTable::RejectUnknownKeys() const {
  const std::vector<std::string_view> known(node_->asked.begin(), node_->asked.end());
  for (const auto& [key, value] : *node_->table) {
    if (!node_->asked.contains(key.str())) {
      Keep(DeckFault(
          *node_->fileName, key.source(),
          fmt::format("unknown key '{}'{}", key.str(), toml_reader::DidYouMean(key.str(), known))));
    }
  }
}

void DeckTable::Keep(const DeckError& fault) const {
  const auto* placed = dynamic_cast<const DeckFault*>(&fault);
  node_->faults->emplace(placed == nullptr ? 0 : placed->line, fault.what());
}

void DeckTable::ThrowFaults() const {
  std::string text;
  for (const auto& [line, fault] : *node_->faults) text += (text.empty() ? "" : "\n") + fault;
  if (!text.empty()) throw DeckError(text);
}

std::string DeckTable::Place() const { return PlaceOf(*node_->fileName, node_->table->source()); }

void DeckTable::Fail(std::string_view key, const std::string& reason) const {
  const node* found = node_->table->get(key);
  node_->Fail(found == nullptr ? *node_->table : *found, reason);
}

DeckTable DeckTable::ReadFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  const std::string name = platform::NameOf(file);
  if (!stream || !std::filesystem::is_regular_file(file)) {
    throw DeckError(name + ":1: the deck can't be read");
  }
  return ReadText(std::string(std::istreambuf_iterator<char>(stream), {}), name);
}

}  // namespace gantry::simulator
