#include "host/options.h"

#include <gtest/gtest.h>

namespace gantry::fieldrun {
namespace {

std::variant<Options, int> Parse(std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), "fieldrun");
  return ParseCommandLine(static_cast<int>(arguments.size()), arguments.data());
}

TEST(CommandLine, FillsTheOptionsOfItsCommand) {
  const auto run = std::get<Options>(
      Parse({"run", "a.toml", "--steps", "5", "-o", "out", "-q", "--trace", "t"}));
  EXPECT_EQ(run.verb, Verb::kRun);
  EXPECT_EQ(run.caseFile, "a.toml");
  EXPECT_EQ(run.steps, 5);
  EXPECT_EQ(run.output, "out");
  EXPECT_EQ(run.trace, "t");
  EXPECT_TRUE(run.quiet);

  const auto variables = std::get<Options>(
      Parse({"variables", "a.toml", "--write", "0=5", "--delete", "-1", "--json"}));
  EXPECT_EQ(variables.verb, Verb::kVariables);
  EXPECT_EQ(variables.writes, std::vector<std::string>{"0=5"});
  EXPECT_EQ(variables.deleteHandles, std::vector<int>{-1});
}

TEST(CommandLine, TakesPositionalsInTheOrderOfTheTable) {
  const auto set = std::get<Options>(Parse({"set", "a.toml", "Intersect.X", "-3"}));
  EXPECT_EQ(set.caseFile, "a.toml");
  EXPECT_EQ(set.path, "Intersect.X");
  EXPECT_EQ(set.value, "-3");
  const auto get = std::get<Options>(Parse({"get", "a.toml", "One", "Two"}));
  EXPECT_EQ(get.paths, (std::vector<std::string>{"One", "Two"}));
}

}  // namespace
}  // namespace gantry::fieldrun
