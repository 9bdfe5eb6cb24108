#pragma once

namespace gantry::test {

/// The first of neighbouring ports that nobody uses and no other call in this process gets. Those
/// of programs beside it are in other networks, or have their turn later.
int FreePorts(int count = 1);

/// Lets the module start its simulators on four such ports: writes them to the registry, which must
/// be a test's own. Otherwise it would take those of every user's default.
void StartSimulatorsOnFreePorts();

}  // namespace gantry::test
