#pragma once

#include <cstdio>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include <xcb/xcb.h>

namespace gantry::test {

/// A window of this process on the display in DISPLAY, as a host has one for its dialogs.
class HostWindow {
 public:
  HostWindow() {
    if (xcb_connection_has_error(connection_) != 0) throw std::runtime_error("No display");
    const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, number_, screen.root, 0, 0, 300, 200, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen.root_visual, 0, nullptr);
    xcb_map_window(connection_, number_);
    free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
  }
  ~HostWindow() { xcb_disconnect(connection_); }
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;

  uint32_t Number() const { return number_; }
  void* Handle() const { return reinterpret_cast<void*>(uintptr_t{number_}); }

 private:
  xcb_connection_t* connection_ = xcb_connect(nullptr, nullptr);
  uint32_t number_ = xcb_generate_id(connection_);
};

/// The first line that a command writes.
inline std::string Told(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
  char line[200] = "";
  return std::fgets(line, sizeof line, pipe.get()) != nullptr ? line : "";
}

/// Someone at the display in DISPLAY turns to a dialog as soon as it is seen, and does there what
/// xdotool's commands say: the display itself makes what is pressed come in, as from a real
/// keyboard. The number of the window; none where it doesn't come.
inline std::string WorkAt(const std::string& title, const std::string& commands = {}) {
  const std::string window =
      Told("timeout 100 xdotool search --sync --onlyvisible --name '^" + title + "$'");
  if (!window.empty())
    Told("xdotool windowfocus " + std::to_string(std::stoul(window)) + " " + commands);
  return window;
}

/// Runs `host`, which blocks over its dialogs, while `work` is done on them in another thread.
inline void While(const std::function<void()>& host, const std::function<void()>& work) {
  const std::string dialogs = "'^(Intersect Case Settings|Configure|Export variables)$'";
  while (!Told("xdotool search --onlyvisible --name " + dialogs).empty()) {
    // One that is closed is still to go.
  }
  const std::jthread person(work);
  host();
}

}  // namespace gantry::test
