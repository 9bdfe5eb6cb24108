#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "client/connector_records.h"
#include "client/inflow_sweep.h"
#include "client/query_results.h"
#include "client/simulator_wells.h"
#include "client/unit_converter.h"
#include "remote/message_reader.h"
#include "remote/message_writer.h"
#include "runfactory/simulator.h"

namespace gantry::cluster {

class DriverConnection;

/// Answers a driver's routines by driving its simulator. Numbers are in the simulator's units: the
/// driver converts. What the simulator can't do is refused by its acknowledgement, with the reason
/// in the log, since the format has no place for one. One thread.
class Controller {
 public:
  using Report = std::function<void(const std::string& text)>;

  /// `simulator` stands connected at its model definition.
  Controller(Simulator& simulator, Report report);

  /// Answers requests until the driver has shut the simulator down (true) or closed its connection
  /// (false). Throws `DriverBroken`.
  bool Serve(DriverConnection& driver);
  /// The results of one request, which holds its routine's number; they stand behind the same
  /// number in the reply. Throws `DriverBroken` for what no driver sends.
  MessageWriter Answer(std::span<const std::byte> request);

 private:
  using Handler = void (Controller::*)(MessageReader& request, MessageWriter& results);
  struct Entry;
  static const Entry kEntries[];

  MessageWriter Answer(const Entry& entry, MessageReader& request);

  void Connect(MessageReader& request, MessageWriter& results);
  void GetVersion(MessageReader& request, MessageWriter& results);
  void GetMetricFlag(MessageReader& request, MessageWriter& results);
  void GetCompositionalFlag(MessageReader& request, MessageWriter& results);
  void GetTimeDays(MessageReader& request, MessageWriter& results);
  void GetDate(MessageReader& request, MessageWriter& results);
  void GetStartDate(MessageReader& request, MessageWriter& results);
  void GetEOSProperties(MessageReader& request, MessageWriter& results);
  void AdvanceNewton(MessageReader& request, MessageWriter& results);
  void RunUntil(MessageReader& request, MessageWriter& results);
  void GetTerminationFlag(MessageReader& request, MessageWriter& results);
  void Shutdown(MessageReader& request, MessageWriter& results);

  void GetWellStatus(MessageReader& request, MessageWriter& results);
  void GetWellData(MessageReader& request, MessageWriter& results);
  void GetWellDataOfOne(MessageReader& request, MessageWriter& results);
  void GetWellIPRData(MessageReader& request, MessageWriter& results);
  void GetWellIPRDataOfOne(MessageReader& request, MessageWriter& results);
  void GetWellVariables(MessageReader& request, MessageWriter& results);
  void SetWellStatus(MessageReader& request, MessageWriter& results);
  void SetWellUptime(MessageReader& request, MessageWriter& results);
  void SetWellConstraints(MessageReader& request, MessageWriter& results);
  void SetInjectionSource(MessageReader& request, MessageWriter& results);
  void SetWellInjectionComposition(MessageReader& request, MessageWriter& results);

  IntersectClientBase& Client() { return simulator_.Client(); }
  const UnitConverter& Units();
  const ConnectorWellRecord& NextOf(std::vector<ConnectorWellRecord>& records);

  Simulator& simulator_;
  Report report_;
  std::optional<UnitConverter> units_;
  /// Records that wait to be fetched one by one, and the first that hasn't been.
  std::vector<ConnectorWellRecord> data_;
  std::vector<ConnectorWellRecord> inflow_;
  WellDataWorkspace wellDataWorkspace_;
  InflowWorkspace inflowWorkspace_;
  bool withCompositions_ = false;
  size_t next_ = 0;
  bool hasShutDown_ = false;
};

}  // namespace gantry::cluster
