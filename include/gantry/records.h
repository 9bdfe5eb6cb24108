#pragma once

/// The records that cross the module's boundary, in C; gantry/boundary.h tells what goes for all of
/// them, and which command takes which.
///
/// They are little-endian and frozen to the byte. They belong to the host, as does what they point
/// to. Members that are called reserved are the host's: the module neither reads nor writes them.

#include <stdint.h>

#if defined(__cplusplus)
extern "C" {
#endif

enum {
  EXT_MAX_INFLOW_POINTS = 10,
  EXT_MAX_COMPONENTS = 100,
  EXT_CASE_DATA_CAPACITY = 102400  ///< bytes of a block of case data
};

/// The marks for a number that is missing: one that couldn't be worked out, and one that nobody has
/// set.
#define EXT_FAILED_NUMBER 3.4e35
#define EXT_UNSET_NUMBER (-9999.9999)

/// The reason of a failure, fit to be shown to the user and cut to its field.
typedef struct ExtErrorBlock {
  uint32_t reserved;
  char text[260];
} ExtErrorBlock;

/// `ExtIdentify`: what the module says of itself. The capabilities are the host's to read.
typedef struct ExtIdentifyRecord {
  uint32_t reserved0;
  int32_t interfaceNumber;  ///< 70
  char name[256];           ///< "Intersect", also the first word of every text path
  uint64_t moduleKind;      ///< 4
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
} ExtIdentifyRecord;

/// `ExtCreateUnit`: the unit of one variable.
typedef struct ExtUnitRecord {
  uint32_t reserved;
  char name[64];
  uint32_t code;       ///< the variable's, as in `PublishedVariableRow`
  uint32_t unitClass;  ///< in the host's units database
  uint32_t third;      ///< 0
} ExtUnitRecord;

enum { EXT_PRODUCER = 1, EXT_INJECTOR = 2 };

/// `EXT_ENUM_SOURCES`: one well of the case. Its index is the well's in all other records.
typedef struct EnumSourcesRow {
  uint32_t reserved;
  int32_t kind;  ///< EXT_PRODUCER or EXT_INJECTOR
  int32_t one1;
  int32_t one2;
  int32_t kindAgain;
  int32_t zero;
  int32_t one3;
  int32_t index;  ///< in: the last well given, negative to begin; out: this well, from 0
  char name[64];
  char sourceWord[8];  ///< "source"
} EnumSourcesRow;

/// `EXT_SET_CONNECTION`.
typedef struct SetConnectionRequest {
  uint32_t reserved;
  int32_t well;
  uint8_t connected;
} SetConnectionRequest;

/// `EXT_ENUM_DATA_FILES`: the dataset for the host's list of files.
typedef struct EnumDataFilesRow {
  uint32_t reserved0;
  int32_t index;  ///< in: 0; the command ends at any other
  char path[256];
  char label[256];
  uint8_t isLocal;  ///< 1 for a dataset of this machine, 0 for one of the cluster
  char reserved1[256];
  char options[256];  ///< such as `Linux|false|Parallel|1`
} EnumDataFilesRow;

/// `EXT_SET_DATA_FILE`.
typedef struct SetDataFileRecord {
  uint32_t reserved;
  char path[260];
} SetDataFileRecord;

/// A function of the host that takes a text and the model that sends it. Called on the thread of
/// the command that has something to say; the text is the module's, and lives for the call.
typedef void (*HostTextCallback)(const char* text, void* model);

/// `EXT_START_RUN`.
typedef struct RunStartRecord {
  char reserved0[8];
  const int32_t* connectedWells;  ///< indices of the wells; one of no well is passed over
  char reserved1[24];
  double startDate;  ///< 0: the run begins at the simulator's own date
  char reserved2[80];
  int32_t connectedCount;
  uint32_t reserved3;
  HostTextCallback logCallback;     ///< notices for a log, until the next start; may be null
  HostTextCallback statusCallback;  ///< what is being done, until the next start; may be null
  char reserved4[20];
  int32_t runMode;  ///< 1; not looked at
} RunStartRecord;

/// `EXT_START_SIMULATOR`.
typedef struct SimulatorStartRecord {
  char reserved0[24];
  int32_t runMode;  ///< 1; not looked at
  char reserved1[1036];
} SimulatorStartRecord;

enum { EXT_DATE_HAS_NUMBER = 1, EXT_DATE_HAS_DAY = 2 };

/// `EXT_GET_SIMULATION_DATE`.
typedef struct DateRecord {
  uint32_t reserved;
  int32_t
      flags;  ///< EXT_DATE_HAS_DAY: day, month and year are set; EXT_DATE_HAS_NUMBER: the number
  double number;  ///< days from 31 December 1899
  int32_t day;
  int32_t month;
  int32_t year;
} DateRecord;

enum { EXT_OTHER_EQUATION = 0, EXT_PENG_ROBINSON = 1, EXT_SOAVE_REDLICH_KWONG = 2 };

/// `EXT_GET_FLUID_MODEL`: the equation of state of a compositional model. Entries past the
/// component count are 0; units that aren't given are the simulator's.
typedef struct FluidModelRecord {
  uint32_t reserved0;
  int32_t componentCount;
  char names[EXT_MAX_COMPONENTS][16];  ///< no terminator where a name fills its 16 characters
  uint32_t mask;                       ///< the sum of the numbers below, of the arrays with data
  uint32_t reserved1;
  double criticalTemperature[EXT_MAX_COMPONENTS];                    ///< 1, degrees Fahrenheit
  double criticalPressure[EXT_MAX_COMPONENTS];                       ///< 2, psig
  double criticalVolume[EXT_MAX_COMPONENTS];                         ///< 4
  double acentricFactor[EXT_MAX_COMPONENTS];                         ///< 8
  double molecularWeight[EXT_MAX_COMPONENTS];                        ///< 16
  double reservedColumn[EXT_MAX_COMPONENTS];                         ///< 32
  double boilingPoint[EXT_MAX_COMPONENTS];                           ///< 64, degrees Fahrenheit
  double volumeShift[EXT_MAX_COMPONENTS];                            ///< 128
  double omegaA[EXT_MAX_COMPONENTS];                                 ///< 256
  double omegaB[EXT_MAX_COMPONENTS];                                 ///< 512
  double parachor[EXT_MAX_COMPONENTS];                               ///< 1024
  double binaryInteraction[EXT_MAX_COMPONENTS][EXT_MAX_COMPONENTS];  ///< lower triangle
  char reserved2[100];
  int32_t equationOfState;
} FluidModelRecord;

/// `EXT_TIMESTEP`.
typedef struct TimestepRecord {
  char reserved0[8];
  double stepDays;
  char reserved1[136];
} TimestepRecord;

/// How a well is shut. -1 counts as EXT_SHUT_IN_COMPLETIONS, any other code as EXT_SHUT_AT_SURFACE.
enum { EXT_SHUT_AT_SURFACE = 1, EXT_SHUT_IN_COMPLETIONS = 2 };

/// The exchange of one well, arrays with an entry for each inflow point. "Out" is what
/// `EXT_GET_IPR` fills, "in" what `EXT_SET_OP_PT` reads: the operating point, at entry 0. What both
/// name goes back as it came, unless the host knows better; * marks what isn't read for a producer.
typedef struct _tGetSetData {  // NOLINT(bugprone-reserved-identifier): the host's own name
  uint32_t size;               ///< of the record; not looked at
  int32_t well;                ///< in, for both commands: the well's index
  uint8_t isShut;              ///< out: 1, the well has no inflow; in: 1, shut it
  char reserved0[7];
  double oilRate[EXT_MAX_INFLOW_POINTS];     ///< out, in
  double waterRate[EXT_MAX_INFLOW_POINTS];   ///< out, in
  double gasRate[EXT_MAX_INFLOW_POINTS];     ///< out, in
  double pressure[EXT_MAX_INFLOW_POINTS];    ///< out, in: at the bottom of the well
  double massRate[EXT_MAX_INFLOW_POINTS];    ///< out: pounds a day, water left out
  double pointValue[EXT_MAX_INFLOW_POINTS];  ///< out, in*
  int32_t pointCount;                        ///< out
  uint32_t reserved1;
  FluidModelRecord fluid;  ///< out, in: the component count; of a compositional model
  char reserved2[3200];
  /// Out: of each point; in: what a gas injector takes, at row 0. Of a compositional model.
  double moleFractions[EXT_MAX_INFLOW_POINTS][EXT_MAX_COMPONENTS];
  double oilGravity;      ///< out, in*
  double gasGravity;      ///< out, in*
  double waterGravity;    ///< out, in*
  double passThrough[3];  ///< out, in*: as the last operating point left them
  char reserved3[88];
  double downFraction;  ///< in: the part of the step in which the well stands still, 0 to 1
  char reserved4[16];
  double currentPressure;   ///< out: of the well as it now is
  double currentOilRate;    ///< out
  double currentWaterRate;  ///< out
  double currentGasRate;    ///< out
  char reserved5[88];
  int32_t shutInCode;   ///< in: how to shut the well
  uint32_t hasStepped;  ///< out: 1 once the simulator has made a step
  char reserved6[2856];
} _tGetSetData;

/// `EXT_GET_PROPERTY`.
typedef struct GetPropertyRequest {
  char reserved[8];
  const char* path;
  char value[512];
} GetPropertyRequest;

/// `EXT_SET_PROPERTY`.
typedef struct SetPropertyRequest {
  char reserved[8];
  const char* path;
  const char* value;
} SetPropertyRequest;

/// `EXT_ENUM_PUBLISHED_VARIABLES`.
typedef struct PublishedVariableRow {
  uint32_t reserved;
  int32_t handle;  ///< in: the last handle, -1 to begin; out: this one
  uint8_t isWriteable;
  char fullName[96];
  char wellName[64];
  char shortName[67];
  uint32_t code;  ///< as in `ExtUnitRecord`
} PublishedVariableRow;

/// `EXT_EVAL_PUBLISHED_VARIABLES`. A value to be written may be longer than its field.
typedef struct EvalPublishedRequest {
  uint32_t reserved;
  int32_t handle;
  uint8_t isWrite;
  char value[64];  ///< a number as a text
} EvalPublishedRequest;

/// `EXT_GET_VARIABLE_NAMES`: the text paths of nine quantities of a well, whose name goes in place
/// of the "~", and the factors to the host's units, all 1.
typedef struct VariableNamesRecord {
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
} VariableNamesRecord;

/// `EXT_LOAD_CASE_DATA`.
typedef struct CaseDataRecord {
  uint32_t reserved;
  char block[EXT_CASE_DATA_CAPACITY];
  uint32_t length;           ///< how much of the block was saved
  const char* casePath;      ///< of the host's own case, beside which a moved dataset is looked for
  uint32_t keepDatasetPath;  ///< not 0: don't look
} CaseDataRecord;

#if defined(__cplusplus)
}
#endif
