#include "fieldrun/case/case_writer.h"

#include <gtest/gtest.h>

#include "fieldrun/case/case_reader.h"
#include "support/test_folder.h"

namespace gantry::fieldrun {
namespace {

std::string Golden(const std::string& name) {
  return test::TestFolder::Read(FIELDRUN_GOLDEN "/" + name);
}

TEST(CaseWriter, ReplacesValuesInTheirSectionAndLeavesAllElse) {
  EXPECT_EQ(
      WithSimulatorKeys(Golden("case.toml"),
                        {{"deck", "\"c.afi\""}, {"parallel", "4"}, {"executable", "\"/ix\""}}),
      Golden("case_after_its_dialog.toml"));
  EXPECT_EQ(WithSimulatorKeys("", {{"parallel", "2"}}), "[simulator]\nparallel = 2\n");
  EXPECT_EQ(TomlText("C:\\a\t\"b\""), "\"C:\\\\a\\u0009\\\"b\\\"\"");
}

TEST(CaseWriter, GivesEveryProducerAnotherControlAndLeavesAllElse) {
  const CaseModel model = ReadCase(FIELDRUN_GOLDEN "/wells.toml");
  const std::string text = Golden("wells.toml");
  EXPECT_EQ(WithControl(text, model, "\"liquid\""), Golden("wells_after_their_dialog.toml"));
  EXPECT_THROW(WithControl("\nwell = [{kind = \"producer\"}]\n" + text, model, "\"gas\""),
               CaseError);
}

}  // namespace
}  // namespace gantry::fieldrun
