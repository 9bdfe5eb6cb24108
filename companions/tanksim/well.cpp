#include "tanksim/well.h"

#include <algorithm>
#include <cmath>

#include "tanksim/constants.h"

namespace gantry::simulator {

namespace {

/// ln(re/rw) - 3/4 of a usual drainage area: a flow efficiency is 7 / (7 + skin) (Standing, Journal
/// of Petroleum Technology, November 1970).
constexpr double kDrainageTerm = 7.0;

/// Below this a tank doesn't hold a phase.
constexpr double kTraceSaturation = 1e-9;

double FlowEfficiency(double skin) { return kDrainageTerm / std::max(0.5, kDrainageTerm + skin); }

/// The surface volume that a well's index refers to moves at this rate for each unit of mobility.
double ReferenceMobility(const WellData& data, const Tank& tank) {
  if (data.type != WellType::kProducer) return 1.0;
  const FluidState& state = tank.State();
  const double held = data.indexIsOfGas ? state.gasVolume : state.oilVolume;
  if (held <= kTraceSaturation * state.Volume()) return 0.0;
  return data.indexIsOfGas ? tank.ReferenceGasMobility() * state.vapour.gas
                           : tank.ReferenceOilMobility() * state.liquid.oil;
}

}  // namespace

Well::Well(const WellData& data, const Tank& tank)
    : data_(&data),
      tank_(&tank),
      now_({data.status, data.uptime, {}, data.injectedComposition, {}}) {
  const double reference = ReferenceMobility(data, tank);
  conductance_ = reference > 0.0 ? data.index * FlowEfficiency(data.skin) / reference : 0.0;
  SetInjectedComposition(data.injectedComposition);
}

double Well::Temperature() const {
  return data_->type == WellType::kProducer ? tank_->Temperature() : data_->injectionTemperature;
}

void Well::SetStatus(WellStatus status) {
  if (IsAbandoned(now_.status)) return;
  now_.status = status;
  isSolved_ = false;
}

void Well::SetControllerLimits(std::vector<WellLimit> limits) {
  now_.controllerLimits = std::move(limits);
  isSolved_ = false;
}

void Well::SetInjectedComposition(std::vector<double> fractions) {
  now_.injectedComposition = std::move(fractions);
  isSolved_ = false;
  if (data_->type != WellType::kGasInjector) return;
  injectedGas_ =
      tank_->Fluid().Injected(now_.injectedComposition, tank_->Pressure(), tank_->Temperature());
}

void Well::GoTo(WellMoment moment) {
  now_ = std::move(moment);
  SetInjectedComposition(std::move(now_.injectedComposition));
}

const WellFlow& Well::Flow() const {
  if (!isSolved_) {
    flow_ = FlowAt(tank_->Pressure());
    flow_.tubingHeadPressure = TubingPressure(flow_);
    isSolved_ = true;
  }
  return flow_;
}

WellFlow Well::FlowAt(double tankPressure) const {
  if (now_.status != WellStatus::kOpen) {
    WellFlow shut;
    shut.bottomHolePressure = tankPressure;
    return shut;
  }
  if (data_->type != WellType::kProducer) {
    return InjectorFlow(tankPressure, InjectorPressure(tankPressure));
  }
  const Inflow inflow = tank_->InflowAt(tankPressure);
  const PhaseInflow index = Index();
  return ProducerFlow(inflow, index, ProducerPressure(inflow, index));
}

PhaseInflow Well::Index() const {
  const PhaseInflow& mobility = tank_->Mobility();
  return {conductance_ * mobility.liquid, conductance_ * mobility.vapour,
          conductance_ * mobility.water};
}

template <class Visit>
void Well::ForEachLimit(Visit visit) const {
  for (const WellLimit& limit : data_->limits) visit(limit);
  for (const WellLimit& limit : now_.controllerLimits) visit(limit);
}

Well::RateIndex Well::IndexOf(LimitItem item, const PhaseInflow& index) const {
  const FluidState& state = tank_->State();
  const double oil = index.liquid * state.liquid.oil + index.vapour * state.vapour.oil;
  const double gas = index.liquid * state.liquid.gas + index.vapour * state.vapour.gas;
  const double water = index.water / state.waterFormationFactor;
  switch (item) {
    case LimitItem::kOilProduction:
      return {oil, 0.0};
    case LimitItem::kGasProduction:
      return {gas, 0.0};
    case LimitItem::kWaterProduction:
      return {0.0, water};
    case LimitItem::kLiquidProduction:
      return {oil, water};
    case LimitItem::kReservoirProduction:
      return {index.liquid + index.vapour, index.water};
    default:
      return {0.0, 0.0};
  }
}

double Well::ProducerPressure(const Inflow& inflow, const PhaseInflow& index) const {
  const double tankPressure = inflow.ReservoirPressure();
  double pressure = 0.0;
  double leastHead = 0.0;
  ForEachLimit([&](const WellLimit& limit) {
    double bound = 0.0;
    switch (limit.item) {
      case LimitItem::kBottomHolePressure:
        bound = limit.value;
        break;
      case LimitItem::kTubingHeadPressure:
        leastHead = std::max(leastHead, limit.value);
        break;
      case LimitItem::kDrawdownIndexWeighted:
      case LimitItem::kDrawdownRegion:
        bound = tankPressure - limit.value;
        break;
      default: {
        const RateIndex rate = IndexOf(limit.item, index);
        if (rate.hydrocarbon + rate.water > 0.0) {
          bound = inflow.PressureFor(limit.value, rate.hydrocarbon, rate.water);
        }
      }
    }
    pressure = std::max(pressure, bound);
  });
  pressure = std::clamp(pressure, std::min(kStandardPressure, tankPressure), tankPressure);
  return leastHead > 0.0 ? LiftedPressure(pressure, leastHead, tankPressure) : pressure;
}

/// The lowest bottom-hole pressure, from `pressure` up, that leaves `least` at the tubing head.
double Well::LiftedPressure(double pressure, double least, double tankPressure) const {
  const Inflow inflow = tank_->InflowAt(tankPressure);
  const PhaseInflow index = Index();
  const auto lifts = [&](double candidate) {
    return TubingPressure(ProducerFlow(inflow, index, candidate)) >= least;
  };
  if (lifts(pressure)) return pressure;
  double low = pressure;
  double high = tankPressure;
  for (int i = 0; i < 60 && high - low > 1e-9 * high; ++i) {
    const double middle = 0.5 * (low + high);
    (lifts(middle) ? high : low) = middle;
  }
  return high;
}

WellFlow Well::ProducerFlow(const Inflow& inflow, const PhaseInflow& index, double pressure) const {
  const FluidState& state = tank_->State();
  const double hydrocarbon = inflow.HydrocarbonDrawdown(pressure);
  WellFlow flow;
  flow.bottomHolePressure = pressure;
  flow.liquid = index.liquid * hydrocarbon;
  flow.vapour = index.vapour * hydrocarbon;
  const double water = index.water * inflow.WaterDrawdown(pressure);
  flow.rates.oil = flow.liquid * state.liquid.oil + flow.vapour * state.vapour.oil;
  flow.rates.gas = flow.liquid * state.liquid.gas + flow.vapour * state.vapour.gas;
  flow.rates.water = water / state.waterFormationFactor;
  flow.rates.reservoirProduction = flow.liquid + flow.vapour + water;
  return flow;
}

double Well::InjectedVolumeFactor() const {
  return data_->type == WellType::kGasInjector ? injectedGas_.reservoirVolume
                                               : tank_->State().waterFormationFactor;
}

double Well::InjectorPressure(double tankPressure) const {
  if (conductance_ <= 0.0) return tankPressure;
  const LimitItem ownRate =
      data_->type == WellType::kGasInjector ? LimitItem::kGasInjection : LimitItem::kWaterInjection;
  double pressure = std::numeric_limits<double>::max();
  ForEachLimit([&](const WellLimit& limit) {
    double bound = pressure;
    if (limit.item == ownRate) bound = tankPressure + limit.value / conductance_;
    switch (limit.item) {
      case LimitItem::kBottomHolePressure:
        bound = limit.value;
        break;
      case LimitItem::kReservoirInjection:
        bound = tankPressure + limit.value / InjectedVolumeFactor() / conductance_;
        break;
      case LimitItem::kDrawdownIndexWeighted:
      case LimitItem::kDrawdownRegion:
        bound = tankPressure + limit.value;
        break;
      default:
        break;
    }
    pressure = std::min(pressure, bound);
  });
  return std::max(pressure, tankPressure);
}

WellFlow Well::InjectorFlow(double tankPressure, double pressure) const {
  WellFlow flow;
  flow.bottomHolePressure = pressure;
  const double rate = conductance_ * (pressure - tankPressure);
  (data_->type == WellType::kGasInjector ? flow.rates.injectedGas : flow.rates.injectedWater) =
      rate;
  flow.rates.reservoirInjection = rate * InjectedVolumeFactor();
  return flow;
}

TubingStream Well::Stream(const WellFlow& flow) const {
  const FluidState& state = tank_->State();
  TubingStream stream;
  stream.temperature = Temperature();
  stream.gas = flow.rates.gas + flow.rates.injectedGas;
  stream.oil = flow.rates.oil;
  stream.water = flow.rates.water + flow.rates.injectedWater;
  stream.mass = flow.liquid * (state.liquid.oilMass + state.liquid.gasMass) +
                flow.vapour * (state.vapour.oilMass + state.vapour.gasMass) +
                flow.rates.injectedGas * injectedGas_.mass +
                stream.water * kCubicFeetPerBarrel * tank_->Fluid().WaterDensity();
  if (state.liquid.oil > 0.0) stream.oilFactor = 1.0 / state.liquid.oil;
  stream.dissolvedGas = state.dissolvedGas;
  stream.bubblePoint = state.bubblePoint;
  return stream;
}

double Well::TubingPressure(const WellFlow& flow) const {
  const bool produces = data_->type == WellType::kProducer;
  const Tubing tubing = {data_->depth, data_->tubingDiameter};
  TubingStream stream = Stream(flow);
  if (stream.mass > 0.0) {
    return TubingHeadPressure(tubing, stream, flow.bottomHolePressure, produces ? 1.0 : -1.0);
  }
  // A well at rest is full of what it would flow at the least drawdown.
  WellFlow trickle;
  if (produces) {
    const Inflow inflow = tank_->InflowAt(tank_->Pressure());
    trickle = ProducerFlow(inflow, Index(), tank_->Pressure() * (1.0 - 1e-6));
  } else {
    trickle = InjectorFlow(tank_->Pressure(), tank_->Pressure() * (1.0 + 1e-6));
  }
  return TubingHeadPressure({data_->depth, 0.0}, Stream(trickle), flow.bottomHolePressure, 1.0);
}

void Well::AddTo(TankFlow& sum, const WellFlow& flow) const {
  sum.liquid += now_.uptime * flow.liquid;
  sum.vapour += now_.uptime * flow.vapour;
  sum.water += now_.uptime * flow.rates.water;
  sum.injectedWater += now_.uptime * flow.rates.injectedWater;
  sum.injectedVolume += now_.uptime * flow.rates.reservoirInjection;
  if (flow.rates.injectedGas <= 0.0) return;
  sum.injectedHydrocarbons.resize(injectedGas_.hydrocarbons.size());
  for (size_t i = 0; i < sum.injectedHydrocarbons.size(); ++i) {
    sum.injectedHydrocarbons[i] +=
        now_.uptime * flow.rates.injectedGas * injectedGas_.hydrocarbons[i];
  }
}

void Well::Advance(const WellFlow& flow, double days) {
  for (const auto& [name, volume] : kWellVolumes) {
    now_.totals.*volume += now_.uptime * days * flow.rates.*volume;
  }
  SetInjectedComposition(std::move(now_.injectedComposition));
}

double Well::StreamDensity(double PhaseStream::*volume, double PhaseStream::*mass,
                           double cubicFeet) const {
  const FluidState& state = tank_->State();
  const WellFlow& flow = Flow();
  double volumes = flow.liquid * state.liquid.*volume + flow.vapour * state.vapour.*volume;
  double masses = flow.liquid * state.liquid.*mass + flow.vapour * state.vapour.*mass;
  if (volumes <= 0.0) {
    volumes = state.liquid.*volume + state.vapour.*volume;
    masses = state.liquid.*mass + state.vapour.*mass;
  }
  return volumes > 0.0 ? masses / volumes / cubicFeet : 0.0;
}

double Well::OilDensity() const {
  return StreamDensity(&PhaseStream::oil, &PhaseStream::oilMass, kCubicFeetPerBarrel);
}

double Well::GasDensity() const {
  if (data_->type == WellType::kGasInjector) return injectedGas_.mass / kCubicFeetPerMscf;
  return StreamDensity(&PhaseStream::gas, &PhaseStream::gasMass, kCubicFeetPerMscf);
}

}  // namespace gantry::simulator
