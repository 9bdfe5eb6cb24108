#include "case/state_file.h"

#include <algorithm>

#include <gtest/gtest.h>
#include <unistd.h>

#include "settings/byte_stream.h"
#include "support/posix/full_disk.h"
#include "support/test_folder.h"
#include "wells/exported_variables.h"

namespace gantry::test {
namespace {

namespace fs = std::filesystem;

CExportedVariables SomeVariables() {
  CExportedVariables variables;
  auto& parent = variables.Add(std::make_unique<CExportedVariableWellParent>());
  parent.WellName = "P1";
  parent.Variables.Add(
      std::make_unique<CExportedVariable>(WellVariable{"GAS", "GAS_RATE", "Gas", 60000, 1, 0}));
  return variables;
}

/// The file of docs/case-data.md, with the inflow library's own part in the middle.
std::string FileWith(const std::string& inflow) {
  return Header() + Word(2) + inflow + Word(1) + Text("P1") + Word(1) + Word(60000) + Word(1) +
         Text("GAS") + Text("GAS_RATE") + Text("Gas") + Word(0);
}

/// Acts as the inflow library: keeps some bytes at the file's current position.
struct Inflow {
  std::string state;
  int calls = 0;

  InflowStateTransfer Save() {
    return [this](intptr_t file) {
      ++calls;
      EXPECT_EQ(::write(static_cast<int>(file), state.data(), state.size()),
                static_cast<ssize_t>(state.size()));
    };
  }
  /// Expects as many bytes as `state` has.
  InflowStateTransfer Load() {
    return [this](intptr_t file) {
      ++calls;
      EXPECT_GE(::read(static_cast<int>(file), state.data(), state.size()), 0);
    };
  }
};

class StateFile : public testing::Test {
 protected:
  std::string Path() const { return (folder_ / "case.state").string(); }
  auto FilesInFolder() const {
    return std::ranges::count_if(fs::directory_iterator(folder_.Path()),
                                 [](const auto& entry) { return entry.is_regular_file(); });
  }

  TestFolder folder_;
  CExportedVariables variables_ = SomeVariables();
  Inflow inflow_{.state = "inflow's own"};
  Inflow nothing_{.state = ""};
};

TEST_F(StateFile, SharesOnePositionWithTheInflowLibrary) {
  WriteStateFile(Path(), inflow_.Save(), variables_);
  EXPECT_EQ(TestFolder::Read(Path()), FileWith("inflow's own"));

  Inflow other{.state = std::string(12, ' ')};
  CExportedVariables read;
  EXPECT_TRUE(ReadStateFile(Path(), other.Load(), read));
  EXPECT_EQ(other.state, "inflow's own");
  ASSERT_EQ(read.Size(), 1u);
  WriteStateFile(Path(), inflow_.Save(), read);
  EXPECT_EQ(TestFolder::Read(Path()), FileWith("inflow's own")) << "all of it has come";
}

TEST_F(StateFile, AFirstVersionGivesEveryVariableOneValue) {
  std::string first = FileWith("");
  first.replace(8, 4, Word(1));
  folder_.Write("case.state", first.substr(0, first.size() - 4));
  ReadStateFile(Path(), nothing_.Load(), variables_);
  ASSERT_EQ(variables_.Size(), 2u) << "what is read is appended";
  EXPECT_EQ(variables_[1].Variables[0].Kind, 1u);
}

TEST_F(StateFile, AMissingEmptyOrForeignFileReadsAsNothing) {
  fs::create_directory(folder_ / "folder");
  for (const std::string& path :
       {std::string(), (folder_ / "missing").string(), folder_.Write("empty", "").string(),
        folder_.Write("foreign", "not a state file").string(), (folder_ / "folder").string()}) {
    ReadStateFile(path, nothing_.Load(), variables_);
    EXPECT_EQ(variables_.Size(), 1u) << path;
    EXPECT_EQ(nothing_.calls, 0) << path;
  }
}

TEST_F(StateFile, ATruncatedOrCorruptFileAddsNoVariable) {
  const std::string whole = FileWith("");
  for (size_t length = 0; length < whole.size(); ++length) {
    folder_.Write("case.state", whole.substr(0, length));
    ReadStateFile(Path(), nothing_.Load(), variables_);
    ASSERT_EQ(variables_.Size(), 1u) << length;
  }
  for (const size_t countAt : {12u, 16u, 22u}) {  // of wells, of a name's bytes, of variables
    std::string corrupt = whole;
    corrupt.replace(countAt, 4, Word(0x7FFFFFFF));
    folder_.Write("case.state", corrupt);
    EXPECT_FALSE(ReadStateFile(Path(), nothing_.Load(), variables_));
    ASSERT_EQ(variables_.Size(), 1u) << countAt;
  }
}

TEST_F(StateFile, IsReplacedWholeOrNotAtAll) {
  // Nothing can be made beside a file whose name leaves no room for a longer one.
  for (const std::string& name : {std::string("case.state"), std::string(250, 'n')}) {
    const std::string path = folder_.Write(name, "old").string();
    {
      const FullDisk disk(30);
      WriteStateFile(path, inflow_.Save(), variables_);
    }
    EXPECT_EQ(TestFolder::Read(path), "old");
    folder_.Write(name, std::string(1000, 'x'));
    WriteStateFile(path, inflow_.Save(), variables_);
    EXPECT_EQ(TestFolder::Read(path), FileWith("inflow's own"));
  }
  EXPECT_EQ(FilesInFolder(), 2) << "and nothing is left beside it";
}

TEST_F(StateFile, NoPlaceToWriteIsNoFailure) {
  fs::create_directory(folder_ / "folder");
  for (const std::string& path :
       {std::string(), (folder_ / "nowhere/x").string(), (folder_ / "folder").string(),
        std::string("/dev/full"), std::string(5000, 'x')}) {
    WriteStateFile(path, inflow_.Save(), variables_);
  }
  EXPECT_EQ(inflow_.calls, 0);
  EXPECT_EQ(FilesInFolder(), 0);
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

}  // namespace
}  // namespace gantry::test
