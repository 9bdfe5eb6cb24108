#include "case/case_data.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "settings/hex_file.h"
#include "settings/link_settings.h"
#include "wells/static_well_data.h"

namespace gantry::test {
namespace {

/// Everything that a block holds, in one place.
struct Case {
  LinkSettings settings;
  StaticWellDataCollection wells;
  std::vector<std::string> components;

  CaseData Data() { return {settings, wells, components}; }
  CaseDataOutcome Read(const std::string& bytes) {
    // A block of exactly that size, so that a sanitizer sees any step beyond it.
    std::vector<char> block(bytes.begin(), bytes.end());
    return ReadCaseData(block, Data());
  }
  /// The block, where it has just this room.
  std::string Written(size_t room) {
    std::string block(room, '~');
    return WriteCaseData(block, Data()) == CaseDataOutcome::kDone ? block : "not written";
  }
};

/// A block with this number of a version, which need not be one.
std::string BlockOf(int32_t version) {
  std::string block = BytesOf("case_block.hex", std::max(version, 1));
  return block.replace(8, 4, reinterpret_cast<const char*>(&version), 4);
}
const std::string kWhole = BlockOf(4);

TEST(CaseData, IsReadOfEveryVersionAndWrittenWithTheFieldsThatItLacks) {
  for (const int32_t version : {-5, 0, 1, 2, 3, 4}) {
    Case c;
    c.settings.LinuxIXVersion = 42;
    c.settings.StdLogging = true;
    EXPECT_EQ(c.Read(BlockOf(5)), CaseDataOutcome::kTooNew);
    EXPECT_EQ(c.settings.SimExeName, "");
    EXPECT_EQ(c.Read(BlockOf(version)), CaseDataOutcome::kDone);
    const std::string filled = BytesOf("case_block.hex", std::max(version, 1), true);
    EXPECT_EQ(c.Written(filled.size()), filled) << version;
  }
  Case c;
  c.settings.StdLogging = true;
  c.Read(kWhole.substr(0, kWhole.size() - 4) + std::string("\0\xff\xff\xff", 4));
  EXPECT_FALSE(c.settings.StdLogging) << "only the low byte counts";
}

TEST(CaseData, IsWrittenOnlyWhereAllOfItFits) {
  Case c;
  c.Read(kWhole);
  for (size_t room = 0; room < kWhole.size(); ++room) {
    EXPECT_EQ(c.Written(room), "not written") << room;
  }
}

TEST(CaseData, FailsWhereverItIsCutAndKeepsWhatWasReadTillThen) {
  for (size_t length = 0; length < kWhole.size(); ++length) {
    ASSERT_EQ(Case().Read(kWhole.substr(0, length)), CaseDataOutcome::kFailed) << length;
  }
  Case c;
  c.Read(kWhole.substr(0, kWhole.find("W2")));
  EXPECT_EQ(c.settings.FileName, "case.afi");
  EXPECT_EQ(c.wells.Names(false), std::vector<std::string>{"W1"}) << "the one that is whole";
}

TEST(CaseData, SurvivesAnyCorruptionWithinTheBlocksOwnSize) {
  for (size_t at = 0; at + 4 <= kWhole.size(); ++at) {
    for (const char* change : {"\x01", "\x80", "\xff\xff\xff\x7f", "\xff\xff\xff\xff"}) {
      std::string corrupt = kWhole;
      corrupt.replace(at, std::strlen(change), change);
      Case c;
      const CaseDataOutcome outcome = c.Read(corrupt);
      EXPECT_TRUE(at >= 8 || outcome == CaseDataOutcome::kFailed || corrupt == kWhole) << at;
      ASSERT_LE(c.wells.Items.size() * 12 + c.components.size() * 4, kWhole.size()) << at;
      ASSERT_LE(c.settings.FileName.capacity(), kWhole.size()) << at;
    }
  }
}

}  // namespace
}  // namespace gantry::test
