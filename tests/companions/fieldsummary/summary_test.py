"""summary_test.py FIELDRUN EXAMPLES: the summary files of a run, read back by the library's own `summary`."""

import csv
import subprocess
import sys
import tempfile
from pathlib import Path

FIELDRUN, EXAMPLES = sys.argv[1:]


def table(path):
    """The rows of a table, with the units cut off the headings."""
    with open(path, newline="") as file:
        return [{name.split(" (")[0]: value for name, value in row.items()} for row in csv.DictReader(file)]


def vectors(results, *names):
    """What stands in the summary files, a row for each step."""
    ran = subprocess.run(["summary", results / "FORECAST.SMSPEC", *names], check=True, text=True, capture_output=True)
    lines = [line for line in ran.stdout.splitlines() if line.strip()]  # headings, then a line for each step
    return [[float(value) for value in line.split()] for line in lines[-STEPS:]]


def near(found, expected):
    assert abs(found - float(expected)) <= 2e-6 * abs(found) + 1e-9, (found, expected)


STEPS = 8
GAS = 1000.0  # the files' units in one of the tables
for example, absolute, injector in (("skerry", 0.0, "G1"), ("odeh", 14.696, "INJ")):
    with tempfile.TemporaryDirectory() as folder:
        results = Path(folder)
        case = f"{EXAMPLES}/{example}/case.toml"
        subprocess.run([FIELDRUN, "run", case, "-q", "-n", str(STEPS), "-o", results], check=True)
        field, wells = table(results / "field.csv"), table(results / "wells.csv")
        first = wells[0]["well"]
        own = [row for row in wells if row["well"] == first]
        names = ["TIME", "FOPR", "FGPR", "FOPT", "FWCT", f"WOPR:{first}", f"WBHP:{first}", f"WGPT:{first}",
                 "FGIR", f"WGIR:{injector}"]
        for step, values in enumerate(vectors(results, *names)):
            time, oil, made_gas, total, cut, well_oil, pressure, well_gas, injected, by_well = values
            near(time, float(field[step]["days"]) + float(field[step]["length"]))
            near(oil, field[step]["oil"])
            near(made_gas, GAS * float(field[step]["gas"]))
            near(total, field[step]["total oil"])
            near(cut, field[step]["water cut"])
            near(well_oil, own[step]["reported oil"])
            near(pressure, float(own[step]["reported pressure"]) + absolute)
            near(well_gas, GAS * float(own[step]["total gas"]))
            near(injected, GAS * float(field[step]["gas injected"]))
            near(injected, by_well)
        if example == "skerry":
            # A group of all wells is the field; one name has more than eight letters.
            for all_wells, limited in vectors(results, "FWPR", "GWPR:water treatment"):
                near(all_wells, limited)
