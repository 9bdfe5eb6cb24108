#!/usr/bin/env python3
"""A network model of one's own, in place of the one in the case file, under the same simulator.

Each producer's tubing is a column of liquid and gas without slip: its gradient follows from the
densities at the mean pressure, friction from Moody's f = 0.02. A well stands where the pressure that
its column needs meets its inflow. Metric units: bar, sm3/day (gas in thousands), metres.

    network.py CASE [RESULTS]
"""

import sys

import gantry
from scipy.optimize import brentq

DEPTH, DIAMETER, FRICTION, MANIFOLD = 2400.0, 0.076, 0.02, 15.0
OIL, WATER, GAS = 850.0, 1020.0, 0.85  # kg/m3 at the surface
AREA = 3.14159 * DIAMETER**2 / 4


def pressure_needed(oil: float, water: float, gas: float, manifold: float = MANIFOLD) -> float:
    """At the bottom of the tubing, for these rates at its top."""
    mass = oil * OIL + water * WATER + gas * 1e3 * GAS  # kg/day
    pressure = manifold + 100.0
    for _ in range(30):
        mean = (manifold + pressure) / 2
        free_gas = gas * 1e3 * 1.2 / mean  # m3/day at the mean pressure, z and T folded into 1.2
        volume = max(oil + water + free_gas, 1e-6)
        density, speed = mass / volume, volume / 86400 / AREA
        gradient = density * 9.81 + FRICTION * density * speed**2 / (2 * DIAMETER)
        pressure = 0.5 * pressure + 0.5 * (manifold + gradient * DEPTH / 1e5)
    return pressure


def operating_pressure(inflow: gantry.Inflow, lift_gas: float = 0.0) -> float | None:
    """Where inflow and tubing meet with the highest rate; none when the well can't flow."""

    def excess(pressure: float) -> float:
        oil, water, gas = inflow.rates_at(pressure)
        return pressure - pressure_needed(oil, water, gas + lift_gas)

    # From the fully open end up: the first place at which the inflow has no more to give.
    pressures = sorted(inflow.pressure)
    if inflow.is_dead or excess(pressures[0]) > 0:
        return None if inflow.is_dead else pressures[0]
    for low, high in zip(pressures, pressures[1:]):
        if excess(high) > 0:
            return brentq(excess, low, high, xtol=1e-6)
    return None


def main(case_file: str, results: str = "network_results") -> None:
    case = gantry.Case(case_file, output=results)
    with case.run() as run:
        for step in run:
            for well in (well for well in run.wells if case.wells[well] == "producer"):
                pressure = operating_pressure(step.inflow[well])
                if pressure is None:
                    step.shut(well, "no lift")
                else:
                    step.control(well, bottom_hole_pressure=pressure, limited_by="own tubing")
    field = gantry.Results(case.output).field
    print(f"{field['total oil'][-1]:.0f} sm3 of oil in {len(field['date'])} steps: {case.output}/report.html")


if __name__ == "__main__":
    main(*sys.argv[1:])
