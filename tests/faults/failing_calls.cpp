// Preloaded into a program, this makes the n-th call of one family fail, and counts the family's
// calls until then. The variables that say which: sweep.py, `plan_of`.

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// What the sweep reads when the program has ended; shared by its forks.
struct Tally {
  std::atomic<uint64_t> calls;
  std::atomic<uint64_t> leaks;  ///< descriptors that were open at the end of a program
};

constexpr int kHalf = -1;  ///< in place of an errno: the call takes half of its bytes
constexpr size_t kLargeRecord = size_t{16} << 10;
constexpr size_t kKernelRecord = sizeof(signalfd_siginfo);  ///< which comes whole or not at all

uint64_t OpenDescriptors() {
  uint64_t count = 0;
  DIR* const listing = ::opendir("/proc/self/fd");
  while (listing != nullptr && ::readdir(listing) != nullptr) ++count;
  if (listing != nullptr) ::closedir(listing);
  return count;
}

/// What this program is to meet; nothing unless it is the one that was named.
class Plan {
 public:
  Plan() {
    const char* const program = std::getenv("GANTRY_FAULT_PROGRAM");
    if (program == nullptr || std::string_view(program) != program_invocation_short_name) return;
    const char* const name = std::getenv("GANTRY_FAULT_TALLY");
    const int file = static_cast<int>(::syscall(SYS_openat, AT_FDCWD, name, O_RDWR | O_CLOEXEC));
    void* const place = ::mmap(nullptr, sizeof(Tally), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    ::close(file);
    if (place == MAP_FAILED) std::abort();
    family_ = std::getenv("GANTRY_FAULT_FAMILY");
    first_ = std::strtoull(std::getenv("GANTRY_FAULT_AT"), nullptr, 10);
    lasts_ = *std::getenv("GANTRY_FAULT_LASTS") == '1';
    error_ = std::atoi(std::getenv("GANTRY_FAULT_ERROR"));
    descriptors_ = OpenDescriptors();
    tally_ = static_cast<Tally*>(place);
  }
  ~Plan() {
    Tally* const tally = std::exchange(tally_, nullptr);
    const uint64_t now = tally == nullptr ? 0 : OpenDescriptors();
    if (now > descriptors_) tally->leaks += now - descriptors_;
  }
  Plan(const Plan&) = delete;
  Plan& operator=(const Plan&) = delete;

  /// What becomes of the next call of a family: 0 when it is let pass.
  int Next(std::string_view family) {
    if (tally_ == nullptr || family != family_) return 0;
    const uint64_t call = ++tally_->calls;
    const bool isLater = lasts_ && first_ > 0 && call > first_;
    // Nobody is interrupted each time that he tries again.
    return call == first_ || (isLater && (error_ != EINTR || call % 2 == first_ % 2)) ? error_ : 0;
  }

 private:
  Tally* tally_ = nullptr;
  std::string_view family_;
  uint64_t first_ = 0;
  uint64_t descriptors_ = 0;
  bool lasts_ = false;
  int error_ = 0;
};

Plan& ThePlan() {
  static Plan plan;
  return plan;
}
[[maybe_unused]] const Plan& atLoad = ThePlan();

template <class Call>
Call* Next(const char* name) {
  return reinterpret_cast<Call*>(::dlsym(RTLD_NEXT, name));
}

/// The first half of what a message's parts hold.
struct HalfMessage {
  explicit HalfMessage(const msghdr& whole)
      : parts(whole.msg_iov, whole.msg_iov + whole.msg_iovlen), header(whole) {
    size_t left = 1;
    for (const iovec& part : parts) left += part.iov_len;
    left /= 2;
    for (iovec& part : parts) {
      part.iov_len = std::min(part.iov_len, left);
      left -= part.iov_len;
    }
    header.msg_iov = parts.data();
  }

  std::vector<iovec> parts;
  msghdr header;
};

}  // namespace

#define EXPORTED extern "C" __attribute__((visibility("default")))

/// A call of a family under the system's name. `failure` is what it gives back when it fails.
#define CALL(family, type, name, parameters, arguments, failure) \
  EXPORTED type Failing_##name parameters __asm__(#name);        \
  type Failing_##name parameters {                               \
    static const auto real = Next<type parameters>(#name);       \
    const int error = ThePlan().Next(family);                    \
    if (error == 0 || error == kHalf) return real arguments;     \
    errno = error;                                               \
    return failure;                                              \
  }

