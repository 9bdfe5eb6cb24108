#include "platform/named_mutex.h"

#include <csignal>
#include <cstdlib>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/isolation.h"
#include "support/test_folder.h"

namespace gantry::platform {
namespace {

namespace fs = std::filesystem;
using Outcome = NamedMutex::Outcome;

class PosixMutex : public testing::Test {
 protected:
  test::TestFolder folder_;
};

TEST_F(PosixMutex, DiesWithItsHolder) {
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  const pid_t holder = ::fork();
  if (holder == 0) {
    const auto held = NamedMutex::Acquire("Slot");
    if (::write(ready[1], "x", 1) == 1) ::pause();
    ::_exit(1);
  }
  char byte = 0;
  ASSERT_EQ(::read(ready[0], &byte, 1), 1);
  EXPECT_EQ(NamedMutex::TryAcquire("Slot").outcome, Outcome::kHeldElsewhere);
  ::kill(holder, SIGKILL);
  ::waitpid(holder, nullptr, 0);
  EXPECT_NE(NamedMutex::Acquire("Slot"), nullptr);
  ::close(ready[0]);
  ::close(ready[1]);
}

TEST_F(PosixMutex, IsFreedThoughAForkedProcessStillHasItsDescriptor) {
  auto held = NamedMutex::Acquire("Slot");
  const pid_t copy = ::fork();
  if (copy == 0) {
    ::pause();
    ::_exit(0);
  }
  held.reset();
  EXPECT_EQ(NamedMutex::TryAcquire("Slot").outcome, Outcome::kTaken);
  ::kill(copy, SIGKILL);
  ::waitpid(copy, nullptr, 0);
}

TEST_F(PosixMutex, NoNameLeadsOutOfTheFolderAndNoTwoMeet) {
  const auto held = NamedMutex::TryAcquire("../../a");
  EXPECT_EQ(held.outcome, Outcome::kTaken);
  for (const char* other : {"..%2F..%2Fa", "a", ".", ""}) {
    EXPECT_EQ(NamedMutex::TryAcquire(other).outcome, Outcome::kTaken) << other;
  }
  for (const auto& entry : fs::recursive_directory_iterator(folder_.Path())) {
    if (!entry.is_regular_file()) continue;
    EXPECT_EQ(entry.path().parent_path(), folder_ / "XDG_RUNTIME_DIR/gantry");
  }
  EXPECT_EQ(NamedMutex::TryAcquire(std::string(5000, 'n')).outcome, Outcome::kUnavailable);
}

TEST_F(PosixMutex, WithoutARuntimeFolderUsesOneOfTheUsersOwnAndRefusesAnyOther) {
  const test::ScopedVariable runtime("XDG_RUNTIME_DIR");
  const test::ScopedVariable temporary("TMPDIR", folder_.Path().string());
  const fs::path own = folder_ / ("gantry-" + std::to_string(::geteuid()));
  EXPECT_EQ(NamedMutex::TryAcquire("S").outcome, Outcome::kTaken);
  EXPECT_EQ(fs::status(own).permissions(), fs::perms::owner_all);

  fs::permissions(own, fs::perms::all);
  EXPECT_EQ(NamedMutex::TryAcquire("S").outcome, Outcome::kUnavailable) << "open to others";
  EXPECT_EQ(NamedMutex::Acquire("S"), nullptr);

  fs::remove_all(own);
  fs::create_directory(folder_ / "elsewhere");
  fs::permissions(folder_ / "elsewhere", fs::perms::owner_all);
  fs::create_directory_symlink(folder_ / "elsewhere", own);
  EXPECT_EQ(NamedMutex::TryAcquire("S").outcome, Outcome::kUnavailable) << "a link";
}

}  // namespace
}  // namespace gantry::platform
