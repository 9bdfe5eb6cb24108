#pragma once

#include "boundary/records.h"
#include "wells/source.h"

namespace gantry {

// A point of the host's record, without its composition. Units as in `IPRPoint`.

inline IPRPoint PointOf(const _tGetSetData& record, size_t i) {
  return {.Pressure = record.pressure[i],
          .OilRate = record.oilRate[i],
          .GasRate = record.gasRate[i],
          .WaterRate = record.waterRate[i],
          .Composition = {}};
}

inline void SetPoint(_tGetSetData& record, size_t i, const IPRPoint& point) {
  record.pressure[i] = point.Pressure;
  record.oilRate[i] = point.OilRate;
  record.gasRate[i] = point.GasRate;
  record.waterRate[i] = point.WaterRate;
}

}  // namespace gantry
