#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#ifdef GANTRY_REPLAY
#include <gtest/gtest.h>
#endif

// What the targets share, the standard library's headers among it. A target is a function that
// plays one input:
//
//   FUZZ_TARGET(registry_text) { ... input ... }
//
// In the programs NAME_fuzz libFuzzer makes up the inputs. In fuzz_replay_tests a test for each
// target plays what lies in corpus/NAME, the seeds and what was found once.

#ifdef GANTRY_REPLAY
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

/// Plays what may end with one of these exceptions, as a reader refuses, but with no other.
template <class Refusal, class... Others>
void MayRefuse(const auto& play) {
  try {
    if constexpr (sizeof...(Others) == 0) {
      play();
    } else {
      MayRefuse<Others...>(play);
    }
  } catch (const Refusal& refusal) {
    Require(refusal.what()[0] != '\0');
  }
}

/// The same for a reader that tells one finding, with its line.
template <class FileError>
void MayTellOfALine(const auto& play, std::string_view input) {
  try {
    play();
  } catch (const FileError& error) {
    Require(error.Findings.size() == 1 && !error.Findings[0].reason.empty());
    const int line = error.Findings[0].line;
    Require(line > 0 && line <= std::ranges::count(input, '\n') + 1);
  }
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

/// Writes a file into a folder of this process, which is gone with it, and returns its path.
inline std::string WriteFile(const char* name, std::string_view content) {
  struct Folder {
    Folder() { Require(::mkdtemp(path.data()) != nullptr); }
    ~Folder() { std::filesystem::remove_all(path); }
    std::string path = std::filesystem::temp_directory_path() / "gantry-fuzz-XXXXXX";
  };
  static const Folder folder;
  std::string file = folder.path + "/" + name;
  std::ofstream(file, std::ios::binary) << content;
  return file;
}

inline std::string ReadFile(const std::string& file) {
  std::ostringstream content;
  content << std::ifstream(file, std::ios::binary).rdbuf();
  return content.str();
}

#ifdef GANTRY_REPLAY
/// Plays each file of corpus/NAME, and of NAME below the folder that GANTRY_GROWN_CORPUS names.
inline void ReplayAll(const std::string& name, void (*play)(std::string_view)) {
  const char* grown = std::getenv("GANTRY_GROWN_CORPUS");
  for (const std::string corpus : {GANTRY_CORPUS, grown == nullptr ? "" : grown}) {
    if (!std::filesystem::is_directory(corpus + "/" + name)) continue;
    for (const auto& entry : std::filesystem::directory_iterator(corpus + "/" + name)) {
      SCOPED_TRACE(entry.path().string());
      play(ReadFile(entry.path()));
    }
  }
}
#endif

}  // namespace gantry::fuzz
