// Several sessions of one module, and a stop that comes from a second thread.

#include <thread>

#include <gtest/gtest.h>

#include "boundary/error_text.h"
#include "integration/real_run.h"

namespace gantry::test {
namespace {

using fieldrun::DriverFailure;
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
  try {
    third->StartSimulator();
    FAIL() << "there was no port left";
  } catch (const DriverFailure& failure) {
    EXPECT_STREQ(failure.what(),
                 "Could not start the simulator process: <Tessel has run out of network ports to "
                 "use for the connection to Intersect. Check Intersect configuration settings.>");
  }
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
  const auto deck = run.Deck(kExample, 1e7);
  SetDataFileRecord file{};
  CopyBounded(file.path, deck.string());
  ASSERT_EQ(host.module->ExtCmd(model, nullptr, EXT_SET_DATA_FILE, &file, 0, &error), 0);
  ASSERT_EQ(host.module->ExtCmd(model, nullptr, EXT_START_SIMULATOR, nullptr, 0, &error), 0)
      << error.text;

  RunStartRecord start{};
  start.startDate = kDeckStart + kDaysAhead;
  start.logCallback = [](const char*, void*) {};
  start.statusCallback = StoppingHost::OnStatus;
  EXPECT_EQ(host.module->ExtCmd(model, nullptr, EXT_START_RUN, &start, 0, &error), 0) << error.text;
  host.stopper.join();
  EXPECT_EQ(host.stopResult, 0);

  GetPropertyRequest days{};
  days.path = "Intersect.CurrentElapsedDays";
  ASSERT_EQ(host.module->ExtCmd(model, nullptr, EXT_GET_PROPERTY, &days, 0, &error), 0);
  EXPECT_GT(std::stod(days.value), 0.0);
  EXPECT_LT(std::stod(days.value), kDaysAhead) << "the stop came to nothing";
  EXPECT_EQ(host.module->ExtCmd(model, nullptr, EXT_START_SIMULATOR, nullptr, 0, &error), 0)
      << "after the stop: " << error.text;
  EXPECT_EQ(host.module->ExtDestroyInstance(model, &error), 0);
}

}  // namespace
}  // namespace gantry::test
