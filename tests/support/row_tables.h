#pragma once

#include <vector>

#include "client/query_results.h"

namespace gantry::test {

/// A table's rows as lists of their own, for a comparison.
template <template <class> class Table, class T>
auto RowsOf(const Table<T>& table) {
  std::vector<std::vector<T>> rows;
  for (size_t i = 0; i < table.RowCount(); ++i) rows.emplace_back(table[i].begin(), table[i].end());
  return rows;
}

}  // namespace gantry::test
