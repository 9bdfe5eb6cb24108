#include "fieldrun/driver/driver_model.h"

#include <algorithm>

#include <fmt/format.h>

#include "fieldrun/driver/command_trace.h"
#include "fieldrun/driver/module_text.h"
#include "platform/text.h"
#include "text/failure_text.h"

namespace gantry::fieldrun {
namespace {

constexpr const char* kSimulationEnded = "The Intersect simulation ended";

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

}  // namespace

DriverIdentity Identify(const ModuleApi& api, CallTrace* trace) {
  ExtIdentifyRecord record{};
  ExtErrorBlock error{};
  DriverIdentity identity;
  const int32_t result = Traced(trace, "ExtIdentify", "", [&](std::string& outcome) {
    const int32_t code = api.ExtIdentify(&record, &error);
    identity = {FieldText(record.name), FieldText(record.description), record.interfaceNumber,
                record.moduleKind};
    outcome = TraceFields("name", identity.name, "description", identity.description, "interface",
                          identity.interfaceNumber);
    return code;
  });
  if (result != 0) throw DriverFailure(FieldText(error.text));
  return identity;
}

std::vector<DriverUnit> Units(const ModuleApi& api, CallTrace* trace) {
  constexpr int32_t kMostRows = 10000;  // a module that never ends its table ends here
  std::vector<DriverUnit> units;
  for (int32_t row = 0; row < kMostRows; ++row) {
    ExtUnitRecord record{};
    const std::string index = TraceFields("index", row);
    const int32_t result = Traced(trace, "ExtCreateUnit", index, [&](std::string& outcome) {
      const int32_t code = api.ExtCreateUnit(row, &record);
      outcome = TraceFields("name", FieldText(record.name));
      return code;
    });
    if (result == 0) break;
    units.push_back({FieldText(record.name), record.code, record.unitClass});
  }
  return units;
}

DriverModel::DriverModel(const ModuleApi& api, CallTrace* trace)
    : api_(api), trace_(trace), record_(std::make_unique<_tGetSetData>()) {
  Traced(trace_, "ExtCreateInstance", "",
         [&](std::string&) { return api_.ExtCreateInstance(&model_, &error_); });
  if (model_ == nullptr) Fail("make a model");
}

DriverModel::~DriverModel() {
  Traced(trace_, "ExtDestroyInstance", "",
         [&](std::string&) { return api_.ExtDestroyInstance(model_, &error_); });
  StatusListener() = nullptr;
}

// An exception that the module lets out is its failure, not the host's end.
int32_t DriverModel::CallGuarded(ExtCommand command, void* data, uint32_t value) {
  try {
    return api_.ExtCmd(model_, window_, command, data, value, &error_);
  } catch (const std::exception& error) {
    const std::string text =
        fmt::format("The module failed in {}: {}", CommandName(command), FailureText(error));
    if (trace_ != nullptr) trace_->End(-1, text);
    throw DriverFailure(text);
  }
}

int32_t DriverModel::Call(ExtCommand command, void* data, uint32_t value) {
  if (trace_ == nullptr) return CallGuarded(command, data, value);
  const std::string arguments =
      fmt::format("{} {}, value={}, data={{{}}}", uint32_t{command}, CommandName(command), value,
                  ArgumentsOf(command, data));
  return Traced(trace_, "ExtCmd", arguments, [&](std::string& outcome) {
    const int32_t result = CallGuarded(command, data, value);
    const std::string text = FieldText(error_.text);
    outcome = text.empty() ? OutcomeOf(command, data) : Quoted(text);
    return result;
  });
}

void DriverModel::Require(std::string_view what, ExtCommand command, void* data, uint32_t value) {
  if (Call(command, data, value) != 0) Fail(what);
}

void DriverModel::Fail(std::string_view what) const {
  const std::string text = FieldText(error_.text);
  throw DriverFailure(text.empty() ? fmt::format("The module couldn't {}", what) : text);
}

void DriverModel::SetLabel(const std::string& label) {
  const std::string text = platform::Utf8ToCodePage(label);
  Call(EXT_SET_LABEL, Mutable(text));
}

void DriverModel::SetStoreFile(const std::string& path, bool load) {
  Require("take the store file " + path, EXT_SET_STORE_FILE, Mutable(path), load ? 1 : 0);
}

std::string DriverModel::Get(const std::string& path) {
  const std::string modulePath = NameForModule(path);
  GetPropertyRequest request{};
  request.path = modulePath.c_str();
  Require("answer " + path, EXT_GET_PROPERTY, &request);
  return FieldText(request.value);
}

void DriverModel::Set(const std::string& path, const std::string& value) {
  const std::string modulePath = NameForModule(path);
  const std::string moduleValue = HoldsFileName(path) ? value : NameForModule(value);
  SetPropertyRequest request{};
  request.path = modulePath.c_str();
  request.value = moduleValue.c_str();
  Require(fmt::format("set {} to {}", path, value), EXT_SET_PROPERTY, &request);
}

void DriverModel::Do(const std::string& command) {
  Require("do " + command, EXT_DO_COMMAND, Mutable(command));
}

void DriverModel::StartSimulator() {
  SimulatorStartRecord record{};
  record.runMode = 1;
  Require("start the simulator", EXT_START_SIMULATOR, &record);
}

std::vector<DriverWell> DriverModel::Wells() {
  std::vector<DriverWell> wells;
  EnumSourcesRow row{};
  row.index = -1;
  while (true) {
    const int32_t last = row.index;
    const int32_t result = Call(EXT_ENUM_SOURCES, &row);
    if (result != 0) return wells;
    if (row.index != last + 1) Fail("list its wells in order");
    wells.push_back({FieldText(row.name), row.kind == EXT_PRODUCER});
  }
}

std::optional<Date> DriverModel::SimulationDate() {
  DateRecord record{};
  const int32_t result = Call(EXT_GET_SIMULATION_DATE, &record);
  const Date date{record.year, record.month, record.day};
  if (result != 0 || (record.flags & EXT_DATE_HAS_DAY) == 0 || !IsValid(date)) return std::nullopt;
  return date;
}

std::vector<std::string> DriverModel::ComponentNames() {
  const auto record = std::make_unique<FluidModelRecord>();
  const int32_t result = Call(EXT_GET_FLUID_MODEL, record.get());
  std::vector<std::string> names;
  if (result != 0) return names;
  const int32_t count = std::clamp(record->componentCount, 0, static_cast<int32_t>(kMaxComponents));
  for (int32_t i = 0; i < count; ++i) names.push_back(FieldText(record->names[i]));
  return names;
}

void DriverModel::Connect(int well, bool connected) {
  SetConnectionRequest request{0, well, static_cast<uint8_t>(connected ? 1 : 0)};
  Require("connect a well", EXT_SET_CONNECTION, &request);
}

std::string DriverModel::Description() {
  char text[1024] = {};
  Call(EXT_GET_DESCRIPTION, text, sizeof text - 1);
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
  Require("start the run", EXT_START_RUN, &record);
}

void DriverModel::ReadWells() { Require("read the wells", EXT_SET_TIMESTEP_DATA); }

DriverInflow DriverModel::Inflow(int well) {
  _tGetSetData& record = *record_;
  record.size = sizeof record;
  record.well = well;
  Require("give the inflow of a well", EXT_GET_IPR, &record);
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
  Require("take an operating point", EXT_SET_OP_PT, &record);
}

void DriverModel::ApplyControls() {
  Require("send the operating points", EXT_APPLY_OPERATING_POINTS);
}

bool DriverModel::Step(double days) {
  TimestepRecord record{};
  record.stepDays = days;
  const int32_t result = Call(EXT_TIMESTEP, &record);
  if (result != 0 && FieldText(error_.text) == kSimulationEnded) return false;
  if (result != 0) Fail("run the step");
  return true;
}

void DriverModel::CloseSimulator() { Call(EXT_CLOSE_SIMULATOR); }

}  // namespace gantry::fieldrun
