/* The smallest host: starts a simulator through the driver module, prints the inflow of each well
   at each step, and lets each well flow at the middle of its inflow table, where a real host would
   ask its network. gantry/boundary.h tells what each call does.

   Usage: minimal_host SIMULATOR DATASET [STEPS] */

#include <stdio.h>
#include <stdlib.h>

#include "gantry/boundary.h"

enum { MOST_WELLS = 100, DAYS = 30 };

static void* model;

/* Ends the host with the module's own text when a command fails. */
static void Command(ExtCommand command, void* data) {
  ExtErrorBlock error;
  const int32_t result = ExtCmd(model, NULL, command, data, 0, &error);
  if (result == EXT_SUCCESS) return;
  fprintf(stderr, "Command %d: %s\n", (int)command, error.text);
  ExtDestroyInstance(model, &error);
  exit(1);
}

static void Set(const char* path, const char* value) {
  SetPropertyRequest request = {.path = path, .value = value};
  Command(EXT_SET_PROPERTY, &request);
}

static int32_t ListWells(EnumSourcesRow* wells) {
  int32_t count = 0;
  EnumSourcesRow row = {.index = -1};
  while (count < MOST_WELLS && ExtCmd(model, NULL, EXT_ENUM_SOURCES, &row, 0, NULL) == EXT_SUCCESS)
    wells[count++] = row;
  return count;
}

static void ShowStatus(const char* text, void* sender) {
  (void)sender;
  printf("%s\n", text);
}

static void StartRun(int32_t count) {
  int32_t connected[MOST_WELLS];
  for (int32_t well = 0; well < count; ++well) connected[well] = well;
  RunStartRecord run = {.connectedWells = connected,
                        .connectedCount = count,
                        .statusCallback = ShowStatus,
                        .runMode = 1};
  Command(EXT_START_RUN, &run);
}

static void PrintInflow(const char* name, const _tGetSetData* inflow) {
  printf("  %-8s psig       oil bbl/d   water bbl/d  gas MMscf/d\n", name);
  for (int32_t i = 0; i < inflow->pointCount; ++i)
    printf("           %8.1f %11.1f %13.1f %12.3f\n", inflow->pressure[i], inflow->oilRate[i],
           inflow->waterRate[i], inflow->gasRate[i]);
}

/* The record goes back as it came, with the operating point at entry 0. */
static void ChooseOperatingPoint(_tGetSetData* record) {
  const int32_t middle = record->pointCount / 2;
  record->pressure[0] = record->pressure[middle];
  record->oilRate[0] = record->oilRate[middle];
  record->waterRate[0] = record->waterRate[middle];
  record->gasRate[0] = record->gasRate[middle];
  record->shutInCode = EXT_SHUT_AT_SURFACE; /* for a well that has no inflow */
}

static void Step(const EnumSourcesRow* wells, int32_t count) {
  static _tGetSetData exchange = {.size = sizeof exchange}; /* 105 kB: not for the stack */
  Command(EXT_SET_TIMESTEP_DATA, NULL);
  for (int32_t well = 0; well < count; ++well) {
    exchange.well = well;
    Command(EXT_GET_IPR, &exchange);
    PrintInflow(wells[well].name, &exchange);
    ChooseOperatingPoint(&exchange);
    Command(EXT_SET_OP_PT, &exchange);
  }
  TimestepRecord step = {.stepDays = DAYS};
  Command(EXT_TIMESTEP, &step);
}

int main(int argc, char** argv) {
  static EnumSourcesRow wells[MOST_WELLS];
  if (argc < 3) return 2;
  const int steps = argc > 3 ? atoi(argv[3]) : 3;
  ExtIdentifyRecord identity = {0};
  ExtIdentify(&identity, NULL);
  printf("%s, interface %d\n", identity.description, (int)identity.interfaceNumber);

  ExtCreateInstance(&model, NULL);
  if (model == NULL) return 1;
  Set("Intersect.CaseDetails.SimExeName", argv[1]);
  Set("Intersect.CaseDetails.FileName", argv[2]);
  Command(EXT_START_SIMULATOR, NULL);
  const int32_t count = ListWells(wells);
  StartRun(count);
  for (int step = 0; step < steps; ++step) {
    printf("Day %d\n", step * DAYS);
    Step(wells, count);
  }
  Command(EXT_CLOSE_SIMULATOR, NULL);
  ExtDestroyInstance(model, NULL);
  printf("%d wells ran for %d days\n", (int)count, steps * DAYS);
  return 0;
}
