#pragma once

#include <filesystem>

namespace gantry::test {

/// Lets this process, and where the platform can its children, keep its registry and its locks in
/// `folder`.
void IsolateSettings(const std::filesystem::path& folder);

/// Sets a variable of this process's environment.
void SetEnvironment(const char* name, const std::string& value);

}  // namespace gantry::test
