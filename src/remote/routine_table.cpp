#include "remote/routine_table.h"

#include <algorithm>
#include <iterator>

namespace gantry {

namespace {

constexpr RoutineEntry kRoutines[] = {
#define ROUTINE(Name, Number, WireName) {Routine::k##Name, WireName},
#include "remote/routines.inc"
};

const RoutineEntry& EntryOf(Routine routine) {
  return *FindRoutine(static_cast<uint32_t>(routine));
}

}  // namespace

std::span<const RoutineEntry> RoutineTable() { return kRoutines; }

const RoutineEntry* FindRoutine(uint32_t number) {
  const auto* const found =
      std::ranges::find(kRoutines, static_cast<Routine>(number), &RoutineEntry::number);
  return found == std::end(kRoutines) ? nullptr : found;
}

std::string CommunicationError(Routine routine) {
  return std::string("Communication error with remote Intersect controller (Routine: ") +
         EntryOf(routine).name + "). Check the log files under the case directory.";
}

std::string AcknowledgementError(Routine routine) {
  const std::string text = "Unexpected acknowledgement from Intersect controller";
  if (routine == Routine::kConnectToSimulator) return text;  // which names none
  return text + " (Routine: " + EntryOf(routine).name + ").";
}

}  // namespace gantry
