#pragma once

/// The ten operations of an inflow library, in C: `libInflowCalc.so` (`InflowCalc.dll`), which the
/// driver module loads from its own folder or from where the system keeps libraries, and runs
/// without when none has all ten. docs/inflow.md tells what this project's own library does with
/// them.
///
/// - The library keeps one model of all wells for each model of the module, behind a handle. A null
///   handle does nothing and counts as a failure.
/// - Threads: a handle is used by one thread at a time. While an operation runs it may call back,
///   on the same thread, and a callback may come back into the same handle: `TransformIPR` for
///   another well, or a new list of wells after a restart.
/// - Ownership: pointers lead to what is the caller's, and are good for the call; the model and the
///   callbacks, until `DestroyIPRModel`.
/// - Units are those of gantry/boundary.h, records its `_tGetSetData`.
/// - Operations that can fail return 0 or 1. The module looks at no result. No exception may leave.

#include <stdbool.h>
#include <stdint.h>

#include "gantry/records.h"

#if defined(__cplusplus)
extern "C" {
#endif
#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

enum { IPR_TEXT_SIZE = 260 };

// The callbacks, by which a library drives the simulator. `model` is what was given to
// CreateIPRModel, `well` an index as AddIPRWell gave it. All but the first return 0, or 1 with the
// reason at the start of `text`, which has IPR_TEXT_SIZE bytes.

/// The simulator's time in days from its start; negative before.
typedef double (*IPRElapsedDays)(void* model);
/// Starts the simulator anew at its beginning, with every well connected. The list of wells is
/// given again before it returns.
typedef int32_t (*IPRRestart)(void* model, char* text);
/// Lets a well flow at a rate from the next step on: of oil for a producer, of gas for a gas
/// injector, of water for another; 0 shuts it.
typedef int32_t (*IPRImposeRate)(void* model, int32_t well, double rate, char* text);
/// Runs the simulator on, and reads all connected wells again.
typedef int32_t (*IPRAdvance)(void* model, double days, char* text);
/// Fills a `_tGetSetData` with the inflow of a well, as EXT_GET_IPR does.
typedef int32_t (*IPRReadInflow)(void* model, int32_t well, void* record, char* text);
/// Fills entry 0 of the pressure and rates of a `_tGetSetData` with the present state of a well.
typedef int32_t (*IPRReadCurrent)(void* model, int32_t well, void* record, char* text);

// The operations, each with a type for the pointer by which they are called.

/// A handle, or null on failure. `model` comes back as the first argument of every callback.
typedef void* CreateIPRModelFunction(void* model);
CreateIPRModelFunction CreateIPRModel;

typedef void DestroyIPRModelFunction(void* handle);
DestroyIPRModelFunction DestroyIPRModel;

/// Called once, before all that may call back.
typedef void SetIPRCallbacksFunction(void* handle, IPRElapsedDays elapsedDays, IPRRestart restart,
                                     IPRImposeRate imposeRate, IPRAdvance advance,
                                     IPRReadInflow readInflow, IPRReadCurrent readCurrent);
SetIPRCallbacksFunction SetIPRCallbacks;

/// Begins a new list of wells in place of the earlier one; what is known of a well stays with its
/// name.
typedef void StartIPRAddWellFunction(void* handle);
StartIPRAddWellFunction StartIPRAddWell;

/// Adds a well. `second` is false for a gas well and a gas injector, true for any other.
typedef void AddIPRWellFunction(void* handle, int32_t index, const char* name, bool isProducer,
                                bool second);
AddIPRWellFunction AddIPRWell;

typedef void EndIPRAddWellFunction(void* handle);
EndIPRAddWellFunction EndIPRAddWell;

/// May rewrite the inflow points of `inflowRecord`, and how many there are. `stateRecord` holds the
/// well's present rates and pressure at entry 0; before the first step the pressure is 3.4e35.
typedef int32_t TransformIPRFunction(void* handle, const char* wellName, const void* stateRecord,
                                     void* inflowRecord);
TransformIPRFunction TransformIPR;

/// Learns what TransformIPR needs, by driving the simulator, which is closed afterwards. `window`
/// is the parent for a dialog of the library's own, and may be null.
typedef int32_t SetupIPRFunction(void* window, void* handle);
SetupIPRFunction SetupIPR;

/// Writes the library's state to a file, or reads it: a POSIX descriptor or a Windows HANDLE, used
/// at its current position and left behind the state. Other data may follow.
typedef int32_t SaveIPRFunction(void* handle, intptr_t file);
SaveIPRFunction SaveIPR;
typedef int32_t LoadIPRFunction(void* handle, intptr_t file);
LoadIPRFunction LoadIPR;

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif
#if defined(__cplusplus)
}
#endif
