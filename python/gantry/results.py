"""The results of a finished run, as arrays.

    results = Results("results")
    results.field["oil"]                 # a number for each step; not a number where nobody tells it
    results.wells["P1"]["pressure"]
    results.units["oil"]                 # "Sm3/d"
    results.frame("wells")               # the whole table as a pandas.DataFrame
"""

from __future__ import annotations

import csv
import json
import os
from collections.abc import Mapping
from functools import cached_property
from pathlib import Path
from typing import TYPE_CHECKING, Any

import numpy as np
from numpy.typing import NDArray

if TYPE_CHECKING:
    import pandas  # type: ignore[import]

Column = NDArray[Any]  #: of one dimension: numbers, days (datetime64[D]) or texts

_TEXT_COLUMNS = ("date", "well", "kind", "limited by", "group limits", "totals by", "run")
_TABLES = ("field", "wells", "inflow")


def _split(heading: str) -> tuple[str, str]:
    """Name and unit of a heading: "oil (Sm3/d)"."""
    name, _, unit = heading.partition(" (")
    return name, unit.removesuffix(")")


def _column(name: str, values: list[str]) -> Column:
    if name == "date":
        return np.array(values, dtype="datetime64[D]")
    if name in _TEXT_COLUMNS:
        return np.array(values, dtype=object)
    try:
        return np.array([float(value) if value else np.nan for value in values])
    except ValueError:
        return np.array(values, dtype=object)


class Results:
    """A folder of results. Raises FileNotFoundError for a folder that holds no run.

    field: columns by name, each of shape (steps,). wells: for each well its columns by name, of the same
    shape; a number that nobody tells is NaN. units: of each column, in those of the case, such as "Sm3/d";
    empty for what has none. info: what run.json tells. A run that still goes on can be read: the steps
    that stand in all tables.
    """

    def __init__(self, folder: str | os.PathLike[str]) -> None:
        self.folder = Path(folder)
        run_file = self.folder / "run.json"
        if not run_file.exists():
            raise FileNotFoundError(f"{self.folder} holds no run: there is no run.json")
        self.info: dict[str, Any] = json.loads(run_file.read_text(encoding="utf-8"))
        self.title: str = self.info["title"]
        self.warnings: list[dict[str, Any]] = self.info.get("warnings", [])
        self.units: dict[str, str] = {}
        self.field: Mapping[str, Column] = self._read("field")

    def _read(self, table: str) -> dict[str, Column]:
        with open(self.folder / f"{table}.csv", encoding="utf-8", newline="") as file:
            headings, *rows = csv.reader(file)
        # The last row may be in the middle of being written.
        rows = [row for row in rows if len(row) == len(headings)]
        columns = {}
        for place, heading in enumerate(headings):
            name, unit = _split(heading)
            self.units[name] = unit
            columns[name] = _column(name, [row[place] for row in rows])
        return columns

    @property
    def dates(self) -> Column:
        """The day on which each step begins."""
        return self.field["date"]

    @property
    def steps(self) -> int:
        return len(self.dates)

    @cached_property
    def wells(self) -> dict[str, dict[str, Column]]:
        return self._by_well(self._read("wells"))

    @cached_property
    def inflow(self) -> dict[str, dict[str, Column]]:
        """For each well the points of all its steps, in the order of "step" and "point": columns of shape
        (points of all steps,)."""
        return self._by_well(self._read("inflow"))

    def _by_well(self, columns: dict[str, Column]) -> dict[str, dict[str, Column]]:
        # The field's row of a step comes last: what stands beyond it isn't whole yet.
        whole = columns["step"] <= self.steps
        split = {}
        for well in dict.fromkeys(columns["well"]):
            rows = whole & (columns["well"] == well)
            split[well] = {name: values[rows] for name, values in columns.items() if name != "well"}
        return split

    def frame(self, table: str = "wells") -> pandas.DataFrame:
        """A whole table ("field", "wells" or "inflow") under the headings of the file, units and all. The
        only part that wants pandas."""
        if table not in _TABLES:
            raise ValueError(f"no table {table!r}; there are {', '.join(_TABLES)}")
        import pandas  # optional

        return pandas.read_csv(self.folder / f"{table}.csv", parse_dates=["date"])
