#pragma once

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <map>

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include "support/test_folder.h"

namespace gantry::flowlink::test {

/// A test with flow itself, in a folder that holds the files of a case.
class WithFlow : public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::system("command -v flow >/dev/null") != 0) {
      GTEST_SKIP() << "flow isn't installed (Debian package libopm-simulators-bin)";
    }
    // What loses its parent becomes a child of this process, so that its end can be waited for.
    ASSERT_EQ(::prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
  }
  void Copy(const std::filesystem::path& files) {
    std::filesystem::copy(files, folder_.Path(), std::filesystem::copy_options::recursive);
  }
  /// Waits until nothing is left of all that was started; the status of each process by its number.
  static std::map<pid_t, int> WaitForAll() {
    std::map<pid_t, int> ended;
    int status = 0;
    for (pid_t process = ::waitpid(-1, &status, 0); process > 0 || errno == EINTR;
         process = ::waitpid(-1, &status, 0)) {
      ended[process] = status;
    }
    return ended;
  }

  gantry::test::TestFolder folder_;
};

}  // namespace gantry::flowlink::test
