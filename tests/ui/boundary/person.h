#pragma once

#include <cstdint>
#include <functional>
#include <string>

struct xcb_connection_t;

namespace gantry::test {

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

  /// Waits until a window of that title is shown, turns to it and presses keys; its number, 0 when
  /// broken off.
  uint32_t At(const std::string& title, const std::string& keys = {}) const;
  /// The words "tab", "enter", "escape", "space", "up" and "down", "3*tab" for one key several
  /// times, and numbers digit by digit.
  void Press(const std::string& keys) const;
  /// The window over which a window is said to lie.
  uint32_t OwnerOf(uint32_t window) const;

 private:
  void Strike(uint8_t key) const;
  /// The property of a window, as bytes.
  std::string Property(uint32_t window, uint32_t name) const;

  xcb_connection_t* connection_;
};

}  // namespace gantry::test
