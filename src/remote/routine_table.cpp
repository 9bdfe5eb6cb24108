#include "remote/routine_table.h"

#include <algorithm>
#include <array>

namespace gantry {

namespace {

constexpr std::array<RoutineEntry, 23> kRoutines = {{
    {Routine::kConnectToSimulator, "ConnectToSimulator", "IX_CONNECTTOSIM", false},
    {Routine::kGetDate, "GetDate", "IX_GETDATE"},
    {Routine::kGetMetricFlag, "GetMetricFlag", "IX_GETMETRICFLAG"},
    {Routine::kGetTimeDays, "GetTimeDays", "IX_GETTIMEDAYS"},
    {Routine::kGetCompositionalFlag, "GetCompositionalFlag", "IX_GETCOMPFLAG"},
    {Routine::kGetWellStatus, "GetWellStatus", "IX_GETWELLSTATUS"},
    {Routine::kAdvanceNewton, "AdvanceNewton", "IX_NEWTON"},
    {Routine::kRunUntil, "RunUntil", "IX_RUNUNTIL"},
    {Routine::kGetTerminationFlag, "GetTerminationFlag", "IX_GETTERMFLAG"},
    {Routine::kGetWellData, "GetWellData", "IX_GETWELLDATA"},
    {Routine::kGetWellDataOfOne, "GetWellData", "IX_GETWELLDATA_SUB"},
    {Routine::kSetWellStatus, "SetWellStatus", "IX_SETWELLSTATUS"},
    {Routine::kSetWellUptime, "SetWellUptime", "IX_SETWELLUPTIME"},
    {Routine::kSetWellConstraints, "SetWellConstraints", "IX_SETWELLCON"},
    {Routine::kGetEOSProperties, "GetEOSProperties", "IX_GETEOSPROPS"},
    {Routine::kGetWellVariables, "GetWellVariables", "IX_GETWELLVAR"},
    {Routine::kGetWellIPRData, "GetWellIPRData", "IX_GETWELLIPRDATA"},
    {Routine::kGetWellIPRDataOfOne, "GetWellIPRData", "IX_GETWELLIPRDATA_SUB"},
    {Routine::kGetVersion, "GetVersion", "IX_GETVERSION"},
    {Routine::kSetInjectionSource, "SetInjectionSource", "IX_SETINJSRC"},
    {Routine::kSetWellInjectionComposition, "SetWellInjectionComposition", "IX_SETINJCOMP"},
    {Routine::kGetStartDate, "GetStartDate", "IX_GETSTDATE"},
    {Routine::kShutdown, "Shutdown", "IX_SHUTDOWN"},
}};

const RoutineEntry& EntryOf(Routine routine) {
  return *FindRoutine(static_cast<uint32_t>(routine));
}

}  // namespace

std::span<const RoutineEntry> RoutineTable() { return kRoutines; }

const RoutineEntry* FindRoutine(uint32_t number) {
  const auto* found = std::find_if(
      kRoutines.begin(), kRoutines.end(),
      [number](const RoutineEntry& entry) { return entry.number == static_cast<Routine>(number); });
  return found == kRoutines.end() ? nullptr : found;
}

std::string CommunicationError(Routine routine) {
  return std::string("Communication error with remote Intersect controller (Routine: ") +
         EntryOf(routine).name + "). Check the log files under the case directory.";
}

std::string AcknowledgementError(Routine routine) {
  const std::string text = "Unexpected acknowledgement from Intersect controller";
  const RoutineEntry& entry = EntryOf(routine);
  return entry.namedInRefusal ? text + " (Routine: " + entry.name + ")." : text;
}

}  // namespace gantry
