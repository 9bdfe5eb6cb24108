#include "flowlink/work_folder.h"

#include <cerrno>
#include <cstring>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>

#include "flowlink/link_fault.h"
#include "simulator_side/state_file.h"

namespace gantry::flowlink {

namespace fs = std::filesystem;

fs::path WorkFolderOf(const std::string& base) {
  const auto results = simulator::ResultsOfHost();
  const fs::path path = fs::absolute(base + ".flow");
  return results ? *results / path.filename() : path;
}

WorkFolder::WorkFolder(fs::path path, Content content) : path_(std::move(path)) {
  std::error_code error;
  fs::create_directories(path_, error);
  if (error) throw LinkFault("can't make " + path_.string() + ": " + error.message());
  Lock(std::chrono::seconds(content == Content::kKept ? 60 : 0));
  if (content == Content::kDropped) Empty();
}

void WorkFolder::Lock(std::chrono::seconds longest) {
  lock_ = platform::Descriptor(::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!lock_.IsOpen()) throw LinkFault("can't open " + path_.string() + ": " + strerror(errno));
  const auto tryToLock = [this] {
    return ::flock(lock_.Number(), LOCK_EX | LOCK_NB) == 0 ? 0 : errno;
  };
  const auto latest = std::chrono::steady_clock::now() + longest;
  int reason = tryToLock();
  while (reason == EWOULDBLOCK && std::chrono::steady_clock::now() < latest) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    reason = tryToLock();
  }
  if (reason == 0) return;
  if (reason != EWOULDBLOCK)
    throw LinkFault("can't lock " + path_.string() + ": " + strerror(reason));
  throw LinkFault("another run is using " + path_.string() +
                  ": give each run results of its own (fieldrun --output)");
}

/// What an earlier session has left there must not be taken for this one's.
void WorkFolder::Empty() const {
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(path_, error)) {
    fs::remove_all(entry.path(), error);
    if (error) break;
  }
  if (error) throw LinkFault("can't empty " + path_.string() + ": " + error.message());
}

}  // namespace gantry::flowlink
