/* The boundary as a host sees it that shares nothing with the module: plain C, byte offsets, and
   the shipped library. Usage: boundary_test LIBRARY INFLOW_LIBRARY, which stand side by side */

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "open_library.h"

static int failures = 0;
static void* library = NULL;
static void* model = NULL;
static char err[264];

#define CHECK(condition)                                                                      \
  do {                                                                                        \
    if (!(condition)) {                                                                       \
      fprintf(stderr, "%s:%d: not so: %s (error text: %s)\n", __FILE__, __LINE__, #condition, \
              err + 4);                                                                       \
      ++failures;                                                                             \
    }                                                                                         \
  } while (0)

/* A function of the library, by the type that its use needs. */
typedef union {
  void* address;
  int32_t (*identify)(void*, void*);
  int32_t (*createInstance)(void**, void*);
  int32_t (*destroyInstance)(void*, void*);
  int32_t (*cmd)(void*, void*, uint32_t, void*, uint32_t, void*);
  int32_t (*configure)(void*);
  void (*copyConfigure)(void*, const char*);
  void (*help)(void);
  int32_t (*connectToApp)(void*, uint32_t, uint32_t, void*);
  int32_t (*startApp)(void*, uint32_t, void*);
  int32_t (*stopApp)(void*);
  int32_t (*equipXml)(void*, const char*, uint32_t, const char* const*);
  int32_t (*createUnit)(int32_t, void*);
  int32_t (*version)(void*);
} Function;

static Function Find(const char* name) {
  Function function;
  function.address = FindSymbol(library, name);
  if (function.address == NULL) {
    fprintf(stderr, "the library lacks %s\n", name);
    exit(1);
  }
  return function;
}

static int32_t Command(uint32_t number, void* data, uint32_t value) {
  return Find("ExtCmd").cmd(model, NULL, number, data, value, err);
}

static int32_t Int32At(const char* record, size_t offset) {
  int32_t value;
  memcpy(&value, record + offset, sizeof value);
  return value;
}

static int HoldsOnly(const char* bytes, size_t count, char value) {
  for (size_t i = 0; i < count; ++i) {
    if (bytes[i] != value) return 0;
  }
  return 1;
}

static void TheModuleSaysWhoItIs(void) {
  char record[1696];
  memset(record, 0x55, sizeof record);
  memset(err, 0x55, sizeof err);
  CHECK(Find("ExtIdentify").identify(record, err) == 0);
  CHECK(HoldsOnly(err, sizeof err, 0));
  CHECK(HoldsOnly(record, 4, 0x55));
  CHECK(Int32At(record, 4) == 70);
  CHECK(strcmp(record + 8, "Intersect") == 0);
  CHECK(HoldsOnly(record + 8 + 10, 246, 0x55));
  CHECK(Int32At(record, 264) == 4 && Int32At(record, 268) == 0);
  CHECK(Int32At(record, 272) == 1 && Int32At(record, 276) == 1);
  CHECK(HoldsOnly(record + 280, 1004, 0x55));
  CHECK(strcmp(record + 1284, "Intersect simulator") == 0);
  CHECK(Int32At(record, 1544) == 1 && Int32At(record, 1548) == 1 && Int32At(record, 1552) == 1);
  CHECK(record[1556] == 1 && record[1557] == 0);
  CHECK(HoldsOnly(record + 1558, 130, 0x55));
  CHECK(Int32At(record, 1688) == 0);
  CHECK(Find("ExtIdentify").identify(NULL, NULL) == 1);
}

static void UnitsAreReadRowByRow(void) {
  Function createUnit = Find("ExtCreateUnit");
  char record[80];
  int32_t rows = 0;
  while (createUnit.createUnit(rows, record) == 1) ++rows;
  CHECK(rows == 43);
  CHECK(strcmp(record + 4, "User mole rate") == 0);
  CHECK(Int32At(record, 68) == 60064 && Int32At(record, 72) == 258 && Int32At(record, 76) == 0);
  memset(record, 0x55, sizeof record);
  CHECK(createUnit.createUnit(43, record) == 0 && HoldsOnly(record, sizeof record, 0x55));
  CHECK(createUnit.createUnit(24, record) == 1);
  CHECK(HoldsOnly(record, 4, 0x55) && strcmp(record + 4, "PI weight drawdown") == 0);
  CHECK(createUnit.createUnit(-5, record) == 1 && Int32At(record, 68) == 30801);
  CHECK(createUnit.createUnit(0, NULL) == 0);
}

static void FailuresTellTheirReason(void) {
  uint32_t changed = 7;
  CHECK(Command(5, &changed, 0) == 1 && changed == 0);
  CHECK(strcmp(err + 4, "Edit command failed due to bad parent window handle.") == 0);
  memset(err, 0x55, sizeof err);
  CHECK(Find("ExtConnectToApp").connectToApp(model, 1, 2, err) == 1);
  CHECK(HoldsOnly(err, 4, 0x55));
  CHECK(strcmp(err + 4, "ConnectToApplication is not implemented") == 0);
}

