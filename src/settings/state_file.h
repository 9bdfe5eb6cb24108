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
/// them could be read. No failure is reported.
void ReadStateFile(const std::string& path, const InflowStateTransfer& loadInflow,
                   CExportedVariables& variables);

}  // namespace gantry
