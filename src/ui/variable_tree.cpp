#include "ui/variable_tree.h"

#include <algorithm>
#include <utility>

namespace gantry {

using platform::TreeItem;
using platform::TreePlace;

namespace {

char LowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

uintptr_t DataOf(const void* object) { return reinterpret_cast<uintptr_t>(object); }

void Sort(std::vector<TreeItem>& items) {
  const auto before = [](const TreeItem& a, const TreeItem& b) {
    return SortsBefore(a.text, b.text);
  };
  if (!std::ranges::is_sorted(items, before)) std::ranges::stable_sort(items, before);
}

}  // namespace

std::string DisplayText(const std::string& label, uint32_t kind) {
  if (kind == 1) return label;
  return label + (kind == 0 ? "[comps]" : "[]");
}

bool SortsBefore(std::string_view a, std::string_view b) {
  const auto less = [](char x, char y) { return LowerCase(x) < LowerCase(y); };
  if (std::ranges::lexicographical_compare(a, b, less)) return true;
  return !std::ranges::lexicographical_compare(b, a, less) && a < b;
}

TreeItem& VariableTree::ParentItem(const CExportedVariableWellParent& parent) {
  if (parents_.empty()) {
    for (size_t i = 0; i < items_.size(); ++i) parents_.emplace(items_[i].data, i);
  }
  const auto [place, isNew] = parents_.try_emplace(DataOf(&parent), items_.size());
  if (isNew) {
    items_.push_back(
        {.text = parent.WellName, .picture = platform::kWellPicture, .data = DataOf(&parent)});
  }
  return items_[place->second];
}

void VariableTree::Enter(const CExportedVariableWellParent& parent,
                         const CExportedVariable& variable) {
  TreeItem& item = ParentItem(parent);
  item.isExpanded = true;
  item.children.push_back({.text = DisplayText(variable.Label, variable.Kind),
                           .picture = platform::kVariablePicture,
                           .data = DataOf(&variable)});
}

std::vector<TreeItem> VariableTree::Show() {
  for (TreeItem& item : items_) Sort(item.children);
  Sort(items_);
  parents_.clear();
  byText_.clear();
  std::vector<TreeItem> shown = items_;
  for (TreeItem& item : items_) item.isExpanded = false;  // from now on as the user leaves it
  return shown;
}

bool VariableTree::Toggle(const TreePlace& place) {
  TreeItem& item = ItemAt(items_, place);
  item.isChecked = !item.isChecked;
  return item.isChecked;
}

const std::vector<TreePlace>& VariableTree::PlacesOf(const std::string& text) {
  if (byText_.empty()) {
    for (size_t parent = 0; parent < items_.size(); ++parent) {
      const auto& children = items_[parent].children;
      for (size_t child = 0; child < children.size(); ++child) {
        byText_[children[child].text].push_back({parent, child});
      }
    }
  }
  return byText_[text];
}

std::vector<TreePlace> VariableTree::CheckNamesakes(const TreePlace& place) {
  const TreeItem& leader = ItemAt(items_, place);
  std::vector<TreePlace> changed;
  for (const TreePlace& other : PlacesOf(leader.text)) {
    TreeItem& item = ItemAt(items_, other);
    if (item.isChecked == leader.isChecked) continue;
    item.isChecked = leader.isChecked;
    changed.push_back(other);
  }
  return changed;
}

std::unordered_set<uintptr_t> VariableTree::RemoveChecked() {
  std::unordered_set<uintptr_t> removed;
  const auto isRemoved = [&removed](const TreeItem& item) {
    if (item.isChecked) removed.insert(item.data);
    return item.isChecked;
  };
  std::erase_if(items_, [&](TreeItem& item) {
    if (isRemoved(item)) return true;
    std::erase_if(item.children, isRemoved);
    return item.children.empty();
  });
  return removed;
}

}  // namespace gantry
