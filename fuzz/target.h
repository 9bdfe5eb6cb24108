#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

// What the targets share. A target is a function that plays one input:
//
//   FUZZ_TARGET(registry_text) { ... input ... }
//
// In the programs NAME_fuzz libFuzzer makes up the inputs. In fuzz_replay_tests a test for each
// target plays what lies in corpus/NAME, the seeds and what was found once.

#ifdef GANTRY_REPLAY
#include "replay.h"
#define FUZZ_PLAYER(name) \
  TEST(Replay, name) { gantry::fuzz::ReplayAll(#name, Play); }
#else
#define FUZZ_PLAYER(name)                                                   \
  extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) { \
    Play({reinterpret_cast<const char*>(data), size});                      \
    return 0;                                                               \
  }
#endif
#define FUZZ_TARGET(name)                   \
  static void Play(std::string_view input); \
  FUZZ_PLAYER(name)                         \
  static void Play(std::string_view input)

namespace gantry::fuzz {

/// Ends the process, and tells where, unless it holds.
inline void Require(bool holds, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  if (holds) return;
  std::fprintf(stderr, "%s:%d: doesn't hold\n", file, line);
  std::abort();
}

/// Takes the text up to the mark, and the mark, off the front; all of it when there is none.
inline std::string_view TakeUpTo(char mark, std::string_view& input) {
  const std::string_view part = input.substr(0, input.find(mark));
  input.remove_prefix(std::min(part.size() + 1, input.size()));
  return part;
}

/// A number off the front; 0 when there is nothing left.
inline uint8_t TakeByte(std::string_view& input) {
  if (input.empty()) return 0;
  const char byte = input[0];
  input.remove_prefix(1);
  return static_cast<uint8_t>(byte);
}

/// A folder for the files of this process, gone with it.
class Folder {
 public:
  Folder() : path_(std::filesystem::temp_directory_path() / "gantry-fuzz-XXXXXX") {
    std::string name = path_.string();
    Require(::mkdtemp(name.data()) != nullptr);
    path_ = name;
  }
  ~Folder() { std::filesystem::remove_all(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::string Write(const char* name, std::string_view content) const {
    const std::string file = path_ / name;
    std::ofstream(file, std::ios::binary) << content;
    return file;
  }
  static std::string Read(const std::string& file) {
    std::ostringstream content;
    content << std::ifstream(file, std::ios::binary).rdbuf();
    return content.str();
  }

 private:
  std::filesystem::path path_;
};

/// That of this process.
inline const Folder& TheFolder() {
  static const Folder folder;
  return folder;
}

}  // namespace gantry::fuzz
