// What a simulator may answer. The input's first byte picks the operation, the rest is all that the
// peer ever says. Every outcome but a standard exception or a result is a fault.
// Reads: src/client/intersect_client.cpp src/client/intersect_client_queries.cpp
// Reads: src/client/simulator_wells.cpp src/client/simulator_model.cpp src/client/inflow_sweep.cpp
// Reads: src/client/message_stream.cpp
// Beyond: position_name ::continue_simulation ::shutdown( ::SendRunControl( ConnectToModel
// Beyond: AdvanceToFirstTimestep LastDate HasEnded RequirePosition

#include "client/inflow_sweep.h"
#include "client/simulator_model.h"
#include "client/simulator_wells.h"
#include "client/unit_converter.h"
#include "client/v2017_2/intersect_client.h"
#include "support/memory_connection.h"
#include "target.h"

using namespace gantry::fuzz;

namespace {

using gantry::Strings;
using Client = gantry::v2017_2::IntersectClient;

const Strings kWells = {"P1", "P2"};

void Sweep(Client& client) {
  std::vector<gantry::ConnectorWellRecord> records(kWells.size());
  for (size_t i = 0; i < kWells.size(); ++i) records[i].name = kWells[i];
  gantry::InflowWorkspace workspace;
  gantry::MeasureInflow(client, gantry::UnitConverter(false), kWells, {.componentCount = 1},
                        workspace, records);
}

void ReadWells(Client& client) {
  std::vector<gantry::ConnectorWellRecord> records;
  gantry::WellDataWorkspace workspace;
  gantry::QueryWellData(client, kWells, workspace, 0, records);
}

void ReadStartDate(Client& client) {
  int32_t day = 0, month = 0, year = 0;
  gantry::QueryStartDate(client, day, month, year);
}

constexpr std::array<void (*)(Client&), 15> kOperations = {
    [](Client& client) { client.connect("", 0, 0); },
    [](Client& client) { client.receive_position(); },
    Sweep,
    ReadWells,
    ReadStartDate,
    [](Client& client) { gantry::QueryWellStatuses(client); },
    [](Client& client) {
      gantry::QueryWellVariables(client, "P1", {"A", "B"});
    },
    [](Client& client) { gantry::QueryVersion(client); },
    [](Client& client) { gantry::QueryMetricFlag(client); },
    [](Client& client) { gantry::QueryCompositionalFlag(client); },
    [](Client& client) { gantry::QueryEOSProperties(client); },
    [](Client& client) { client.get_constraints_for_wells(kWells); },
    [](Client& client) { client.get_ipr_data_for_wells(kWells, kWells, 3, 1.0); },
    [](Client& client) { client.get_fm_fluid_model(); },
    [](Client& client) { client.create_fluid_source_external("P1", "S", "GAS"); },
};

}  // namespace

FUZZ_TARGET(client_reply) {
  const auto operation = kOperations[TakeByte(input) % kOperations.size()];
  Client client(std::make_unique<gantry::test::MemoryConnection>(std::string(input)));
  MayRefuse<std::exception>([&] { operation(client); });
}
