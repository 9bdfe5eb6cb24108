#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "toolkit/dialog_window.h"

namespace gantry::platform {

/// The place of the item with these data, none for 0.
std::optional<TreePlace> FindItem(const std::vector<TreeItem>& items, uintptr_t data);

/// Marks those of the top level to be opened that are open among the items before, by their data.
void KeepBranches(std::vector<TreeItem>& items, const std::vector<TreeItem>& before,
                  const std::function<bool(size_t parent)>& isOpen);

}  // namespace gantry::platform
