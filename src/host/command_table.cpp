#include "host/command_table.h"

#include <algorithm>
#include <type_traits>

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

/// What an operation's parameter is given: the error block, the value, or else the data.
template <class Parameter>
Parameter Take(Args a) {
  if constexpr (std::is_same_v<Parameter, ExtErrorBlock*>) {
    return a.err;
  } else if constexpr (std::is_same_v<Parameter, bool>) {
    return a.value > 0;
  } else if constexpr (std::is_integral_v<Parameter>) {
    return static_cast<Parameter>(a.value);
  } else {
    return static_cast<Parameter>(a.data);
  }
}

template <auto Operation>
struct Call;
template <class... Parameters, int32_t (CExtInterface::*Operation)(Parameters...)>
struct Call<Operation> {
  static int32_t Run(Model model, Args a) { return (model->*Operation)(Take<Parameters>(a)...); }
};

/// Runs an operation with what its parameters take. None of them may be a window.
template <auto Operation>
constexpr auto kRun = Call<Operation>::Run;

int32_t SetLabel(Model model, Args a) {
  if (model != nullptr && a.data != nullptr) model->InstanceLabel = Take<const char*>(a);
  return 0;
}

// The commands by their numbers, in rising order. The host sends no others.
constexpr Command kCommands[] = {
    {EXT_ENUM_SOURCES, kModelAndData, kRun<&CExtInterface::EnumSources>},
    {EXT_QUERY_BY_INDEX, kModel, kRun<&CExtInterface::QueryByIndex>},
    {EXT_NOTIFY_FOUR, kModel, kRun<&CExtInterface::NotifyFour>},
    {EXT_EDIT, kModel,
     [](Model m, Args a) { return m->Edit(a.window, Take<uint32_t*>(a), a.err); }},
    {EXT_DRAW_ICON, kModel, [](Model m, Args a) { return m->DrawIcon(a.window, a.data); }},
    {EXT_GET_FLUID_MODEL, kModel, kRun<&CExtInterface::GetFluidModel>},
    {EXT_SET_DATA_FOLDER, kModelAndData, kRun<&CExtInterface::SetDataFolder>},
    {EXT_GET_SIMULATION_DATE, kModel, kRun<&CExtInterface::GetSimulationDate>},
    {EXT_SAVE_CASE_DATA, kModelAndData, kRun<&CExtInterface::SaveCaseData>},
    {EXT_LOAD_CASE_DATA, kModelAndData, kRun<&CExtInterface::LoadCaseData>},
    {EXT_ENUM_DATA_FILES, kModelAndData, kRun<&CExtInterface::EnumDataFiles>},
    {EXT_SET_CONNECTION, kModelAndData, kRun<&CExtInterface::SetConnection>},
    {EXT_SET_STORE_FILE, kModelAndData, kRun<&CExtInterface::SetStoreFile>},
    {EXT_SET_LABEL, kNothing, SetLabel},
    {EXT_START_SIMULATOR, kModel, kRun<&CExtInterface::StartSimulator>},
    {EXT_START_RUN, kModelAndData, kRun<&CExtInterface::StartRun>},
    {EXT_TIMESTEP, kModelAndData, kRun<&CExtInterface::Timestep>},
    {EXT_GET_IPR, kModelAndData, kRun<&CExtInterface::GetIPR>},
    {EXT_SET_OP_PT, kModelAndData, kRun<&CExtInterface::SetOpPt>},
    {EXT_STOP_SIMULATOR, kModel, kRun<&CExtInterface::StopSimulator>},
    {EXT_CLOSE_SIMULATOR, kModel, kRun<&CExtInterface::CloseSimulator>},
    {EXT_NOTIFY_FIFTY_EIGHT, kModel, kRun<&CExtInterface::NotifyFiftyEight>},
    {EXT_NOTIFY_SIXTY, kModel, kRun<&CExtInterface::NotifySixty>},
    {EXT_QUERY_CAN_RUN, kModel, kRun<&CExtInterface::QueryCanRun>},
    {EXT_SET_TIMESTEP_DATA, kModel, kRun<&CExtInterface::SetTimestepData>},
    {EXT_GET_PROPERTY, kModelAndData, kRun<&CExtInterface::GetProperty>},
    {EXT_SET_PROPERTY, kModelAndData, kRun<&CExtInterface::SetProperty>},
    {EXT_DO_COMMAND, kModelAndData, kRun<&CExtInterface::DoCommand>},
    {EXT_RESERVED_99, kNothing, [](Model, Args) { return -1; }},
    {EXT_NOTIFY_HUNDRED, kModel, kRun<&CExtInterface::NotifyHundred>},
    {EXT_APPLY_OPERATING_POINTS, kModel, kRun<&CExtInterface::ApplyOperatingPoints>},
    {EXT_GET_VARIABLE_NAMES, kModelAndData, kRun<&CExtInterface::GetVariableNames>},
    {EXT_ENUM_PUBLISHED_VARIABLES, kModelAndData, kRun<&CExtInterface::EnumPublishedVariables>},
    {EXT_EDIT_PUBLISHED_VARIABLES, kModel,
     [](Model m, Args a) { return m->EditPublishedVariables(a.window, a.err); }},
    {EXT_EVAL_PUBLISHED_VARIABLES, kModelAndData, kRun<&CExtInterface::EvalPublishedVariables>},
    {EXT_DEL_PUBLISHED_VARIABLE, kModel, kRun<&CExtInterface::DelPublishedVariable>},
    {EXT_GET_DESCRIPTION, kModelAndData, kRun<&CExtInterface::GetDescription>},
    {EXT_IMPORT_COMPOSITION, kModel,
     [](Model m, Args a) { return m->ImportComposition(a.window, a.data, a.value > 0, a.err); }},
    {EXT_SET_DATA_FILE, kModelAndData, kRun<&CExtInterface::SetDataFile>},
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
