#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace gantry::fieldrun::test {

/// Runs a program in a folder with its arguments, texts in UTF-8, each as it stands, nothing to
/// read, and its outputs in two files. Its exit status; -1 when it didn't end by itself.
int RunProgram(const std::string& program, const std::vector<std::string>& arguments,
               const std::filesystem::path& folder, const std::filesystem::path& out,
               const std::filesystem::path& err);

/// From here on, until the next test, this process sees the settings that the programs see.
void ShareSettingsWithPrograms();

}  // namespace gantry::fieldrun::test
