// Several sessions of one module, and a stop that comes from a second thread.

#include <thread>

#include <gtest/gtest.h>

#include "boundary/error_text.h"
#include "integration/real_run.h"
#include "support/raised.h"

namespace gantry::test {
namespace {

using fieldrun::DriverModel;

constexpr const char* kExample = "five_spot/FIVE_SPOT.afi";

double ElapsedDays(DriverModel& model) {
  return std::stod(model.Get("Intersect.CurrentElapsedDays"));
}

TEST(Sessions, RunBesideEachOtherOnAsManyPortsAsThereAre) {
  RealRun run("2017.2", 2);
  auto first = run.Model(run.Deck(kExample, 200.0));
  const auto second = run.Model(run.Deck(kExample, 200.0));
  const auto third = run.Model(run.Deck(kExample, 200.0));
  StartRunOfAllWells(*first);
  StartRunOfAllWells(*second);
  for (int step = 0; step < 2; ++step) {
    for (DriverModel* model : {first.get(), second.get()}) {
      model->ReadWells();
      EXPECT_EQ(model->Inflow(0).points.size(), 10u);
    }
    EXPECT_TRUE(first->Step(30.0));
    EXPECT_TRUE(second->Step(10.0));
  }
  EXPECT_EQ(ElapsedDays(*first), 60.0);
  EXPECT_EQ(ElapsedDays(*second), 20.0);
  EXPECT_EQ(
      Raised([&] { third->StartSimulator(); }),
      "exception: Could not start the simulator process: <Tessel has run out of network ports "
      "to use for the connection to Intersect. Check Intersect configuration settings.>");
  first.reset();
  third->StartSimulator();
  EXPECT_EQ(third->Wells().size(), 5u);
}

/// A host that stops a model from a second thread as soon as the run-up has begun. The host's
/// callback gets nothing but the model, so the one host stands in a static.
struct StoppingHost {
  const fieldrun::ModuleApi* module = nullptr;
  std::jthread stopper;
  int stopResult = -1;

  static StoppingHost& Instance() {
    static StoppingHost host;
    return host;
  }
  static void OnStatus(const char* /*text*/, void* model) {
    StoppingHost& host = Instance();
    host.stopper = std::jthread([&host, model] {
      ExtErrorBlock error{};
      host.stopResult =
          host.module->ExtCmd(model, nullptr, EXT_CLOSE_SIMULATOR, nullptr, 0, &error);
    });
  }
};

TEST(Sessions, EndALongRunUpWhenASecondThreadStopsThem) {
  constexpr double kDeckStart = 43831.0;  // 1 January 2020
  constexpr double kDaysAhead = 400000.0;
  RealRun run;
  StoppingHost& host = StoppingHost::Instance();
  host.module = &run.Module();
  void* model = nullptr;
  ExtErrorBlock error{};
  ASSERT_EQ(host.module->ExtCreateInstance(&model, &error), 0);
  const auto command = [&](uint32_t number, void* data = nullptr) {
    EXPECT_EQ(host.module->ExtCmd(model, nullptr, number, data, 0, &error), 0) << error.text;
  };
  SetDataFileRecord file{};
  CopyBounded(file.path, run.Deck(kExample, 1e7).string());
  command(EXT_SET_DATA_FILE, &file);
  command(EXT_START_SIMULATOR);

  RunStartRecord start{};
  start.startDate = kDeckStart + kDaysAhead;
  start.logCallback = [](const char*, void*) {};
  start.statusCallback = StoppingHost::OnStatus;
  command(EXT_START_RUN, &start);
  host.stopper.join();
  EXPECT_EQ(host.stopResult, 0);

  GetPropertyRequest days{};
  days.path = "Intersect.CurrentElapsedDays";
  command(EXT_GET_PROPERTY, &days);
  EXPECT_GT(std::stod(days.value), 0.0);
  EXPECT_LT(std::stod(days.value), kDaysAhead) << "the stop came to nothing";
  command(EXT_START_SIMULATOR);
  EXPECT_EQ(host.module->ExtDestroyInstance(model, &error), 0);
}

}  // namespace
}  // namespace gantry::test
