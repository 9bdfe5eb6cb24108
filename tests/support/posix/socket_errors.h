#pragma once

#include <cerrno>

namespace gantry::test {

inline constexpr int kInProgressError = EINPROGRESS;

}  // namespace gantry::test
