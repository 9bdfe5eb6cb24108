#include "platform/named_mutex.h"

#include <system_error>
#include <utility>

#include "platform/windows/win32.h"

namespace gantry::platform {

namespace {

/// One mutex that this thread owns, or none.
class OwnedMutex {
 public:
  explicit OwnedMutex(HANDLE handle = nullptr) : handle_(handle) {}
  ~OwnedMutex() {
    if (handle_ == nullptr) return;
    ReleaseMutex(handle_);
    CloseHandle(handle_);
  }
  OwnedMutex(OwnedMutex&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  OwnedMutex& operator=(OwnedMutex&&) = delete;

  bool IsOwned() const { return handle_ != nullptr; }

 private:
  HANDLE handle_;
};

/// A name stands for itself in the user's session, and a second time for the whole machine.
class WindowsMutex : public NamedMutex {
 public:
  explicit WindowsMutex(OwnedMutex inSession, OwnedMutex onMachine = OwnedMutex())
      : inSession_(std::move(inSession)), onMachine_(std::move(onMachine)) {}

 private:
  OwnedMutex inSession_;
  OwnedMutex onMachine_;
};

// A name counts as held as long as anybody has a handle on it, whichever thread owns the mutex;
// that of another user may be none that this one can open.
OwnedMutex TakeNew(const std::string& name, DWORD& error) {
  HANDLE handle = CreateMutexA(nullptr, TRUE, name.c_str());
  error = GetLastError();
  if (handle == nullptr || error != ERROR_ALREADY_EXISTS) return OwnedMutex(handle);
  CloseHandle(handle);
  return OwnedMutex();
}

NamedMutex::Attempt Failed(DWORD error) {
  if (error == ERROR_ALREADY_EXISTS || error == ERROR_ACCESS_DENIED) {
    return {NamedMutex::Outcome::kHeldElsewhere, nullptr, {}};
  }
  return {NamedMutex::Outcome::kUnavailable, nullptr,
          std::system_category().message(static_cast<int>(error))};
}

}  // namespace

std::unique_ptr<NamedMutex> NamedMutex::Acquire(const std::string& name) {
  HANDLE handle = CreateMutexA(nullptr, FALSE, name.c_str());
  if (handle == nullptr) return nullptr;
  const DWORD outcome = WaitForSingleObject(handle, INFINITE);
  if (outcome == WAIT_OBJECT_0 || outcome == WAIT_ABANDONED) {
    return std::make_unique<WindowsMutex>(OwnedMutex(handle));
  }
  CloseHandle(handle);
  return nullptr;
}

NamedMutex::Attempt NamedMutex::TryAcquire(const std::string& name) {
  DWORD error = 0;
  OwnedMutex inSession = TakeNew(name, error);
  if (!inSession.IsOwned()) return Failed(error);
  OwnedMutex onMachine = TakeNew("Global\\" + name, error);
  if (!onMachine.IsOwned()) return Failed(error);
  return {Outcome::kTaken,
          std::make_unique<WindowsMutex>(std::move(inSession), std::move(onMachine)),
          {}};
}

}  // namespace gantry::platform
