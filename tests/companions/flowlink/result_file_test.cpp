#include "flowlink/result_file.h"

#include <gtest/gtest.h>

#include "support/test_folder.h"

namespace gantry::flowlink {
namespace {

std::string Number(size_t number) {
  return {0, 0, static_cast<char>(number >> 8), static_cast<char>(number)};
}
std::string Record(const std::string& content) {
  return Number(content.size()) + content + Number(content.size());
}
std::string Array(const std::string& name, size_t count, const std::string& type,
                  const std::string& elements) {
  return Record(name + Number(count) + type) + elements;
}

TEST(ResultFile, IsCutToItsWholeArraysAndKnowsItsReports) {
  const std::string report =
      Array("SEQNUM  ", 1, "INTE", Record(Number(300))) +
      Array("PRESSURE", 3, "DOUB", Record("16 bytes of them") + Record("8 others")) +
      Array("NAMES   ", 2, "C012", Record("two texts of twelve each")) +
      Array("ENDSOL  ", 0, "MESS", "");
  const gantry::test::TestFolder folder;
  const auto path =
      folder.Write("A.UNRST", report + Array("SEQNUM  ", 1, "INTE", Record(Number(301))));
  ResultFile file(path);
  EXPECT_TRUE(file.IsWhole());
  EXPECT_TRUE(file.HasReport(300));
  EXPECT_FALSE(file.HasReport(301)) << "which has only begun";
  for (const size_t missing : {1U, 23U, 30U, 60U}) {
    folder.Write("A.UNRST", report + report.substr(0, report.size() - missing));
    EXPECT_FALSE(ResultFile(path).IsWhole()) << missing;
  }
  file.CutToWhole();
  EXPECT_TRUE(ResultFile(path).IsWhole());
  EXPECT_TRUE(ResultFile(path).HasReport(300));
  EXPECT_TRUE(ResultFile(folder / "none").IsWhole());
}

}  // namespace
}  // namespace gantry::flowlink
