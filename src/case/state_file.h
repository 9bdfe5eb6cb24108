#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace gantry {

class CExportedVariables;

/// Lets the inflow library write or read its state. It is given the native handle of the open file
/// (a POSIX descriptor, a Windows HANDLE), whose position it shares: what follows in the file
/// follows where it has stopped.
using InflowStateTransfer = std::function<void(intptr_t file)>;

/// Writes the model state file: its header, the inflow library's state, the exported variables.
/// The file is written aside and takes its name when it is complete, so that a failure leaves the
/// old one in place. No failure is reported; an empty path is none.
void WriteStateFile(const std::string& path, const InflowStateTransfer& saveInflow,
                    CExportedVariables& variables);

/// Reads the file if it exists and isn't empty, and appends its variables to the list once all of
/// them could be read. No failure is reported. False when the file holds what was not understood:
/// it is damaged, or the inflow library that wrote into it isn't the one at hand.
bool ReadStateFile(const std::string& path, const InflowStateTransfer& loadInflow,
                   CExportedVariables& variables);

/// Copies the file to a new one beside it, PATH.backup or PATH.backup2 and so on. True when it is
/// kept so, or when there is none.
bool KeepStateFile(const std::string& path);

}  // namespace gantry
