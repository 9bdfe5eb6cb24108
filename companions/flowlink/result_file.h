#pragma once

#include <cstdint>
#include <filesystem>
#include <iosfwd>

namespace gantry::flowlink {

/// A restart or summary file of flow, as it grows. flow doesn't notice when one of them can't be
/// written in full.
class ResultFile {
 public:
  explicit ResultFile(std::filesystem::path path) : path_(std::move(path)) {}

  /// Whether what has been added since the last call is whole arrays and nothing else; so is a file
  /// that isn't there. An array is a record of 16 bytes, which counts its elements, and the records
  /// of these; a record stands between two copies of its length, big-endian.
  bool IsWhole();
  /// Cuts off what a writer that was killed has only begun.
  void CutToWhole();
  /// Whether a restart file has the state at the end of this report step, to its end.
  bool HasReport(int report) const;

 private:
  std::filesystem::path path_;
  int64_t checked_ = 0;  ///< bytes
};

}  // namespace gantry::flowlink
