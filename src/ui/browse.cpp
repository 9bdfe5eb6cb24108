#include "ui/browse.h"

#include "platform/file_path.h"

namespace gantry {

std::string FolderOf(const std::string& path) {
  return platform::NameOf(platform::PathOf(path).parent_path());
}

std::optional<std::string> BrowseInto(platform::DialogWindow& window, int edit,
                                      platform::FileRequest request, const std::string& folder) {
  request.folder = FolderOf(window.Text(edit));
  if (request.folder.empty()) request.folder = folder;
  auto path = window.AskForFile(request);
  if (!path) return std::nullopt;
  window.SetText(edit, *path);
  window.PutCaretBehindText(edit);
  return path;
}

}  // namespace gantry
