#pragma once

#include <optional>
#include <string>

#include "platform/dialog_window.h"

namespace gantry {

/// Lets the user pick an existing file, whose path goes into an edit. The path, none when the user
/// gave up.
inline std::optional<std::string> BrowseInto(platform::DialogWindow& window, int edit,
                                             const platform::FileRequest& request) {
  auto path = window.AskForFile(request);
  if (!path) return std::nullopt;
  window.SetText(edit, *path);
  window.PutCaretBehindText(edit);
  return path;
}

}  // namespace gantry
