#include "platform/process.h"

#include <gtest/gtest.h>

#include "platform/files.h"
#include "platform/named_mutex.h"
#include "platform/windows/child.h"
#include "platform/windows/win32.h"
#include "support/isolation.h"

namespace gantry::platform {
namespace {

using Outcome = NamedMutex::Outcome;

std::string Report(const test::Child& child, const std::string& commandLine,
                   const std::string& variable) {
  return commandLine + "\n" + child.Folder() + "\nstart-up flags 0\nvariable " + variable + "\n";
}

TEST(Process, GetsItsCommandLineToTheLetterAndItsFolderAndRunsUntilItEnds) {
  test::Child child;
  const std::string line =
      "\"" + child.Program() + "\" -np 4 C:\\IX\\ix.exe  \"a b\" x\\\"y --dopt=port:9001";
  ASSERT_TRUE(child.Start(line));
  EXPECT_EQ(child.Report(), Report(child, line, "none"));
  EXPECT_TRUE(child.IsRunning());
  child.End();
  EXPECT_FALSE(child.IsRunning());
}

TEST(Process, GetsTheEnvironmentOfItsStarterAndNoneOfItsHandles) {
  const test::ScopedVariable variable("GANTRY_WITNESS", "d\xE9p\xF4t 7");
  test::Child child;
  const std::string file = child.Folder() + "\\held";
  SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
  HANDLE held =
      CreateFileA(file.c_str(), GENERIC_WRITE, 0, &inheritable, CREATE_ALWAYS, 0, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  ASSERT_TRUE(child.Start("witness"));
  EXPECT_EQ(child.Report(), Report(child, "witness", "d\xE9p\xF4t 7"));
  CloseHandle(held);
  EXPECT_TRUE(CanOpenForReading(file)) << "nobody else holds the file";
}

// An empty folder is passed on as it is, and the system takes none: not even the present one.
TEST(Process, IsNotStartedFromAPathThatIsNone) {
  test::Child child;
  const std::string program = child.Program();
  for (const std::string& none :
       {"\"" + program + "\"", program.substr(0, 3) + "\"a b\".exe", program + ".missing",
        child.Folder(), child.Folder() + "\\hold"}) {
    EXPECT_EQ(StartProcess(none, "x", child.Folder()), nullptr) << none;
  }
  for (const std::string& folder : {std::string(), child.Folder() + "\\missing"}) {
    EXPECT_EQ(StartProcess(program, "x", folder), nullptr) << folder;
  }
}

TEST(WindowsMutex, DiesWithItsHolder) {
  test::Child child;
  ASSERT_TRUE(child.Start("witness mutex:GantryTest2"));
  child.Report();
  EXPECT_EQ(NamedMutex::TryAcquire("GantryTest2").outcome, Outcome::kHeldElsewhere);
  child.End();
  EXPECT_NE(NamedMutex::Acquire("GantryTest2"), nullptr);
}

}  // namespace
}  // namespace gantry::platform
