#include "client/local_connector.h"

#include <stdexcept>

#include "client/intersect_client.h"

namespace gantry {

namespace {

constexpr uint32_t kConnectTimeoutSeconds = 60;

void RequirePosition(const IntersectClientBase& client, AlgorithmicPosition position,
                     const char* failure) {
  if (client.position() != position) throw std::runtime_error(failure);
}

}  // namespace

IntersectClientBase& CExtConnectorLocalBase::Client() {
  if (client_ == nullptr) throw std::logic_error("There is no session with the simulator.");
  return *client_;
}

void CExtConnectorLocalBase::ConnectToSimulator() {
  client_ = &CreateClient();
  client_->connect("localhost", port_, kConnectTimeoutSeconds);
  RequirePosition(*client_, AlgorithmicPosition::MODEL_DEFINITION,
                  "Incorrect algorithmic position after connection");
}

void CExtConnectorLocalBase::Shutdown() {
  if (client_ == nullptr) return;
  try {
    client_->shutdown();
  } catch (const std::exception&) {
    // The simulator may be gone already, and the session ends all the same.
  }
  client_ = nullptr;
  DestroyClient();
}

double CExtConnectorLocalBase::GetTimeDays() { return Client().time(); }

void CExtConnectorLocalBase::GetDate(int32_t& day, int32_t& month, int32_t& year) {
  const auto& date = Client().date();
  day = date[2];
  month = date[1];
  year = date[0];
}

void CExtConnectorLocalBase::AdvanceNewton() {
  Client().continue_simulation();
  RequirePosition(Client(), AlgorithmicPosition::BEGIN_NEWTON,
                  "Incorrect algorithmic position after advancing to first timestep");
}

void CExtConnectorLocalBase::RunUntil(double days) { Client().continue_simulation_until(days); }

bool CExtConnectorLocalBase::GetTerminationFlag() {
  return Client().position() == AlgorithmicPosition::END_SIMULATE;
}

void CExtConnectorLocalBase::PollWellStatuses() {
  Client().query_wells_as_strings({"*"}, {"STATUS"});
}

void CExtConnectorLocalBase::PollWellConstraints() { Client().get_constraints_for_wells({"*"}); }

void CExtConnectorLocalBase::SetWellUptime(const Strings& wells, const Doubles& fractions) {
  if (!wells.empty()) Client().set_uptime_fractions_for_wells(wells, fractions);
}

void CExtConnectorLocalBase::SetWellStatus(const Strings& wells, const Strings& statuses) {
  if (!wells.empty()) Client().set_status_for_wells(wells, statuses, "USER");
}

}  // namespace gantry
