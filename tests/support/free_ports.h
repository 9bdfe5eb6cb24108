#pragma once

namespace gantry::test {

/// The first of `count` neighbouring ports of the loopback that nobody listens on. Test processes
/// that run side by side get different ones.
int FreePorts(int count);

}  // namespace gantry::test
