"""`fieldrun check --simulator`: a sound simulator keeps every rule, a broken one fails the rule that is meant.

That tanksim keeps them too stands among fieldrun's sessions.
"""

import json
import subprocess
from pathlib import Path

import pytest

BROKEN = Path(__file__).with_name("broken_simulator.py")

# Faults that don't meet in one rule share a run.
BROKEN_RULES = [
    ({"ends at once": "start"}, 60),
    ({"never listens": "start"}, 2),
    ({"greets wrongly": "greeting"}, 60),
    ({"begins elsewhere": "greeting"}, 60),
    ({"has a word for a version": "version", "has a month 13": "start date", "tells two units": "unit system",
      "is one value short": "well numbers", "takes any version": "wrong version"}, 60),
    ({"orders items anew": "well numbers", "reads over the end": "surplus entry"}, 60),
    ({"has no pressure": "well numbers", "stops short": "step"}, 60),
    ({"has no density": "sweep", "hangs up": "uptime", "makes values up": "unknown item"}, 60),
    ({"isn't ready": "uptime", "lacks an item": "sweep", "never ends": "shutdown"}, 10),
    ({"sends integers": "well numbers", "crashes": "unknown kind"}, 60),
    ({"adds up limits": "limits are replaced", "doesn't shut": "shut at surface"}, 60),
    ({"ignores limits": "limits hold"}, 60),
    ({"forgets the last rung": "last rung"}, 60),
]  # fmt: skip


def check(fieldrun, program, *words, limit=60):
    command = [fieldrun, "check", "--json", "--simulator", program, "--limit", str(limit), *words]
    done = subprocess.run(command, capture_output=True, text=True)
    return done.returncode, json.loads(done.stdout)


def test_the_simulator_in_python_keeps_every_rule(fieldrun, examples):
    status, verdicts = check(fieldrun, examples / "python_simulator/tank.py")
    assert [verdict for verdict in verdicts if verdict["result"] not in ("ok", "not asked")] == []
    assert status == 0 and len(verdicts) > 40


@pytest.mark.parametrize("faults, limit", BROKEN_RULES, ids=lambda value: "+".join(value) if isinstance(value, dict) else "")
def test_a_fault_fails_the_rule_that_is_meant(fieldrun, examples, faults, limit):
    deck = examples / "python_simulator/TANK.afi"
    status, verdicts = check(fieldrun, BROKEN, "--deck", deck, *faults, limit=limit)
    failed = {verdict["rule"]: verdict for verdict in verdicts if verdict["result"] == "fails"}
    assert set(failed) == set(faults.values()), {rule: verdict["came"] for rule, verdict in failed.items()}
    assert all(verdict["came"] for verdict in failed.values())
    assert status == 1
