// The module's dialogs are files beside it, which may be missing, as may parts of Qt.

#include <gtest/gtest.h>

#include "private_display.h"
#include "program.h"
#include "support/isolation.h"

namespace gantry::fieldrun::test {
namespace {

namespace fs = std::filesystem;

TEST(DialogParts, TellWhichOfThemIsMissing) {
  const gantry::test::TestFolder folder;
  const fs::path built = fs::path(GANTRY_MODULE).parent_path();
  const auto complaint = [&](const std::string& verb) {
    std::vector<std::string> line = {verb, "--module", (folder / "libIntersect.so").string()};
    if (verb != "configure") line.insert(line.begin() + 1, ExampleCase("five_spot"));
    const Outcome outcome = RunFieldrun(folder, line);
    EXPECT_EQ(outcome.status, 1) << outcome.err;
    return outcome.err;
  };
  fs::copy(GANTRY_MODULE, folder.Path());
  for (const char* verb : {"configure", "edit", "export"}) {
    const std::string err = complaint(verb);
    EXPECT_NE(err.find("libIntersectDialogs.so: cannot open"), std::string::npos) << err;
  }
  fs::copy(built / "libIntersectDialogs.so", folder.Path());
  std::string err = complaint("configure");
  EXPECT_NE(err.find("/IntersectDialogs is missing"), std::string::npos) << err;
  fs::copy(built / "IntersectDialogs", folder.Path());
  std::string reason;
  const auto display = gantry::test::PrivateDisplay::Start(reason);
  if (display == nullptr) GTEST_SKIP() << reason;
  gantry::test::SetEnvironment("DISPLAY", display->Name());
  folder.Write("qt.conf", "[Paths]\nPlugins=/nowhere\n");
  err = complaint("configure");
  EXPECT_NE(err.find("/IntersectDialogs can't show any; what it said stands above"),
            std::string::npos)
      << err;
}

}  // namespace
}  // namespace gantry::fieldrun::test