/// One that moves bytes, of which it may move only a part.
#define TRANSFER(family, name, buffer, more, arguments)                                     \
  EXPORTED ssize_t Failing_##name(int file, buffer bytes, size_t size more) __asm__(#name); \
  ssize_t Failing_##name(int file, buffer bytes, size_t size more) {                        \
    static const auto real = Next<ssize_t(int, buffer, size_t size more)>(#name);           \
    const int error = file <= STDERR_FILENO ? 0 : ThePlan().Next(family);                   \
    if (error == kHalf && size != kKernelRecord) size = (size + 1) / 2;                     \
    if (error == 0 || error == kHalf) return real arguments;                                \
    errno = error;                                                                          \
    return -1;                                                                              \
  }

/// One that moves the parts of a message.
#define MESSAGE(family, name)                                                                   \
  EXPORTED ssize_t Failing_##name(int socket, const msghdr* message, int flags) __asm__(#name); \
  ssize_t Failing_##name(int socket, const msghdr* message, int flags) {                        \
    static const auto real = Next<ssize_t(int, const msghdr*, int)>(#name);                     \
    const int error = ThePlan().Next(family);                                                   \
    if (error == 0) return real(socket, message, flags);                                        \
    const HalfMessage half(*message);                                                           \
    if (error == kHalf) return real(socket, &half.header, flags);                               \
    errno = error;                                                                              \
    return -1;                                                                                  \
  }

#define AND_FLAGS , int flags
#define NO_MORE

CALL("open", int, open, (const char* path, int flags, mode_t mode), (path, flags, mode), -1)
CALL("open", int, openat, (int folder, const char* path, int flags, mode_t mode),
     (folder, path, flags, mode), -1)
CALL("open", void*, fopen64, (const char* path, const char* mode), (path, mode), nullptr)
CALL("open", void*, fdopendir, (int folder), (folder), nullptr)
CALL("open", int, memfd_create, (const char* name, unsigned flags), (name, flags), -1)
CALL("open", int, mkdir, (const char* path, mode_t mode), (path, mode), -1)
CALL("status", int, stat, (const char* path, void* status), (path, status), -1)
CALL("status", int, fstat, (int file, void* status), (file, status), -1)
CALL("status", int, lstat, (const char* path, void* status), (path, status), -1)
CALL("status", off_t, lseek, (int file, off_t offset, int from), (file, offset, from), -1)
TRANSFER("read", read, void*, NO_MORE, (file, bytes, size))
CALL("read", size_t, fread, (void* bytes, size_t size, size_t count, void* file),
     (bytes, size, count, file), 0)
TRANSFER("write", write, const void*, NO_MORE, (file, bytes, size))
CALL("write", ssize_t, writev, (int file, const void* parts, int count), (file, parts, count), -1)
CALL("write", int, ftruncate, (int file, off_t length), (file, length), -1)
CALL("write", int, posix_fallocate, (int file, off_t offset, off_t length), (file, offset, length),
     error)
CALL("sync", int, fsync, (int file), (file), -1)
CALL("rename", int, rename, (const char* from, const char* to), (from, to), -1)
CALL("socket", int, socket, (int domain, int type, int protocol), (domain, type, protocol), -1)
CALL("socket", int, socketpair, (int domain, int type, int protocol, int* ends),
     (domain, type, protocol, ends), -1)
CALL("socket", int, pipe2, (int* ends, int flags), (ends, flags), -1)
CALL("socket", int, epoll_create1, (int flags), (flags), -1)
CALL("socket", int, eventfd, (unsigned value, int flags), (value, flags), -1)
CALL("lock", int, flock, (int file, int how), (file, how), -1)
CALL("lock", int, bind, (int socket, const void* address, unsigned size), (socket, address, size),
     -1)
CALL("lock", int, listen, (int socket, int backlog), (socket, backlog), -1)
// What a signal interrupts is a connection that is made all the same.
CALL("connect", int, connect, (int socket, const void* address, unsigned size),
     (socket, address, size),
     (error == EINTR && real(socket, address, size) == 0 ? errno = EINTR : 0, -1))
TRANSFER("send", send, const void*, AND_FLAGS, (file, bytes, size, flags))
MESSAGE("send", sendmsg)
TRANSFER("receive", recv, void*, AND_FLAGS, (file, bytes, size, flags))
MESSAGE("receive", recvmsg)
CALL("accept", int, accept, (int socket, void* address, void* size), (socket, address, size), -1)
CALL("accept", int, accept4, (int socket, void* address, void* size, int flags),
     (socket, address, size, flags), -1)
CALL("spawn", pid_t, fork, (), (), -1)
CALL("spawn", int, execv, (const char* path, char* const* arguments), (path, arguments), -1)
CALL("spawn", int, posix_spawn,
     (pid_t * child, const char* path, const void* actions, const void* attributes,
      char* const* arguments, char* const* environment),
     (child, path, actions, attributes, arguments, environment), error)

void* operator new(size_t size) {
  if (size >= kLargeRecord && ThePlan().Next("memory") != 0) throw std::bad_alloc();
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
