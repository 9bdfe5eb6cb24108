#pragma once

#include <string>
#include <vector>

#include <spawn.h>

namespace gantry::platform {

/// What `posix_spawn` is told to do between the start of a process and its program.
class SpawnActions {
 public:
  SpawnActions() {
    ::posix_spawn_file_actions_init(&files_);
    ::posix_spawnattr_init(&attributes_);
  }
  ~SpawnActions() {
    ::posix_spawn_file_actions_destroy(&files_);
    ::posix_spawnattr_destroy(&attributes_);
  }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;

  posix_spawn_file_actions_t* Files() { return &files_; }
  posix_spawnattr_t* Attributes() { return &attributes_; }

 private:
  posix_spawn_file_actions_t files_{};
  posix_spawnattr_t attributes_{};
};

/// Texts as a program is given them: pointers to each, and a null behind them.
inline std::vector<char*> PointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace gantry::platform
