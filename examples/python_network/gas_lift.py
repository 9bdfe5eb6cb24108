#!/usr/bin/env python3
"""Lift gas where it brings most: at each step so much of it is shared out among the producers that the
field makes the most oil. The wells' columns are those of network.py.

    gas_lift.py CASE [GAS [RESULTS]]      GAS is what there is to share, thousands of sm3/day
"""

import sys

import gantry
import numpy as np
from network import operating_pressure
from scipy.optimize import minimize

MOST = 80.0  # for one well, thousands of sm3/day


def oil_with(inflow: gantry.Inflow, lift_gas: float) -> float:
    pressure = operating_pressure(inflow, lift_gas)
    return 0.0 if pressure is None else inflow.rates_at(pressure)[0]


def share_out(inflows: list[gantry.Inflow], available: float) -> np.ndarray:
    """The lift gas of each well. Sequential quadratic programming on curves of oil against lift gas,
    which are smooth where the wells flow."""
    rates = np.linspace(0.0, MOST, 9)
    curves = [[oil_with(inflow, rate) for rate in rates] for inflow in inflows]

    def minus_oil(gas: np.ndarray) -> float:
        return -sum(np.interp(rate, rates, curve) for rate, curve in zip(gas, curves))

    found = minimize(
        minus_oil,
        np.full(len(inflows), min(available / len(inflows), MOST)),
        method="SLSQP",
        bounds=[(0.0, MOST)] * len(inflows),
        constraints={"type": "ineq", "fun": lambda gas: available - gas.sum()},
        options={"eps": MOST / 16},
    )
    gas = np.clip(found.x, 0.0, MOST)
    return gas * min(1.0, available / max(gas.sum(), 1e-9))


def main(case_file: str, available: str = "100", results: str = "gas_lift_results") -> None:
    case = gantry.Case(case_file, output=results)
    producers = [well for well, kind in case.wells.items() if kind == "producer"]
    with case.run() as run:
        for step in run:
            inflows = [step.inflow[well] for well in producers]
            gas = share_out(inflows, float(available))
            for well, inflow, rate in zip(producers, inflows, gas):
                pressure = operating_pressure(inflow, rate)
                if pressure is None:
                    step.shut(well, "no lift")
                else:
                    step.control(well, bottom_hole_pressure=pressure, limited_by=f"{rate:.0f} of lift gas")
            if step.number % 12 == 1:
                print(step.date, " ".join(f"{well}:{rate:5.1f}" for well, rate in zip(producers, gas)))
    field = gantry.Results(case.output).field
    print(f"{field['total oil'][-1]:.0f} sm3 of oil: {case.output}/report.html")


if __name__ == "__main__":
    main(*sys.argv[1:])