static void MissingRecordsAndModelsHarmNothing(void) {
  for (uint32_t number = 0; number < 140; ++number) {
    const int32_t result = Command(number, NULL, 0);
    CHECK(result == 1 || result == 0 || result == -1 || result == -999);
    Find("ExtCmd").cmd(model, NULL, number, NULL, 0, NULL);
    CHECK(Find("ExtCmd").cmd(NULL, NULL, number, NULL, 0, err) <= 1);
  }
  CHECK(Command(50, NULL, 0) == 1);
  CHECK(strcmp(err + 4, "Command 50 was called without a record") == 0);
  CHECK(Find("ExtCmd").cmd(NULL, NULL, 56, NULL, 0, err) == 1);
  CHECK(strcmp(err + 4, "Command 56 was called without a model") == 0);
  CHECK(Find("ExtConnectToApp").connectToApp(NULL, 0, 0, err) == 1);
  CHECK(Find("ExtStartApp").startApp(NULL, 0, err) == 1);
  CHECK(Find("ExtStopApp").stopApp(NULL) == 0);
  CHECK(Find("ExtEquipXml").equipXml(NULL, "x", 0, NULL) == 1);
  CHECK(Find("ExtEquipXml").equipXml(model, NULL, 0, NULL) == 1);
  CHECK(Find("ExtConfigure").configure(NULL) == 0);
  CHECK(Find("ExtDestroyInstance").destroyInstance(NULL, err) == 0);
  CHECK(Find("ExtCreateInstance").createInstance(NULL, err) == 1);
  Find("ExtCopyConfigure").copyConfigure(NULL, NULL);
  Find("ExtHelp").help();
}

static int32_t SetText(const char* path, const char* value) {
  char request[24] = {0};
  memcpy(request + 8, &path, sizeof path);
  memcpy(request + 16, &value, sizeof value);
  return Command(97, request, 0);
}

/* Whatever the code page of this process. The text of a block begins at 20, behind its length. */
static void TheCaseHoldsItsNameInTheCodePageOfTheWire(void) {
  static char block[102400];
  CHECK(SetText("Intersect.CaseDetails.FileName", FILE_NAME) == 0);
  CHECK(Command(12, block, sizeof block) == 0);
  CHECK(memcmp(block + 20, STORED_FILE_NAME, strlen(STORED_FILE_NAME)) == 0);
}

/* A request holds a pointer to its path at 8 and the value field of 512 bytes at 16. */
static void TextPathsAnswerWithinTheirField(void) {
  static char value[100001];
  memset(value, 'v', sizeof value - 1);
  const char* path = "Intersect.CaseDetails.HeadNode";
  CHECK(SetText(path, value) == 0);
  char request[528 + 16];
  memset(request, 0x55, sizeof request);
  memcpy(request + 8, &path, sizeof path);
  CHECK(Command(96, request, 0) == 0);
  CHECK(strlen(request + 16) == 511);
  CHECK(HoldsOnly(request + 528, 16, 0x55));
}

static void TheDescriptionFillsItsFieldWithoutATerminator(void) {
  char field[8];
  void* fresh = NULL;
  CHECK(Find("ExtCreateInstance").createInstance(&fresh, err) == 0 && fresh != NULL);
  Function cmd = Find("ExtCmd");
  memset(field, 0x55, sizeof field);
  CHECK(cmd.cmd(fresh, NULL, 129, field, 4, err) == 0 && memcmp(field, "<No UUUU", 8) == 0);
  memset(field, 0x55, sizeof field);
  CHECK(cmd.cmd(fresh, NULL, 129, field, 8, err) == 0 && memcmp(field, "<No file", 8) == 0);
  char whole[16];
  CHECK(cmd.cmd(fresh, NULL, 129, whole, 16, err) == 0 && strcmp(whole, "<No file>") == 0);
  CHECK(Find("ExtDestroyInstance").destroyInstance(fresh, err) == 0);
}

static void TheVersionsOfTheLumpingRulesAreFixed(void) {
  char object = 0;
  CHECK(Find(RULE_VERSION).version(&object) == 3);
  CHECK(Find(FOLDER_VERSION).version(&object) == 2);
  CHECK(Find(COMPONENT_VERSION).version(&object) == 1);
  CHECK(Find(ADDITION_VERSION).version(&object) == 1);
}

static void TheHostsCallbackHasAPlace(void) {
  void** place = FindSymbol(library, "GlpfnBrindleShowDataServerString");
  CHECK(place != NULL && *place == NULL);
  *place = &failures;
}

static void TheWholeBoundaryHolds(const char* inflow) {
  TheModuleSaysWhoItIs();
  UnitsAreReadRowByRow();
  CHECK(Find("ExtCreateInstance").createInstance(&model, err) == 0 && model != NULL);
  FailuresTellTheirReason();
  MissingRecordsAndModelsHarmNothing();
  TextPathsAnswerWithinTheirField();
  TheCaseHoldsItsNameInTheCodePageOfTheWire();
  TheDescriptionFillsItsFieldWithoutATerminator();
  TheVersionsOfTheLumpingRulesAreFixed();
  TheHostsCallbackHasAPlace(); /* null again after an unload: the module is really gone */
  char label[] = "Model 1";
  CHECK(Command(21, label, 0) == 0 && Command(21, NULL, 0) == 0);
  CHECK(Find("ExtDestroyInstance").destroyInstance(model, err) == 0);
  CHECK(IsLoaded(inflow)); /* for the next model */
}

static void AModelComesAndGoes(void) {
  CHECK(Find("ExtCreateInstance").createInstance(&model, err) == 0 && model != NULL);
  CHECK(Find("ExtDestroyInstance").destroyInstance(model, err) == 0);
}

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  int slots = 0;
  for (int load = 0; load < LOADS && failures == 0; ++load) {
    library = OpenLibrary(argv[1]);
    if (library == NULL) {
      fprintf(stderr, "%s can't be loaded for the %dth time\n", argv[1], load + 1);
      return 1;
    }
    if (load < 2) TheWholeBoundaryHolds(argv[2]);
    AModelComesAndGoes();
    CHECK(CloseLibrary(library));
    CHECK(!IsLoaded(argv[2]));
    if (load == 0) slots = FreeSlots();
  }
  CHECK(FreeSlots() == slots);
  return failures == 0 ? 0 : 1;
}
