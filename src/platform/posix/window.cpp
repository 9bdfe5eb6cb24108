#include "platform/window.h"

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "platform/dynamic_library.h"

// The display is asked through libxcb, opened only when a window is asked for: unlike the layer
// above it, it has no error handlers for the whole process and never ends the process when the
// display goes away.

namespace gantry::platform {

namespace {

struct xcb_connection_t;
struct xcb_generic_error_t;
struct xcb_get_window_attributes_cookie_t {
  unsigned int sequence;
};

struct xcb_setup_t;
struct xcb_screen_t {
  uint32_t root;  // what follows isn't asked for
};
struct xcb_screen_iterator_t {
  xcb_screen_t* data;
  int remaining;
  int index;
};

struct Xcb {
  std::unique_ptr<DynamicLibrary> library = DynamicLibrary::Open("libxcb.so.1");

  xcb_connection_t* (*connect)(const char* display, int* screen) = nullptr;
  int (*connection_has_error)(xcb_connection_t*) = nullptr;
  void (*disconnect)(xcb_connection_t*) = nullptr;
  xcb_get_window_attributes_cookie_t (*get_window_attributes)(xcb_connection_t*,
                                                              uint32_t window) = nullptr;
  void* (*get_window_attributes_reply)(xcb_connection_t*, xcb_get_window_attributes_cookie_t,
                                       xcb_generic_error_t** error) = nullptr;

  const xcb_setup_t* (*get_setup)(xcb_connection_t*) = nullptr;
  xcb_screen_iterator_t (*setup_roots_iterator)(const xcb_setup_t*) = nullptr;

  bool Load() {
    return library != nullptr && library->Bind(connect, "xcb_connect") &&
           library->Bind(connection_has_error, "xcb_connection_has_error") &&
           library->Bind(disconnect, "xcb_disconnect") &&
           library->Bind(get_window_attributes, "xcb_get_window_attributes") &&
           library->Bind(get_window_attributes_reply, "xcb_get_window_attributes_reply") &&
           library->Bind(get_setup, "xcb_get_setup") &&
           library->Bind(setup_roots_iterator, "xcb_setup_roots_iterator");
  }
};

bool DisplayKnows(const Xcb& xcb, xcb_connection_t* connection, uint32_t window) {
  xcb_generic_error_t* error = nullptr;
  void* reply = xcb.get_window_attributes_reply(
      connection, xcb.get_window_attributes(connection, window), &error);
  const bool known = reply != nullptr;
  std::free(reply);
  std::free(error);
  return known;
}

/// Asks the display one thing; `none` where there is no display.
template <class Answer, class Question>
Answer AskDisplay(Answer none, Question question) {
  if (std::getenv("DISPLAY") == nullptr) return none;
  Xcb xcb;
  if (!xcb.Load()) return none;
  xcb_connection_t* connection = xcb.connect(nullptr, nullptr);
  const Answer answer =
      xcb.connection_has_error(connection) == 0 ? question(xcb, connection) : none;
  xcb.disconnect(connection);
  return answer;
}

}  // namespace

bool IsWindow(void* window) {
  const auto id = reinterpret_cast<uintptr_t>(window);
  if (id == 0 || id > UINT32_MAX) return false;
  return AskDisplay(false, [id](const Xcb& xcb, xcb_connection_t* connection) {
    return DisplayKnows(xcb, connection, static_cast<uint32_t>(id));
  });
}

void* ScreenWindow() {
  return AskDisplay<void*>(nullptr, [](const Xcb& xcb, xcb_connection_t* connection) {
    const xcb_screen_t* screen = xcb.setup_roots_iterator(xcb.get_setup(connection)).data;
    return screen != nullptr ? reinterpret_cast<void*>(uintptr_t{screen->root}) : nullptr;
  });
}

}  // namespace gantry::platform
