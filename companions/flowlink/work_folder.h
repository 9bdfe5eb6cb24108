#pragma once

#include <chrono>
#include <filesystem>
#include <string>

#include "platform/posix/descriptor.h"

namespace gantry::flowlink {

/// Where a session of this base, "FOLDER/NAME", keeps flow's files: NAME.flow in the folder of the
/// host's results (the variable GANTRY_RESULTS), or beside the base where the host names none.
std::filesystem::path WorkFolderOf(const std::string& base);

/// A folder for one session at a time, empty at its begin unless it goes on with the one before. It
/// stays locked as long as the object, or the process, lives.
class WorkFolder {
 public:
  /// Throws `LinkFault` when the folder can't be made or emptied, or belongs to another session.
  enum class Content { kDropped, kKept };
  /// The folder of a session that is gone on with may still be in use: it is waited for, a minute
  /// at most, until what was left of that session has ended.
  explicit WorkFolder(std::filesystem::path path, Content content = Content::kDropped);

  const std::filesystem::path& Path() const { return path_; }

 private:
  void Lock(std::chrono::seconds longest);
  void Empty() const;

  std::filesystem::path path_;
  platform::Descriptor lock_;
};

}  // namespace gantry::flowlink
