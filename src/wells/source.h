#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "boundary/records.h"
#include "client/query_results.h"
#include "text/data_server_object.h"

namespace gantry {

/// In the driver's units: densities of air and water at standard conditions in pounds per cubic
/// foot, and the cubic feet of a gas rate's million and of a barrel.
inline constexpr double kAirDensity = 0.0763;
inline constexpr double kWaterDensity = 62.43;
inline constexpr double kCubicFeetOfMillion = 1000000.0;
inline constexpr double kCubicFeetOfBarrel = 5.615;

/// The well types, as the simulator reports them.
enum WellType : int32_t { kProducer = 0, kWaterInjector = 1, kGasInjector = 2, kInjector = 3 };
/// The states that a well can be asked for.
enum WellState : int32_t { kShutCompletions = 0, kShutSurface = 1, kOpen = 2 };

/// The code of the simulator's type text; an unknown one is a producer.
int32_t ClassifyWellType(const std::string& text);
/// The name of the fluid source that is made for a gas injector of a compositional run.
std::string InjectionSourceName(const std::string& well);

/// A well's inflow, list by list, with one entry for each point: psig, STB/d and MMscf/d.
struct InflowColumns {
  std::vector<double> Pressure;
  std::vector<double> OilRate;  ///< each rate as long as the pressures
  std::vector<double> GasRate;
  std::vector<double> WaterRate;
  RowTable<double> Composition;  ///< mole fractions; no rows outside a compositional run
};

/// One point of an inflow table, or one operating state of a well: psig, STB/d and MMscf/d.
struct IPRPoint {
  double Pressure = EXT_UNSET_NUMBER;
  double OilRate = EXT_UNSET_NUMBER;
  double GasRate = EXT_UNSET_NUMBER;
  double WaterRate = EXT_UNSET_NUMBER;
  std::vector<double> Composition;  ///< mole fractions; empty outside a compositional run
};

/// The live record of a well for the running job. It exists only while a simulator has been read.
/// Its text paths reach its stored numbers and, through the connector, any simulator variable.
class Source : public CExtDataServerObject {
 public:
  bool Handle(TagParser& parser, TagContext context) override;
  const std::string& GetName() const override { return Name; }

  /// True when the well's inflow makes more than 20000 cubic feet of gas to the barrel of liquid.
  bool IsGasWell() const;

  int32_t RequestedStatus = 0;  ///< a `WellState`: what the host asked for last
  int32_t SourceType = 0;
  std::string Name;
  double OnTimeFraction = 1.0;
  InflowColumns SimulatorIPR;     ///< as last read from the simulator
  std::vector<IPRPoint> HostIPR;  ///< as last handed to the host
  IPRPoint Current;
  IPRPoint OpPoint;  ///< its composition is that of an injected gas
  double PointValue = 0.0;
  double OilGravity = 0.0;    ///< water = 1
  double WaterGravity = 0.0;  ///< water = 1
  double GasGravity = 0.0;    ///< air = 1
  std::array<double, 3> PassThrough = {};

 private:
  bool HandleVariable(TagParser& parser, TagContext context);
};

class SourceList : public CExcStdDataServerObjectList<Source> {};

/// The control of a well for one step: a row of the connector's constraint lists.
struct WellControl {
  std::vector<std::string>& items;
  std::vector<double>& values;
  std::vector<int32_t>& codes;
};

/// Picks the control variables of an open well from its operating point and its control mode, in
/// place of what stands in `control`.
void ChooseControl(const Source& source, int32_t opMode, WellControl control);

}  // namespace gantry
