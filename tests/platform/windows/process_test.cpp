#include "platform/process.h"

#include <fstream>
#include <thread>

#include <gtest/gtest.h>

#include "platform/file_path.h"
#include "platform/files.h"
#include "platform/named_mutex.h"
#include "platform/windows/win32.h"
#include "support/isolation.h"
#include "support/test_folder.h"

namespace gantry::platform {
namespace {

using Outcome = NamedMutex::Outcome;

/// The witness program in a folder of its own, whose name has blanks and a letter outside ASCII in
/// the code page. It ends with the object.
class Child {
 public:
  Child() {
    std::filesystem::create_directory(PathOf(Folder()));
    std::filesystem::copy_file(LAUNCH_WITNESS, PathOf(Program()));
    std::ofstream(PathOf(Folder() + "\\hold"));
  }
  ~Child() { End(); }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  std::string Folder() const { return NameOf(folder_.Path()) + "\\D\xE9p\xF4t des cas"; }
  std::string Program() const { return Folder() + "\\launch witness.exe"; }

  bool Start(const std::string& commandLine) {
    process_ = StartProcess(Program(), commandLine, Folder() + "\\");
    return process_ != nullptr;
  }
  bool IsRunning() const { return process_->IsRunning(); }

  /// What the child has written down.
  std::string Report() const {
    std::string report;  // which may be there before anybody else is let in
    while (report.empty()) {
      std::this_thread::yield();
      report = test::TestFolder::Read(PathOf(Folder() + "\\started.txt"));
    }
    return report;
  }

  void End() {
    std::error_code ignored;
    std::filesystem::remove(PathOf(Folder() + "\\hold"), ignored);
    while (process_ != nullptr && process_->IsRunning()) std::this_thread::yield();
  }

 private:
  test::TestFolder folder_;
  std::unique_ptr<ChildProcess> process_;
};

std::string Report(const Child& child, const std::string& commandLine,
                   const std::string& variable) {
  return commandLine + "\n" + child.Folder() + "\nstart-up flags 0\nvariable " + variable + "\n";
}

TEST(Process, GetsItsCommandLineToTheLetterAndItsFolderAndRunsUntilItEnds) {
  Child child;
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
  Child child;
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
  Child child;
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
  Child child;
  ASSERT_TRUE(child.Start("witness mutex:GantryTest2"));
  child.Report();
  EXPECT_EQ(NamedMutex::TryAcquire("GantryTest2").outcome, Outcome::kHeldElsewhere);
  child.End();
  EXPECT_NE(NamedMutex::Acquire("GantryTest2"), nullptr);
}

}  // namespace
}  // namespace gantry::platform
