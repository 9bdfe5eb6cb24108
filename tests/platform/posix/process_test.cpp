#include "platform/process.h"

#include <csignal>
#include <fstream>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/test_folder.h"

namespace gantry::platform {
namespace {

/// Scripts that run as the child. A named pipe tells when one has got somewhere: opening it for
/// reading waits for the child to write, so that no test waits for a time to pass.
class Process : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(::mkfifo(Pipe().c_str(), 0600), 0); }

  std::string Pipe() const { return (folder_ / "pipe").string(); }
  std::unique_ptr<ChildProcess> Start(const std::string& script, const std::string& line = "child",
                                      const std::string& directory = "") const {
    const auto file = folder_.Write("child.sh", "#!/bin/sh\n" + script + "\n");
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    return StartProcess(file.string(), line, directory);
  }
  /// What the child writes to the pipe until it closes it.
  std::string Heard() const { return test::TestFolder::Read(Pipe()); }
  /// Lets a child go on that reads a line from the pipe.
  void Release() const { std::ofstream(Pipe()) << std::endl; }

  test::TestFolder folder_;
};

TEST_F(Process, GetsItsArgumentsAndItsFolder) {
  const auto child = Start("{ pwd; for a; do echo \"<$a>\"; done; } > " + Pipe(), "child \"a b\" c",
                           folder_.Path().string());
  ASSERT_NE(child, nullptr);
  EXPECT_EQ(Heard(), folder_.Path().string() + "\n<a b>\n<c>\n");
}

TEST_F(Process, RunsUntilItEnds) {
  const auto child = Start("read line < " + Pipe());
  ASSERT_NE(child, nullptr);
  EXPECT_TRUE(child->IsRunning());
  Release();
  while (child->IsRunning()) std::this_thread::yield();
  EXPECT_FALSE(child->IsRunning());
}

TEST_F(Process, OutlivesItsObjectAndLeavesNoZombie) {
  auto child = Start("echo $$ > " + Pipe() + "; read line < " + Pipe());
  ASSERT_NE(child, nullptr);
  const pid_t id = std::stoi(Heard());
  child.reset();
  EXPECT_EQ(::kill(id, 0), 0);
  Release();
  EXPECT_EQ(::waitpid(-1, nullptr, 0), -1) << "nothing of the child is left to its starter";
  EXPECT_EQ(errno, ECHILD);
}

TEST_F(Process, InheritsOnlyTheStandardDescriptors) {
  const int open = ::open("/dev/null", O_RDONLY);  // inheritable on purpose
  ASSERT_GE(open, 3);
  ASSERT_NE(Start("ls /proc/$$/fd > " + Pipe()), nullptr);
  // The shell keeps its script open under 10 or above; nothing else may be there.
  const std::string seen = Heard();
  EXPECT_EQ(seen.find("\n" + std::to_string(open) + "\n"), std::string::npos) << seen;
  EXPECT_TRUE(seen.starts_with("0\n1\n")) << seen;
  ::close(open);
}

TEST_F(Process, StartsWithSignalsAsTheyAreForAFreshProgram) {
  sigset_t blocked;
  sigset_t before;
  ::sigemptyset(&blocked);
  ::sigaddset(&blocked, SIGTERM);
  ::sigprocmask(SIG_BLOCK, &blocked, &before);
  const auto pipeHandler = std::signal(SIGPIPE, SIG_IGN);
  const auto child =
      StartProcess("/bin/dd", "dd if=/proc/self/status status=none of=" + Pipe(), "");
  std::signal(SIGPIPE, pipeHandler);
  ::sigprocmask(SIG_SETMASK, &before, nullptr);
  ASSERT_NE(child, nullptr);
  const std::string status = Heard();
  const auto signalsOf = [&status](const std::string& set) {
    return std::stoull(status.substr(status.find(set) + set.size()), nullptr, 16);
  };
  EXPECT_EQ(signalsOf("SigBlk:"), 0u);
  EXPECT_EQ(signalsOf("SigIgn:") & 1u << (SIGPIPE - 1), 0u);
}

TEST_F(Process, AStartThatFailsIsReportedAsSuch) {
  const std::string plain = folder_.Write("plain", "echo not executable\n").string();
  for (const std::string& none :
       {std::string(), (folder_ / "missing").string(), plain, folder_.Path().string()}) {
    EXPECT_EQ(StartProcess(none, "x", ""), nullptr) << none;
  }
  EXPECT_EQ(Start("exit 0", "child", (folder_ / "nowhere").string()), nullptr);
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "no failed start leaves a process";
}

}  // namespace
}  // namespace gantry::platform
