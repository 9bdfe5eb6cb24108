#include "host/command_table.h"

#include <algorithm>

#include "boundary/error_text.h"
#include "boundary/ext_interface.h"

namespace gantry {
namespace {

using Model = CExtInterface*;
using Args = const CommandArguments&;

enum Needs : uint32_t { kNothing = 0, kModel = 1, kModelAndData = 3 };

struct Command {
  uint32_t number;
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
    {2, kModelAndData,
     [](Model m, Args a) { return m->EnumSources(As<EnumSourcesRow>(a.data), a.value, a.err); }},
    {3, kModel, [](Model m, Args a) { return m->QueryByIndex(a.value, a.err); }},
    {4, kModel, [](Model m, Args a) { return m->NotifyFour(a.err); }},
    {5, kModel, [](Model m, Args a) { return m->Edit(a.window, As<uint32_t>(a.data), a.err); }},
    {7, kModel, [](Model m, Args a) { return m->DrawIcon(a.window, a.data); }},
    {9, kModel,
     [](Model m, Args a) { return m->GetFluidModel(As<FluidModelRecord>(a.data), a.err); }},
    {10, kModelAndData,
     [](Model m, Args a) { return m->SetDataFolder(As<const char>(a.data), a.err); }},
    {11, kModel,
     [](Model m, Args a) { return m->GetSimulationDate(As<DateRecord>(a.data), a.err); }},
    {12, kModelAndData,
     [](Model m, Args a) { return m->SaveCaseData(As<char>(a.data), a.value, a.err); }},
    {13, kModelAndData,
     [](Model m, Args a) { return m->LoadCaseData(As<const CaseDataRecord>(a.data), a.err); }},
    {16, kModelAndData,
     [](Model m, Args a) {
       return m->EnumDataFiles(As<EnumDataFilesRow>(a.data), a.value, a.err);
     }},
    {19, kModelAndData,
     [](Model m, Args a) {
       return m->SetConnection(As<const SetConnectionRequest>(a.data), a.err);
     }},
    {20, kModelAndData,
     [](Model m, Args a) { return m->SetStoreFile(As<const char>(a.data), a.value > 0, a.err); }},
    {21, kNothing, SetLabel},
    {23, kModel,
     [](Model m, Args a) {
       return m->StartSimulator(As<const SimulatorStartRecord>(a.data), a.err);
     }},
    {48, kModelAndData,
     [](Model m, Args a) { return m->StartRun(As<const RunStartRecord>(a.data), a.err); }},
    {49, kModelAndData,
     [](Model m, Args a) { return m->Timestep(As<const TimestepRecord>(a.data), a.err); }},
    {50, kModelAndData, [](Model m, Args a) { return m->GetIPR(As<_tGetSetData>(a.data), a.err); }},
    {53, kModelAndData,
     [](Model m, Args a) { return m->SetOpPt(As<const _tGetSetData>(a.data), a.err); }},
    {55, kModel, [](Model m, Args a) { return m->StopSimulator(a.err); }},
    {56, kModel, [](Model m, Args) { return m->CloseSimulator(); }},
    {58, kModel, [](Model m, Args a) { return m->NotifyFiftyEight(a.data, a.err); }},
    {60, kModel, [](Model m, Args a) { return m->NotifySixty(a.err); }},
    {62, kModel, [](Model m, Args a) { return m->QueryCanRun(a.data, a.err); }},
    {63, kModel, [](Model m, Args a) { return m->SetTimestepData(a.data, a.value > 0, a.err); }},
    {96, kModelAndData,
     [](Model m, Args a) { return m->GetProperty(As<GetPropertyRequest>(a.data), a.err); }},
    {97, kModelAndData,
     [](Model m, Args a) { return m->SetProperty(As<const SetPropertyRequest>(a.data), a.err); }},
    {98, kModelAndData,
     [](Model m, Args a) { return m->DoCommand(As<const char>(a.data), a.err); }},
    {99, kNothing, [](Model, Args) { return -1; }},
    {100, kModel, [](Model m, Args a) { return m->NotifyHundred(a.err); }},
    {101, kModel, [](Model m, Args a) { return m->ApplyOperatingPoints(a.err); }},
    {102, kModelAndData,
     [](Model m, Args a) { return m->GetVariableNames(As<VariableNamesRecord>(a.data), a.err); }},
    {103, kModelAndData,
     [](Model m, Args a) {
       return m->EnumPublishedVariables(As<PublishedVariableRow>(a.data), a.err);
     }},
    {104, kModel, [](Model m, Args a) { return m->EditPublishedVariables(a.window, a.err); }},
    {105, kModelAndData,
     [](Model m, Args a) {
       return m->EvalPublishedVariables(As<EvalPublishedRequest>(a.data), a.err);
     }},
    {109, kModel,
     [](Model m, Args a) { return m->DelPublishedVariable(static_cast<int32_t>(a.value), a.err); }},
    {129, kModelAndData,
     [](Model m, Args a) { return m->GetDescription(As<char>(a.data), a.value, a.err); }},
    {130, kModel,
     [](Model m, Args a) { return m->ImportComposition(a.window, a.data, a.value > 0, a.err); }},
    {136, kModelAndData,
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
