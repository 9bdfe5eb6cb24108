#include "platform/named_mutex.h"

#include "platform/windows/win32.h"

namespace gantry::platform {

namespace {

class WindowsMutex : public NamedMutex {
 public:
  explicit WindowsMutex(HANDLE handle) : handle_(handle) {}
  ~WindowsMutex() override {
    ReleaseMutex(handle_);
    CloseHandle(handle_);
  }

 private:
  HANDLE handle_;
};

}  // namespace

std::unique_ptr<NamedMutex> NamedMutex::Acquire(const std::string& name) {
  HANDLE handle = CreateMutexA(nullptr, FALSE, name.c_str());
  if (handle == nullptr) return nullptr;
  const DWORD outcome = WaitForSingleObject(handle, INFINITE);
  if (outcome == WAIT_OBJECT_0 || outcome == WAIT_ABANDONED) {
    return std::make_unique<WindowsMutex>(handle);
  }
  CloseHandle(handle);
  return nullptr;
}

// A name counts as held as long as anybody has a handle on it, whichever thread owns the mutex.
NamedMutex::Attempt NamedMutex::TryAcquire(const std::string& name) {
  HANDLE handle = CreateMutexA(nullptr, TRUE, name.c_str());
  const DWORD error = GetLastError();
  if (handle == nullptr) return {Outcome::kUnavailable, nullptr};
  if (error == ERROR_ALREADY_EXISTS) {
    CloseHandle(handle);
    return {Outcome::kHeldElsewhere, nullptr};
  }
  return {Outcome::kTaken, std::make_unique<WindowsMutex>(handle)};
}

}  // namespace gantry::platform
