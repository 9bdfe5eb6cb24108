#include "fieldrun/driver/command_trace.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "boundary/records.h"
#include "fieldrun/driver/call_trace.h"
#include "fieldrun/driver/module_text.h"

namespace gantry::fieldrun {
namespace {

template <class Record>
const Record& As(const void* data) {
  return *static_cast<const Record*>(data);
}

template <class Value, size_t N>
std::span<const Value> First(int32_t count, const Value (&values)[N]) {
  return {values, static_cast<size_t>(std::clamp(count, 0, static_cast<int32_t>(N)))};
}

std::string ShowText(const void* data) {
  return Quoted(TextOfModule(static_cast<const char*>(data)));
}

std::string ShowProperty(const void* data) {
  const auto& request = As<SetPropertyRequest>(data);
  return TraceFields(TextOfModule(request.path), TextOfModule(request.value));
}

std::string ShowCase(const void* data) {
  const auto& record = As<CaseDataRecord>(data);
  return TraceFields("length", record.length, "casePath", record.casePath, "keepDatasetPath",
                     record.keepDatasetPath);
}

std::string ShowConnection(const void* data) {
  const auto& request = As<SetConnectionRequest>(data);
  return TraceFields("well", request.well, "connected", int32_t{request.connected});
}

std::string ShowRun(const void* data) {
  const auto& record = As<RunStartRecord>(data);
  const int32_t* const first = record.connectedWells;
  const std::vector<double> wells(first, first + record.connectedCount);
  return TraceFields("wells", std::span(wells), "startDate", record.startDate, "runMode",
                     record.runMode);
}

std::string ShowSource(const void* data) {
  const auto& row = As<EnumSourcesRow>(data);
  return TraceFields("index", row.index, "name", FieldText(row.name), "kind", row.kind);
}

std::string ShowDate(const void* data) {
  const auto& record = As<DateRecord>(data);
  return TraceFields("day", record.day, "month", record.month, "year", record.year);
}

std::string ShowInflow(const void* data) {
  const auto& r = As<_tGetSetData>(data);
  return TraceFields("isShut", int32_t{r.isShut}, "pressure", First(r.pointCount, r.pressure),
                     "oil", First(r.pointCount, r.oilRate), "water",
                     First(r.pointCount, r.waterRate), "gas", First(r.pointCount, r.gasRate),
                     "mass", First(r.pointCount, r.massRate), "gravities",
                     std::span(&r.oilGravity, 3), "current", std::span(&r.currentPressure, 4));
}

std::string ShowControl(const void* data) {
  const auto& r = As<_tGetSetData>(data);
  return TraceFields("well", r.well, "isShut", int32_t{r.isShut}, "shutInCode", r.shutInCode,
                     "pressure", r.pressure[0], "oil", r.oilRate[0], "water", r.waterRate[0], "gas",
                     r.gasRate[0], "pointValue", r.pointValue[0], "gravities",
                     std::span(&r.oilGravity, 3), "passThrough", std::span(r.passThrough, 3),
                     "downFraction", r.downFraction, "composition",
                     First(r.fluid.componentCount, r.moleFractions[0]));
}

std::string ShowVariable(const void* data) {
  const auto& request = As<EvalPublishedRequest>(data);
  if (request.isWrite == 0) return TraceFields("handle", request.handle);
  return TraceFields("handle", request.handle, "value", FieldText(request.value));
}

std::string ShowVariableRead(const void* data) {
  const auto& request = As<EvalPublishedRequest>(data);
  return request.isWrite != 0 ? "" : Quoted(FieldText(request.value));
}

/// A command as the trace shows it: its name, and what of its data before and after the call.
struct CommandRow {
  uint32_t command;
  std::string_view name;
  std::string (*arguments)(const void* data) = nullptr;
  std::string (*outcome)(const void* data) = nullptr;
};

constexpr CommandRow kCommands[] = {
    {EXT_ENUM_SOURCES, "EnumSources",
     [](const void* data) { return TraceFields("index", As<EnumSourcesRow>(data).index); },
     ShowSource},
    {EXT_EDIT, "Edit"},
    {EXT_GET_FLUID_MODEL, "GetFluidModel", nullptr,
     [](const void* data) {
       return TraceFields("components", As<FluidModelRecord>(data).componentCount);
     }},
    {EXT_GET_SIMULATION_DATE, "GetSimulationDate", nullptr, ShowDate},
    {EXT_SAVE_CASE_DATA, "SaveCaseData"},
    {EXT_LOAD_CASE_DATA, "LoadCaseData", ShowCase},
    {EXT_SET_CONNECTION, "SetConnection", ShowConnection},
    {EXT_SET_STORE_FILE, "SetStoreFile", ShowText},
    {EXT_SET_LABEL, "SetLabel", ShowText},
    {EXT_START_SIMULATOR, "StartSimulator",
     [](const void* data) {
       return TraceFields("runMode", As<SimulatorStartRecord>(data).runMode);
     }},
    {EXT_START_RUN, "StartRun", ShowRun},
    {EXT_TIMESTEP, "Timestep",
     [](const void* data) { return TraceFields("days", As<TimestepRecord>(data).stepDays); }},
    {EXT_GET_IPR, "GetIPR",
     [](const void* data) { return TraceFields("well", As<_tGetSetData>(data).well); }, ShowInflow},
    {EXT_SET_OP_PT, "SetOpPt", ShowControl},
    {EXT_CLOSE_SIMULATOR, "CloseSimulator"},
    {EXT_SET_TIMESTEP_DATA, "SetTimestepData"},
    {EXT_GET_PROPERTY, "GetProperty",
     [](const void* data) { return ShowText(As<GetPropertyRequest>(data).path); },
     [](const void* data) { return Quoted(FieldText(As<GetPropertyRequest>(data).value)); }},
    {EXT_SET_PROPERTY, "SetProperty", ShowProperty},
    {EXT_DO_COMMAND, "DoCommand", ShowText},
    {EXT_APPLY_OPERATING_POINTS, "ApplyOperatingPoints"},
    {EXT_ENUM_PUBLISHED_VARIABLES, "EnumPublishedVariables",
     [](const void* data) { return TraceFields("handle", As<PublishedVariableRow>(data).handle); },
     [](const void* data) {
       return TraceFields("name", FieldText(As<PublishedVariableRow>(data).fullName));
     }},
    {EXT_EDIT_PUBLISHED_VARIABLES, "EditPublishedVariables"},
    {EXT_EVAL_PUBLISHED_VARIABLES, "EvalPublishedVariables", ShowVariable, ShowVariableRead},
    {EXT_DEL_PUBLISHED_VARIABLE, "DelPublishedVariable"},
    {EXT_GET_DESCRIPTION, "GetDescription", nullptr, ShowText},
};

/// Without a name for a command that isn't called here.
CommandRow Find(uint32_t command) {
  const auto* const found = std::ranges::find(kCommands, command, &CommandRow::command);
  return found == std::end(kCommands) ? CommandRow{command, {}} : *found;
}

}  // namespace

std::string_view CommandName(uint32_t command) { return Find(command).name; }

std::string ArgumentsOf(uint32_t command, const void* data) {
  const auto show = Find(command).arguments;
  return show == nullptr ? "" : show(data);
}

std::string OutcomeOf(uint32_t command, const void* data) {
  const auto show = Find(command).outcome;
  return show == nullptr ? "" : show(data);
}

}  // namespace gantry::fieldrun
