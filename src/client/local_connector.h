#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "client/connector_base.h"
#include "client/inflow_sweep.h"
#include "client/intersect_client.h"
#include "client/simulator_model.h"
#include "client/simulator_wells.h"

namespace gantry {

/// What both local connectors share: a connector that speaks the simulator's protocol itself, on a
/// port of this machine. Turns the model's questions into queries and setters, checks that the
/// answers fit, and converts units. The version's own class makes its client and adds what differs.
class CExtConnectorLocalBase : public CExtConnectorBase {
 public:
  explicit CExtConnectorLocalBase(uint32_t port, platform::Bystanders bystanders = {})
      : port_(port), bystanders_(std::move(bystanders)) {}

  void ConnectToSimulator() override;
  double GetMinimumSimulatorVersion() override { return 2016.2; }
  double GetMaximumSimulatorVersion() override { return 10000.0; }
  void GetWellIPRData(int32_t componentCount, const Strings& wells,
                      std::vector<ConnectorWellRecord>& records, bool useBottomHolePressure,
                      double skewness) override;
  void GetWellData(const Strings& wells, std::vector<ConnectorWellRecord>& records) override;
  void Shutdown() override;
  double GetVersion() override { return QueryVersion(Client()); }
  bool GetMetricFlag() override { return QueryMetricFlag(Client()); }
  double GetTimeDays() override { return Client().time(); }
  void GetDate(int32_t& day, int32_t& month, int32_t& year) override {
    LastDate(Client(), day, month, year);
  }
  void GetStartDate(int32_t& day, int32_t& month, int32_t& year) override {
    QueryStartDate(Client(), day, month, year);
  }
  bool GetCompositionalFlag() override { return QueryCompositionalFlag(Client()); }
  void GetEOSProperties(EOSProperties& properties) override;
  void PollWellStatuses() override;
  void GetWellStatus(std::vector<ConnectorWellStatus>& statuses) override;
  void GetWellVariables(const std::string& well, const Strings& items,
                        const std::vector<int32_t>& codes, Doubles& values) override;
  void PollWellConstraints() override { Client().get_constraints_for_wells({"*"}); }
  void SetWellUptime(const Strings& wells, const Doubles& fractions) override {
    SetUptimeOfWells(Client(), wells, fractions);
  }
  void SetWellStatus(const Strings& wells, const Strings& statuses) override {
    SetStatusOfWells(Client(), wells, statuses);
  }
  void SetWellConstraints(const Strings& wells, const std::vector<Strings>& items,
                          const std::vector<Doubles>& values,
                          const std::vector<std::vector<int32_t>>& codes) override;
  void AdvanceNewton() override { AdvanceToFirstTimestep(Client()); }
  void RunUntil(double days) override { Client().continue_simulation_until(days); }
  bool GetTerminationFlag() override { return HasEnded(Client()); }

 protected:
  /// The client of a session that stands; logic_error outside of one.
  IntersectClientBase& Client();

 private:
  /// The constraints that were sent last: most steps change their values alone.
  struct KeptConstraints {
    Strings wells;
    std::vector<Strings> items;
    EncodedConstraints message;
  };

  /// Has a message for these constraints in `constraints_`, whatever their values.
  void EncodeConstraints(const Strings& wells, const std::vector<Strings>& items);
  void RenewWellData(const Strings& wells, std::vector<ConnectorWellRecord>& records) override;
  /// The wells' data in the driver's units, from the place `begin` of the records on.
  void ReadWellData(const Strings& wells, size_t begin, std::vector<ConnectorWellRecord>& records);
  /// A client of the connector's version.
  virtual std::unique_ptr<IntersectClientBase> NewClient(
      std::unique_ptr<PeerConnection> connection) = 0;

  uint32_t port_;
  platform::Bystanders bystanders_;
  std::unique_ptr<IntersectClientBase> client_;
  WellDataWorkspace wellDataWorkspace_;
  InflowWorkspace inflowWorkspace_;
  KeptConstraints constraints_;
};

}  // namespace gantry
