#include "host/case_writer.h"

#include <gtest/gtest.h>

namespace gantry::fieldrun {
namespace {

TEST(CaseWriter, ReplacesValuesInTheirSectionAndLeavesAllElse) {
  EXPECT_EQ(
      WithSimulatorKeys("# a case\n"
                        "[time]\n"
                        "parallel = 3\n"
                        "[ simulator ]  # where\n"
                        "deck = \"a # b.afi\"  # the deck\n"
                        "  parallel=1\n"
                        "\n"
                        "# the wells\n"
                        "[[well]]\n"
                        "deck = 1\n",
                        {{"deck", "\"c.afi\""}, {"parallel", "4"}, {"executable", "\"/ix\""}}),
      "# a case\n"
      "[time]\n"
      "parallel = 3\n"
      "[ simulator ]  # where\n"
      "deck = \"c.afi\"  # the deck\n"
      "  parallel= 4\n"
      "executable = \"/ix\"\n"
      "\n"
      "# the wells\n"
      "[[well]]\n"
      "deck = 1\n");
}

TEST(CaseWriter, AddsTheSectionToAFileWithoutOne) {
  EXPECT_EQ(WithSimulatorKeys("", {{"parallel", "2"}}), "[simulator]\nparallel = 2\n");
}

TEST(CaseWriter, QuotesTexts) {
  EXPECT_EQ(TomlText("C:\\a\t\"b\""), "\"C:\\\\a\\u0009\\\"b\\\"\"");
}

}  // namespace
}  // namespace gantry::fieldrun
