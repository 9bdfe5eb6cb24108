#pragma once

#include <optional>
#include <string>

namespace gantry::platform {

/// The value of an environment variable of this process, or none when it isn't set.
/// At most `capacity` - 1 characters are accepted; a longer value counts as not set, as it does
/// for a reader with a buffer of that size.
std::optional<std::string> ReadEnvironment(const char* name, size_t capacity);

/// Sets a variable for this process and those that it starts from now on; no other thread may use
/// the environment meanwhile.
void WriteEnvironment(const char* name, const std::string& value);

}  // namespace gantry::platform
