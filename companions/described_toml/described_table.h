#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "described_toml/described_key.h"
#include "described_toml/finding.h"

namespace gantry::toml_reader {

/// How a kind of file calls what is wrong with a key: format strings with the parts {key}, {what},
/// {value}, {low}, {high}, {unit}, {section} and {hint}.
struct Wording {
  std::string_view mistyped = "'{key}' must be {what}";
  std::string_view tooLow = "'{key}' is {value}: it must lie from {low} to {high}";
  std::string_view tooHigh = tooLow;
  std::string_view noChoice = "'{key}' must be {what}{hint}";
  std::string_view missing = "'{key}' is missing";
  std::string_view unknown = "unknown key '{key}'{hint}";
  std::string_view unknownAtTop = unknown;
  std::string_view firstChoice = "";
  std::string_view lastChoice = " or ";
  std::string_view date = "a date such as 2015-01-31";
  std::string_view list = "an array";
  std::string_view table = "a table";
  std::string_view tables = "written as [[{key}]]";
};

/// One column of an array of rows.
struct ColumnKey {
  std::string_view name;
  Quantity quantity;
  enum class Order { kFree, kRising, kNotFalling, kFalling, kNotRising } order;
  std::vector<double>* target;
};

/// One table of a file, read key by key; every fault is reported with its place in the file. A copy
/// refers to the same table, and what one has read counts for all; faults are kept for all tables
/// of a file. Numbers come out in field units. One thread at a time.
class DescribedTable {
 public:
  /// The whole file; its name and its wording are for the faults. Throws `FileError` when it isn't
  /// TOML.
  static DescribedTable ReadText(std::string_view text, const std::string& fileName,
                                 const Wording& wording = {});

  /// The units of the numbers that are still to be read; none while they aren't known, when no
  /// number with a unit is judged. Field units to begin with.
  void UseUnits(std::optional<UnitSystem> units) const;

  bool Has(std::string_view key) const;
  std::string Text(std::string_view key) const;
  std::string Text(std::string_view key, std::string_view fallback) const;
  /// One of some words, by its place; an empty fallback makes the key mandatory.
  size_t Word(std::string_view key, std::string_view fallback,
              std::span<const std::string_view> words) const;
  /// The same of words divided by '|'.
  size_t Word(std::string_view key, std::string_view fallback, std::string_view choices) const {
    return Word(key, fallback, SplitChoices(choices));
  }
  bool Flag(std::string_view key, bool fallback) const;
  Date Day(std::string_view key) const;
  double Number(const Key& key) const;
  std::vector<double> Numbers(const Key& key) const;
  /// Appends the columns of an array of rows of numbers to their targets.
  void ReadColumns(std::string_view key, size_t leastRows,
                   const std::vector<ColumnKey>& columns) const;
  /// Reads every key of a list of rows. Faults are kept; the answer is whether there were none.
  template <class Rows, class Spec>
  bool Read(const Rows& rows, Spec& spec) const {
    bool isSound = true;
    for (const KeyRow<Spec>& row : rows) {
      const auto take = [&](auto member) { Take(row.about, &(spec.*member)); };
      isSound = Try([&] { std::visit(take, row.target); }) && isSound;
    }
    return isSound;
  }

  /// Reads a part of the file. A fault in it is kept, so that the other parts are read all the
  /// same, and the answer is false.
  template <class Part>
  bool Try(Part part) const {
    try {
      part();
      return true;
    } catch (const Fault& fault) {
      Keep(fault.finding);
      return false;
    }
  }
  /// Throws the faults that were kept, by lines, if there are any.
  void ThrowFaults() const;
  /// All that is wrong or can hardly be meant, by lines.
  std::vector<Finding> Findings() const;

  DescribedTable Table(std::string_view key) const;
  /// The same, or an empty table when the key is absent.
  DescribedTable Section(std::string_view key) const;
  /// None when the key is absent.
  std::vector<DescribedTable> Tables(std::string_view key) const;

  /// The keys that nobody has asked for are faults, which are kept; true when there are none.
  bool RejectUnknownKeys() const;
  /// Of the table, or of a key that it has.
  int Line() const;
  int LineOf(std::string_view key) const;
  [[noreturn]] void Fail(std::string_view key, const std::string& reason) const;

 private:
  /// Ends the reading of a part.
  struct Fault {
    Finding finding;
  };
  struct File;
  struct Node;
  using Target =
      std::variant<std::string*, double*, int*, bool*, std::optional<double>*, std::optional<int>*,
                   std::optional<Date>*, std::vector<double>*, std::vector<std::string>*>;

  explicit DescribedTable(std::shared_ptr<Node> node) : node_(std::move(node)) {}
  void Take(const Key& key, const Target& target) const;
  void Keep(const Finding& finding) const;

  std::shared_ptr<Node> node_;
};

}  // namespace gantry::toml_reader
