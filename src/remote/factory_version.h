#pragma once

#include <cstdint>

namespace gantry {

/// The version of the run factory's dialogue. Frozen: docs/remote-protocol.md.
inline constexpr int32_t ExpectedFactoryVersion = 3;

}  // namespace gantry
