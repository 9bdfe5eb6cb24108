#include <cstring>
#include <memory>

#include <gtest/gtest.h>

#include "open_file.h"
#include "scripted_reservoir.h"
#include "support/test_folder.h"

namespace gantry::test {
namespace {

class StoredState : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(SetupIPR(nullptr, saved_.Handle()), 0);
    const OpenFile file(path_);
    file.MoveTo(kBefore);
    ASSERT_EQ(SaveIPR(saved_.Handle(), file.Handle()), 0);
    end_ = file.Position();
    content_ = TestFolder::Read(path_);
    ASSERT_EQ(content_.size(), static_cast<size_t>(end_));
  }

  /// The transformed pressure by which one state is told from another.
  static double Answer(ScriptedReservoir& reservoir) {
    auto well = reservoir.Wells().front();
    well.rate = 3000.0;
    const auto table = std::make_unique<_tGetSetData>();
    const auto state = std::make_unique<_tGetSetData>();
    well.FillTable(*table);
    well.FillCurrent(*state);
    TransformIPR(reservoir.Handle(), "P1", state.get(), table.get());
    return table->pressure[table->pointCount - 1];
  }

  /// Loads `content` from the place where the block began, into a library that knows no ratio.
  struct Outcome {
    int32_t result;
    int64_t position;
    bool isChanged;
  };
  Outcome Load(const std::string& content) {
    ScriptedReservoir fresh({{"P1", 4000.0, 10.0, 5.0}});
    const double before = Answer(fresh);
    const OpenFile file(folder_.Write("copy", content));
    file.MoveTo(kBefore);
    const int32_t result = LoadIPR(fresh.Handle(), file.Handle());
    return {result, file.Position(), Answer(fresh) != before};
  }

  static constexpr int64_t kBefore = 12;
  TestFolder folder_;
  std::filesystem::path path_ = folder_ / "store";
  ScriptedReservoir saved_{{{"P1", 4000.0, 10.0, 5.0}}};
  int64_t end_ = 0;
  std::string content_;
};

TEST_F(StoredState, ComesBackFromTheMiddleOfAFile) {
  const Outcome loaded = Load(content_ + "what the module keeps behind it");
  EXPECT_EQ(loaded.result, 0);
  EXPECT_EQ(loaded.position, end_);
  EXPECT_TRUE(loaded.isChanged);

  ScriptedReservoir other({{"P1", 4000.0, 10.0, 5.0}});
  const OpenFile file(path_);
  file.MoveTo(kBefore);
  ASSERT_EQ(LoadIPR(other.Handle(), file.Handle()), 0);
  EXPECT_DOUBLE_EQ(Answer(other), Answer(saved_));
}

TEST_F(StoredState, WithADamagedByteChangesNothingAndLeavesTheRestReadable) {
  for (size_t at = kBefore; at < content_.size(); ++at) {
    std::string damaged = content_ + "rest";
    damaged[at] = static_cast<char>(damaged[at] ^ 0x55);
    const Outcome loaded = Load(damaged);
    EXPECT_NE(loaded.result, 0) << "byte " << at;
    EXPECT_FALSE(loaded.isChanged) << "byte " << at;
    EXPECT_TRUE(loaded.position == kBefore || loaded.position == end_) << "byte " << at;
  }
}

TEST_F(StoredState, IsNotReadFromAFileThatEndsTooSoon) {
  for (size_t length = 0; length < content_.size(); ++length) {
    const Outcome loaded = Load(content_.substr(0, length));
    EXPECT_NE(loaded.result, 0) << length;
    EXPECT_FALSE(loaded.isChanged) << length;
    EXPECT_EQ(loaded.position, kBefore) << length;
  }
}

TEST_F(StoredState, OfAnotherMakerIsLeftWhereItStands) {
  const Outcome loaded = Load(std::string(12, '\0') + std::string(200, 'x'));
  EXPECT_NE(loaded.result, 0);
  EXPECT_EQ(loaded.position, kBefore);
  EXPECT_FALSE(loaded.isChanged);
}

TEST_F(StoredState, NeedsAFileThatCanBeWrittenAndRead) {
  EXPECT_NE(SaveIPR(saved_.Handle(), -1), 0);
  EXPECT_NE(LoadIPR(saved_.Handle(), -1), 0);
}

}  // namespace
}  // namespace gantry::test
