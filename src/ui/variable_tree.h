#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "toolkit/dialog_window.h"
#include "wells/exported_variables.h"

namespace gantry {

/// A label as it is shown: "[comps]" behind it for a value of each component, "[]" for several
/// values of another kind.
std::string DisplayText(const std::string& label, uint32_t kind);

/// The order of texts in sorted lists and trees: without regard to case, else as they are.
bool SortsBefore(std::string_view a, std::string_view b);

/// The tree of chosen variables and its check boxes, which it is told of. Neither entering a
/// variable nor finding those of a name costs more in a larger tree.
class VariableTree {
 public:
  /// Enters a variable under its parent, which is added when it is missing and is to be opened.
  void Enter(const CExportedVariableWellParent& parent, const CExportedVariable& variable);
  /// The items as a window takes them, sorted.
  std::vector<platform::TreeItem> Show();

  // Of the items as they were shown last.

  /// The state that the box of an item has now.
  bool Toggle(const platform::TreePlace& place);
  /// Gives the variables of the same text the state of the one at `place`: those that had another.
  std::vector<platform::TreePlace> CheckNamesakes(const platform::TreePlace& place);
  /// Takes away the wells and variables that are checked, and wells without a variable left. The
  /// data of what was checked.
  std::unordered_set<uintptr_t> RemoveChecked();

 private:
  platform::TreeItem& ParentItem(const CExportedVariableWellParent& parent);
  const std::vector<platform::TreePlace>& PlacesOf(const std::string& text);

  std::vector<platform::TreeItem> items_;
  std::unordered_map<uintptr_t, size_t> parents_;  ///< positions by data, while variables come in
  std::unordered_map<std::string, std::vector<platform::TreePlace>> byText_;  ///< once asked for
};

}  // namespace gantry
