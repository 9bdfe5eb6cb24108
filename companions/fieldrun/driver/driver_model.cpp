#include "fieldrun/driver/driver_model.h"

#include <algorithm>

#include <fmt/format.h>

#include "fieldrun/driver/driver_model_call.h"
#include "platform/text.h"

namespace gantry::fieldrun {
namespace {

constexpr const char* kSimulationEnded = "The Intersect simulation ended";

struct NamedCommand {
  ExtCommand command;
  std::string_view name;
};

constexpr NamedCommand kCommandNames[] = {
    {EXT_ENUM_SOURCES, "EnumSources"},
    {EXT_EDIT, "Edit"},
    {EXT_GET_FLUID_MODEL, "GetFluidModel"},
    {EXT_GET_SIMULATION_DATE, "GetSimulationDate"},
    {EXT_SAVE_CASE_DATA, "SaveCaseData"},
    {EXT_LOAD_CASE_DATA, "LoadCaseData"},
    {EXT_SET_CONNECTION, "SetConnection"},
    {EXT_SET_STORE_FILE, "SetStoreFile"},
    {EXT_SET_LABEL, "SetLabel"},
    {EXT_START_SIMULATOR, "StartSimulator"},
    {EXT_START_RUN, "StartRun"},
    {EXT_TIMESTEP, "Timestep"},
    {EXT_GET_IPR, "GetIPR"},
    {EXT_SET_OP_PT, "SetOpPt"},
    {EXT_CLOSE_SIMULATOR, "CloseSimulator"},
    {EXT_SET_TIMESTEP_DATA, "SetTimestepData"},
    {EXT_GET_PROPERTY, "GetProperty"},
    {EXT_SET_PROPERTY, "SetProperty"},
    {EXT_DO_COMMAND, "DoCommand"},
    {EXT_APPLY_OPERATING_POINTS, "ApplyOperatingPoints"},
    {EXT_ENUM_PUBLISHED_VARIABLES, "EnumPublishedVariables"},
    {EXT_EDIT_PUBLISHED_VARIABLES, "EditPublishedVariables"},
    {EXT_EVAL_PUBLISHED_VARIABLES, "EvalPublishedVariables"},
    {EXT_DEL_PUBLISHED_VARIABLE, "DelPublishedVariable"},
    {EXT_GET_DESCRIPTION, "GetDescription"},
};

/// Where the texts go that the module sends while it works. The module knows the host by two plain
/// functions, so that the listener is one for the process, as the host is.
std::function<void(const std::string&)>& StatusListener() {
  static std::function<void(const std::string&)> listener;
  return listener;
}

void PassStatusOn(const char* text, void* /*model*/) {
  if (text != nullptr && StatusListener()) StatusListener()(TextOfModule(text));
}

// The log gets the same notices again; the status line has shown them.
void IgnoreLog(const char* /*text*/, void* /*model*/) {}

/// Whether the value of a property is the name of a file.
bool HoldsFileName(const std::string& path) {
  const std::string_view word = std::string_view(path).substr(path.rfind('.') + 1);
  return platform::EqualNoCase(word, "FileName") || platform::EqualNoCase(word, "SimExeName");
}

void* Mutable(const std::string& text) { return const_cast<char*>(text.c_str()); }

std::string InflowOutcome(const _tGetSetData& record) {
  const auto count =
      static_cast<size_t>(std::clamp(record.pointCount, 0, static_cast<int32_t>(kMaxInflowPoints)));
  const std::span<const double> current(&record.currentPressure, 4);
  return TraceText()
      .Add("isShut", int32_t{record.isShut})
      .Add("pressure", std::span(record.pressure, count))
      .Add("oil", std::span(record.oilRate, count))
      .Add("water", std::span(record.waterRate, count))
      .Add("gas", std::span(record.gasRate, count))
      .Add("mass", std::span(record.massRate, count))
      .Add("gravities", std::span(&record.oilGravity, 3))
      .Add("current", current)
      .Text();
}

std::string ControlArguments(const _tGetSetData& record) {
  const auto count = static_cast<size_t>(
      std::clamp(record.fluid.componentCount, 0, static_cast<int32_t>(kMaxComponents)));
  return TraceText()
      .Add("well", record.well)
      .Add("isShut", int32_t{record.isShut})
      .Add("shutInCode", record.shutInCode)
      .Add("pressure", record.pressure[0])
      .Add("oil", record.oilRate[0])
      .Add("water", record.waterRate[0])
      .Add("gas", record.gasRate[0])
      .Add("pointValue", record.pointValue[0])
      .Add("gravities", std::span(&record.oilGravity, 3))
      .Add("passThrough", std::span(record.passThrough, 3))
      .Add("downFraction", record.downFraction)
      .Add("composition", std::span(record.moleFractions[0], count))
      .Text();
}

}  // namespace

std::string_view CommandName(uint32_t command) {
  const auto* found =
      std::find_if(std::begin(kCommandNames), std::end(kCommandNames),
                   [&](const NamedCommand& named) { return named.command == command; });
  return found == std::end(kCommandNames) ? std::string_view() : found->name;
}

DriverIdentity Identify(const ModuleApi& api, CallTrace* trace) {
  ExtIdentifyRecord record{};
  ExtErrorBlock error{};
  if (trace != nullptr) trace->Begin("ExtIdentify", "");
  const int32_t result = api.ExtIdentify(&record, &error);
  DriverIdentity identity{FieldText(record.name), FieldText(record.description),
                          record.interfaceNumber, record.moduleKind};
  if (trace != nullptr) {
    trace->End(result, TraceText()
                           .Add("name", identity.name)
                           .Add("description", identity.description)
                           .Add("interface", identity.interfaceNumber)
                           .Text());
  }
  if (result != 0) throw DriverFailure(FieldText(error.text));
  return identity;
}

std::vector<DriverUnit> Units(const ModuleApi& api, CallTrace* trace) {
  constexpr int32_t kMostRows = 10000;  // a module that never ends its table ends here
  std::vector<DriverUnit> units;
  for (int32_t row = 0; row < kMostRows; ++row) {
    ExtUnitRecord record{};
    if (trace != nullptr) trace->Begin("ExtCreateUnit", TraceText().Add("index", row).Text());
    const int32_t result = api.ExtCreateUnit(row, &record);
    const DriverUnit unit{FieldText(record.name), record.code, record.unitClass};
    if (trace != nullptr) trace->End(result, TraceText().Add("name", unit.name).Text());
    if (result == 0) break;
    units.push_back(unit);
  }
  return units;
}

DriverModel::DriverModel(const ModuleApi& api, CallTrace* trace)
    : api_(api), trace_(trace), record_(std::make_unique<_tGetSetData>()) {
  if (trace_ != nullptr) trace_->Begin("ExtCreateInstance", "");
  const int32_t result = api_.ExtCreateInstance(&model_, &error_);
  if (trace_ != nullptr) trace_->End(result, "");
  if (model_ == nullptr) Fail("make a model");
}

DriverModel::~DriverModel() {
  if (trace_ != nullptr) trace_->Begin("ExtDestroyInstance", "");
  const int32_t result = api_.ExtDestroyInstance(model_, &error_);
  if (trace_ != nullptr) trace_->End(result, "");
  StatusListener() = nullptr;
}

// An exception that the module lets out is its failure, not the host's end.
int32_t DriverModel::CallGuarded(ExtCommand command, void* data, uint32_t value) {
  try {
    return api_.ExtCmd(model_, window_, command, data, value, &error_);
  } catch (const std::exception& error) {
    const std::string text =
        fmt::format("The module failed in {}: {}", CommandName(command), error.what());
    if (trace_ != nullptr) trace_->End(-1, text);
    throw DriverFailure(text);
  }
}

int32_t DriverModel::Call(ExtCommand command, void* data, uint32_t value) {
  return Call(command, data, value, [] { return std::string(); });
}

void DriverModel::Fail(const std::string& what) const {
  const std::string text = FieldText(error_.text);
  throw DriverFailure(text.empty() ? "The module couldn't " + what : text);
}

void DriverModel::SetLabel(const std::string& label) {
  const std::string text = platform::Utf8ToCodePage(label);
  Call(EXT_SET_LABEL, Mutable(text), 0, [&] { return Quoted(label); });
}

void DriverModel::SetStoreFile(const std::string& path, bool load) {
  const int32_t result =
      Call(EXT_SET_STORE_FILE, Mutable(path), load ? 1 : 0, [&] { return Quoted(path); });
  if (result != 0) Fail("take the store file " + path);
}

std::string DriverModel::Get(const std::string& path) {
  const std::string modulePath = NameForModule(path);
  GetPropertyRequest request{};
  request.path = modulePath.c_str();
  const int32_t result = Call(
      EXT_GET_PROPERTY, &request, 0, [&] { return Quoted(path); },
      [&] { return Quoted(FieldText(request.value)); });
  if (result != 0) Fail("answer " + path);
  return FieldText(request.value);
}

void DriverModel::Set(const std::string& path, const std::string& value) {
  const std::string modulePath = NameForModule(path);
  const std::string moduleValue = HoldsFileName(path) ? value : NameForModule(value);
  SetPropertyRequest request{};
  request.path = modulePath.c_str();
  request.value = moduleValue.c_str();
  const int32_t result = Call(EXT_SET_PROPERTY, &request, 0, [&] {
    return TraceText().Add(path, std::string_view(value)).Text();
  });
  if (result != 0) Fail(fmt::format("set {} to {}", path, value));
}

void DriverModel::Do(const std::string& command) {
  const int32_t result = Call(EXT_DO_COMMAND, Mutable(command), 0, [&] { return Quoted(command); });
  if (result != 0) Fail("do " + command);
}

void DriverModel::StartSimulator() {
  SimulatorStartRecord record{};
  record.runMode = 1;
  const int32_t result = Call(EXT_START_SIMULATOR, &record, 0,
                              [] { return TraceText().Add("runMode", int32_t{1}).Text(); });
  if (result != 0) Fail("start the simulator");
}

std::vector<DriverWell> DriverModel::Wells() {
  std::vector<DriverWell> wells;
  EnumSourcesRow row{};
  row.index = -1;
  while (true) {
    const int32_t last = row.index;
    const int32_t result = Call(
        EXT_ENUM_SOURCES, &row, 0, [&] { return TraceText().Add("index", last).Text(); },
        [&] {
          return TraceText()
              .Add("index", row.index)
              .Add("name", FieldText(row.name))
              .Add("kind", row.kind)
              .Text();
        });
    if (result != 0) return wells;
    if (row.index != last + 1) Fail("list its wells in order");
    wells.push_back({FieldText(row.name), row.kind == EXT_PRODUCER});
  }
}

std::optional<Date> DriverModel::SimulationDate() {
  DateRecord record{};
  const int32_t result = Call(
      EXT_GET_SIMULATION_DATE, &record, 0, [] { return std::string(); },
      [&] {
        return TraceText()
            .Add("day", record.day)
            .Add("month", record.month)
            .Add("year", record.year)
            .Text();
      });
  const Date date{record.year, record.month, record.day};
  if (result != 0 || (record.flags & EXT_DATE_HAS_DAY) == 0 || !IsValid(date)) return std::nullopt;
  return date;
}

std::vector<std::string> DriverModel::ComponentNames() {
  const auto record = std::make_unique<FluidModelRecord>();
  const int32_t result = Call(
      EXT_GET_FLUID_MODEL, record.get(), 0, [] { return std::string(); },
      [&] { return TraceText().Add("components", record->componentCount).Text(); });
  std::vector<std::string> names;
  if (result != 0) return names;
  const int32_t count = std::clamp(record->componentCount, 0, static_cast<int32_t>(kMaxComponents));
  for (int32_t i = 0; i < count; ++i) names.push_back(FieldText(record->names[i]));
  return names;
}

void DriverModel::Connect(int well, bool connected) {
  SetConnectionRequest request{0, well, static_cast<uint8_t>(connected ? 1 : 0)};
  const int32_t result = Call(EXT_SET_CONNECTION, &request, 0, [&] {
    return TraceText().Add("well", well).Add("connected", int32_t{request.connected}).Text();
  });
  if (result != 0) Fail("connect a well");
}

std::string DriverModel::Description() {
  char text[1024] = {};
  Call(
      EXT_GET_DESCRIPTION, text, sizeof text - 1, [] { return std::string(); },
      [&] { return Quoted(TextOfModule(text)); });
  return TextOfModule(text);
}

void DriverModel::StartRun(const std::vector<int32_t>& connected, double startDay,
                           std::function<void(const std::string&)> onStatus) {
  StatusListener() = std::move(onStatus);
  RunStartRecord record{};
  record.connectedWells = connected.data();
  record.connectedCount = static_cast<int32_t>(connected.size());
  record.startDate = startDay;
  record.logCallback = IgnoreLog;
  record.statusCallback = PassStatusOn;
  record.runMode = 1;
  const int32_t result = Call(EXT_START_RUN, &record, 0, [&] {
    const std::vector<double> wells(connected.begin(), connected.end());
    return TraceText()
        .Add("wells", std::span<const double>(wells))
        .Add("startDate", startDay)
        .Add("runMode", int32_t{1})
        .Text();
  });
  if (result != 0) Fail("start the run");
}

void DriverModel::ReadWells() {
  if (Call(EXT_SET_TIMESTEP_DATA) != 0) Fail("read the wells");
}

DriverInflow DriverModel::Inflow(int well) {
  _tGetSetData& record = *record_;
  record.size = sizeof record;
  record.well = well;
  const int32_t result = Call(
      EXT_GET_IPR, &record, 0, [&] { return TraceText().Add("well", well).Text(); },
      [&] { return InflowOutcome(record); });
  if (result != 0) Fail("give the inflow of a well");
  DriverInflow inflow;
  const int32_t count = std::clamp(record.pointCount, 0, static_cast<int32_t>(kMaxInflowPoints));
  for (int32_t i = 0; i < count; ++i) {
    inflow.points.push_back(
        {record.pressure[i], {record.oilRate[i], record.waterRate[i], record.gasRate[i]}});
  }
  inflow.hasNone = record.isShut != 0;
  inflow.gravities = {record.oilGravity, record.gasGravity, record.waterGravity};
  inflow.pointValue = record.pointValue[0];
  std::copy(std::begin(record.passThrough), std::end(record.passThrough), inflow.passThrough);
  inflow.current = {record.currentPressure,
                    {record.currentOilRate, record.currentWaterRate, record.currentGasRate}};
  return inflow;
}

void DriverModel::SetControl(const DriverControl& control, const DriverInflow& inflow,
                             int componentCount) {
  _tGetSetData& record = *record_;
  record.well = control.well;
  record.isShut = control.isShut ? 1 : 0;
  record.shutInCode = !control.isShut         ? 0
                      : control.isShutForGood ? EXT_SHUT_IN_COMPLETIONS
                                              : EXT_SHUT_AT_SURFACE;
  record.pressure[0] = control.point.pressure;
  record.oilRate[0] = control.point.rates.oil;
  record.waterRate[0] = control.point.rates.water;
  record.gasRate[0] = control.point.rates.gas;
  record.pointValue[0] = inflow.pointValue;
  record.oilGravity = inflow.gravities.oil;
  record.gasGravity = inflow.gravities.gas;
  record.waterGravity = inflow.gravities.water;
  std::copy(std::begin(inflow.passThrough), std::end(inflow.passThrough), record.passThrough);
  record.downFraction = control.downFraction;
  record.fluid.componentCount = componentCount;
  std::fill(std::begin(record.moleFractions[0]), std::end(record.moleFractions[0]), 0.0);
  std::copy_n(control.composition.begin(), std::min(control.composition.size(), kMaxComponents),
              record.moleFractions[0]);
  const int32_t result = Call(EXT_SET_OP_PT, &record, 0, [&] { return ControlArguments(record); });
  if (result != 0) Fail("take an operating point");
}

void DriverModel::ApplyControls() {
  if (Call(EXT_APPLY_OPERATING_POINTS) != 0) Fail("send the operating points");
}

bool DriverModel::Step(double days) {
  TimestepRecord record{};
  record.stepDays = days;
  const int32_t result =
      Call(EXT_TIMESTEP, &record, 0, [&] { return TraceText().Add("days", days).Text(); });
  if (result != 0 && FieldText(error_.text) == kSimulationEnded) return false;
  if (result != 0) Fail("run the step");
  return true;
}

void DriverModel::CloseSimulator() { Call(EXT_CLOSE_SIMULATOR); }

}  // namespace gantry::fieldrun
