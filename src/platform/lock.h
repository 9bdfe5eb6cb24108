#pragma once

#include <mutex>

#if defined(__clang__)
#define GANTRY_LOCK_ATTRIBUTE(x) __attribute__((x))
#else
#define GANTRY_LOCK_ATTRIBUTE(x)
#endif

#define GANTRY_GUARDED_BY(lock) GANTRY_LOCK_ATTRIBUTE(guarded_by(lock))
#define GANTRY_REQUIRES(...) GANTRY_LOCK_ATTRIBUTE(requires_capability(__VA_ARGS__))

namespace gantry::platform {

/// A critical section: a lock that its holder may take again, with the marks by which Clang's
/// thread-safety analysis checks who holds it.
class GANTRY_LOCK_ATTRIBUTE(capability("mutex")) CriticalSection {
 public:
  void Lock() GANTRY_LOCK_ATTRIBUTE(acquire_capability()) { mutex_.lock(); }
  void Unlock() GANTRY_LOCK_ATTRIBUTE(release_capability()) { mutex_.unlock(); }

 private:
  std::recursive_mutex mutex_;
};

/// Holds a critical section for the life of the object.
class GANTRY_LOCK_ATTRIBUTE(scoped_lockable) SingleLock {
 public:
  explicit SingleLock(CriticalSection& section) GANTRY_LOCK_ATTRIBUTE(acquire_capability(section))
      : section_(section) {
    section_.Lock();
  }
  ~SingleLock() GANTRY_LOCK_ATTRIBUTE(release_capability()) { section_.Unlock(); }
  SingleLock(const SingleLock&) = delete;
  SingleLock& operator=(const SingleLock&) = delete;

 private:
  CriticalSection& section_;
};

}  // namespace gantry::platform
