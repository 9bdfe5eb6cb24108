#include <algorithm>
#include <cmath>
#include <thread>

#include <gtest/gtest.h>

#include "client/connector_base.h"
#include "client/tcp_connection.h"
#include "sample_deck.h"
#include "simulator_side/controller_session.h"
#include "tanksim/tank_simulator.h"

namespace gantry::simulator::test {
namespace {

/// What a host learns of the sample deck after 200 days, in the host's units.
std::vector<ConnectorWellRecord> Measure(bool isMetric) {
  TankSimulator simulator(SampleDeck(isMetric));
  TcpListener listener(0);
  std::thread session([&] { ControllerSession(simulator, *listener.Accept(20)).Run(); });
  const auto connector = CreateLocalConnector(kMostRecentVersion, listener.Port());
  connector->AdvanceNewton();
  connector->RunUntil(200);
  std::vector<ConnectorWellRecord> records;
  connector->GetWellDataAndIPR(0, {"P", "W", "G"}, records, true, 2.5);
  connector->Shutdown();
  session.join();
  return records;
}

TEST(Sweep, GivesTheSameInBothUnitSystems) {
  const auto field = Measure(false);
  const auto metric = Measure(true);
  ASSERT_EQ(field.size(), 3U);
  ASSERT_EQ(metric.size(), 3U);
  for (size_t i = 0; i < field.size(); ++i) {
    SCOPED_TRACE(field[i].name);
    ASSERT_EQ(field[i].iprPressure.size(), 10U);
    for (const auto curve :
         {&ConnectorWellRecord::iprPressure, &ConnectorWellRecord::iprOilRate,
          &ConnectorWellRecord::iprGasRate, &ConnectorWellRecord::iprWaterRate,
          &ConnectorWellRecord::iprTemperature, &ConnectorWellRecord::iprOilDensity,
          &ConnectorWellRecord::iprGasDensity}) {
      const auto isNear = [](double a, double b) {
        return std::abs(a - b) <= 1e-6 * (1.0 + std::abs(a));
      };
      EXPECT_TRUE(std::ranges::equal(field[i].*curve, metric[i].*curve, isNear));
    }
    EXPECT_NEAR(field[i].tubingHeadPressure, metric[i].tubingHeadPressure, 1e-4);
  }
}

}  // namespace
}  // namespace gantry::simulator::test
