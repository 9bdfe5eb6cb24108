#include "platform/named_mutex.h"

#include <csignal>
#include <future>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/process.h"
#include "support/isolation.h"
#include "support/test_folder.h"

namespace gantry::platform {
namespace {

using Outcome = NamedMutex::Outcome;

/// A process beside this one that runs `work` and gives its result as its exit status.
pid_t Fork(const std::function<int()>& work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  return child;
}

TEST(PosixMutex, IsTheMachinesWhoeverTheUserAndWhateverHisEnvironment) {
  const auto held = NamedMutex::TryAcquire("Slot");
  ASSERT_EQ(held.outcome, Outcome::kTaken);
  const pid_t other = Fork([] {
    test::SetEnvironment("XDG_RUNTIME_DIR", std::nullopt);
    test::SetEnvironment("TMPDIR", "/nowhere");
    if (::geteuid() == 0 && ::setuid(65534) != 0) return -1;
    return static_cast<int>(NamedMutex::TryAcquire("Slot").outcome);
  });
  int status = 0;
  ::waitpid(other, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), static_cast<int>(Outcome::kHeldElsewhere));
}

TEST(PosixMutex, GoesToWhoWaitsWhenItsHolderDies) {
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  const pid_t holder = Fork([&] {
    const auto held = NamedMutex::Acquire("Slot");
    ::close(ready[1]);  // which tells that it is held
    return ::pause();
  });
  ::close(ready[1]);
  char byte = 0;
  EXPECT_EQ(::read(ready[0], &byte, 1), 0);
  ::close(ready[0]);
  EXPECT_EQ(NamedMutex::TryAcquire("Slot").outcome, Outcome::kHeldElsewhere);
  auto waiting = std::async(std::launch::async, [] { return NamedMutex::Acquire("Slot"); });
  ::kill(holder, SIGKILL);
  ::waitpid(holder, nullptr, 0);
  EXPECT_NE(waiting.get(), nullptr);
}

TEST(PosixMutex, IsFreeAtOnceThoughAProcessWasStartedMeanwhile) {
  const test::TestFolder folder;
  const std::string plain = folder.Write("plain", "not executable\n").string();
  for (int i = 0; i < 200; ++i) {
    auto held = NamedMutex::TryAcquire("Slot");
    ASSERT_EQ(held.outcome, Outcome::kTaken) << i;
    StartProcess(plain, "plain", "");
  }
}

TEST(PosixMutex, TellsWhyItCantBeHad) {
  const auto tooLong = NamedMutex::TryAcquire(std::string(5000, 'n'));
  EXPECT_EQ(tooLong.outcome, Outcome::kUnavailable);
  EXPECT_EQ(tooLong.reason, "File name too long");
  EXPECT_EQ(NamedMutex::Acquire(std::string(5000, 'n')), nullptr);
}

}  // namespace
}  // namespace gantry::platform
