#pragma once

#include <cstdint>

#include <windows.h>

/// A file of the host's, used at its current position.
inline bool WriteToFile(intptr_t file, const void* bytes, size_t length) {
  DWORD written = 0;
  return ::WriteFile(reinterpret_cast<HANDLE>(file), bytes, static_cast<DWORD>(length), &written,
                     nullptr) != 0 &&
         written == length;
}
inline bool ReadFromFile(intptr_t file, void* bytes, size_t length) {
  DWORD read = 0;
  return ::ReadFile(reinterpret_cast<HANDLE>(file), bytes, static_cast<DWORD>(length), &read,
                    nullptr) != 0 &&
         read == length;
}
