#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tanksim/deck_units.h"

namespace gantry::simulator {

/// What is wrong with a deck: a line "file:line: reason" for each fault.
class DeckError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A number of a table: its name, what it measures, the range in field units that it may have, and
/// what it is when the table doesn't give it; without that the table must.
struct NumberKey {
  std::string_view name;
  Quantity quantity;
  double least;
  double most;
  std::optional<double> fallback;
  std::string_view meaning;
};

/// One column of an array of rows.
struct ColumnKey {
  std::string_view name;
  Quantity quantity;
  enum class Order { kFree, kRising, kNotFalling, kFalling, kNotRising } order;
};

/// One table of a deck file, read key by key; every fault is reported with its place in the file.
/// A copy refers to the same table, and what one has read counts for all; faults are kept for all
/// tables of a file.
class DeckTable {
 public:
  /// The whole file. Throws `DeckError` when it can't be read or isn't TOML.
  static DeckTable ReadFile(const std::filesystem::path& file);
  static DeckTable ReadText(std::string_view text, const std::string& fileName);

  bool Has(std::string_view key) const;
  std::string Text(std::string_view key) const;
  std::string Text(std::string_view key, std::string_view fallback) const;
  /// One of some words, by its place; an empty fallback makes the key mandatory.
  size_t Word(std::string_view key, std::string_view fallback,
              std::span<const std::string_view> words) const;
  bool Flag(std::string_view key, bool fallback) const;
  std::array<int32_t, 3> Date(std::string_view key) const;
  /// In field units.
  double Number(const NumberKey& key, const DeckUnits& units) const;
  std::vector<double> Numbers(const NumberKey& key, const DeckUnits& units) const;
  /// The columns of an array of rows of numbers, in field units.
  std::vector<std::vector<double>> Columns(std::string_view key, size_t leastRows,
                                           const std::vector<ColumnKey>& columns,
                                           const DeckUnits& units) const;
  /// Reads a part of the deck. A fault in it is kept, so that the other parts are read all the
  /// same, and the answer is false.
  template <class Part>
  bool Try(Part part) const {
    try {
      part();
      return true;
    } catch (const DeckError& fault) {
      Keep(fault);
      return false;
    }
  }
  /// Throws the faults that were kept, by lines, if there are any.
  void ThrowFaults() const;

  DeckTable Table(std::string_view key) const;
  std::vector<DeckTable> Tables(std::string_view key) const;  ///< none when the key is absent

  /// The keys that nobody has asked for are faults, which are kept.
  void RejectUnknownKeys() const;
  /// "file:line" of the table.
  std::string Place() const;
  [[noreturn]] void Fail(std::string_view key, const std::string& reason) const;

 private:
  struct Node;
  void Keep(const DeckError& fault) const;
  explicit DeckTable(std::shared_ptr<Node> node) : node_(std::move(node)) {}
  std::shared_ptr<Node> node_;
};

}  // namespace gantry::simulator
