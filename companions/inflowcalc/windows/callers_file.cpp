#include "inflowcalc/callers_file.h"

#include <windows.h>

namespace gantry::inflow {
namespace {

HANDLE Handle(intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

}  // namespace

bool CallersFile::Write(std::span<const std::byte> bytes) const {
  const DWORD length = static_cast<DWORD>(bytes.size());
  DWORD written = 0;
  return WriteFile(Handle(handle_), bytes.data(), length, &written, nullptr) != 0 &&
         written == length;
}

bool CallersFile::Read(std::span<std::byte> bytes) const {
  const DWORD length = static_cast<DWORD>(bytes.size());
  DWORD received = 0;
  return ReadFile(Handle(handle_), bytes.data(), length, &received, nullptr) != 0 &&
         received == length;
}

int64_t CallersFile::Position() const {
  LARGE_INTEGER here = {};
  return SetFilePointerEx(Handle(handle_), {}, &here, FILE_CURRENT) != 0 ? here.QuadPart : -1;
}

void CallersFile::MoveTo(int64_t position) const {
  LARGE_INTEGER target = {};
  target.QuadPart = position;
  SetFilePointerEx(Handle(handle_), target, nullptr, FILE_BEGIN);
}

int64_t CallersFile::Length() const {
  LARGE_INTEGER length = {};
  return GetFileSizeEx(Handle(handle_), &length) != 0 ? length.QuadPart : -1;
}

}  // namespace gantry::inflow
