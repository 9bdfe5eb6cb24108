// The program itself beside another that has its port. What it does with a controller, or when that
// goes, are rules of `fieldrun check` and sessions.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "client/tcp_connection.h"
#include "program.h"
#include "sample_deck.h"

namespace gantry::simulator::test {
namespace {

TEST(Tanksim, EndsWhenItsPortIsTaken) {
  const gantry::test::TestFolder folder;
  folder.Write("CASE.afi", SampleDeckText());
  const TcpListener other(0);
  const std::string option = fmt::format("--dopt=external_controller_port:{}", other.Port());
  EXPECT_EQ(
      fieldrun::test::RunInFolder(folder, "tanksim", {"CASE", option}).err,
      fmt::format("tanksim: can't listen on port {}: Address already in use\n", other.Port()));
}

}  // namespace
}  // namespace gantry::simulator::test
