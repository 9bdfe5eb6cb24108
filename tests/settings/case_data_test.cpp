#include "case/case_data.h"

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
  void AddWell(const std::string& name, int32_t type, int32_t mode) {
    wells.Items.emplace_back();
    wells.Items.back().Name = name;
    wells.Items.back().SourceType = type;
    wells.Items.back().OpMode = mode;
    wells.Items.back().Connected = true;
  }
};

/// The case of docs/case-data.md.
Case DocumentedCase() {
  Case c;
  c.settings.SimExeName = "ix";
  c.settings.FileName = "d/a.afi";
  c.settings.HeadNode = "hn";
  c.settings.Parallel = 4;
  c.settings.CloseUnconnectedWells = true;
  c.settings.StdLogging = true;
  c.AddWell("P1", 0, 3);
  c.components = {"C1"};
  return c;
}

/// Its block, as the page shows it.
const char kDocumentedBlock[] =
    "010000001ad25f3804000000"
    "02000000697807000000642f612e61666902000000686e"
    "611e0000a086010004000000"
    "010000000200000050310000000003000000"
    "01000000000100000000000000"
    "0100000002000000433101000000";

std::string FromHex(std::string_view hex) {
  std::string bytes;
  for (size_t i = 0; i < hex.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
  }
  return bytes;
}

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
  for (const int32_t version : {-5, 0, 1, 2, 3, 4}) {
    SCOPED_TRACE(version);
    Case c;
    c.settings.LinuxIXVersion = 42;
    c.settings.StdLogging = true;
    ASSERT_EQ(c.Read(BlockOf(version)), CaseDataOutcome::kDone);
    EXPECT_EQ(c.settings.SimExeName + "|" + c.settings.FileName + "|" + c.settings.HeadNode,
              "sim|case.afi|node");
    EXPECT_EQ((std::vector<int32_t>{c.settings.HeadNodePort, c.settings.Parallel,
                                    c.settings.CloseUnconnectedWells, c.settings.ConnectionMode,
                                    c.settings.IPRModel, c.settings.UpTimeMode}),
              (std::vector<int32_t>{5000, 8, 1, 1, 0, 1}));
    ASSERT_EQ(c.wells.Items.size(), 2u);
    EXPECT_EQ(c.wells.Items[1].Name, "W2");
    EXPECT_EQ(c.wells.Items[0].SourceType, 2);
    EXPECT_EQ(c.wells.Items[1].OpMode, 3);
    EXPECT_FALSE(c.wells.Items[0].Connected);
    EXPECT_EQ(c.settings.LinuxIXVersion, version >= 2 ? 20172 : 42);
    EXPECT_EQ(c.components.size(), version >= 3 ? 2u : 0u);
    EXPECT_EQ(c.settings.StdLogging, version >= 4);
  }
}

TEST(CaseData, ALaterVersionChangesNothing) {
  Case c = DocumentedCase();
  for (const int32_t version : {5, 0x7FFFFFFF}) {
    EXPECT_EQ(c.Read(BlockOf(version)), CaseDataOutcome::kTooNew);
  }
  EXPECT_EQ(c.settings.SimExeName, "ix");
  EXPECT_EQ(c.wells.Items.size(), 1u);
}

TEST(CaseData, OnlyTheLowByteOfTheLoggingFieldCounts) {
  const std::string head = BlockOf(4).substr(0, BlockOf(4).size() - 4);
  for (const auto& [word, flag] :
       {std::pair{0x100u, false}, {0xFFFFFF00u, false}, {0xFFFFFF02u, true}}) {
    Case c;
    EXPECT_EQ(c.Read(head + Word(word)), CaseDataOutcome::kDone);
    EXPECT_EQ(c.settings.StdLogging, flag) << word;
  }
}

TEST(CaseData, IsWrittenAsDocumentedAndOnlyWhereAllOfItFits) {
  Case c = DocumentedCase();
  const std::string expected = FromHex(kDocumentedBlock);
  for (size_t capacity = 0; capacity < expected.size(); ++capacity) {
    std::vector<char> block(capacity);
    EXPECT_EQ(WriteCaseData(block, c.Data()), CaseDataOutcome::kFailed) << capacity;
  }
  std::string block(expected.size(), '~');
  EXPECT_EQ(WriteCaseData(block, c.Data()), CaseDataOutcome::kDone);
  EXPECT_EQ(block, expected);
}

TEST(CaseData, EveryTruncationFailsAndKeepsWhatWasReadTillThen) {
  for (const int32_t version : {1, 2, 3, 4}) {
    const std::string whole = BlockOf(version);
    for (size_t length = 0; length < whole.size(); ++length) {
      Case c;
      ASSERT_EQ(c.Read(whole.substr(0, length)), CaseDataOutcome::kFailed) << length;
    }
  }
  Case c;
  c.Read(BlockOf(4).substr(0, 12 + 7 + 5));  // within the dataset's path
  EXPECT_EQ(c.settings.SimExeName, "sim");
  EXPECT_EQ(c.settings.FileName, "");
  c.Read(BlockOf(4).substr(0, BlockOf(4).find("W2")));
  EXPECT_EQ(c.wells.Names(false), std::vector<std::string>{"W1"}) << "the one that is whole";
}

TEST(CaseData, AnyCorruptionIsSurvivedWithinTheBlocksOwnSize) {
  const std::string whole = BlockOf(4);
  for (size_t at = 0; at < whole.size(); ++at) {
    for (const uint32_t change : {0x01u, 0x80u, 0xFFu, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
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
