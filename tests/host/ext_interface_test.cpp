#include "host/boundary/ext_interface.h"

#include <cstring>

#include <gtest/gtest.h>

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
  struct Answer {
    uint32_t command;
    int32_t result;
  };
  constexpr Answer kAnswers[] = {{4, 0},   {7, 0},   {10, 0},  {11, 1},  {16, 0},  {19, 0},
                                 {20, 0},  {21, 0},  {23, 0},  {58, 0},  {62, 1},  {63, 0},
                                 {97, -1}, {98, -1}, {99, -1}, {100, 0}, {101, 0}, {102, 0},
                                 {103, 0}, {104, 0}, {105, 0}, {109, 0}, {129, 0}, {130, 0}};
  BareDriver driver;
  char data[1024] = {};
  for (const Answer& answer : kAnswers) {
    EXPECT_EQ(RunCommand(answer.command, &driver, {.data = data}), answer.result) << answer.command;
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

}  // namespace
}  // namespace gantry
