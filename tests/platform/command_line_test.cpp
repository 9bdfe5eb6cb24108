#include "platform/command_line.h"

#include <gtest/gtest.h>

namespace gantry::platform {
namespace {

TEST(CommandLine, IsSplitAtBlanksOutsideQuotes) {
  using Words = std::vector<std::string>;
  EXPECT_EQ(SplitCommandLine(R"("/opt/a b/ix"  base	--dopt=x:1 )"),
            (Words{"/opt/a b/ix", "base", "--dopt=x:1"}));
  EXPECT_EQ(SplitCommandLine(R"(a"b c"d "" $HOME;* \x)"), (Words{"ab cd", "", "$HOME;*", "\\x"}));
  EXPECT_EQ(SplitCommandLine(R"(x "never closed )"), (Words{"x", "never closed "}));
  EXPECT_EQ(SplitCommandLine("  "), Words{});
}

}  // namespace
}  // namespace gantry::platform
