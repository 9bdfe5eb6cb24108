#pragma once

namespace gantry::test {

/// The first of up to seven neighbouring ports that nobody uses. They are this caller's until the
/// process ends: no other call gets them, of this process or of one that runs beside it.
int FreePorts(int count = 1);

/// Lets the module start its simulators on four such ports: writes them to the registry, which must
/// be a test's own. Otherwise it would take those of every user's default.
void StartSimulatorsOnFreePorts();

}  // namespace gantry::test
