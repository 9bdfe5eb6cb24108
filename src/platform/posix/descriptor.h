#pragma once

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace gantry::platform {

/// Owns one file descriptor; below 0 it owns none.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  ~Descriptor() { Reset(); }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      Reset();
      number_ = std::exchange(other.number_, -1);
    }
    return *this;
  }

  bool IsOpen() const { return number_ >= 0; }
  int Number() const { return number_; }
  void Reset() {
    if (number_ >= 0) ::close(std::exchange(number_, -1));
  }

 private:
  int number_;
};

/// What a call of the system gives that is made again for as long as signals interrupt it.
template <class Call>
auto WithoutInterrupts(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

/// Moves all bytes by a call that may move fewer at a time; false where it fails or moves none.
template <class Byte, class Move>
bool MoveAll(Byte* next, size_t left, Move move) {
  while (left > 0) {
    const ssize_t moved = WithoutInterrupts([&] { return move(next, left); });
    if (moved <= 0) return false;
    next += moved;
    left -= static_cast<size_t>(moved);
  }
  return true;
}

}  // namespace gantry::platform
