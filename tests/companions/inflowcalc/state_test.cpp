#include <gtest/gtest.h>

#include "platform/files.h"
#include "scripted_reservoir.h"
#include "support/test_folder.h"

namespace gantry::test {
namespace {

class StoredState : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(SetupIPR(nullptr, saved_.Handle()), 0);
    const auto file = platform::ReplacementFile::Create(path_);
    ASSERT_TRUE(file->File().Write("module's own", kBefore));
    ASSERT_EQ(SaveIPR(saved_.Handle(), file->File().Handle()), 0);
    ASSERT_TRUE(file->File().Write("|", 1) && file->Commit());
    content_ = TestFolder::Read(path_);
    ASSERT_TRUE(content_.starts_with("module's own") && content_.ends_with("|"));
    content_.pop_back();
  }

  /// Loads `content` from the place where the block began, into a library that knows no ratio.
  struct Outcome {
    int32_t result;
    size_t position;
    double answer;
  };
  Outcome Load(const std::string& content) {
    ScriptedReservoir fresh({{"P1", 4000.0, 10.0, 5.0}});
    const auto file = platform::NativeFile::OpenForReading(folder_.Write("copy", content).string());
    char before[kBefore];
    EXPECT_TRUE(file->Read(before, kBefore));
    const int32_t result = LoadIPR(fresh.Handle(), file->Handle());
    return {result, content.size() - file->Remaining(), fresh.PressureOfLowestRate()};
  }

  static constexpr size_t kBefore = 12;
  TestFolder folder_;
  std::string path_ = (folder_ / "store").string();
  ScriptedReservoir saved_{{{"P1", 4000.0, 10.0, 5.0}}};
  const double unknown_ = ScriptedReservoir({{"P1", 4000.0, 10.0, 5.0}}).PressureOfLowestRate();
  std::string content_;
};

TEST_F(StoredState, ComesBackFromTheMiddleOfAFile) {
  const Outcome loaded = Load(content_ + "what the module keeps behind it");
  EXPECT_EQ(loaded.result, 0);
  EXPECT_EQ(loaded.position, content_.size());
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
      EXPECT_TRUE(loaded.position == kBefore ||
                  (loaded.position == content_.size() && content == damaged))
          << "byte " << at;
    }
  }
}

}  // namespace
}  // namespace gantry::test
