#pragma once

#include <string>

#include "described_toml/described_key.h"

namespace gantry::toml_reader {

/// A key in the reference of its file: its name and meaning, and below them what it takes and what
/// stands in for it.
std::string KeyLines(const Key& about, const ValueType& type);

/// The keys of a table.
template <class Rows>
std::string KeyLines(const Rows& rows) {
  std::string text;
  for (const auto& row : rows) text += KeyLines(row.about, TypeOf(row));
  return text;
}

}  // namespace gantry::toml_reader
