#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace gantry {

/// A lookup of names to their first position in a list, for one pass over that list. It keeps views
/// of the names, so the list must outlive it unchanged. An open hash table: two allocations for a
/// list of any length.
class NameIndex {
 public:
  NameIndex() = default;
  explicit NameIndex(std::span<const std::string> names) {
    names_.reserve(names.size());
    Resize(names.size());
    for (const std::string& name : names) Add(name);
  }

  /// The names of a list's items.
  template <class Item>
  NameIndex(const std::vector<Item>& items, std::string Item::*name) {
    for (const Item& item : items) Add(item.*name);
  }

  /// Adds the next name; a name that is already known keeps its first position.
  void Add(std::string_view name) {
    if (2 * (names_.size() + 1) > slots_.size()) Resize(2 * (names_.size() + 1));
    names_.push_back(name);
    Enter(names_.size() - 1);
  }

  std::optional<size_t> Find(std::string_view name) const {
    if (slots_.empty()) return std::nullopt;
    const Slot& slot = slots_[PlaceOf(name, HashOf(name))];
    if (slot.next == 0) return std::nullopt;
    return slot.next - 1;
  }

 private:
  struct Slot {
    size_t hash = 0;
    size_t next = 0;  ///< the position behind the name's; 0 in an empty slot
  };

  static size_t HashOf(std::string_view name) { return std::hash<std::string_view>{}(name); }

  /// The slot that holds the name, or the empty one where it belongs.
  size_t PlaceOf(std::string_view name, size_t hash) const {
    const size_t mask = slots_.size() - 1;
    size_t place = hash & mask;
    while (slots_[place].next != 0) {
      if (slots_[place].hash == hash && names_[slots_[place].next - 1] == name) break;
      place = (place + 1) & mask;
    }
    return place;
  }

  void Enter(size_t position) {
    const size_t hash = HashOf(names_[position]);
    Slot& slot = slots_[PlaceOf(names_[position], hash)];
    if (slot.next == 0) slot = {hash, position + 1};
  }

  /// Room for `count` names, at most half of the slots taken.
  void Resize(size_t count) {
    size_t size = 16;
    while (size < 2 * count) size *= 2;
    slots_.assign(size, Slot());
    for (size_t position = 0; position < names_.size(); ++position) Enter(position);
  }

  std::vector<std::string_view> names_;
  std::vector<Slot> slots_;
};

}  // namespace gantry
