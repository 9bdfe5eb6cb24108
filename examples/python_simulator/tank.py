#!/usr/bin/env python3
"""A reservoir simulator in Python: an oil tank with water drive, two producers and a water injector.

The tank is one cell: its pressure falls with what leaves it and rises with what comes in,
dp = net inflow / (c V). Producers follow q = J (p - pwf) (Vogel's curvature is left out), injectors
the same with the sign turned. Water cut rises with the water that has come in. Metric units:
sm3/day, bar, degC, kg/m3.
"""

import math
import sys
from datetime import date
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "python"))  # not needed once installed

from gantry.peer import Peer

PRODUCTIVITY = {"P1": 25.0, "P2": 15.0, "W1": 40.0}  # sm3/day/bar
LOWEST, HIGHEST = 60.0, 400.0  # bottom-hole pressures that a well can have, bar
PORE_VOLUME, COMPRESSIBILITY = 2.0e7, 1.2e-4  # rm3, 1/bar
AQUIFER_INDEX, INITIAL_PRESSURE = 3.0, 250.0  # sm3/day/bar, bar
GAS_OIL_RATIO = 90.0  # sm3/sm3, all of it dissolved
LAST_DAY, LONGEST_STEP = 3653.0, 5.0

peer = Peer({"P1": "PRODUCER", "P2": "PRODUCER", "W1": "WATER_INJECTOR"}, date(2025, 1, 1))


class Tank:
    pressure = INITIAL_PRESSURE
    water_in = 0.0  # rm3, injected and from the aquifer


tank = Tank()


def water_cut() -> float:
    """Of the liquid that a producer makes: Buckley-Leverett in its simplest form."""
    swept = tank.water_in / (0.5 * PORE_VOLUME)
    return swept**2 / (swept**2 + (1 - min(swept, 1.0)) ** 2)


def liquid_rate(well: str) -> float:
    """Of a well under its present limits, sm3/day."""
    if peer.status[well] != "OPEN":
        return 0.0
    limits = peer.limits[well]
    if peer.wells[well] == "WATER_INJECTOR":
        most = PRODUCTIVITY[well] * (HIGHEST - tank.pressure)
        return max(min(most, limits.get("WATER_INJECTION_RATE", most)), 0.0)
    most = PRODUCTIVITY[well] * (tank.pressure - LOWEST)
    gas_limit = limits.get("GAS_PRODUCTION_RATE", math.inf)
    by_gas = gas_limit / (GAS_OIL_RATIO * max(1 - water_cut(), 1e-9))
    return max(min(most, by_gas, limits.get("LIQUID_PRODUCTION_RATE", most)), 0.0)


@peer.well_number("BOTTOM_HOLE_PRESSURE", "TUBING_HEAD_PRESSURE")
def bottom_hole_pressure(well):
    sign = 1 if peer.wells[well] == "WATER_INJECTOR" else -1
    return tank.pressure + sign * liquid_rate(well) / PRODUCTIVITY[well]


def oil(well):
    return 0.0 if peer.wells[well] == "WATER_INJECTOR" else liquid_rate(well) * (1 - water_cut())


def water(well):
    return 0.0 if peer.wells[well] == "WATER_INJECTOR" else liquid_rate(well) * water_cut()


def gas(well):
    return oil(well) * GAS_OIL_RATIO


def injected(well):
    return liquid_rate(well) if peer.wells[well] == "WATER_INJECTOR" else 0.0


# Each rate is a number of the well, and what has flowed since the start another.
RATES = {"OIL_PRODUCTION": oil, "WATER_PRODUCTION": water, "GAS_PRODUCTION": gas, "WATER_INJECTION": injected}
volumes = {(name, well): 0.0 for name in RATES for well in PRODUCTIVITY}
for name, rate in RATES.items():
    peer.well_number(f"{name}_RATE")(rate)
    peer.well_number(f"{name}_CUML")(lambda well, name=name: volumes[name, well])

CONSTANTS = {"GAS_INJECTION_RATE": 0.0, "GAS_INJECTION_CUML": 0.0, "TEMPERATURE": 90.0}  # degC
CONSTANTS |= {"OIL_DENSITY": 850.0, "GAS_DENSITY": 0.9, "WATER_DENSITY": 1010.0}  # kg/m3, surface
for item, value in CONSTANTS.items():
    peer.well_number(item)(lambda well, value=value: value)


@peer.advance
def advance(days):
    """In steps of at most five days, each with the rates that hold at its start."""
    end = min(days, LAST_DAY)
    time = peer.days
    while end - time > 1e-9:
        step = min(end - time, LONGEST_STEP)
        for name, well in volumes:
            volumes[name, well] += RATES[name](well) * peer.uptime[well] * step
        made = sum((oil(well) + water(well)) * peer.uptime[well] for well in peer.wells)
        came = sum(injected(well) * peer.uptime[well] for well in peer.wells)
        came += AQUIFER_INDEX * (INITIAL_PRESSURE - tank.pressure)
        tank.water_in += came * step
        tank.pressure += (came - made) * step / (COMPRESSIBILITY * PORE_VOLUME)
        time += step
    return math.inf if days >= LAST_DAY else time


if __name__ == "__main__":
    peer.main()
