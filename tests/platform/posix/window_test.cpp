#include "platform/window.h"

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/dynamic_library.h"
#include "support/isolation.h"

namespace gantry::platform {
namespace {

/// A display of this test's own, which picks its number and tells it when it is ready.
class OwnDisplay {
 public:
  OwnDisplay() {
    int ready[2];
    if (::pipe(ready) != 0) return;
    server_ = ::fork();
    if (server_ == 0) {
      const std::string descriptor = std::to_string(ready[1]);
      ::execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-nolisten", "tcp", nullptr);
      ::_exit(127);
    }
    ::close(ready[1]);
    char c = 0;
    while (::read(ready[0], &c, 1) == 1 && c != '\n') name_ += c;
    ::close(ready[0]);
    if (!name_.empty()) display_.Set(":" + name_);
  }
  ~OwnDisplay() { End(); }
  OwnDisplay(const OwnDisplay&) = delete;
  OwnDisplay& operator=(const OwnDisplay&) = delete;

  bool IsReady() const { return !name_.empty(); }
  void End() {
    if (server_ <= 0) return;
    ::kill(server_, SIGTERM);
    ::waitpid(server_, nullptr, 0);
    server_ = 0;
  }

 private:
  pid_t server_ = 0;
  std::string name_;
  test::ScopedVariable display_{"DISPLAY"};
};

/// One window on the display, made through the display's own library.
class Client {
 public:
  Client() {
    display_ = Call<void*>("XOpenDisplay", nullptr);
    const auto root = Call<unsigned long>("XDefaultRootWindow", display_);
    window_ =
        Call<unsigned long>("XCreateSimpleWindow", display_, root, 0, 0, 8U, 8U, 0U, 0UL, 0UL);
    Call<int>("XSync", display_, 0);
  }
  ~Client() { Call<int>("XCloseDisplay", display_); }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  void* Window() const { return reinterpret_cast<void*>(window_); }

 private:
  template <class Result, class... Arguments>
  Result Call(const char* name, Arguments... arguments) {
    return reinterpret_cast<Result (*)(Arguments...)>(library_->Symbol(name))(arguments...);
  }

  std::unique_ptr<DynamicLibrary> library_ = DynamicLibrary::Open("libX11.so.6");
  void* display_ = nullptr;
  unsigned long window_ = 0;
};

TEST(Window, IsOneThatTheDisplayKnows) {
  OwnDisplay display;
  ASSERT_TRUE(display.IsReady()) << "this test needs the program Xvfb";
  void* gone = nullptr;
  {
    const Client client;
    gone = client.Window();
    EXPECT_TRUE(IsWindow(client.Window()));
    EXPECT_FALSE(IsWindow(reinterpret_cast<void*>(0x7FFFFFFFUL)));
    EXPECT_FALSE(IsWindow(reinterpret_cast<void*>(reinterpret_cast<uintptr_t>(gone) | 1UL << 32)));
    EXPECT_FALSE(IsWindow(nullptr));
  }
  EXPECT_FALSE(IsWindow(gone));
  display.End();
  EXPECT_FALSE(IsWindow(gone)) << "the display has gone";
}

TEST(Window, WithoutADisplayNothingIsOne) {
  test::ScopedVariable display("DISPLAY");
  EXPECT_FALSE(IsWindow(reinterpret_cast<void*>(1UL)));
  display.Set("no such display");
  EXPECT_FALSE(IsWindow(reinterpret_cast<void*>(1UL)));
}

}  // namespace
}  // namespace gantry::platform
