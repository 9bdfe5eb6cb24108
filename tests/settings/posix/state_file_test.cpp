#include "case/state_file.h"

#include <algorithm>

#include <gtest/gtest.h>
#include <unistd.h>

#include "settings/hex_file.h"
#include "support/posix/full_disk.h"
#include "support/test_folder.h"
#include "wells/exported_variables.h"

namespace gantry::test {
namespace {

namespace fs = std::filesystem;

constexpr size_t kBehindVersion = 12;  // where the inflow library's own part stands
const std::string kWithoutInflow = BytesOf("state_file.hex", 2);
const std::string kWithInflow = std::string(kWithoutInflow).insert(kBehindVersion, "inflow's own");

class StateFile : public testing::Test {
 protected:
  StateFile() {
    auto& parent = variables_.Add(std::make_unique<CExportedVariableWellParent>());
    parent.WellName = "P1";
    parent.Variables.Add(
        std::make_unique<CExportedVariable>(WellVariable{"GAS", "GAS_RATE", "Gas", 60000, 1, 0}));
  }
  std::string Path() const { return (folder_ / "case.state").string(); }
  void Save(const std::string& path, CExportedVariables& variables) {
    const auto save = [this](intptr_t file) {
      ++calls_;
      EXPECT_GT(::write(static_cast<int>(file), "inflow's own", 12), 0);
    };
    WriteStateFile(path, save, variables);
  }
  /// With an inflow library that expects so many bytes of its own.
  bool Load(const std::string& path, CExportedVariables& variables, size_t inflow = 0) {
    const auto load = [this, inflow](intptr_t file) {
      ++calls_;
      state_.assign(inflow, ' ');
      EXPECT_GE(::read(static_cast<int>(file), state_.data(), inflow), 0);
    };
    return ReadStateFile(path, load, variables);
  }
  auto FilesInFolder() const {
    return std::ranges::count_if(fs::directory_iterator(folder_.Path()),
                                 [](const auto& entry) { return entry.is_regular_file(); });
  }

  TestFolder folder_;
  CExportedVariables variables_;
  std::string state_;  ///< the inflow library's, as it was loaded
  int calls_ = 0;      ///< of the inflow library
};

TEST_F(StateFile, SharesOnePositionWithTheInflowLibraryAndIsReplacedWholeOrNotAtAll) {
  folder_.Write("case.state", "old");
  {
    const FullDisk disk(30);
    Save(Path(), variables_);
  }
  EXPECT_EQ(TestFolder::Read(Path()), "old");
  Save(Path(), variables_);
  EXPECT_EQ(TestFolder::Read(Path()), kWithInflow);
  CExportedVariables read;
  EXPECT_TRUE(Load(Path(), read, 12));
  EXPECT_EQ(state_, "inflow's own");
  Save(Path(), read);
  EXPECT_EQ(TestFolder::Read(Path()), kWithInflow) << "all of it has come";
}

TEST_F(StateFile, OfTheFirstVersionGivesEveryVariableOneValue) {
  std::string first = BytesOf("state_file.hex", 1);
  first[8] = 1;
  EXPECT_TRUE(Load(folder_.Write("case.state", first).string(), variables_));
  ASSERT_EQ(variables_.Size(), 2u) << "what is read is appended";
  EXPECT_EQ(variables_[1].Variables[0].Kind, 1u);
}

TEST_F(StateFile, ReadsAsNothingWhereItIsNoneOrSpoilt) {
  fs::create_directory(folder_ / "folder");
  for (const std::string& path :
       {std::string(), (folder_ / "missing").string(), folder_.Write("empty", "").string(),
        folder_.Write("foreign", "not a state file").string(), (folder_ / "folder").string()}) {
    Load(path, variables_);
    EXPECT_EQ(calls_, 0) << path;
  }
  std::vector<std::string> spoilt;
  for (size_t i = 1; i < kWithoutInflow.size(); ++i) spoilt.push_back(kWithoutInflow.substr(0, i));
  for (const size_t countAt : {12u, 16u, 22u}) {  // of wells, of a name's bytes, of variables
    spoilt.push_back(std::string(kWithoutInflow).replace(countAt, 4, "\xff\xff\xff\x7f"));
  }
  for (const std::string& bytes : spoilt) {
    EXPECT_FALSE(Load(folder_.Write("case.state", bytes).string(), variables_));
  }
  EXPECT_EQ(variables_.Size(), 1u);
}

TEST_F(StateFile, NoPlaceToWriteIsNoFailure) {
  fs::create_directory(folder_ / "folder");
  for (const std::string& path :
       {std::string(), (folder_ / "nowhere/x").string(), (folder_ / "folder").string(),
        std::string("/dev/full"), std::string(5000, 'x')}) {
    Save(path, variables_);
  }
  EXPECT_EQ(calls_, 0);
  EXPECT_EQ(FilesInFolder(), 0);
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

}  // namespace
}  // namespace gantry::test
