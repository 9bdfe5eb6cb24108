#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace gantry {

using Strings = std::vector<std::string>;
using Doubles = std::vector<double>;

/// Rows of equal or different lengths in one flat sequence, so that a reply of many wells costs few
/// allocations.
template <class T>
class RowTable {
 public:
  size_t RowCount() const { return ends_.size(); }
  std::span<const T> operator[](size_t row) const {
    const size_t begin = row == 0 ? 0 : ends_[row - 1];
    return {flat_.data() + begin, ends_[row] - begin};
  }

  /// Elements are appended here, then closed as a row by `EndRow`.
  std::vector<T>& Flat() { return flat_; }
  void EndRow() { ends_.push_back(flat_.size()); }
  /// Closes the last elements as rows of one length.
  void EndRows(size_t rows, size_t length) {
    for (size_t row = rows; row > 0; --row) ends_.push_back(flat_.size() - (row - 1) * length);
  }
  /// Drops the rows, and keeps the storage of all.
  void Clear() {
    flat_.clear();
    ends_.clear();
  }

 private:
  std::vector<T> flat_;
  std::vector<size_t> ends_;
};

/// Rows of one length. Rows to come are written over those that were dropped, so that a reply that
/// comes time and again needs no storage of its own.
template <class T>
class EvenRows {
 public:
  size_t RowCount() const { return rows_; }
  std::span<const T> operator[](size_t row) const {
    return {flat_.data() + row * length_, length_};
  }

  /// Drops the rows; those to come are of this length.
  void Begin(size_t length) {
    length_ = length;
    rows_ = 0;
  }
  /// The next row, in which anything may stand.
  std::span<T> Append() {
    const size_t begin = rows_++ * length_;
    if (begin + length_ > flat_.size()) flat_.resize(begin + length_);
    return {flat_.data() + begin, length_};
  }

 private:
  std::vector<T> flat_;
  size_t length_ = 0;
  size_t rows_ = 0;
};

/// One row of values for each well, one element for each item, in the simulator's units.
template <class T>
struct WellAnswer {
  Strings wells;
  Strings items;
  EvenRows<T> values;
  /// The wells are those that stood here before the answer, in their order.
  bool sameWells = false;
};
using WellQueryResult = WellAnswer<double>;
using WellQueryStringResult = WellAnswer<std::string>;

/// One row for each item.
struct ReservoirQueryResult {
  Strings items;
  RowTable<int32_t> values;
};

struct ReservoirQueryStringResult {
  Strings items;
  RowTable<std::string> values;
};

/// For each well its constraint items, their values and who set them.
struct WellConstraintsResult {
  Strings wells;
  std::vector<Strings> items;
  std::vector<Doubles> values;
  std::vector<Strings> setters;
};

/// For each well its items, and for each of these the values of all points.
struct IPRQueryResult {
  Strings wells;
  std::vector<Strings> items;
  std::vector<std::vector<Doubles>> values;
};

/// One fluid model of the reservoir, as the simulator tells it.
struct ReservoirFluidRecord {
  std::string name;
  std::string eosName;
  Strings componentNames;
  Strings propertyNames;
  std::vector<Doubles> propertyValues;
  Doubles binaryInteraction;
};

}  // namespace gantry
