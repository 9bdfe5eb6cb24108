#include "ui/variable_tree.h"

#include <algorithm>
#include <utility>

namespace gantry {

using platform::TreeItem;

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

VariableTree::VariableTree(std::vector<TreeItem> items) : items_(std::move(items)) {
  for (size_t i = 0; i < items_.size(); ++i) places_.emplace(items_[i].data, i);
}

TreeItem& VariableTree::ParentItem(const CExportedVariableWellParent& parent) {
  const auto [place, isNew] = places_.try_emplace(DataOf(&parent), items_.size());
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

std::vector<TreeItem> VariableTree::Take() {
  for (TreeItem& item : items_) Sort(item.children);
  Sort(items_);
  places_.clear();
  return std::exchange(items_, {});
}

}  // namespace gantry
