/* host_session SIMULATOR DATASET STEPS: the sizes of the records, then examples/minimal_host call
   by call with the bytes of its records, as docs/host.md shows both. */

#include <stddef.h>
#include <stdio.h>
#include <string.h>

#include "gantry/boundary.h"

enum { ROW = 16, MOST_ROWS = 12 };

typedef struct RecordOf {
  uint32_t command;
  const char* name;
  size_t size;
  int pointers[3]; /* offsets of what is another address in each run */
} RecordOf;

#define RECORD(command, type, ...)                \
  {                                               \
    command, #type, sizeof(type), { __VA_ARGS__ } \
  }
static const RecordOf kRecords[] = {
    RECORD(0, ExtErrorBlock, 0),
    RECORD(0, ExtIdentifyRecord, 0),
    RECORD(0, ExtUnitRecord, 0),
    RECORD(EXT_ENUM_SOURCES, EnumSourcesRow, 0),
    RECORD(EXT_SET_CONNECTION, SetConnectionRequest, 0),
    RECORD(EXT_ENUM_DATA_FILES, EnumDataFilesRow, 0),
    RECORD(EXT_SET_DATA_FILE, SetDataFileRecord, 0),
    RECORD(EXT_START_SIMULATOR, SimulatorStartRecord, 0),
    RECORD(EXT_START_RUN, RunStartRecord, offsetof(RunStartRecord, connectedWells),
           offsetof(RunStartRecord, logCallback), offsetof(RunStartRecord, statusCallback)),
    RECORD(EXT_GET_SIMULATION_DATE, DateRecord, 0),
    RECORD(EXT_GET_FLUID_MODEL, FluidModelRecord, 0),
    RECORD(EXT_TIMESTEP, TimestepRecord, 0),
    RECORD(EXT_GET_IPR, _tGetSetData, 0),
    RECORD(EXT_SET_OP_PT, _tGetSetData, 0),
    RECORD(EXT_GET_PROPERTY, GetPropertyRequest, offsetof(GetPropertyRequest, path)),
    RECORD(EXT_SET_PROPERTY, SetPropertyRequest, offsetof(SetPropertyRequest, path),
           offsetof(SetPropertyRequest, value)),
    RECORD(EXT_ENUM_PUBLISHED_VARIABLES, PublishedVariableRow, 0),
    RECORD(EXT_EVAL_PUBLISHED_VARIABLES, EvalPublishedRequest, 0),
    RECORD(EXT_GET_VARIABLE_NAMES, VariableNamesRecord, 0),
    RECORD(EXT_LOAD_CASE_DATA, CaseDataRecord, offsetof(CaseDataRecord, casePath)),
};
enum { RECORDS = sizeof kRecords / sizeof kRecords[0] };

static void ListSizes(void) {
  for (size_t i = 0; i < RECORDS; ++i)
    if (kRecords[i].command != EXT_SET_OP_PT)
      printf("%-22s %6zu\n", kRecords[i].name, kRecords[i].size);
}

static const RecordOf* Find(uint32_t command) {
  for (size_t i = 0; i < RECORDS; ++i)
    if (kRecords[i].command == command) return &kRecords[i];
  return NULL;
}

static int IsPointer(const RecordOf* record, size_t offset) {
  for (size_t i = 0; i < 3; ++i)
    if (record->pointers[i] > 0 && offset - (size_t)record->pointers[i] < sizeof(void*)) return 1;
  return 0;
}

/* The rows that differ from what was there. */
static void Show(const char* what, const RecordOf* record, const unsigned char* bytes,
                 const unsigned char* before) {
  int rows = 0;
  for (size_t row = 0; row < record->size; row += ROW) {
    const size_t length = record->size - row < ROW ? record->size - row : ROW;
    if (memcmp(bytes + row, before + row, length) == 0) continue;
    if (++rows > MOST_ROWS) continue;
    printf("  %-3s %6zu ", what, row);
    for (size_t i = row; i < row + length; ++i) {
      const char* gap = i % 4 == 0 ? " " : "";
      if (IsPointer(record, i))
        printf("%s**", gap);
      else
        printf("%s%02x", gap, bytes[i]);
    }
    printf("\n");
  }
  if (rows > MOST_ROWS) printf("  %-3s  and %d more rows\n", what, rows - MOST_ROWS);
}

static int32_t TraceCmd(void* model, void* window, uint32_t command, void* data, uint32_t value,
                        ExtErrorBlock* error) {
  static unsigned char before[sizeof(_tGetSetData)], zero[sizeof(_tGetSetData)];
  const RecordOf* record = data == NULL ? NULL : Find(command);
  printf("ExtCmd(model, NULL, %u, %s, %u, %s)\n", command, record ? record->name : "NULL", value,
         error ? "error" : "NULL");
  if (command == EXT_SET_PROPERTY) printf("  path   \"%s\"\n", ((SetPropertyRequest*)data)->path);
  if (record) memcpy(before, data, record->size);
  if (record) Show("in", record, before, zero);
  const int32_t result = ExtCmd(model, window, command, data, value, error);
  if (record) Show("out", record, data, before);
  printf("  = %d\n", result);
  return result;
}

static int32_t TraceCreate(void** model, ExtErrorBlock* error) {
  const int32_t result = ExtCreateInstance(model, error);
  printf("ExtCreateInstance(&model, NULL)\n  = %d\n", result);
  return result;
}

static int32_t TraceDestroy(void* model, ExtErrorBlock* error) {
  const int32_t result = ExtDestroyInstance(model, error);
  printf("ExtDestroyInstance(model, NULL)\n  = %d\n", result);
  return result;
}

static int32_t TraceIdentify(void* identity, ExtErrorBlock* error) {
  ListSizes();
  const int32_t result = ExtIdentify(identity, error);
  printf("ExtIdentify(ExtIdentifyRecord, NULL)\n  = %d\n", result);
  return result;
}

static int Silent(const char* text, ...) {
  (void)text;
  return 0;
}

#define ExtCmd TraceCmd
#define ExtCreateInstance TraceCreate
#define ExtDestroyInstance TraceDestroy
#define ExtIdentify TraceIdentify
#define printf Silent
#include "host.c"
