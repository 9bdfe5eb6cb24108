#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace gantry {

/// The routines of the remote controller by their numbers on the wire.
enum class Routine : uint32_t {
#define ROUTINE(Name, Number, WireName) k##Name = (Number),
#include "remote/routines.inc"
};

/// One routine: its number, and its name on the wire and in messages.
struct RoutineEntry {
  Routine number{};
  const char* name = nullptr;
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
