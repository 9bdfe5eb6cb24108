#pragma once

// The ten operations of the inflow library, in C. docs/inflow.md tells their use.

#include <stdbool.h>
#include <stdint.h>

#if defined(__cplusplus)
extern "C" {
#endif
#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

// The callbacks. `model` is the pointer given to CreateIPRModel. A callback that returns non-zero
// has failed, and has written why to the start of `text`, which has 260 bytes. `record` is the
// record of the inflow exchange.
typedef double (*IPRElapsedDays)(void* model);
typedef int32_t (*IPRRestart)(void* model, char* text);
typedef int32_t (*IPRImposeRate)(void* model, int32_t well, double rate, char* text);
typedef int32_t (*IPRAdvance)(void* model, double days, char* text);
typedef int32_t (*IPRReadInflow)(void* model, int32_t well, void* record, char* text);
typedef int32_t (*IPRReadCurrent)(void* model, int32_t well, void* record, char* text);

// Operations that can fail return 0 or 1. A null handle does nothing and counts as a failure.
// A handle is used by one thread at a time.

void* CreateIPRModel(void* model);
void DestroyIPRModel(void* handle);
void SetIPRCallbacks(void* handle, IPRElapsedDays elapsedDays, IPRRestart restart,
                     IPRImposeRate imposeRate, IPRAdvance advance, IPRReadInflow readInflow,
                     IPRReadCurrent readCurrent);

// A new list of wells takes the place of the earlier one; what is known of a well stays with its
// name. `second` is false for a gas well and a gas injector.
void StartIPRAddWell(void* handle);
void AddIPRWell(void* handle, int32_t index, const char* name, bool isProducer, bool second);
void EndIPRAddWell(void* handle);

// Rewrites the inflow points of `inflowRecord`; `stateRecord` holds the well's current rates.
int32_t TransformIPR(void* handle, const char* wellName, const void* stateRecord,
                     void* inflowRecord);

// Restarts the simulator, tests every well, and keeps what it learned. No window is opened.
int32_t SetupIPR(void* window, void* handle);

// `file` is a POSIX descriptor or a Windows HANDLE, used at its current position.
int32_t SaveIPR(void* handle, intptr_t file);
int32_t LoadIPR(void* handle, intptr_t file);

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif
#if defined(__cplusplus)
}
#endif
