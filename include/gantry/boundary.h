#pragma once

/// The boundary of the driver module, as a host sees it: functions and commands, in C, with the
/// records of gantry/records.h.
///
/// A host loads `libIntersect.so` (`Intersect.dll`), finds the functions by their names, and drives
/// one model for each simulator through the numbered commands of `ExtCmd`. The order of a run:
///
///  1. `ExtIdentify`; `ExtCreateUnit` for row 0, 1, ... until it returns 0; `ExtCreateInstance`.
///  2. `EXT_SET_LABEL`, `EXT_SET_STORE_FILE`, then the case: `EXT_LOAD_CASE_DATA`, `EXT_EDIT`, or
///     `EXT_SET_PROPERTY` for its settings one by one.
///  3. `EXT_START_SIMULATOR`; `EXT_ENUM_SOURCES` for the wells, `EXT_GET_FLUID_MODEL`,
///     `EXT_GET_SIMULATION_DATE`; `EXT_SET_CONNECTION` for each well of the host's network.
///  4. `EXT_START_RUN`, which brings the simulator to the host's start date.
///  5. For each step `EXT_SET_TIMESTEP_DATA`; `EXT_GET_IPR` for each well; the host solves its
///     network; `EXT_SET_OP_PT` for each well; `EXT_TIMESTEP`.
///  6. `EXT_CLOSE_SIMULATOR`, `ExtDestroyInstance`.
///
/// What holds for all of it:
///
/// - Units: liquid rates in stock-tank barrels a day, gas rates in millions of standard cubic feet
///   a day, pressures in psig, temperatures in degrees Fahrenheit, times in days. Dates are days
///   from 31 December 1899. Gravities of liquids are relative to water, those of gas to air.
/// - Texts are 8-bit and NUL-terminated, in Windows-1252. The module never writes past a field, and
///   terminates what it writes unless the field says otherwise.
/// - Ownership: what a pointer leads to is the host's. The module keeps none of them after a call,
///   but for the two callbacks of `EXT_START_RUN`.
/// - Threads: the module starts none. One model is called by one thread at a time, except that
///   `EXT_STOP_SIMULATOR` and `EXT_CLOSE_SIMULATOR` may come from a second one while
///   `EXT_START_RUN` is at work. A call blocks for as long as the simulator takes.
/// - Errors: `EXT_FAILURE` comes with a text in the error block, which may be null for a host that
///   wants none. A C++ exception may leave a function; nothing else does.
///
/// docs/boundary.md gives every byte offset, and an example in bytes.

#include <stdint.h>

#include "gantry/records.h"

