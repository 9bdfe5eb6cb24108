#pragma once

#include <string>
#include <string_view>

namespace gantry::fieldrun {

/// Writes a file of results, which takes its name only when it is complete: until then, and when it
/// can't be written, whatever stood there stays. Throws runtime_error, naming the file, on any
/// failure.
void WriteWhole(const std::string& path, std::string_view content);

/// "The file PATH can't be written: REASON", with the system's text for an error number; without a
/// reason for 0.
std::string WriteFailure(const std::string& path, int error);

/// A field of a comma-separated table, in quotes where it needs them.
std::string CsvField(std::string_view text);

}  // namespace gantry::fieldrun
