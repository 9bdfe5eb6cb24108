#include "ui/boundary/person.h"

#include <cstring>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <sys/socket.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

namespace gantry::test {

namespace {

/// Keys by their places on the keyboard of a private display.
const std::map<std::string, uint8_t> kKeys = {{"escape", 9}, {"tab", 23}, {"enter", 36},
                                              {"space", 65}, {"up", 111}, {"down", 116}};
uint8_t KeyOf(char digit) {
  return static_cast<uint8_t>(10 + std::string_view("1234567890").find(digit));
}

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
template <class Reply>
using Owned = std::unique_ptr<Reply, Free>;

xcb_connection_t* Connect() {
  xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
  if (xcb_connection_has_error(connection) != 0) throw std::runtime_error("No display");
  return connection;
}

const xcb_screen_t& ScreenOf(xcb_connection_t* connection) {
  return *xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
}

void WaitUntilDone(xcb_connection_t* connection) {
  const Owned<void> done(
      xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

}  // namespace

HostWindow::HostWindow() : connection_(Connect()), number_(xcb_generate_id(connection_)) {
  const xcb_screen_t& screen = ScreenOf(connection_);
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, number_, screen.root, 0, 0, 300, 200, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, screen.root_visual, 0, nullptr);
  xcb_map_window(connection_, number_);
  WaitUntilDone(connection_);
}

HostWindow::~HostWindow() { xcb_disconnect(connection_); }

Person::Person() : connection_(Connect()) {
  const uint32_t told = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection_, ScreenOf(connection_).root, XCB_CW_EVENT_MASK, &told);
  WaitUntilDone(connection_);
}

Person::~Person() { xcb_disconnect(connection_); }

void Person::While(const std::function<void()>& host,
                   const std::function<void(const Person&)>& work) {
  std::thread worker([&] { work(*this); });
  host();
  ::shutdown(xcb_get_file_descriptor(connection_), SHUT_RDWR);
  worker.join();
}

uint32_t Person::At(const std::string& title, const std::string& keys) const {
  while (const Owned<xcb_generic_event_t> event{xcb_wait_for_event(connection_)}) {
    if ((event->response_type & 0x7F) != XCB_MAP_NOTIFY) continue;
    const uint32_t window = reinterpret_cast<xcb_map_notify_event_t*>(event.get())->window;
    if (Property(window, XCB_ATOM_WM_NAME) != title) continue;
    xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    Press(keys);
    return window;
  }
  return 0;
}

void Person::Press(const std::string& keys) const {
  std::istringstream words(keys);
  for (std::string word; words >> word;) {
    const size_t star = word.find('*');
    const auto key = kKeys.find(word.substr(star + 1));  // the whole word where there is none
    for (int i = star == std::string::npos ? 1 : std::stoi(word); i > 0; --i) {
      if (key != kKeys.end()) Strike(key->second);
    }
    for (const char digit : key == kKeys.end() ? word : "") Strike(KeyOf(digit));
  }
  xcb_flush(connection_);
}

void Person::Strike(uint8_t key) const {
  for (const uint8_t event : std::initializer_list<uint8_t>{XCB_KEY_PRESS, XCB_KEY_RELEASE}) {
    xcb_test_fake_input(connection_, event, key, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
  }
}

uint32_t Person::OwnerOf(uint32_t window) const {
  const std::string owner = Property(window, XCB_ATOM_WM_TRANSIENT_FOR);
  uint32_t number = 0;
  if (owner.size() == sizeof number) std::memcpy(&number, owner.data(), sizeof number);
  return number;
}

std::string Person::Property(uint32_t window, uint32_t name) const {
  const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(
      connection_, xcb_get_property(connection_, 0, window, name, XCB_ATOM_ANY, 0, 256), nullptr));
  if (reply == nullptr) return {};
  const auto size = static_cast<size_t>(xcb_get_property_value_length(reply.get()));
  return {static_cast<const char*>(xcb_get_property_value(reply.get())), size};
}

}  // namespace gantry::test
