// The case: its block, its dataset, and the file that keeps the model's state.

#include "model/model_fixture.h"
#include "platform/files.h"

namespace gantry::test {
namespace {

class Case : public ModelTest {
 protected:
  Case() { peer.wells = {{.name = "P1"}, {.name = "G1", .type = "GAS_INJECTOR"}}; }

  /// A second model that takes the first one's place, as when the host opens its file anew.
  void Reopen() {
    ExtDestroyInstance(model, &err);
    ExtCreateInstance(&model, &err);
  }
  int32_t Save(uint32_t capacity = EXT_CASE_DATA_CAPACITY) {
    return Command(EXT_SAVE_CASE_DATA, record->block, capacity);
  }
  int32_t Load(const std::string& casePath = {}) {
    record->length = EXT_CASE_DATA_CAPACITY;
    record->casePath = casePath.c_str();
    return Command(EXT_LOAD_CASE_DATA, record.get());
  }

  std::unique_ptr<CaseDataRecord> record = std::make_unique<CaseDataRecord>();
};

TEST_F(Case, OpensWithItsWellsAndWithoutASimulator) {
  StartSimulator();
  Set("StaticWell[{G1}].OpMode", "2");
  Set("StaticWell[{P1}].Connected", "1");
  ASSERT_EQ(Outcome(Save()), "done");
  Reopen();
  ASSERT_EQ(Outcome(Load()), "done");
  EXPECT_EQ(Get("StaticWell[1].Name") + Get("StaticWell[1].SourceType"), "G12");
  EXPECT_EQ(Get("StaticWell[1].OpMode") + Get("StaticWell[0].Connected"), "20");
  EXPECT_EQ(Command(EXT_START_SIMULATOR), 0);
  EXPECT_EQ(Command(EXT_START_SIMULATOR), 0) << "and again until something clears it";
  EXPECT_EQ(Get("IsRunning"), "0");
  EXPECT_EQ(Outcome(StartRun({0})), "done");
  EXPECT_EQ(Get("IsRunning") + Get("StaticWell[1].OpMode"), "12");
  Reopen();
  Load();
  EXPECT_EQ(Outcome(Do("Intersect.StartIX()")), "done");
  EXPECT_EQ(Get("IsRunning"), "1");
}

TEST_F(Case, ThatDoesntFitOrIsBrokenIsRefused) {
  EXPECT_EQ(Outcome(Save(20)), "Failed in writing all case data - buffer overflow");
  Save();
  record->length = 30;
  EXPECT_EQ(Outcome(Command(EXT_LOAD_CASE_DATA, record.get())),
            "Failed in reading all case data - buffer overflow");
  record->block[8] = 5;
  EXPECT_EQ(Outcome(Load()), "Unable to read case data - version too new");
  EXPECT_EQ(Command(EXT_START_SIMULATOR), 1) << "a failed load leaves the next start alone";
}

TEST_F(Case, FollowsItsDatasetWhereItMoves) {
  const std::string moved = folder.Write("moved/FIELD.x.afi", "").string();
  const std::string beside = (folder / "moved" / "case.dat").string();
  char newFolder[] = "/new/place";
  SetDataFileRecord file = {};
  std::strcpy(file.path, "/old/FIELD.x.afi");
  EXPECT_EQ(Command(EXT_SET_DATA_FILE, &file), 0);
  EXPECT_EQ(Command(EXT_SET_DATA_FOLDER, newFolder), 0);
  EXPECT_EQ(Get("CaseDetails.FileName"),
            std::string("/new/place") + platform::kPathSeparator + "FIELD.x.afi");
  EXPECT_EQ(Command(EXT_SET_DATA_FILE, &file), 0);
  Save();
  record->keepDatasetPath = 1;
  Load(beside);
  EXPECT_EQ(Get("CaseDetails.FileName"), file.path);
  record->keepDatasetPath = 0;
  Load(beside);
  EXPECT_EQ(Get("CaseDetails.FileName"), moved);
  Set("CaseDetails.ConnectionMode", "2");
  EXPECT_EQ(Command(EXT_SET_DATA_FILE, &file), 0);
  EXPECT_EQ(Get("CaseDetails.FileName"), moved) << "only for a case on this machine";
}

TEST_F(Case, ListsItsDatasetWithTheWayItRuns) {
  Set("CaseDetails.FileName", "/a/FIELD.afi");
  Set("CaseDetails.ConnectionMode", "1");
  Set("CaseDetails.HeadNode", "head");
  Set("CaseDetails.Parallel", "8");
  auto row = std::make_unique<EnumDataFilesRow>();
  ASSERT_EQ(Command(EXT_ENUM_DATA_FILES, row.get()), 0);
  EXPECT_STREQ(row->path, "/a/FIELD.afi");
  EXPECT_EQ(row->isLocal, 0);
  EXPECT_STREQ(row->options, "Linux|true|Parallel|8|HeadNode|head|HeadNodePort|7777");
}

}  // namespace
}  // namespace gantry::test
