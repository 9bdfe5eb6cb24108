// How a run ends under Ctrl-C on a console that fieldrun, the simulator and this program share.

#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "platform/windows/win32.h"
#include "program.h"

namespace gantry::fieldrun::test {
namespace {

BOOL WINAPI TakeForHandled(DWORD) { return TRUE; }

/// A console that nobody sees, in place of whatever this program was started on.
class OwnConsole {
 public:
  OwnConsole() {
    FreeConsole();
    EXPECT_NE(AllocConsole(), 0);
    SetConsoleCtrlHandler(TakeForHandled, TRUE);
  }
  ~OwnConsole() { SetConsoleCtrlHandler(TakeForHandled, FALSE); }
  OwnConsole(const OwnConsole&) = delete;
  OwnConsole& operator=(const OwnConsole&) = delete;
};

size_t RowsOf(const std::filesystem::path& table) {
  return std::filesystem::exists(table) ? Table(table).Rows() : 0;
}

TEST(RunOnConsole, FinishesItsStepAfterControlC) {
  const OwnConsole console;
  const gantry::test::TestFolder folder;
  const std::filesystem::path out = folder / "out";
  Outcome run;
  std::thread runner([&] {
    run =
        RunFieldrun(folder, {"run", ChangedExample(folder, "odeh", "step = \"month\"", "step = 1"),
                             "-o", out.string()});
  });
  while (RowsOf(out / "field.csv") < 3) std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_NE(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0), 0);
  runner.join();
  EXPECT_EQ(run.status, 3) << run.err;
  EXPECT_NE(run.err.find("fieldrun: the run was ended by the user after"), std::string::npos)
      << run.err;
  const size_t steps = RowsOf(out / "field.csv");
  EXPECT_LT(steps, 3000U);
  const Table wells(out / "wells.csv");
  ASSERT_EQ(wells.Rows(), 2 * steps);
  EXPECT_NE(wells.Text(2 * steps - 1, "reported pressure (psig)"), "") << "of the last step";
}

}  // namespace
}  // namespace gantry::fieldrun::test
