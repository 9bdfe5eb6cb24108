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

  /// Loads `content` from the place where the block began, into a library that knows no ratio.
  struct Outcome {
    int32_t result;
    int64_t position;
    double answer;
  };
  Outcome Load(const std::string& content) {
    ScriptedReservoir fresh({{"P1", 4000.0, 10.0, 5.0}});
    const OpenFile file(folder_.Write("copy", content));
    file.MoveTo(kBefore);
    const int32_t result = LoadIPR(fresh.Handle(), file.Handle());
    return {result, file.Position(), fresh.PressureOfLowestRate()};
  }

  static constexpr int64_t kBefore = 12;
  TestFolder folder_;
  std::filesystem::path path_ = folder_ / "store";
  ScriptedReservoir saved_{{{"P1", 4000.0, 10.0, 5.0}}};
  const double unknown_ = ScriptedReservoir({{"P1", 4000.0, 10.0, 5.0}}).PressureOfLowestRate();
  int64_t end_ = 0;
  std::string content_;
};

TEST_F(StoredState, ComesBackFromTheMiddleOfAFile) {
  const Outcome loaded = Load(content_ + "what the module keeps behind it");
  EXPECT_EQ(loaded.result, 0);
  EXPECT_EQ(loaded.position, end_);
  EXPECT_NE(loaded.answer, unknown_);
  EXPECT_DOUBLE_EQ(loaded.answer, saved_.PressureOfLowestRate());
  EXPECT_NE(SaveIPR(saved_.Handle(), -1), 0) << "no file";
  EXPECT_NE(LoadIPR(saved_.Handle(), -1), 0) << "no file";
}

/// What can't be a block is left to the module, and a damaged one is stepped over.
TEST_F(StoredState, ThatIsDamagedOrCutChangesNothing) {
  for (size_t at = kBefore; at < content_.size(); ++at) {
    std::string damaged = content_ + "rest";
    damaged[at] = static_cast<char>(damaged[at] ^ 0x55);
    for (const std::string& content : {damaged, content_.substr(0, at)}) {
      const Outcome loaded = Load(content);
      EXPECT_TRUE(loaded.result != 0 && loaded.answer == unknown_) << "byte " << at;
      EXPECT_TRUE(loaded.position == kBefore || (loaded.position == end_ && content == damaged))
          << "byte " << at;
    }
  }
}

}  // namespace
}  // namespace gantry::test
