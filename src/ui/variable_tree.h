#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/dialog_window.h"
#include "settings/exported_variables.h"

namespace gantry {

/// A label as it is shown: "[comps]" behind it for a value of each component, "[]" for several
/// values of another kind.
std::string DisplayText(const std::string& label, uint32_t kind);

/// The order of texts in sorted lists and trees: without regard to case, else as they are.
bool SortsBefore(std::string_view a, std::string_view b);

/// The items of the tree of chosen variables while they are built or added to. Entering costs the
/// same however large the tree is.
class VariableTree {
 public:
  /// Goes on from a tree as the user sees it.
  explicit VariableTree(std::vector<platform::TreeItem> items = {});

  /// Enters a variable under its parent, which is added when it is missing and expanded.
  void Enter(const CExportedVariableWellParent& parent, const CExportedVariable& variable);
  /// The items, sorted.
  std::vector<platform::TreeItem> Take();

 private:
  platform::TreeItem& ParentItem(const CExportedVariableWellParent& parent);

  std::vector<platform::TreeItem> items_;
  std::unordered_map<uintptr_t, size_t> places_;  ///< of the parents, by their data
};

}  // namespace gantry
