"""Cases and their runs.

All numbers are in the units of the case (`Case.units` names them): pressures at bottom hole, rates at
surface conditions, injected rates positive.
"""

from __future__ import annotations

import os
import shutil
import sys
from collections.abc import Iterator, Mapping
from dataclasses import dataclass
from datetime import date
from pathlib import Path
from types import TracebackType
from typing import Callable, TypeVar

import numpy as np
from numpy.typing import NDArray

try:
    from . import _native
except ImportError as _missing:  # gantry.peer and gantry.Results need no compiled part
    raise ImportError(
        "gantry's compiled part isn't there: build the project, or install the package"
    ) from _missing

CaseError = _native.CaseError
DriverError = _native.DriverError

_Item = TypeVar("_Item")
Column = NDArray[np.float64]  #: of one dimension


class _ByWell(Mapping[str, _Item]):
    """What each well has, made when it is asked for."""

    def __init__(self, wells: Mapping[str, int], make: Callable[[int], _Item]) -> None:
        self._wells = wells
        self._make = make

    def __getitem__(self, well: str) -> _Item:
        return self._make(_place(self._wells, well))

    def __iter__(self) -> Iterator[str]:
        return iter(self._wells)

    def __len__(self) -> int:
        return len(self._wells)


def _place(wells: Mapping[str, int], well: str) -> int:
    if well not in wells:
        raise KeyError(f"the run has no well {well!r}; it has {', '.join(wells)}")
    return wells[well]


class Inflow:
    """The inflow of a well in a step, as the simulator has it, in the units of the case.

    pressure: at bottom hole, shape (points,), at most ten; oil, water, gas: rates at surface
    conditions, of the same shape. Rates fall from the first point, the well's most, to the last.
    """

    def __init__(self, native: _native.Inflow) -> None:
        self.pressure: Column = native.pressure
        self.oil: Column = native.oil
        self.water: Column = native.water
        self.gas: Column = native.gas
        self.is_dead: bool = native.is_dead  #: no point flows

    @property
    def liquid(self) -> Column:
        """Oil and water together, shape (points,)."""
        return self.oil + self.water

    def rates_at(self, bottom_hole_pressure: float) -> tuple[float, float, float]:
        """Oil, water and gas at a pressure (all in the units of the case), straight between the points
        and held at the ends."""
        order = np.argsort(self.pressure, kind="stable")
        oil, water, gas = (
            float(np.interp(bottom_hole_pressure, self.pressure[order], rates[order]))
            for rates in (self.oil, self.water, self.gas)
        )
        return oil, water, gas


@dataclass(frozen=True)
class Control:
    """Where a well stands: as it was decided, or as the simulator reports it. The pressure that is
    decided for a shut well is not a number. In the units of the case; injected rates are positive."""

    bottom_hole_pressure: float  #: `case.units["pressure"]`
    oil: float  #: `case.units["liquid_rate"]`
    water: float  #: `case.units["liquid_rate"]`
    gas: float  #: `case.units["gas_rate"]`
    is_open: bool = True
    limited_by: str = ""  #: what holds it there; empty for a report

    @property
    def liquid(self) -> float:
        return self.oil + self.water


class Step:
    """A step that hasn't been run yet: what it begins with, and what is decided for it.

    At first every well stands where the network of the case wants it. `control` and `shut` say
    otherwise.
    """

    def __init__(self, run: "Run") -> None:
        native = run._native
        self._native = native
        self._wells = run._wells
        self.number: int = native.step  #: from 1
        self.date = date(*native.date)  #: on which the step begins
        self.days: float = native.days  #: from the start of the run to this step
        self.length: float = native.length  #: days
        self.inflow: Mapping[str, Inflow] = _ByWell(self._wells, lambda well: Inflow(native.inflow(well)))
        self.controls: Mapping[str, Control] = _ByWell(self._wells, lambda well: Control(**native.decided(well)))

    @property
    def reported(self) -> dict[str, Control]:
        """What the simulator told at the end of the step before; empty before the first, and without
        the wells of which it told nothing sound."""
        told = {well: self._native.reported(place) for well, place in self._wells.items()}
        return {well: Control(**values) for well, values in told.items() if values is not None}

    def control(
        self,
        well: str,
        *,
        bottom_hole_pressure: float | None = None,
        oil: float | None = None,
        water: float | None = None,
        liquid: float | None = None,
        gas: float | None = None,
        limited_by: str = "Python",
    ) -> Control:
        """Puts a well on its inflow, as open as all limits allow, and tells where that is.

        A producer's pressure is the lowest that it may have, an injector's the highest; rates are the
        most that it may make or take. A well that doesn't flow within them is shut.
        """
        place = _place(self._wells, well)
        given = {"oil": oil, "water": water, "liquid": liquid, "gas": gas}
        limits = {phase: float(limit) for phase, limit in given.items() if limit is not None}
        if bottom_hole_pressure is None and not limits:
            raise ValueError(f"{well}: a control needs a pressure or a rate")
        for name, value in [*limits.items(), ("bottom_hole_pressure", bottom_hole_pressure)]:
            if value is not None and not np.isfinite(value):
                raise ValueError(f"{well}: {name} is {value}")
        self._native.set_point(place, limits, bottom_hole_pressure, limited_by)
        return self.controls[well]

    def set_point(
        self, well: str, bottom_hole_pressure: float, oil: float, water: float, gas: float,
        limited_by: str = "Python",
    ) -> None:
        """Puts a well at an operating point of one's own, whether it lies on its inflow or not."""
        values = (float(bottom_hole_pressure), float(oil), float(water), float(gas))
        if not np.all(np.isfinite(values)):
            raise ValueError(f"{well}: an operating point of {values}")
        self._native.set_exactly(_place(self._wells, well), *values, limited_by)

    def shut(self, well: str, limited_by: str = "Python") -> None:
        """Shuts a well in for this step."""
        self._native.shut(_place(self._wells, well), limited_by)


