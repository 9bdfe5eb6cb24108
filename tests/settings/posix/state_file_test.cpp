#include "case/state_file.h"

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
  auto variable = std::make_unique<CExportedVariable>();
  variable->Code = 60000;
  variable->UnitFamily = 1;
  variable->Key = "GAS";
  variable->SimulatorItem = "GAS_RATE";
  variable->Label = "Gas";
  variable->Kind = 0;
  auto parent = std::make_unique<CExportedVariableWellParent>();
  parent->WellName = "P1";
  parent->Variables.Add(std::move(variable));
  CExportedVariables variables;
  variables.Add(std::move(parent));
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
  InflowStateTransfer Load(size_t length) {
    return [this, length](intptr_t file) {
      ++calls;
      state.resize(length);
      const ssize_t got = ::read(static_cast<int>(file), state.data(), length);
      state.resize(got < 0 ? 0 : static_cast<size_t>(got));
    };
  }
};

class StateFile : public testing::Test {
 protected:
  std::string Path() const { return (folder_ / "case.state").string(); }
  size_t FilesInFolder() const {
    size_t count = 0;
    for (const auto& entry : fs::directory_iterator(folder_.Path())) {
      if (entry.is_regular_file()) ++count;
    }
    return count;
  }

  TestFolder folder_;
  CExportedVariables variables_ = SomeVariables();
  Inflow inflow_{.state = "inflow's own"};
};

TEST_F(StateFile, SharesOnePositionWithTheInflowLibrary) {
  WriteStateFile(Path(), inflow_.Save(), variables_);
  EXPECT_EQ(TestFolder::Read(Path()), FileWith("inflow's own"));

  Inflow other;
  CExportedVariables read;
  ReadStateFile(Path(), other.Load(12), read);
  EXPECT_EQ(other.state, "inflow's own");
  ASSERT_EQ(read.Size(), 1u);
  EXPECT_EQ(read[0].WellName, "P1");
  const CExportedVariable& variable = read[0].Variables[0];
  EXPECT_EQ(std::tie(variable.Code, variable.UnitFamily, variable.Kind),
            std::make_tuple(60000u, 1, 0u));
  EXPECT_EQ(variable.Key + "/" + variable.SimulatorItem + "/" + variable.Label, "GAS/GAS_RATE/Gas");
}

TEST_F(StateFile, AFirstVersionGivesEveryVariableOneValue) {
  std::string first = FileWith("");
  first.replace(8, 4, Word(1));
  folder_.Write("case.state", first.substr(0, first.size() - 4));
  ReadStateFile(Path(), inflow_.Load(0), variables_);
  ASSERT_EQ(variables_.Size(), 2u) << "what is read is appended";
  EXPECT_EQ(variables_[1].Variables[0].Kind, 1u);
}

TEST_F(StateFile, AMissingEmptyOrForeignFileReadsAsNothing) {
  for (const char* name : {"", "missing", "empty", "foreign", "folder"}) {
    folder_.Write("empty", "");
    folder_.Write("foreign", "not a state file");
    fs::create_directory(folder_ / "folder");
    const std::string path = *name == '\0' ? "" : (folder_ / name).string();
    ReadStateFile(path, inflow_.Load(0), variables_);
    EXPECT_EQ(variables_.Size(), 1u) << name;
    EXPECT_EQ(inflow_.calls, 0) << name;
  }
}

TEST_F(StateFile, ATruncatedOrCorruptFileAddsNoVariable) {
  const std::string whole = FileWith("");
  for (size_t length = 0; length < whole.size(); ++length) {
    folder_.Write("case.state", whole.substr(0, length));
    ReadStateFile(Path(), inflow_.Load(0), variables_);
    ASSERT_EQ(variables_.Size(), 1u) << length;
  }
  for (const size_t countAt : {12u, 16u, 22u}) {  // of wells, of a name's bytes, of variables
    for (const uint32_t count : {0xFFFFFFFFu, 0x7FFFFFFFu, 1000u}) {
      std::string corrupt = whole;
      corrupt.replace(countAt, 4, Word(count));
      folder_.Write("case.state", corrupt);
      ReadStateFile(Path(), inflow_.Load(0), variables_);
      ASSERT_EQ(variables_.Size(), 1u) << countAt;
    }
  }
}

TEST_F(StateFile, AFailedSaveLeavesTheOldFileAndNothingBesideIt) {
  folder_.Write("case.state", "old");
  {
    const FullDisk disk(30);
    WriteStateFile(Path(), inflow_.Save(), variables_);
  }
  EXPECT_EQ(inflow_.calls, 1);
  EXPECT_EQ(TestFolder::Read(Path()), "old");
  EXPECT_EQ(FilesInFolder(), 1u);
}

// Nothing can be made beside a file whose name leaves no room for a longer one.
TEST_F(StateFile, IsWrittenInPlaceWhereNothingCanBeMadeBesideIt) {
  const std::string name(250, 'n');
  const std::string path = folder_.Write(name, std::string(1000, 'x')).string();
  WriteStateFile(path, inflow_.Save(), variables_);
  EXPECT_EQ(TestFolder::Read(path), FileWith("inflow's own"));
  {
    const FullDisk disk(100);
    inflow_.state = std::string(50, 's');
    WriteStateFile(path, inflow_.Save(), variables_);
  }
  EXPECT_EQ(TestFolder::Read(path), FileWith("inflow's own")) << "or left as it was";
  EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(StateFile, NoPlaceToWriteIsNoFailure) {
  fs::create_directory(folder_ / "folder");
  for (const std::string& path :
       {std::string(), (folder_ / "nowhere/x").string(), (folder_ / "folder").string(),
        std::string("/dev/full"), std::string(5000, 'x')}) {
    WriteStateFile(path, inflow_.Save(), variables_);
  }
  EXPECT_EQ(inflow_.calls, 0);
  EXPECT_EQ(FilesInFolder(), 0u);
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

}  // namespace
}  // namespace gantry::test
