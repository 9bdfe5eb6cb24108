#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

namespace gantry {

/// A lookup of names to their first position in a list, for one pass over that list. It keeps views
/// of the names, so the list must outlive it unchanged.
class NameIndex {
 public:
  NameIndex() = default;
  explicit NameIndex(std::span<const std::string> names) {
    positions_.reserve(names.size());
    for (const std::string& name : names) Add(name);
  }

  /// Adds the next name; a name that is already known keeps its first position.
  void Add(std::string_view name) { positions_.try_emplace(name, next_++); }

  std::optional<size_t> Find(std::string_view name) const {
    const auto found = positions_.find(name);
    if (found == positions_.end()) return std::nullopt;
    return found->second;
  }

 private:
  std::unordered_map<std::string_view, size_t> positions_;
  size_t next_ = 0;
};

}  // namespace gantry
