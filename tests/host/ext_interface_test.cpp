#include "boundary/ext_interface.h"

#include <cstring>

#include <gtest/gtest.h>

#include "boundary/error_text.h"
#include "host/command_table.h"

namespace gantry {
namespace {

/// A driver that implements what it must and nothing more.
class BareDriver : public CExtInterface {
 public:
  int32_t Edit(void*, uint32_t*, ExtErrorBlock*) override { return 0; }
  int32_t QueryByIndex(uint32_t, ExtErrorBlock*) override { return 0; }
  int32_t Reserved3() override { return 0; }
  int32_t EnumSources(EnumSourcesRow*, uint32_t, ExtErrorBlock*) override { return 0; }
  int32_t GetFluidModel(FluidModelRecord*, ExtErrorBlock*) override { return 0; }
  int32_t StartRun(const RunStartRecord*, ExtErrorBlock*) override { return 0; }
  int32_t Timestep(const TimestepRecord*, ExtErrorBlock*) override { return 0; }
  int32_t NotifySixty(ExtErrorBlock*) override { return 0; }
  int32_t GetIPR(_tGetSetData*, ExtErrorBlock*) override { return 0; }
  int32_t Reserved11() override { return 0; }
  int32_t Reserved12() override { return 0; }
  int32_t SetOpPt(const _tGetSetData*, ExtErrorBlock*) override { return 0; }
  int32_t Reserved14() override { return 0; }
  int32_t StopSimulator(ExtErrorBlock*) override { return 0; }
  int32_t CloseSimulator() override { return 0; }
  int32_t SaveCaseData(char*, uint32_t, ExtErrorBlock*) override { return 0; }
  int32_t LoadCaseData(const CaseDataRecord*, ExtErrorBlock*) override { return 0; }
  int32_t SetDataFile(const SetDataFileRecord*, ExtErrorBlock*) override { return 0; }
};

TEST(BareDriver, AnswersTheOtherCommandsWithTheDefaults) {
  const std::pair<int32_t, std::vector<uint32_t>> answers[] = {
      {0, {4, 7, 10, 16, 19, 20, 21, 23, 58, 63, 100, 101, 102, 103, 104, 105, 109, 129, 130}},
      {1, {11, 62}},
      {-1, {97, 98, 99}}};
  BareDriver driver;
  char data[1024] = {};
  for (const auto& [result, commands] : answers) {
    for (const uint32_t command : commands) {
      EXPECT_EQ(RunCommand(command, &driver, {.data = data}), result) << command;
    }
  }
}

TEST(BareDriver, ClearsTheValueFieldOfAPropertyThatItDoesntOffer) {
  BareDriver driver;
  GetPropertyRequest request;
  std::memset(&request, 'x', sizeof request);
  EXPECT_EQ(driver.GetPropertyAddress(&request, nullptr), -1);
  EXPECT_EQ(std::string(request.value, 9), std::string(8, '\0') + "x");
  EXPECT_EQ(driver.GetProperty(&request, nullptr), -1);
  EXPECT_EQ(std::string(request.value, 512), std::string(512, '\0'));
  EXPECT_EQ(request.reserved[7], 'x');
}

TEST(CommandTable, MakesABooleanOfTheValueWhereACommandTakesOne) {
  struct Listener : BareDriver {
    int32_t SetStoreFile(const char*, bool load, ExtErrorBlock*) override { return load ? 7 : 6; }
  } listener;
  char path[] = "x";
  for (const auto& [value, answer] : {std::pair{0u, 6}, {1u, 7}, {0x80000000u, 7}}) {
    EXPECT_EQ(RunCommand(20, &listener, {.data = path, .value = value}), answer);
  }
}

TEST(ErrorText, TakesATextOfAnyLengthAndIsCutToItsField) {
  const std::string name(5000, 'n');
  EXPECT_EQ(FormatText("<%s> %d", name.c_str(), 7), "<" + name + "> 7");
  ExtErrorBlock err;
  std::memset(&err, 'x', sizeof err);
  SetErrorText(&err, name);
  EXPECT_EQ(std::strlen(err.text), 259u);
  EXPECT_EQ(err.reserved, 0x78787878u);
  SetErrorText(nullptr, "lost");
  ClearErrorBlock(nullptr);
  CopyBounded({}, name);
}

}  // namespace
}  // namespace gantry
