#include "flowlink/work_folder.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "flowlink/link_fault.h"
#include "platform/environment.h"

namespace gantry::flowlink {

namespace {

namespace fs = std::filesystem;

constexpr size_t kLongestPath = 4096;

}  // namespace

fs::path WorkFolderOf(const std::string& base) {
  const auto results = platform::ReadEnvironment("GANTRY_RESULTS", kLongestPath);
  const fs::path path = fs::absolute(base + ".flow");
  return results ? fs::path(*results) / path.filename() : path;
}

WorkFolder::WorkFolder(fs::path path) : path_(std::move(path)) {
  std::error_code error;
  fs::create_directories(path_, error);
  if (error) throw LinkFault("can't make " + path_.string() + ": " + error.message());
  Lock();
  try {
    Empty();
  } catch (...) {
    ::close(descriptor_);
    throw;
  }
}

WorkFolder::~WorkFolder() { ::close(descriptor_); }

void WorkFolder::Lock() {
  descriptor_ = ::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor_ < 0) throw LinkFault("can't open " + path_.string() + ": " + strerror(errno));
  if (::flock(descriptor_, LOCK_EX | LOCK_NB) == 0) return;
  const int reason = errno;
  ::close(descriptor_);
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
