// The state of the inflow library at a place of a file. The input is a head, with any checksum or
// the right one, and a body. A state that isn't taken leaves what there was, and what stands
// behind the block is left to its reader.
// Reads: companions/inflowcalc/state_block.cpp

#include <fcntl.h>
#include <unistd.h>

#include "gantry/inflow.h"
#include "target.h"

using namespace gantry::fuzz;

namespace {

constexpr off_t kBefore = 3;
constexpr size_t kHead = 16;

void Append(std::string& bytes, uint32_t value) {
  bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

/// A block as the library writes it, whatever its body holds.
std::string SoundBlock(std::string_view body) {
  uint32_t sum = 2166136261u;
  for (const char byte : body) sum = (sum ^ static_cast<unsigned char>(byte)) * 16777619u;
  std::string block = "IPRS";
  Append(block, 1);
  Append(block, static_cast<uint32_t>(body.size()));
  Append(block, sum);
  return block.append(body);
}

class Library {
 public:
  ~Library() { DestroyIPRModel(handle_); }

  /// Loads the file from the place where a block may begin, and tells where that has ended.
  bool Load(const std::string& path, off_t& end) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    ::lseek(file, kBefore, SEEK_SET);
    const bool isTaken = LoadIPR(handle_, file) == 0;
    end = ::lseek(file, 0, SEEK_CUR);
    ::close(file);
    return isTaken;
  }
  std::string Saved(const std::string& path) {
    const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    Require(SaveIPR(handle_, file) == 0);
    ::close(file);
    return ReadFile(path);
  }

 private:
  void* handle_ = CreateIPRModel(nullptr);
};

}  // namespace

FUZZ_TARGET(inflow_state) {
  const bool isSound = (TakeByte(input) & 1) != 0;
  const std::string block = isSound ? SoundBlock(input) : std::string(input);
  const std::string file = WriteFile("state", "..." + block + "behind");
  Library library;
  off_t end = 0;
  const bool isTaken = library.Load(file, end);
  Require(end == kBefore || end <= kBefore + static_cast<off_t>(block.size() + 6));
  if (isSound) Require(end == kBefore + static_cast<off_t>(block.size()));
  const std::string saved = library.Saved(file + ".2");
  if (!isTaken) Require(saved == SoundBlock(std::string(4, '\0')));
  if (isTaken) Require(saved.size() <= block.size() && saved.size() >= kHead + 4);
  WriteFile("state", "..." + saved);
  Require(library.Load(file, end));
}
