#include "platform/window.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "platform/dynamic_library.h"
#include "private_display.h"
#include "support/isolation.h"

namespace gantry::platform {
namespace {

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
  ~Client() {
    Call<int>("XDestroyWindow", display_, window_);
    Call<int>("XSync", display_, 0);
    Call<int>("XCloseDisplay", display_);
  }
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
  std::string reason;
  const auto display = test::PrivateDisplay::Start(reason);
  if (display == nullptr) GTEST_SKIP() << "no display: " << reason;
  void* gone = nullptr;
  {
    const Client other;  // the display lives as long as it has a client
    {
      const Client client;
      gone = client.Window();
      EXPECT_TRUE(IsWindow(gone));
      EXPECT_FALSE(IsWindow(reinterpret_cast<void*>(0x7FFFFFFFUL)));
      EXPECT_FALSE(
          IsWindow(reinterpret_cast<void*>(reinterpret_cast<uintptr_t>(gone) | 1UL << 32)));
      EXPECT_FALSE(IsWindow(nullptr));
    }
    EXPECT_FALSE(IsWindow(gone));
  }
  display->End();
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
