#include "wells/source.h"

#include <array>
#include <exception>
#include <initializer_list>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "client/connector_base.h"
#include "client/words.h"
#include "platform/text.h"
#include "text/number_text.h"
#include "wells/static_well_data.h"

namespace gantry {

namespace {

using Words = std::pair<const char*, int32_t>;

constexpr std::array<Words, 4> kWellTypes = {{{words::kProducer, kProducer},
                                              {words::kWaterInjector, kWaterInjector},
                                              {words::kGasInjector, kGasInjector},
                                              {words::kInjector, kInjector}}};

/// The variables that can be asked for in the driver's units, by the ending below.
constexpr std::string_view kFieldUnits = "_FIELD";
constexpr std::array<Words, 9> kFieldVariables = {
    {{words::kReservoirProductionRate, kReservoirRate},
     {words::kReservoirInjectionRate, kReservoirRate},
     {"RES_VOLUME_PRODUCTION_CUML", kReservoirVolume},
     {"RES_VOLUME_INJECTION_CUML", kReservoirVolume},
     {words::kWaterProductionRate, kLiquidRate},
     {words::kOilProductionRate, kLiquidRate},
     {words::kGasProductionRate, kGasRate},
     {words::kWaterInjectionRate, kLiquidRate},
     {words::kGasInjectionRate, kGasRate}}};

/// Cuts the ending off a variable's name, and gives the unit family that it stood for.
int32_t TakeFieldUnits(std::string& variable) {
  const size_t ending = variable.find(kFieldUnits);
  if (ending == std::string::npos) return kNoUnit;
  variable.resize(ending);
  for (const auto& [name, family] : kFieldVariables) {
    if (platform::EqualNoCase(variable, name)) return family;
  }
  return kNoUnit;
}

double ReadVariable(CExtConnectorBase& connector, const std::string& well,
                    const std::string& variable, int32_t family) {
  Doubles values;
  connector.GetWellVariables(well, {variable}, {family}, values);
  if (values.empty()) throw std::runtime_error("the simulator gave no value");
  return values.front();
}

// Control rules: rates in STB/d and MMscf/d, gas-liquid ratios in standard cubic feet to the
// barrel.
constexpr double kLeastLiquidRate = 0.5;
constexpr double kGasControlledRatio = 10000.0;
constexpr double kGasWellLiquid = 1.0;
constexpr double kGasWellRatio = 20000.0;

struct Limit {
  const char* item;
  double value;
  int32_t code;
};

void Assign(WellControl control, std::initializer_list<Limit> limits) {
  control.items.resize(limits.size());
  control.values.clear();
  control.codes.clear();
  for (const Limit& limit : limits) {
    control.items[control.values.size()] = limit.item;
    control.values.push_back(limit.value);
    control.codes.push_back(limit.code);
  }
}

bool IsControlledOnLiquid(double liquid, double gas) {
  return liquid > kLeastLiquidRate && !(gas * kCubicFeetOfMillion / liquid > kGasControlledRatio);
}

void ChooseProducerControl(const IPRPoint& point, int32_t opMode, WellControl control) {
  const double liquid = point.OilRate + point.WaterRate;
  const double gas = point.GasRate;
  const bool automatic = opMode == kControlRate;
  const bool onGas = opMode == kControlGas || (automatic && !IsControlledOnLiquid(liquid, gas));
  const Limit onGasRate = {words::kGasProductionRate, gas, kGasRate};
  const Limit onLiquidRate = {words::kLiquidProductionRate, liquid, kLiquidRate};
  if (opMode == kControlCombined) return Assign(control, {onGasRate, onLiquidRate});
  Assign(control, {onGas ? onGasRate : onLiquidRate});
}

}  // namespace

int32_t ClassifyWellType(const std::string& text) {
  for (const auto& [word, type] : kWellTypes) {
    if (text == word) return type;
  }
  return kProducer;
}

std::string InjectionSourceName(const std::string& well) { return well + "_ginj"; }

bool Source::Handle(TagParser& parser, TagContext context) {
  return parser.StringProperty(Name, "Name") ||
         parser.DoubleProperty(OnTimeFraction, "OnTimeFraction") ||
         parser.DoubleProperty(Current.GasRate, "CurGasRate") ||
         parser.DoubleProperty(Current.OilRate, "CurOilRate") ||
         parser.DoubleProperty(Current.Pressure, "CurPressure") ||
         parser.DoubleProperty(Current.WaterRate, "CurWaterRate") ||
         parser.DoubleProperty(GasGravity, "GasGravity") ||
         parser.DoubleProperty(OilGravity, "OilGravity") ||
         parser.DoubleProperty(WaterGravity, "WaterGravity") || HandleVariable(parser, context);
}

bool Source::HandleVariable(TagParser& parser, TagContext context) {
  if (parser.Mode() == TagMode::kCommand) return false;
  parser.NeedsSimulator = true;
  if (context == nullptr) return false;
  const bool reading = parser.Mode() == TagMode::kRead;
  std::string variable = parser.NextWord();
  const int32_t family = TakeFieldUnits(variable);
  try {
    if (reading) {
      parser.WriteReply(ReadVariable(*context, Name, variable, family));
    } else {
      context->SetWellConstraints({Name}, {{variable}}, {{ReadDouble(parser.Value())}}, {{family}});
    }
    return true;
  } catch (const std::exception& failure) {
    const char* const doing = reading ? "Error retrieving " : "Error setting ";
    parser.ErrorText = doing + variable + ", " + failure.what();
    return false;
  }
}

bool Source::IsGasWell() const {
  double gas = 0.0;
  double liquid = 0.0;
  for (size_t i = 0; i < SimulatorIPR.Pressure.size(); ++i) {
    gas += SimulatorIPR.GasRate[i];
    liquid += SimulatorIPR.OilRate[i] + SimulatorIPR.WaterRate[i];
  }
  return liquid > kGasWellLiquid && gas * kCubicFeetOfMillion / liquid > kGasWellRatio;
}

void ChooseControl(const Source& source, int32_t opMode, WellControl control) {
  const IPRPoint& point = source.OpPoint;
  if (source.SourceType == kProducer) return ChooseProducerControl(point, opMode, control);
  if (source.SourceType == kGasInjector) {
    return Assign(control, {{words::kGasInjectionRate, point.GasRate, kGasRate}});
  }
  Assign(control, {{words::kWaterInjectionRate, point.WaterRate, kLiquidRate}});
}

}  // namespace gantry
