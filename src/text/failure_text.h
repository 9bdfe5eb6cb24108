#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace gantry {

/// What has failed, in words for a person. Where memory has run out, `purpose` tells what it was
/// wanted for: "the report".
std::string FailureText(const std::exception& failure, std::string_view purpose = {});

}  // namespace gantry
