#pragma once

// The layout of the records that cross the module's boundary, frozen: docs/boundary.md.

#include <cstddef>

#include "gantry/records.h"

namespace gantry {

inline constexpr size_t kMaxInflowPoints = EXT_MAX_INFLOW_POINTS;
inline constexpr size_t kMaxComponents = EXT_MAX_COMPONENTS;
inline constexpr size_t kCaseDataCapacity = EXT_CASE_DATA_CAPACITY;

#define GANTRY_OFFSET(type, member, offset) static_assert(offsetof(type, member) == (offset))

static_assert(sizeof(ExtErrorBlock) == 264);
GANTRY_OFFSET(ExtErrorBlock, text, 4);

GANTRY_OFFSET(ExtIdentifyRecord, interfaceNumber, 4);
GANTRY_OFFSET(ExtIdentifyRecord, name, 8);
GANTRY_OFFSET(ExtIdentifyRecord, moduleKind, 264);
GANTRY_OFFSET(ExtIdentifyRecord, capability1, 272);
GANTRY_OFFSET(ExtIdentifyRecord, capability2, 276);
GANTRY_OFFSET(ExtIdentifyRecord, description, 1284);
GANTRY_OFFSET(ExtIdentifyRecord, capability3, 1544);
GANTRY_OFFSET(ExtIdentifyRecord, capability4, 1548);
GANTRY_OFFSET(ExtIdentifyRecord, capability5, 1552);
GANTRY_OFFSET(ExtIdentifyRecord, capability6, 1556);
GANTRY_OFFSET(ExtIdentifyRecord, capability7, 1688);

static_assert(sizeof(ExtUnitRecord) == 80);
GANTRY_OFFSET(ExtUnitRecord, name, 4);
GANTRY_OFFSET(ExtUnitRecord, code, 68);
GANTRY_OFFSET(ExtUnitRecord, unitClass, 72);
GANTRY_OFFSET(ExtUnitRecord, third, 76);

GANTRY_OFFSET(EnumSourcesRow, kind, 4);
GANTRY_OFFSET(EnumSourcesRow, one1, 8);
GANTRY_OFFSET(EnumSourcesRow, one2, 12);
GANTRY_OFFSET(EnumSourcesRow, kindAgain, 16);
GANTRY_OFFSET(EnumSourcesRow, zero, 20);
GANTRY_OFFSET(EnumSourcesRow, one3, 24);
GANTRY_OFFSET(EnumSourcesRow, index, 28);
GANTRY_OFFSET(EnumSourcesRow, name, 32);
GANTRY_OFFSET(EnumSourcesRow, sourceWord, 96);

GANTRY_OFFSET(SetConnectionRequest, well, 4);
GANTRY_OFFSET(SetConnectionRequest, connected, 8);

GANTRY_OFFSET(EnumDataFilesRow, index, 4);
GANTRY_OFFSET(EnumDataFilesRow, path, 8);
GANTRY_OFFSET(EnumDataFilesRow, label, 264);
GANTRY_OFFSET(EnumDataFilesRow, isLocal, 520);
GANTRY_OFFSET(EnumDataFilesRow, options, 777);

GANTRY_OFFSET(SetDataFileRecord, path, 4);

GANTRY_OFFSET(RunStartRecord, connectedWells, 8);
GANTRY_OFFSET(RunStartRecord, startDate, 40);
GANTRY_OFFSET(RunStartRecord, connectedCount, 128);
GANTRY_OFFSET(RunStartRecord, logCallback, 136);
GANTRY_OFFSET(RunStartRecord, statusCallback, 144);
GANTRY_OFFSET(RunStartRecord, runMode, 172);

static_assert(sizeof(SimulatorStartRecord) == 1064);
GANTRY_OFFSET(SimulatorStartRecord, runMode, 24);

GANTRY_OFFSET(DateRecord, flags, 4);
GANTRY_OFFSET(DateRecord, number, 8);
GANTRY_OFFSET(DateRecord, day, 16);
GANTRY_OFFSET(DateRecord, month, 20);
GANTRY_OFFSET(DateRecord, year, 24);

static_assert(sizeof(FluidModelRecord) == 90520);
GANTRY_OFFSET(FluidModelRecord, componentCount, 4);
GANTRY_OFFSET(FluidModelRecord, names, 8);
GANTRY_OFFSET(FluidModelRecord, mask, 1608);
GANTRY_OFFSET(FluidModelRecord, criticalTemperature, 1616);
GANTRY_OFFSET(FluidModelRecord, criticalPressure, 2416);
GANTRY_OFFSET(FluidModelRecord, criticalVolume, 3216);
GANTRY_OFFSET(FluidModelRecord, acentricFactor, 4016);
GANTRY_OFFSET(FluidModelRecord, molecularWeight, 4816);
GANTRY_OFFSET(FluidModelRecord, reservedColumn, 5616);
GANTRY_OFFSET(FluidModelRecord, boilingPoint, 6416);
GANTRY_OFFSET(FluidModelRecord, volumeShift, 7216);
GANTRY_OFFSET(FluidModelRecord, omegaA, 8016);
GANTRY_OFFSET(FluidModelRecord, omegaB, 8816);
GANTRY_OFFSET(FluidModelRecord, parachor, 9616);
GANTRY_OFFSET(FluidModelRecord, binaryInteraction, 10416);
GANTRY_OFFSET(FluidModelRecord, equationOfState, 90516);

static_assert(sizeof(TimestepRecord) == 152);
GANTRY_OFFSET(TimestepRecord, stepDays, 8);

static_assert(sizeof(_tGetSetData) == 105368);
GANTRY_OFFSET(_tGetSetData, well, 4);
GANTRY_OFFSET(_tGetSetData, isShut, 8);
GANTRY_OFFSET(_tGetSetData, oilRate, 16);
GANTRY_OFFSET(_tGetSetData, waterRate, 96);
GANTRY_OFFSET(_tGetSetData, gasRate, 176);
GANTRY_OFFSET(_tGetSetData, pressure, 256);
GANTRY_OFFSET(_tGetSetData, massRate, 336);
GANTRY_OFFSET(_tGetSetData, pointValue, 416);
GANTRY_OFFSET(_tGetSetData, pointCount, 496);
GANTRY_OFFSET(_tGetSetData, fluid, 504);
GANTRY_OFFSET(_tGetSetData, moleFractions, 94224);
GANTRY_OFFSET(_tGetSetData, oilGravity, 102224);
GANTRY_OFFSET(_tGetSetData, gasGravity, 102232);
GANTRY_OFFSET(_tGetSetData, waterGravity, 102240);
GANTRY_OFFSET(_tGetSetData, passThrough, 102248);
GANTRY_OFFSET(_tGetSetData, downFraction, 102360);
GANTRY_OFFSET(_tGetSetData, currentPressure, 102384);
GANTRY_OFFSET(_tGetSetData, currentOilRate, 102392);
GANTRY_OFFSET(_tGetSetData, currentWaterRate, 102400);
GANTRY_OFFSET(_tGetSetData, currentGasRate, 102408);
GANTRY_OFFSET(_tGetSetData, shutInCode, 102504);
GANTRY_OFFSET(_tGetSetData, hasStepped, 102508);

GANTRY_OFFSET(GetPropertyRequest, path, 8);
GANTRY_OFFSET(GetPropertyRequest, value, 16);

GANTRY_OFFSET(SetPropertyRequest, path, 8);
GANTRY_OFFSET(SetPropertyRequest, value, 16);

GANTRY_OFFSET(PublishedVariableRow, handle, 4);
GANTRY_OFFSET(PublishedVariableRow, isWriteable, 8);
GANTRY_OFFSET(PublishedVariableRow, fullName, 9);
GANTRY_OFFSET(PublishedVariableRow, wellName, 105);
GANTRY_OFFSET(PublishedVariableRow, shortName, 169);
GANTRY_OFFSET(PublishedVariableRow, code, 236);

GANTRY_OFFSET(EvalPublishedRequest, handle, 4);
GANTRY_OFFSET(EvalPublishedRequest, isWrite, 8);
GANTRY_OFFSET(EvalPublishedRequest, value, 9);

static_assert(sizeof(VariableNamesRecord) == 2344);
GANTRY_OFFSET(VariableNamesRecord, reservoirProductionRate, 4);
GANTRY_OFFSET(VariableNamesRecord, reservoirInjectionRate, 260);
GANTRY_OFFSET(VariableNamesRecord, reservoirRateFactor, 520);
GANTRY_OFFSET(VariableNamesRecord, reservoirProductionCumulative, 528);
GANTRY_OFFSET(VariableNamesRecord, reservoirInjectionCumulative, 784);
GANTRY_OFFSET(VariableNamesRecord, reservoirCumulativeFactor, 1040);
GANTRY_OFFSET(VariableNamesRecord, waterProductionRate, 1048);
GANTRY_OFFSET(VariableNamesRecord, oilProductionRate, 1304);
GANTRY_OFFSET(VariableNamesRecord, gasProductionRate, 1560);
GANTRY_OFFSET(VariableNamesRecord, waterInjectionRate, 1816);
GANTRY_OFFSET(VariableNamesRecord, gasInjectionRate, 2072);
GANTRY_OFFSET(VariableNamesRecord, liquidRateFactor, 2328);
GANTRY_OFFSET(VariableNamesRecord, gasRateFactor, 2336);

GANTRY_OFFSET(CaseDataRecord, block, 4);
GANTRY_OFFSET(CaseDataRecord, length, 102404);
GANTRY_OFFSET(CaseDataRecord, casePath, 102408);
GANTRY_OFFSET(CaseDataRecord, keepDatasetPath, 102416);

#undef GANTRY_OFFSET

}  // namespace gantry