class Published(Mapping[str, float]):
    """The published variables of a run by their full names, such as "P1:Water cut".

    Reading and writing goes to the simulator, in the driver's own units: stb/day, MMscf/day, psig. A well
    is read as it flows at the moment: within a step a connected one stands under the last question of its
    inflow's measurement, near no flow, so read what a step has made at its end from `Step.reported`. Only
    wells that the network leaves alone can be written. Raises KeyError for a name that isn't published,
    and DriverError for one that can't be read or written.
    """

    def __init__(self, native: _native.Run) -> None:
        self._native = native

    def _handles(self) -> dict[str, int]:
        return self._native.published()

    def __getitem__(self, name: str) -> float:
        return float(self._native.read_published(self._handles()[name]))

    def __setitem__(self, name: str, value: float) -> None:
        self._native.write_published(self._handles()[name], repr(float(value)))

    def __iter__(self) -> Iterator[str]:
        return iter(self._handles())

    def __len__(self) -> int:
        return len(self._handles())


class Run:
    """A run that goes on while it is iterated. Made by `Case.run`; of one thread.

    Other threads run while the simulator works. Ctrl-C takes effect when the simulator has finished its
    step; the `with` block then ends the run in order, with whole results.
    """

    def __init__(self, native: _native.Run) -> None:
        self._native = native
        self._wells = {name: place for place, name in enumerate(native.wells)}
        self._has_step = False
        self._is_over = False
        self.published = Published(native)

    def __enter__(self) -> "Run":
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        if not self._is_over:
            self.close(f"{kind.__name__}: {error}" if kind else "")

    def close(self, failure: str = "") -> None:
        """Lets the simulator go and writes the report. A text tells in the results why the run ended
        ahead of its time."""
        self._is_over = True
        self._native.end(failure)

    def __iter__(self) -> Iterator[Step]:
        return self

    def __next__(self) -> Step:
        if self._is_over:
            raise StopIteration
        if self._has_step:
            self._has_step = False
            self._native.carry()
        if not self._native.next():
            self.close()
            raise StopIteration
        self._has_step = True
        return Step(self)

    @property
    def wells(self) -> list[str]:
        """The wells of the case by name."""
        return list(self._wells)

    @property
    def step_count(self) -> int:
        """How many steps the whole run has."""
        return self._native.step_count

    @property
    def simulator(self) -> str:
        """The simulator's program, with what it says of its version."""
        return self._native.simulator

    @property
    def warnings(self) -> list[str]:
        """Numbers that may be wrong, as far as the run has come."""
        return self._native.warnings

    def get(self, path: str) -> str:
        """A value inside the driver, such as "Intersect.Well[{P1}].CurPressure", in the driver's own
        units (psig). Raises DriverError for a path that nothing answers."""
        return self._native.get(path)

    def set(self, path: str, value: object) -> None:
        """Writes a value by its path. Raises DriverError for one that nothing takes."""
        self._native.set(path, str(value))

    def do(self, command: str) -> None:
        """A command of the driver, such as "Intersect.RunToTime(365)"."""
        self._native.do(command)


class Case:
    """A case file, read and checked. Raises CaseError, which tells every fault with file and line.

    output: the folder of the results, in place of the case's own.
    """

    def __init__(self, file: str | os.PathLike[str], *, output: str | os.PathLike[str] | None = None) -> None:
        self.file = Path(file)
        self._native = _native.Case(os.fspath(file), None if output is None else os.fspath(output))
        self.title: str = self._native.title
        self.output = Path(self._native.output)
        self.wells: dict[str, str] = self._native.wells  #: kinds: "producer", "water injector", ...
        self.units: dict[str, str] = self._native.units  #: of "pressure", "liquid_rate" and "gas_rate"
        self.is_metric: bool = self._native.is_metric
        self.warnings: list[str] = self._native.warnings

    def run(self, *, steps: int = 0, module: str | os.PathLike[str] | None = None,
            simulator: str | os.PathLike[str] | None = None) -> Run:
        """Starts the simulator. To be used in a `with` statement, so that it ends in order.

        steps: at most so many; 0 for all of the case. module: the driver, in place of the one beside
        this package or installed. simulator: for a case that names none, in place of tanksim.
        """
        if steps < 0:
            raise ValueError(f"a run of {steps} steps")
        native = _native.Run(self._native, os.fspath(module or _module()), os.fspath(simulator or _tanksim()), steps)
        return Run(native)


def _first(candidates: list[Path]) -> Path | None:
    return next((path for path in candidates if path.exists()), None)


def _module() -> Path:
    """GANTRY_MODULE, or the driver beside this package, in its build tree, or installed."""
    if own := os.environ.get("GANTRY_MODULE"):
        return Path(own)
    here = Path(__file__).resolve().parent
    name = "libIntersect.so"
    folders = [here, here.parents[1] / "lib", here.parents[2], *(Path(sys.prefix) / lib for lib in ("lib", "lib64"))]
    folders += sorted(Path("/usr").glob("lib/*-linux-gnu")) + [Path("/usr/local/lib")]
    found = _first([folder / name for folder in folders])
    if found is None:
        raise FileNotFoundError(f"no {name}; GANTRY_MODULE may name it, or run(module=...)")
    return found


def _tanksim() -> str:
    here = Path(__file__).resolve().parent
    found = _first([here / "tanksim", here.parents[1] / "bin" / "tanksim"])
    return str(found) if found else shutil.which("tanksim") or ""