#if defined(__cplusplus)
extern "C" {
#endif
#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

typedef enum ExtResult {
  EXT_SUCCESS = 0,
  EXT_FAILURE = 1,
  EXT_NO_MORE = -1  ///< the end of a list; a dialog that was cancelled
} ExtResult;

/// The commands of `ExtCmd`, each with what its `data` points to and what its `value` holds, where
/// it takes them. Records are only read from unless it says "fills"; a command that comes without
/// its record fails. Results are EXT_SUCCESS and EXT_FAILURE unless it says others.
typedef enum ExtCommand {
  // The case. No simulator is needed.

  /// Shows the dialog of the case over the window. Fills a `uint32_t` with whether anything
  /// changed; may be null. EXT_NO_MORE when cancelled, EXT_FAILURE for a bad window.
  EXT_EDIT = 5,
  /// Draws the module's picture in the window, with a device context (HDC). Always 1.
  EXT_DRAW_ICON = 7,
  /// Takes a text: the folder in which the dataset now is.
  EXT_SET_DATA_FOLDER = 10,
  /// Fills a block of `value` bytes with the case, and writes the store file. Fails when the block
  /// is too small; EXT_CASE_DATA_CAPACITY bytes are what a host can give back.
  EXT_SAVE_CASE_DATA = 12,
  /// Takes a `CaseDataRecord`. The next EXT_START_SIMULATOR then starts nothing, so that a case can
  /// be opened without a simulator. Fails for a block that isn't whole or is of a later version.
  EXT_LOAD_CASE_DATA = 13,
  /// Fills an `EnumDataFilesRow` with the dataset, for row 0. EXT_NO_MORE for any other row.
  EXT_ENUM_DATA_FILES = 16,
  /// Takes a text: the path of the model's store file. `value` 1 loads it; a file that is missing
  /// or damaged is no failure.
  EXT_SET_STORE_FILE = 20,
  /// Takes a text, what the host calls the model; null changes nothing.
  EXT_SET_LABEL = 21,
  /// Fills a text field of `value` bytes: the dataset, and where it runs. No terminator when the
  /// text fills the field.
  EXT_GET_DESCRIPTION = 129,
  /// Takes a `SetDataFileRecord`: the dataset of a case on this machine; ignored for one on a
  /// cluster.
  EXT_SET_DATA_FILE = 136,

  // The simulator's start, and what is known from then on.

  /// Takes a `SimulatorStartRecord` or null. Starts the simulator, and reads its wells and fluid.
  EXT_START_SIMULATOR = 23,
  /// Fills an `EnumSourcesRow` with the well behind the row's index; `value` 2 gives only the
  /// first. EXT_NO_MORE behind the last, with the row as it was.
  EXT_ENUM_SOURCES = 2,
  /// Fills a `FluidModelRecord`. EXT_FAILURE without a text for a black-oil model, or for one of
  /// more than EXT_MAX_COMPONENTS.
  EXT_GET_FLUID_MODEL = 9,
  /// Fills a `DateRecord` with the simulator's date when it was started. EXT_FAILURE without a text
  /// before.
  EXT_GET_SIMULATION_DATE = 11,
  /// Takes a `SetConnectionRequest`: whether a well is in the host's network.
  EXT_SET_CONNECTION = 19,
  /// Ends the session with the simulator. EXT_START_RUN on another thread ends after its present
  /// step first. Always EXT_SUCCESS.
  EXT_STOP_SIMULATOR = 55,
  /// The same.
  EXT_CLOSE_SIMULATOR = 56,

  // A run. After a failure a run can begin anew with EXT_START_RUN.

  /// Takes a `RunStartRecord`. Marks the connected wells, starts the simulator if none runs, checks
  /// that it has the case's wells and components, and runs it up to the start date in steps of at
  /// most 30 days.
  EXT_START_RUN = 48,
  /// Reads the connected wells from the simulator, and measures the inflow of each.
  EXT_SET_TIMESTEP_DATA = 63,
  /// Fills a `_tGetSetData` with the inflow of its well, as it was last measured. With the inflow
  /// model "drainage region", the inflow library has transformed it.
  EXT_GET_IPR = 50,
  /// Takes a `_tGetSetData` with the operating point of its well, which is sent by the next
  /// EXT_APPLY_OPERATING_POINTS or EXT_TIMESTEP.
  EXT_SET_OP_PT = 53,
  /// Sends statuses, uptimes, constraints and compositions of all wells to the simulator.
  EXT_APPLY_OPERATING_POINTS = 101,
  /// Takes a `TimestepRecord`. Sends what EXT_APPLY_OPERATING_POINTS would, unless that has been
  /// done, and runs the simulator on. Fails with "The Intersect simulation ended" when it has.
  EXT_TIMESTEP = 49,

  // Text paths (docs/text-paths.md) and published variables.

  /// Fills a `GetPropertyRequest`. EXT_FAILURE, also without a text, when nothing answers the path.
  EXT_GET_PROPERTY = 96,
  /// Takes a `SetPropertyRequest`. EXT_FAILURE, also without a text, when nothing takes the path.
  EXT_SET_PROPERTY = 97,
  /// Takes a text: a command, such as `Intersect.RunToTime(365)`.
  EXT_DO_COMMAND = 98,
  /// Fills a `VariableNamesRecord`.
  EXT_GET_VARIABLE_NAMES = 102,
  /// Fills a `PublishedVariableRow` with the variable behind the row's handle. EXT_NO_MORE behind
  /// the last.
  EXT_ENUM_PUBLISHED_VARIABLES = 103,
  /// Shows the dialog of what is published over the window. EXT_FAILURE without a text when
  /// cancelled.
  EXT_EDIT_PUBLISHED_VARIABLES = 104,
  /// Takes an `EvalPublishedRequest`, and fills its value on a read. Does nothing while no
  /// simulator runs; a write to a connected well is refused by a text to the callbacks of the run.
  EXT_EVAL_PUBLISHED_VARIABLES = 105,
  /// `value` is the handle of a variable, or -1 for all. Removes the variable and, with all of its
  /// own, the well at the place of that number among the wells that have variables, which must be
  /// there.
  EXT_DEL_PUBLISHED_VARIABLE = 109,

  // Commands that do nothing, and what they return.

  EXT_QUERY_BY_INDEX = 3,       ///< -999
  EXT_NOTIFY_FOUR = 4,          ///< 0
  EXT_NOTIFY_FIFTY_EIGHT = 58,  ///< 0
  EXT_NOTIFY_SIXTY = 60,        ///< 0
  EXT_QUERY_CAN_RUN = 62,       ///< 1
  EXT_RESERVED_99 = 99,         ///< -1
  EXT_NOTIFY_HUNDRED = 100,     ///< 0
  EXT_IMPORT_COMPOSITION = 130  ///< 1: "Compositional import from IX not supported yet"
} ExtCommand;

// The functions, each with a type of its own name for the pointer by which a host calls it:
//
//   ExtCmdFunction* cmd = (ExtCmdFunction*)dlsym(module, "ExtCmd");
//
// A handle of a model is what `ExtCreateInstance` gave. Unless it is said, a function clears the
// whole error block first.

/// Fills an `ExtIdentifyRecord`. EXT_FAILURE without one.
typedef int32_t ExtIdentifyFunction(void* identityRecord, ExtErrorBlock* err);
ExtIdentifyFunction ExtIdentify;

/// Makes a model, which is the host's until `ExtDestroyInstance`. Always EXT_SUCCESS when there is
/// a place for the handle; the handle is null when no model could be made.
typedef int32_t ExtCreateInstanceFunction(void** outModel, ExtErrorBlock* err);
ExtCreateInstanceFunction ExtCreateInstance;

/// Ends the session of a running simulator, then the model. Null does nothing. Always EXT_SUCCESS.
typedef int32_t ExtDestroyInstanceFunction(void* model, ExtErrorBlock* err);
ExtDestroyInstanceFunction ExtDestroyInstance;

/// Runs one of the commands of `ExtCommand`; any other number does nothing and gives 0. `window` is
/// the parent of a dialog: an HWND, or an X11 window's id. Commands but EXT_SET_LABEL and
/// EXT_RESERVED_99 fail without a model.
typedef int32_t ExtCmdFunction(void* model, void* window, uint32_t command, void* data,
                               uint32_t value, ExtErrorBlock* err);
ExtCmdFunction ExtCmd;

/// Shows the dialog of what holds for this machine, and returns 0 when it has been closed.
typedef int32_t ExtConfigureFunction(void* parentWindow);
ExtConfigureFunction ExtConfigure;

/// Takes what holds for this machine from the registry key `baseKeyPath`\Intersect under a root key
/// (an HKEY: 0x80000001 for the current user, 0x80000002 for the machine), and saves it as the
/// user's own.
typedef void ExtCopyConfigureFunction(void* rootKey, const char* baseKeyPath);
ExtCopyConfigureFunction ExtCopyConfigure;

/// Does nothing.
typedef void ExtHelpFunction(void);
ExtHelpFunction ExtHelp;

/// Always EXT_FAILURE: "ConnectToApplication is not implemented". Doesn't clear the error block.
typedef int32_t ExtConnectToAppFunction(void* model, uint32_t first, uint32_t second,
                                        ExtErrorBlock* err);
ExtConnectToAppFunction ExtConnectToApp;

/// As EXT_START_SIMULATOR. Doesn't clear the error block.
typedef int32_t ExtStartAppFunction(void* model, uint32_t value, ExtErrorBlock* err);
ExtStartAppFunction ExtStartApp;

/// As EXT_CLOSE_SIMULATOR.
typedef int32_t ExtStopAppFunction(void* model);
ExtStopAppFunction ExtStopApp;

/// Writes the description of the model (docs/equipment-xml.md) to a file, in place of one that is
/// there. `flag` not 0 leaves the variables out. `names` selects wells, and ends with a null
/// pointer; null or empty selects all. EXT_FAILURE when the file can't be written.
typedef int32_t ExtEquipXmlFunction(void* model, const char* path, uint32_t flag,
                                    const char* const* names);
ExtEquipXmlFunction ExtEquipXml;

/// Fills an `ExtUnitRecord` with a row of the table of units: 1, or 0 behind its last row. A row
/// below 0 stands for row 0.
typedef int32_t ExtCreateUnitFunction(int32_t index, void* unitRecord);
ExtCreateUnitFunction ExtCreateUnit;

/// Where the host stores its callback at load; the module only offers the place.
typedef void (*BrindleShowDataServerString)(void* window, const void* data, int flag,
                                            unsigned long value);
extern BrindleShowDataServerString GlpfnBrindleShowDataServerString;

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif
#if defined(__cplusplus)
}
#endif
