#include "platform/window.h"

#include <gtest/gtest.h>

#include "support/isolation.h"

namespace gantry::platform {
namespace {

TEST(Window, WithoutADisplayNothingIsOne) {
  test::ScopedVariable display("DISPLAY");
  EXPECT_FALSE(IsWindow(reinterpret_cast<void*>(1UL)));
  display.Set("no such display");
  EXPECT_FALSE(IsWindow(reinterpret_cast<void*>(1UL)));
}

}  // namespace
}  // namespace gantry::platform
