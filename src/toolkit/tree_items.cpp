#include "toolkit/tree_items.h"

#include <algorithm>
#include <unordered_set>

namespace gantry::platform {

std::optional<TreePlace> FindItem(const std::vector<TreeItem>& items, uintptr_t data) {
  for (size_t i = 0; data != 0 && i < items.size(); ++i) {
    if (items[i].data == data) return TreePlace{i};
    const auto& children = items[i].children;
    const auto child = std::ranges::find(children, data, &TreeItem::data);
    if (child != children.end()) return TreePlace{i, child - children.begin()};
  }
  return std::nullopt;
}

void KeepBranches(std::vector<TreeItem>& items, const std::vector<TreeItem>& before,
                  const std::function<bool(size_t parent)>& isOpen) {
  std::unordered_set<uintptr_t> open;
  for (size_t i = 0; i < before.size(); ++i) {
    if (isOpen(i)) open.insert(before[i].data);
  }
  for (TreeItem& item : items) item.isExpanded = item.isExpanded || open.contains(item.data);
}

}  // namespace gantry::platform
