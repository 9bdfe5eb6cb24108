#pragma once

#include "platform/windows/win32.h"

namespace gantry::test {

inline constexpr int kInProgressError = WSAEINPROGRESS;

}  // namespace gantry::test
