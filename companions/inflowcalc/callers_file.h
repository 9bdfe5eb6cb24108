#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace gantry::inflow {

/// A file that belongs to the caller of the library and is used at its current position.
class CallersFile {
 public:
  explicit CallersFile(intptr_t handle) : handle_(handle) {}

  bool Write(std::span<const std::byte> bytes) const;  ///< false unless all were written
  bool Read(std::span<std::byte> bytes) const;         ///< false unless all could be read
  int64_t Position() const;                            ///< -1 when the file has none
  void MoveTo(int64_t position) const;
  int64_t Length() const;  ///< -1 when the system doesn't tell

 private:
  intptr_t handle_;
};

}  // namespace gantry::inflow
