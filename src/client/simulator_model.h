#pragma once

#include <cstdint>
#include <string>

#include "client/connector_records.h"

namespace gantry {

class IntersectClientBase;

// What is asked of a simulator as a whole, through a client of either version: what a local
// connector and the controller of a cluster have in common. Numbers are in the simulator's units.
// Answers of the right form with the wrong content are runtime_errors.

/// Connects and requires that the simulator stands at its model definition.
void ConnectToModel(IntersectClientBase& client, const std::string& host, uint32_t port,
                    uint32_t timeoutSeconds);
/// Runs to the first Newton iteration of the first timestep.
void AdvanceToFirstTimestep(IntersectClientBase& client);

double QueryVersion(IntersectClientBase& client);
bool QueryMetricFlag(IntersectClientBase& client);
bool QueryCompositionalFlag(IntersectClientBase& client);
void QueryStartDate(IntersectClientBase& client, int32_t& day, int32_t& month, int32_t& year);
/// Day, month and year of the last position that the simulator told; nothing is sent.
void LastDate(const IntersectClientBase& client, int32_t& day, int32_t& month, int32_t& year);
/// True when the simulator has come to its end; nothing is sent.
bool HasEnded(const IntersectClientBase& client);
/// The first fluid model's properties; empty without one.
EOSProperties QueryEOSProperties(IntersectClientBase& client);

}  // namespace gantry
