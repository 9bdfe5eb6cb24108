// docs/fieldrun.md: what it shows is what fieldrun takes.

#include <sstream>

#include <gtest/gtest.h>

#include "fieldrun/case/case_keys.h"
#include "fieldrun/case/case_reader.h"
#include "fieldrun/verbs/options.h"
#include "support/test_folder.h"

namespace gantry::fieldrun {
namespace {

std::string Document() { return test::TestFolder::Read(FIELDRUN_DOCUMENT); }

TEST(Documentation, ShowsTheReferenceOfCaseFilesAsItIsPrinted) {
  const std::string text = Document();
  const size_t begin = text.find("```\n") + 4;
  EXPECT_EQ(text.substr(begin, text.find("```", begin) - begin), CaseReference());
}

TEST(Documentation, ShowsACaseThatCanBeRead) {
  const test::TestFolder folder;
  folder.Write("FIVE_SPOT.afi", "");
  std::istringstream document(Document());
  std::string example;
  bool isInside = false;
  for (std::string line; std::getline(document, line);) {
    isInside = isInside ? line.empty() || line.starts_with("    ") : line == "    [simulator]";
    if (isInside) example += line + "\n";
  }
  const CaseModel model = ReadCase(folder.Write("case.toml", example).string());
  EXPECT_EQ(model.wells.size(), 2U);
  EXPECT_EQ(model.groups.size(), 1U);
}

TEST(Documentation, NamesEveryCommandAndOption) {
  const std::string text = Document();
  for (const VerbRow& verb : Verbs()) {
    EXPECT_NE(text.find("`" + std::string(verb.name)), std::string::npos) << verb.name;
  }
  for (const OptionRow& row : OptionRows()) {
    const size_t dashes = row.name.find("--");
    if (dashes == std::string_view::npos) continue;
    EXPECT_NE(text.find(row.name.substr(dashes)), std::string::npos) << row.name;
  }
}

}  // namespace
}  // namespace gantry::fieldrun
