#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace gantry {

/// The routines of the remote controller by their numbers on the wire. Frozen:
/// docs/remote-protocol.md.
enum class Routine : uint32_t {
  kConnectToSimulator = 1,
  kGetDate = 2,
  kGetMetricFlag = 3,
  kGetTimeDays = 4,
  kGetCompositionalFlag = 5,
  kGetWellStatus = 6,
  kAdvanceNewton = 7,
  kRunUntil = 8,
  kGetTerminationFlag = 9,
  kGetWellData = 10,
  kSetWellStatus = 11,
  kSetWellUptime = 12,
  kSetWellConstraints = 13,
  kGetEOSProperties = 14,
  kGetWellVariables = 15,
  kGetWellIPRData = 16,
  kGetVersion = 17,
  kSetInjectionSource = 18,
  kSetWellInjectionComposition = 19,
  kGetStartDate = 20,
  kGetWellDataOfOne = 4096,
  kGetWellIPRDataOfOne = 4097,
  kShutdown = 65520,
};

/// One routine: the connector's operation, its name on the wire and in messages.
struct RoutineEntry {
  Routine number{};
  const char* operation = nullptr;
  const char* name = nullptr;
  bool namedInRefusal = true;  ///< whether the error for a refused acknowledgement names it
};

/// Every routine, once.
std::span<const RoutineEntry> RoutineTable();

/// The routine of that number, null when there is none.
const RoutineEntry* FindRoutine(uint32_t number);

/// The text for no reply, a refused frame, or a reply that can't be this routine's.
std::string CommunicationError(Routine routine);
/// The text for an acknowledgement other than 0.
std::string AcknowledgementError(Routine routine);

}  // namespace gantry
