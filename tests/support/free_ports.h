#pragma once

namespace gantry::test {

/// The first of up to seven neighbouring ports that nobody uses. They are this caller's until the
/// process ends: no other call gets them, of this process or of one that runs beside it.
int FreePorts(int count = 1);

}  // namespace gantry::test
