"""Gantry from Python: coupled runs of a network and a reservoir simulator.

    import gantry

    case = gantry.Case("case.toml")
    with case.run() as run:
        for step in run:
            print(step.date, step.inflow["P1"].pressure)
            step.control("P1", bottom_hole_pressure=150)

    results = gantry.Results(case.output)
    results.wells["P1"]["oil"]

`gantry.peer` is the other end of the wire: a simulator of one's own in Python.
"""

from importlib import import_module
from typing import TYPE_CHECKING, Any

if TYPE_CHECKING:  # the same names for who reads types
    from .case import Case as Case, CaseError as CaseError, Control as Control, DriverError as DriverError
    from .case import Inflow as Inflow, Run as Run, Step as Step
    from .results import Results as Results

_HOMES = {
    "Case": "case", "CaseError": "case", "Control": "case", "DriverError": "case", "Inflow": "case",
    "Run": "case", "Step": "case", "Results": "results",
}  # fmt: skip

__all__ = list(_HOMES)


def __getattr__(name: str) -> Any:
    # When first asked for: peers and results need neither the compiled part nor each other.
    if name not in _HOMES:
        raise AttributeError(f"module 'gantry' has no attribute {name!r}")
    return getattr(import_module("." + _HOMES[name], __name__), name)
