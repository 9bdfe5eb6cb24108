#include "case/case_data.h"

#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "settings/byte_stream.h"
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
  CaseDataOutcome Read(std::string bytes) {
    // A block of exactly that size, so that a sanitizer sees any step beyond it.
    std::vector<char> block(bytes.begin(), bytes.end());
    return ReadCaseData(block, Data());
  }
  /// As one text, in the order of the block.
  std::string Text() const {
    std::ostringstream text;
    text << settings.SimExeName << ' ' << settings.FileName << ' ' << settings.HeadNode << ' '
         << settings.HeadNodePort << ' ' << settings.LinuxIXVersion << ' ' << settings.Parallel;
    for (const StaticWellData& well : wells.Items) {
      text << ' ' << well.Name << '/' << well.SourceType << '/' << well.OpMode << well.Connected;
    }
    text << (settings.CloseUnconnectedWells ? " closes " : " ") << settings.ConnectionMode << ' '
         << settings.IPRModel << ' ' << settings.UpTimeMode;
    for (const std::string& component : components) text << " '" << component << "'";
    text << (settings.StdLogging ? " logs" : "");
    return text.str();
  }
};

/// A block of any version, composed apart from the code under test.
std::string BlockOf(int32_t version) {
  std::string block = Header() + Word(static_cast<uint32_t>(version)) + Text("sim") +
                      Text("case.afi") + Text("node") + Word(5000);
  if (version >= 2) block += Word(20172);
  block += Word(8) + Word(2) + Text("W1") + Word(2) + Word(1) + Text("W2") + Word(0) + Word(3) +
           '\x01' + Word(1) + Word(0) + Word(1);
  if (version >= 3) block += Word(2) + Text("N2") + Text("");
  if (version >= 4) block += Word(1);
  return block;
}

TEST(CaseData, ReadsEveryVersionAndKeepsTheFieldsThatItLacks) {
  const std::string oldest = "sim case.afi node 5000 42 8 W1/2/10 W2/0/30 closes 1 0 1";
  const std::string second = "sim case.afi node 5000 20172 8 W1/2/10 W2/0/30 closes 1 0 1";
  const std::pair<int32_t, std::string> versions[] = {{-5, oldest},
                                                      {0, oldest},
                                                      {1, oldest},
                                                      {2, second},
                                                      {3, second + " 'N2' ''"},
                                                      {4, second + " 'N2' '' logs"}};
  for (const auto& [version, text] : versions) {
    Case c;
    c.settings.LinuxIXVersion = 42;
    c.settings.StdLogging = true;
    const std::string before = c.Text();
    EXPECT_EQ(c.Read(BlockOf(5)), CaseDataOutcome::kTooNew);
    EXPECT_EQ(c.Text(), before);
    EXPECT_EQ(c.Read(BlockOf(version)), CaseDataOutcome::kDone);
    EXPECT_EQ(c.Text(), text) << version;
  }
  Case c;
  c.settings.StdLogging = true;
  c.Read(BlockOf(4).substr(0, BlockOf(4).size() - 4) + Word(0xFFFFFF00));
  EXPECT_FALSE(c.settings.StdLogging) << "only the low byte counts";
}

TEST(CaseData, IsWrittenAsItWasReadAndOnlyWhereAllOfItFits) {
  const std::string expected = BlockOf(4);
  Case c;
  c.Read(expected);
  for (size_t capacity = 0; capacity < expected.size(); ++capacity) {
    std::vector<char> block(capacity);
    EXPECT_EQ(WriteCaseData(block, c.Data()), CaseDataOutcome::kFailed) << capacity;
  }
  std::string block(expected.size(), '~');
  EXPECT_EQ(WriteCaseData(block, c.Data()), CaseDataOutcome::kDone);
  EXPECT_EQ(block, expected);
}

TEST(CaseData, EveryTruncationFailsAndKeepsWhatWasReadTillThen) {
  const std::string whole = BlockOf(4);
  for (size_t length = 0; length < whole.size(); ++length) {
    ASSERT_EQ(Case().Read(whole.substr(0, length)), CaseDataOutcome::kFailed) << length;
  }
  Case c;
  c.Read(whole.substr(0, 12 + 7 + 5));  // within the dataset's path
  EXPECT_EQ(c.settings.SimExeName + "|" + c.settings.FileName, "sim|");
  c.Read(whole.substr(0, whole.find("W2")));
  EXPECT_EQ(c.wells.Names(false), std::vector<std::string>{"W1"}) << "the one that is whole";
}

TEST(CaseData, AnyCorruptionIsSurvivedWithinTheBlocksOwnSize) {
  const std::string whole = BlockOf(4);
  for (size_t at = 0; at < whole.size(); ++at) {
    for (const uint32_t change : {0x01u, 0x80u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
      std::string corrupt = whole;
      corrupt.replace(at, 4, Word(change), 0, change > 0xFF ? 4 : 1);
      corrupt.resize(whole.size());
      if (corrupt == whole) continue;
      Case c;
      const CaseDataOutcome outcome = c.Read(corrupt);
      EXPECT_TRUE(at >= 8 || outcome == CaseDataOutcome::kFailed) << at;
      ASSERT_LE(c.wells.Items.size() * 12 + c.components.size() * 4, whole.size()) << at;
      ASSERT_LE(c.settings.FileName.capacity(), whole.size()) << at;
    }
  }
}

}  // namespace
}  // namespace gantry::test
