#pragma once

// The records that cross the module boundary. They belong to the host: fixed little-endian layouts,
// frozen, whose every named offset is held below. docs/boundary.md shows them with an example.
// Members called reserved are the host's; the module neither reads nor writes them.
//
// Units at the boundary: stock-tank barrels a day, millions of standard cubic feet a day, psig,
// degrees Fahrenheit. Texts are 8-bit, NUL-terminated, in the host's code page.

#include <cstddef>
#include <cstdint>

namespace gantry {

inline constexpr size_t kMaxInflowPoints = 10;
inline constexpr size_t kMaxComponents = 100;

#define GANTRY_OFFSET(type, member, offset) static_assert(offsetof(type, member) == (offset))

struct ExtErrorBlock {
  uint32_t reserved;
  char text[260];
};
static_assert(sizeof(ExtErrorBlock) == 264);
GANTRY_OFFSET(ExtErrorBlock, text, 4);

struct ExtIdentifyRecord {
  uint32_t reserved0;
  int32_t interfaceNumber;
  char name[256];
  uint64_t moduleKind;
  uint32_t capability1;
  uint32_t capability2;
  char reserved1[1004];
  char description[260];
  uint32_t capability3;
  uint32_t capability4;
  uint32_t capability5;
  uint16_t capability6;
  char reserved2[130];
  uint32_t capability7;
  uint32_t reserved3;
};
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

struct ExtUnitRecord {
  uint32_t reserved;
  char name[64];
  uint32_t code;
  uint32_t unitClass;
  uint32_t third;
};
static_assert(sizeof(ExtUnitRecord) == 80);
GANTRY_OFFSET(ExtUnitRecord, name, 4);
GANTRY_OFFSET(ExtUnitRecord, code, 68);
GANTRY_OFFSET(ExtUnitRecord, unitClass, 72);
GANTRY_OFFSET(ExtUnitRecord, third, 76);

struct EnumSourcesRow {
  uint32_t reserved;
  int32_t kind;  ///< 1 producer, 2 injector
  int32_t one1;
  int32_t one2;
  int32_t kindAgain;
  int32_t zero;
  int32_t one3;
  int32_t index;  ///< in: the last well given, negative to begin; out: this well
  char name[64];
  char sourceWord[8];
};
GANTRY_OFFSET(EnumSourcesRow, kind, 4);
GANTRY_OFFSET(EnumSourcesRow, one1, 8);
GANTRY_OFFSET(EnumSourcesRow, one2, 12);
GANTRY_OFFSET(EnumSourcesRow, kindAgain, 16);
GANTRY_OFFSET(EnumSourcesRow, zero, 20);
GANTRY_OFFSET(EnumSourcesRow, one3, 24);
GANTRY_OFFSET(EnumSourcesRow, index, 28);
GANTRY_OFFSET(EnumSourcesRow, name, 32);
GANTRY_OFFSET(EnumSourcesRow, sourceWord, 96);

struct SetConnectionRequest {
  uint32_t reserved;
  int32_t well;
  uint8_t connected;
};
GANTRY_OFFSET(SetConnectionRequest, well, 4);
GANTRY_OFFSET(SetConnectionRequest, connected, 8);

struct EnumDataFilesRow {
  uint32_t reserved0;
  int32_t index;
  char path[256];
  char label[256];
  uint8_t isLocal;
  char reserved1[256];
  char options[256];
};
GANTRY_OFFSET(EnumDataFilesRow, index, 4);
GANTRY_OFFSET(EnumDataFilesRow, path, 8);
GANTRY_OFFSET(EnumDataFilesRow, label, 264);
GANTRY_OFFSET(EnumDataFilesRow, isLocal, 520);
GANTRY_OFFSET(EnumDataFilesRow, options, 777);

struct SetDataFileRecord {
  uint32_t reserved;
  char path[260];
};
GANTRY_OFFSET(SetDataFileRecord, path, 4);

/// A function of the host that takes a text and the model that sends it.
using HostTextCallback = void (*)(const char* text, void* model);

struct RunStartRecord {
  char reserved0[8];
  const int32_t* connectedWells;  ///< indices of the connected wells
  char reserved1[24];
  double startDate;  ///< days from 31 December 1899
  char reserved2[80];
  int32_t connectedCount;
  uint32_t reserved3;
  HostTextCallback logCallback;
  HostTextCallback statusCallback;
  char reserved4[20];
  int32_t runMode;
};
GANTRY_OFFSET(RunStartRecord, connectedWells, 8);
GANTRY_OFFSET(RunStartRecord, startDate, 40);
GANTRY_OFFSET(RunStartRecord, connectedCount, 128);
GANTRY_OFFSET(RunStartRecord, logCallback, 136);
GANTRY_OFFSET(RunStartRecord, statusCallback, 144);
GANTRY_OFFSET(RunStartRecord, runMode, 172);

struct SimulatorStartRecord {
  char reserved0[24];
  int32_t runMode;
  char reserved1[1036];
};
static_assert(sizeof(SimulatorStartRecord) == 1064);
GANTRY_OFFSET(SimulatorStartRecord, runMode, 24);

struct DateRecord {
  uint32_t reserved;
  int32_t flags;  ///< 2: day, month and year are set; 1: the number is set too
  double number;  ///< days from 31 December 1899
  int32_t day;
  int32_t month;
  int32_t year;
};
GANTRY_OFFSET(DateRecord, flags, 4);
GANTRY_OFFSET(DateRecord, number, 8);
GANTRY_OFFSET(DateRecord, day, 16);
GANTRY_OFFSET(DateRecord, month, 20);
GANTRY_OFFSET(DateRecord, year, 24);

/// The equation of state of a compositional model. Arrays are zero past the component count.
struct FluidModelRecord {
  uint32_t reserved0;
  int32_t componentCount;
  char names[kMaxComponents][16];  ///< no terminator where a name fills its 16 characters
  uint32_t mask;                   ///< which arrays hold data
  uint32_t reserved1;
  double criticalTemperature[kMaxComponents];                ///< mask 1, degrees Fahrenheit
  double criticalPressure[kMaxComponents];                   ///< mask 2, psig
  double criticalVolume[kMaxComponents];                     ///< mask 4
  double acentricFactor[kMaxComponents];                     ///< mask 8
  double molecularWeight[kMaxComponents];                    ///< mask 16
  double reservedColumn[kMaxComponents];                     ///< mask 32
  double boilingPoint[kMaxComponents];                       ///< mask 64, degrees Fahrenheit
  double volumeShift[kMaxComponents];                        ///< mask 128
  double omegaA[kMaxComponents];                             ///< mask 256
  double omegaB[kMaxComponents];                             ///< mask 512
  double parachor[kMaxComponents];                           ///< mask 1024
  double binaryInteraction[kMaxComponents][kMaxComponents];  ///< lower triangle
  char reserved2[100];
  int32_t equationOfState;  ///< 1 Peng-Robinson, 2 Soave-Redlich-Kwong, 0 another
};
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

struct TimestepRecord {
  char reserved0[8];
  double stepDays;
  char reserved1[136];
};
static_assert(sizeof(TimestepRecord) == 152);
GANTRY_OFFSET(TimestepRecord, stepDays, 8);

/// The exchange of one well: its inflow to the host, its operating point back.
struct _tGetSetData {  // NOLINT(bugprone-reserved-identifier): the host's own name
  uint32_t size;
  int32_t well;    ///< position in the sources, from 0
  uint8_t isShut;  ///< to the host: no inflow point; from the host: shut the well
  char reserved0[7];
  double oilRate[kMaxInflowPoints];
  double waterRate[kMaxInflowPoints];
  double gasRate[kMaxInflowPoints];
  double pressure[kMaxInflowPoints];
  double massRate[kMaxInflowPoints];  ///< pounds a day, water left out
  double pointValue[kMaxInflowPoints];
  int32_t pointCount;
  uint32_t reserved1;
  FluidModelRecord fluid;
  char reserved2[3200];
  double moleFractions[kMaxInflowPoints][kMaxComponents];
  double oilGravity;
  double gasGravity;
  double waterGravity;
  double passThrough[3];
  char reserved3[88];
  double downFraction;
  char reserved4[16];
  double currentPressure;
  double currentOilRate;
  double currentWaterRate;
  double currentGasRate;
  char reserved5[88];
  int32_t shutInCode;
  uint32_t hasStepped;
  char reserved6[2856];
};
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

struct GetPropertyRequest {
  char reserved[8];
  const char* path;
  char value[512];
};
GANTRY_OFFSET(GetPropertyRequest, path, 8);
GANTRY_OFFSET(GetPropertyRequest, value, 16);

struct SetPropertyRequest {
  char reserved[8];
  const char* path;
  const char* value;
};
GANTRY_OFFSET(SetPropertyRequest, path, 8);
GANTRY_OFFSET(SetPropertyRequest, value, 16);

struct PublishedVariableRow {
  uint32_t reserved;
  int32_t handle;  ///< in: the last handle, -1 to begin; out: this one
  uint8_t isWriteable;
  char fullName[96];
  char wellName[64];
  char shortName[67];
  uint32_t code;
};
GANTRY_OFFSET(PublishedVariableRow, handle, 4);
GANTRY_OFFSET(PublishedVariableRow, isWriteable, 8);
GANTRY_OFFSET(PublishedVariableRow, fullName, 9);
GANTRY_OFFSET(PublishedVariableRow, wellName, 105);
GANTRY_OFFSET(PublishedVariableRow, shortName, 169);
GANTRY_OFFSET(PublishedVariableRow, code, 236);

struct EvalPublishedRequest {
  uint32_t reserved;
  int32_t handle;
  uint8_t isWrite;
  char value[64];
};
GANTRY_OFFSET(EvalPublishedRequest, handle, 4);
GANTRY_OFFSET(EvalPublishedRequest, isWrite, 8);
GANTRY_OFFSET(EvalPublishedRequest, value, 9);

struct VariableNamesRecord {
  uint32_t reserved0;
  char reservoirProductionRate[256];
  char reservoirInjectionRate[260];
  double reservoirRateFactor;
  char reservoirProductionCumulative[256];
  char reservoirInjectionCumulative[256];
  double reservoirCumulativeFactor;
  char waterProductionRate[256];
  char oilProductionRate[256];
  char gasProductionRate[256];
  char waterInjectionRate[256];
  char gasInjectionRate[256];
  double liquidRateFactor;
  double gasRateFactor;
};
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

inline constexpr size_t kCaseDataCapacity = 102400;

struct CaseDataRecord {
  uint32_t reserved;
  char block[kCaseDataCapacity];
  uint32_t length;
  const char* casePath;
  uint32_t keepDatasetPath;  ///< non-zero: don't look for a moved dataset
};
GANTRY_OFFSET(CaseDataRecord, block, 4);
GANTRY_OFFSET(CaseDataRecord, length, 102404);
GANTRY_OFFSET(CaseDataRecord, casePath, 102408);
GANTRY_OFFSET(CaseDataRecord, keepDatasetPath, 102416);

#undef GANTRY_OFFSET

}  // namespace gantry
