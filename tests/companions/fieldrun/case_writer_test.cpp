#include "fieldrun/case/case_writer.h"

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

TEST(CaseWriter, GivesEveryProducerAnotherControlAndLeavesAllElse) {
  CaseModel model;
  model.file = "case.toml";
  const auto add = [&model](WellKind kind, int kindLine, int controlLine) {
    WellSpec& well = model.wells.emplace_back();
    well.kind = static_cast<int>(kind);
    well.keyLines["kind"] = kindLine;
    if (controlLine > 0) well.keyLines["control"] = controlLine;
  };
  add(WellKind::kProducer, 2, 0);
  add(WellKind::kWaterInjector, 5, 0);
  add(WellKind::kProducer, 8, 7);
  const std::string text =
      "[[well]]\nkind = \"producer\"\nname = \"A\"\n"
      "[[well]]\nkind = \"water_injector\"\n"
      "[[well]]\n  control = \"gas\"  # lean\nkind = \"producer\"\n";
  EXPECT_EQ(WithControl(text, model, "\"liquid\""),
            "[[well]]\nkind = \"producer\"\ncontrol = \"liquid\"\nname = \"A\"\n"
            "[[well]]\nkind = \"water_injector\"\n"
            "[[well]]\n  control = \"liquid\"  # lean\nkind = \"producer\"\n");
  EXPECT_THROW(WithControl("\nwell = [{kind = \"producer\"}]\n" + text, model, "\"gas\""),
               CaseError);
}

TEST(CaseWriter, QuotesTexts) {
  EXPECT_EQ(TomlText("C:\\a\t\"b\""), "\"C:\\\\a\\u0009\\\"b\\\"\"");
}

}  // namespace
}  // namespace gantry::fieldrun
