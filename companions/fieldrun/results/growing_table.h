#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>

namespace gantry::fieldrun {

/// A table that can be read under its own name while it grows. It begins empty, in place of what
/// stood there. What is written goes to the system at once, so that a process that is killed leaves
/// what it has written; a write that fails, as on a full disk, is taken back and leaves what was
/// there before. Throws runtime_error with the file and the reason.
class GrowingTable {
 public:
  explicit GrowingTable(const std::string& path);
  /// One that goes on behind this many bytes of what stands there; the rest is cut off.
  GrowingTable(const std::string& path, uint64_t size);

  /// Appends whole rows.
  void Write(std::string_view rows);

 private:
  std::string path_;
  std::ofstream file_;
  uint64_t size_ = 0;
};

}  // namespace gantry::fieldrun
