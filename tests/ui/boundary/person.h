#pragma once

#include <cstdint>
#include <functional>
#include <string>

struct xcb_connection_t;

namespace gantry::test {

/// Keys by their places on the keyboard of a private display.
enum Key : uint8_t {
  kEscape = 9,
  kOne = 10,
  kTab = 23,
  kEnter = 36,
  kSpace = 65,
  kUp = 111,
  kDown = 116
};

/// A window of this process on the display in DISPLAY, as a host has one for its dialogs.
class HostWindow {
 public:
  HostWindow();
  ~HostWindow();
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;

  uint32_t Number() const { return number_; }
  void* Handle() const { return reinterpret_cast<void*>(uintptr_t{number_}); }

 private:
  xcb_connection_t* connection_;
  uint32_t number_;
};

/// Someone at the display in DISPLAY who works with the keyboard: the display itself makes what is
/// pressed come in, as from a real one.
class Person {
 public:
  Person();
  ~Person();
  Person(const Person&) = delete;
  Person& operator=(const Person&) = delete;

  /// Runs `host`, which blocks over its dialogs, while `work` works on them in another thread. Once
  /// the host has returned, this person does nothing more: work that waits for a dialog still is
  /// broken off.
  void While(const std::function<void()>& host, const std::function<void(const Person&)>& work);

  // While the host blocks.

  /// Waits until a window of that title is shown, and turns to it; its number. 0 when broken off.
  uint32_t TurnTo(const std::string& title) const;
  void Press(Key key, int times = 1) const;
  void Type(const std::string& digits) const;
  /// The window over which a window is said to lie.
  uint32_t OwnerOf(uint32_t window) const;

 private:
  /// The property of a window, as bytes.
  std::string Property(uint32_t window, uint32_t name) const;

  xcb_connection_t* connection_;
};

}  // namespace gantry::test
