#include "host/command_table.h"

#include <algorithm>

#include "boundary/error_text.h"
#include "boundary/ext_interface.h"
#include "gantry/boundary.h"

namespace gantry {
namespace {

using Model = CExtInterface*;
using Args = const CommandArguments&;

enum Needs : uint32_t { kNothing = 0, kModel = 1, kModelAndData = 3 };

struct Command {
  ExtCommand number;
  Needs needs;
  int32_t (*run)(Model model, Args arguments);
};

template <class Record>
Record* As(void* data) {
  return static_cast<Record*>(data);
}

int32_t SetLabel(Model model, Args a) {
  if (model != nullptr && a.data != nullptr) model->InstanceLabel = As<const char>(a.data);
  return 0;
}

// The commands by their numbers, in rising order. The host sends no others.
constexpr Command kCommands[] = {
    {EXT_ENUM_SOURCES, kModelAndData,
     [](Model m, Args a) { return m->EnumSources(As<EnumSourcesRow>(a.data), a.value, a.err); }},
    {EXT_QUERY_BY_INDEX, kModel, [](Model m, Args a) { return m->QueryByIndex(a.value, a.err); }},
    {EXT_NOTIFY_FOUR, kModel, [](Model m, Args a) { return m->NotifyFour(a.err); }},
    {EXT_EDIT, kModel,
     [](Model m, Args a) { return m->Edit(a.window, As<uint32_t>(a.data), a.err); }},
    {EXT_DRAW_ICON, kModel, [](Model m, Args a) { return m->DrawIcon(a.window, a.data); }},
    {EXT_GET_FLUID_MODEL, kModel,
     [](Model m, Args a) { return m->GetFluidModel(As<FluidModelRecord>(a.data), a.err); }},
    {EXT_SET_DATA_FOLDER, kModelAndData,
     [](Model m, Args a) { return m->SetDataFolder(As<const char>(a.data), a.err); }},
    {EXT_GET_SIMULATION_DATE, kModel,
     [](Model m, Args a) { return m->GetSimulationDate(As<DateRecord>(a.data), a.err); }},
    {EXT_SAVE_CASE_DATA, kModelAndData,
     [](Model m, Args a) { return m->SaveCaseData(As<char>(a.data), a.value, a.err); }},
    {EXT_LOAD_CASE_DATA, kModelAndData,
     [](Model m, Args a) { return m->LoadCaseData(As<const CaseDataRecord>(a.data), a.err); }},
    {EXT_ENUM_DATA_FILES, kModelAndData,
     [](Model m, Args a) {
       return m->EnumDataFiles(As<EnumDataFilesRow>(a.data), a.value, a.err);
     }},
    {EXT_SET_CONNECTION, kModelAndData,
     [](Model m, Args a) {
       return m->SetConnection(As<const SetConnectionRequest>(a.data), a.err);
     }},
    {EXT_SET_STORE_FILE, kModelAndData,
     [](Model m, Args a) { return m->SetStoreFile(As<const char>(a.data), a.value > 0, a.err); }},
    {EXT_SET_LABEL, kNothing, SetLabel},
    {EXT_START_SIMULATOR, kModel,
     [](Model m, Args a) {
       return m->StartSimulator(As<const SimulatorStartRecord>(a.data), a.err);
     }},
    {EXT_START_RUN, kModelAndData,
     [](Model m, Args a) { return m->StartRun(As<const RunStartRecord>(a.data), a.err); }},
    {EXT_TIMESTEP, kModelAndData,
     [](Model m, Args a) { return m->Timestep(As<const TimestepRecord>(a.data), a.err); }},
    {EXT_GET_IPR, kModelAndData,
     [](Model m, Args a) { return m->GetIPR(As<_tGetSetData>(a.data), a.err); }},
    {EXT_SET_OP_PT, kModelAndData,
     [](Model m, Args a) { return m->SetOpPt(As<const _tGetSetData>(a.data), a.err); }},
    {EXT_STOP_SIMULATOR, kModel, [](Model m, Args a) { return m->StopSimulator(a.err); }},
    {EXT_CLOSE_SIMULATOR, kModel, [](Model m, Args) { return m->CloseSimulator(); }},
    {EXT_NOTIFY_FIFTY_EIGHT, kModel,
     [](Model m, Args a) { return m->NotifyFiftyEight(a.data, a.err); }},
    {EXT_NOTIFY_SIXTY, kModel, [](Model m, Args a) { return m->NotifySixty(a.err); }},
    {EXT_QUERY_CAN_RUN, kModel, [](Model m, Args a) { return m->QueryCanRun(a.data, a.err); }},
    {EXT_SET_TIMESTEP_DATA, kModel,
     [](Model m, Args a) { return m->SetTimestepData(a.data, a.value > 0, a.err); }},
    {EXT_GET_PROPERTY, kModelAndData,
     [](Model m, Args a) { return m->GetProperty(As<GetPropertyRequest>(a.data), a.err); }},
    {EXT_SET_PROPERTY, kModelAndData,
     [](Model m, Args a) { return m->SetProperty(As<const SetPropertyRequest>(a.data), a.err); }},
    {EXT_DO_COMMAND, kModelAndData,
     [](Model m, Args a) { return m->DoCommand(As<const char>(a.data), a.err); }},
    {EXT_RESERVED_99, kNothing, [](Model, Args) { return -1; }},
    {EXT_NOTIFY_HUNDRED, kModel, [](Model m, Args a) { return m->NotifyHundred(a.err); }},
    {EXT_APPLY_OPERATING_POINTS, kModel,
     [](Model m, Args a) { return m->ApplyOperatingPoints(a.err); }},
    {EXT_GET_VARIABLE_NAMES, kModelAndData,
     [](Model m, Args a) { return m->GetVariableNames(As<VariableNamesRecord>(a.data), a.err); }},
    {EXT_ENUM_PUBLISHED_VARIABLES, kModelAndData,
     [](Model m, Args a) {
       return m->EnumPublishedVariables(As<PublishedVariableRow>(a.data), a.err);
     }},
    {EXT_EDIT_PUBLISHED_VARIABLES, kModel,
     [](Model m, Args a) { return m->EditPublishedVariables(a.window, a.err); }},
    {EXT_EVAL_PUBLISHED_VARIABLES, kModelAndData,
     [](Model m, Args a) {
       return m->EvalPublishedVariables(As<EvalPublishedRequest>(a.data), a.err);
     }},
    {EXT_DEL_PUBLISHED_VARIABLE, kModel,
     [](Model m, Args a) { return m->DelPublishedVariable(static_cast<int32_t>(a.value), a.err); }},
    {EXT_GET_DESCRIPTION, kModelAndData,
     [](Model m, Args a) { return m->GetDescription(As<char>(a.data), a.value, a.err); }},
    {EXT_IMPORT_COMPOSITION, kModel,
     [](Model m, Args a) { return m->ImportComposition(a.window, a.data, a.value > 0, a.err); }},
    {EXT_SET_DATA_FILE, kModelAndData,
     [](Model m, Args a) { return m->SetDataFile(As<const SetDataFileRecord>(a.data), a.err); }},
};
static_assert(std::ranges::is_sorted(kCommands, {}, &Command::number));

}  // namespace

int32_t RunCommand(uint32_t number, CExtInterface* model, const CommandArguments& arguments) {
  const Command* command = std::ranges::lower_bound(kCommands, number, {}, &Command::number);
  if (command == std::end(kCommands) || command->number != number) return 0;
  const char* missing = nullptr;
  if (command->needs != kNothing && model == nullptr)
    missing = "model";
  else if (command->needs == kModelAndData && arguments.data == nullptr)
    missing = "record";
  if (missing == nullptr) return command->run(model, arguments);
  SetErrorText(arguments.err, FormatText("Command %u was called without a %s", number, missing));
  return 1;
}

}  // namespace gantry
