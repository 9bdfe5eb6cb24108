#pragma once

#include <optional>
#include <string>

#include "toolkit/dialog_window.h"

namespace gantry {

/// The folder in the path of a file, which may be empty.
std::string FolderOf(const std::string& path);

/// Lets the user pick an existing file, whose path goes into an edit. The user begins in the folder
/// of what the edit holds, else in `folder`. The path, none when the user gave up.
std::optional<std::string> BrowseInto(platform::DialogWindow& window, int edit,
                                      platform::FileRequest request,
                                      const std::string& folder = {});

}  // namespace gantry
