#pragma once

#include <cstdint>

#include <unistd.h>

/// A file of the host's, used at its current position.
inline bool WriteToFile(intptr_t file, const void* bytes, size_t length) {
  return ::write(static_cast<int>(file), bytes, length) == static_cast<ssize_t>(length);
}
inline bool ReadFromFile(intptr_t file, void* bytes, size_t length) {
  return ::read(static_cast<int>(file), bytes, length) == static_cast<ssize_t>(length);
}
