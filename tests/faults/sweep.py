#!/usr/bin/env python3
"""Lets the n-th system call of a family fail, for each n until the scenario passes, and checks after
each: the program ends in order and says why it failed, every file is whole, the old one or the new
one, no process, lock or descriptor is left, and the next start works.

Prints the number of points of each scenario and family. With --slice, a few points of each.
"""

import argparse
import errno
import json
import shutil
import struct
import subprocess
import sys
import time
from collections import Counter
from concurrent.futures import ThreadPoolExecutor
from itertools import zip_longest
from pathlib import Path

import proxy
import stage

HALF = -1  # in place of an errno: the call moves half of its bytes
# How calls of a family fail: the n-th, the n-th and all after it, or all at once.
FAULTS = {
    "open": ["EMFILE", "EMFILE onwards"],
    "status": ["EIO"],
    "read": ["EIO", "EINTR always", "HALF always"],
    "write": ["ENOSPC onwards", "EIO", "EINTR always", "HALF always"],
    "sync": ["EIO"],
    "rename": ["EACCES"],
    "socket": ["EMFILE"],
    "lock": ["ENOLCK"],
    "connect": ["ECONNREFUSED", "EINTR always"],
    "send": ["ECONNRESET", "EINTR always", "HALF always"],
    "receive": ["ECONNRESET", "EINTR always", "HALF always"],
    "accept": ["EMFILE", "ECONNABORTED", "EINTR always"],
    "spawn": ["EAGAIN"],
    "memory": ["ENOMEM", "ENOMEM onwards"],
}
# In a message between the driver and its peer, proxy.py; how it fails is its own.
WIRE_FAULTS = {fault: ["once"] for fault in proxy.FAULTS}
HARMLESS = ("byte by byte", "delayed")
RUN = ["fieldrun", "run", "case.toml", "-n", "3", "--output", "results", "--quiet"]
CLUSTER = [word.replace("case", "cluster") for word in RUN]
ONE_STEP = [word.replace("3", "1") for word in RUN]
PROXY = Path(proxy.__file__)
SERVICE = ["runfactory", "--allow-root", "--ports=9101-9102", "--max-sessions=2"]
ADD = ["fieldrun", "variables", "case.toml", "--add", "P1:Oil production rate"]

# What runs, the program that meets the faults, and what is done beforehand.
SCENARIOS = {
    "local run": (RUN, "fieldrun", []),
    "its simulator": (RUN, "tanksim", []),
    "cluster run": (CLUSTER, "fieldrun", []),
    "its service": (CLUSTER, "runfactory", []),
    "its simulator there": (CLUSTER, "tanksim", []),
    "save a case block": (["fieldrun", "save", "case.toml", "block"], "fieldrun",
                          [["fieldrun", "set", "case.toml", "Intersect.CaseDetails.Parallel", "2",
                            "--save", "block"]]),
    "load a case block": (["fieldrun", "load", "block"], "fieldrun",
                          [["fieldrun", "save", "case.toml", "block"]]),
    "change the state file": (ADD, "fieldrun", [[*ADD[:-1], "P2:Oil production rate"]]),
    "write the equipment": (["fieldrun", "describe", "case.toml", "equipment.xml"], "fieldrun",
                            [["fieldrun", "describe", "case.toml", "equipment.xml", "-w", "P1"]]),
    "read and keep the registry": (["fieldrun", "identify"], "fieldrun", []),
    "local wire": (ONE_STEP, "proxy", []),
    "cluster wire": (CLUSTER, "proxy", []),
    "make a report": (["fieldrun", "report", "results"], "fieldrun", [RUN]),
}
# The boundary has no result for an inflow library that can't write its part of the state file.
UNTOLD = {("write", "EIO"): ["state"]}
JARGON = ("std::", "basic_", "filesystem error")
TABLES = ("results/wells.csv", "results/inflow.csv", "results/field.csv")
KEPT = ("block", "state", "equipment.xml")


def prepare(place, steps):
    for name in ("FIVE_SPOT.afi", "case.toml", "cluster.toml"):
        shutil.copy(PROXY.parents[2] / "examples/five_spot" / name, place.folder)
    case = place.folder / "case.toml"
    case.write_text(case.read_text().replace("[time]", 'store_file = "state"\n\n[time]'))
    for step in steps:
        status, said = place.run(step)
        assert status == 0, said
    place.keep()


def values_of(folder):
    """The registry's values, by their keys and names."""
    values, key = {}, ""
    for line in (folder / "settings/gantry/registry.reg").read_text().splitlines():
        key = line if line.startswith("[") else key
        name, _, value = line.partition("=")
        values[key, name] = value
    return values


def rows_of(table):
    """Rows by columns, but for the run's id, and a mark behind the last row where it is whole."""
    text = table.read_text()
    rows = [row.split(",")[:-1] for row in text.splitlines()]
    return [*rows, []] if text.endswith("\n") else rows


def are_of_a_run(rows, all_rows):
    """Whether they are whole, and the first ones of all. What can't be read from the simulator is left out, or
    with totals counted in another way, each with a warning."""
    cells = [cell for row, whole in zip(rows[:-1], all_rows) for cell in zip_longest(rows[0], row, whole)]
    return rows[-1] == [] and len(rows) <= len(all_rows) and all(
        ours in ("", theirs) or (name and ours and name.startswith("total")) for name, ours, theirs in cells)


def files_of(folder):
    """What must be whole, without what differs from run to run, and the registry's values."""
    contents = {name: (folder / name).read_bytes() for name in KEPT if (folder / name).exists()}
    tables = {name: rows_of(folder / name) for name in TABLES if (folder / name).exists()}
    return contents, tables, values_of(folder)


def torn(folder, before, after, but):
    """The files that are neither what they were nor what they should be. A table of a run that
    failed has whole rows, as many as it had steps."""
    contents, tables, values = files_of(folder)
    for name in values.keys() | before[2].keys():
        if values.get(name) not in (before[2].get(name), after[2].get(name)):
            yield f"the registry's {name} is {values.get(name)}"
    for name in set(KEPT).difference(but) & (contents.keys() | before[0].keys()):
        copy = folder / f"{name}.backup"  # of what the module couldn't read
        is_kept = copy.exists() and copy.read_bytes() == before[0].get(name)
        if contents.get(name) not in (before[0].get(name), after[0].get(name)) and not is_kept:
            yield f"{name} is neither the old one nor the new one"
    for name, rows in tables.items():
        if rows and not are_of_a_run(rows, after[1][name]):
            yield f"{name} holds what no run wrote"
    for report in folder.glob("results/report.html"):
        if not report.read_text().rstrip().endswith("</html>"):
            yield "the report is cut off"
    for run in folder.glob("results/run.json"):
        json.loads(run.read_text())
    for pattern in ("*.new", "*.part", "results/*.new", "settings/gantry/*.new", "temporary/*"):
        yield from (f"{left} is left" for left in folder.glob(pattern))


class Service:
    """A service while a run needs it; its plan is for it and its sessions."""

    def __init__(self, place, command, plan=None):
        self.place = place
        self.log = open(place.place / "service", "wb+")
        self.process = place.start(command, plan, self.log)
        while self.process.poll() is None and b"listens on" not in self.read():
            time.sleep(0.005)

    def read(self):
        return (self.place.place / "service").read_bytes()

    def stop(self):
        """Its exit status and its log."""
        self.process.terminate()
        status = stage.status_of(self.process)
        return status, self.read().decode(errors="replace")


class Sweep:
    """One scenario on its stage."""

    def __init__(self, name, arguments):
        self.command, self.program, steps = SCENARIOS[name]
        self.arguments = arguments
        self.place = stage.Stage(arguments.build.resolve() / "bin")
        self.tally = self.place.place / "tally"
        prepare(self.place, steps)
        self.before, self.afters = files_of(self.place.folder), []
        for _ in range(2):  # a second run may find what the first has left
            status, said, faults = self.play()
            assert status == 0 and not faults, f"{said} {faults}"
            self.afters.append(files_of(self.place.folder))
        self.results = [after[:2] for after in self.afters]
        self.messages = Counter()
        self.place.reset()
        self.play(self.plan_of("none", "EIO", 0))
        self.open_at_end = self.tallied()[1]

    def tallied(self):
        """Calls and descriptors that the program that meets the faults has left open."""
        return struct.unpack("QQ", self.tally.read_bytes())

    def plan_of(self, family, fault, call):
        self.tally.write_bytes(bytes(16))
        plan = {"GANTRY_FAULT_PROGRAM": self.program, "GANTRY_FAULT_PROGRAMS": str(self.place.programs),
                "GANTRY_FAULT_TALLY": str(self.tally), "GANTRY_FAULT_FAMILY": family,
                "GANTRY_FAULT_AT": str(call)}
        if self.program == "proxy":
            return plan
        error, _, lasts = fault.partition(" ")
        library = self.place.programs.parent / "lib/libfailing_calls.so"
        return {**plan, "LD_PRELOAD": str(library), "GANTRY_FAULT_LASTS": str(int(lasts != "")),
                "GANTRY_FAULT_ERROR": str(getattr(errno, error, HALF))}

    def play(self, plan=None):
        """Status and words of the scenario's program, and what is wrong apart from them."""
        if self.command is not CLUSTER:
            via_proxy = ["--simulator", PROXY] if self.program == "proxy" and plan else []
            status, said = self.place.run([*self.command, *via_proxy], plan)
            return status, said, self.place.left_behind()
        return self.play_with_service(plan)

    def service(self, port, plan):
        return Service(self.place, [*SERVICE, f"--listen=127.0.0.1:{port}",
                                    f"--simulator={self.place.programs / 'tanksim'}",
                                    f"--root={self.place.folder}"], plan)

    def stopped(self, service):
        """What is wrong when it has ended."""
        status, log = service.stop()
        faults = [f"the service ends with {status}: {log[-300:]}"] if status != 0 else []
        return faults + self.place.left_behind()

    def play_with_service(self, plan):
        is_before = self.program == "proxy" and plan is not None
        of_run = plan if self.program == "fieldrun" else None
        of_service = plan if self.program in ("runfactory", "tanksim") else None
        service = self.service(7778 if is_before else 7777, of_service)
        before = Service(self.place, [PROXY, "7777", "7778"], plan) if is_before else None
        if service.process.poll() is not None:
            status, said = service.stop()
            return status or None, said, self.place.left_behind()
        status, said = self.place.run(self.command, of_run)
        faults = []
        if before:
            before.stop()
        if status != 0 and of_service and plan["GANTRY_FAULT_LASTS"] == "0":
            if self.place.run(self.command)[0] != 0:
                faults.append("the service doesn't serve the next run")
        return status, said, faults + self.stopped(service)

    def point(self, family, fault, call):
        """The calls of that family until the program's end, and what is wrong there."""
        self.place.reset()
        status, said, faults = self.play(self.plan_of(family, fault, call))
        calls, left_open = self.tallied()
        end = said[-300:]
        is_told = self.program != "proxy" or family in HARMLESS  # the wire has no check sums
        but = UNTOLD.get((family, fault), [])
        if is_told:
            faults += torn(self.place.folder, self.before, self.afters[0], but)
        is_idle = (is_told and status == 0 and "totals" not in said and not but and
                   files_of(self.place.folder)[:2] != self.results[0])
        faults += [what for is_so, what in (
            (left_open > self.open_at_end, f"{left_open - self.open_at_end} descriptors are left open"),
            # On the rest of a reply from a cluster the driver waits for good.
            (status not in (0, 1, 2) and (status, self.command, self.program) != (None, CLUSTER, "proxy"),
             f"it ends with {status}: {end}"),
            # A message to a cluster goes out by one call, whose rest isn't sent.
            (status != 0 and fault.endswith("always") and (self.command, family) != (CLUSTER, "send"),
             f"it fails though nothing is lost: {end}"),
            (status and not said.strip(), "it fails without a word"),
            (any(word in said for word in JARGON), f"it speaks as a program does: {end}"),
            ("memory" in said and family != "memory", f"it takes a claim for granted: {end}"),
            (status != 0 and family in HARMLESS, f"it fails though every byte comes: {end}"),
            (is_idle, "it tells of no failure but hasn't done its work"),
        ) if is_so]
        if status != 0:
            self.messages[f"{family}: {said.strip().splitlines()[-1] if said.strip() else ''}"] += 1
            faults += self.next_start()
        return calls, faults

    def next_start(self):
        status, said, faults = self.play()
        if status != 0:
            faults.append(f"the next start fails: {said[-300:]}")
        elif files_of(self.place.folder)[:2] not in self.results:
            faults.append("the next start gives other results")
        return faults

    def calls_to_fail(self, family, fault):
        """Which calls fail in turn: those of this share, or of a slice, told beforehand by their number."""
        share, shares = self.arguments.share
        if fault.endswith("always"):
            return (yield from range(1, 2 if share == 0 else 1))
        if not self.arguments.slice:
            return (yield from range(1 + share, 1_000_000, shares))
        self.place.reset()
        self.play(self.plan_of(family, fault, 0))
        calls = self.tallied()[0]
        yield from sorted({min(1, calls), calls // 2} - {0})[share::shares]

    def sweep(self, family, fault):
        points, faults = 0, []
        for call in self.calls_to_fail(family, fault):
            calls, wrong = self.point(family, fault, call)
            faults += [f"call {call} of {calls}: {what}" for what in wrong]
            if calls < call:
                break
            points += 1
        return points, faults


def faults_of(arguments):
    """The families of a scenario and how each fails."""
    is_wire = SCENARIOS[arguments.scenario][1] == "proxy"
    known = WIRE_FAULTS if is_wire else FAULTS
    for family in arguments.families or known:
        for fault in known.get(family, []):
            if not arguments.slice or fault == known[family][0] or fault.endswith("always"):
                yield family, fault


def sweep_share(arguments):
    """What a share of a scenario has found, told to the sweep that started it."""
    sweep = Sweep(arguments.scenario, arguments)
    found = [[family, fault, *sweep.sweep(family, fault)] for family, fault in faults_of(arguments)]
    shutil.rmtree(sweep.place.place)
    print(json.dumps([found, sweep.messages]))


def sweep_scenario(arguments, pool):
    """Whether it has found faults. The shares run side by side, since programs that fail mostly wait."""
    def run(share):
        words = [*sys.argv, "--scenario", arguments.scenario, "--share", str(share), str(arguments.parallel)]
        return json.loads(subprocess.run([sys.executable, *words], check=True,
                                         stdout=subprocess.PIPE).stdout)

    shares = list(pool.map(run, range(arguments.parallel)))
    for rows in zip(*(found for found, _ in shares)):
        faults = [fault for row in rows for fault in row[3]]
        print(f"{arguments.scenario:27} {rows[0][0]:15} {rows[0][1]:15} {sum(row[2] for row in rows):5} points "
              f"{len(faults):3} faults", *faults, sep="\n    ", flush=True)
    points = sum(row[2] for found, _ in shares for row in found)
    failed = sum(len(row[3]) for found, _ in shares for row in found)
    print(f"{arguments.scenario:27} {'in all':31} {points:5} points {failed:3} faults", flush=True)
    messages = sum((Counter(said) for _, said in shares), Counter())
    for message, count in messages.most_common() if arguments.messages else ():
        print(f"  {count:4} x {message}")
    return failed > 0


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", type=Path, required=True, help="where bin and lib stand")
    parser.add_argument("--scenario", choices=SCENARIOS)
    parser.add_argument("--families", nargs="+", choices={**FAULTS, **WIRE_FAULTS})
    parser.add_argument("--slice", action="store_true", help="two calls of each family")
    parser.add_argument("--messages", action="store_true", help="list what was said, by family")
    parser.add_argument("--parallel", type=int, default=1, metavar="SHARES", help="points at once")
    parser.add_argument("--share", nargs=2, type=int, help=argparse.SUPPRESS)
    arguments = parser.parse_args()
    if arguments.share:
        stage.enter()
        return sweep_share(arguments)
    failed = False
    with ThreadPoolExecutor(arguments.parallel) as pool:
        for arguments.scenario in [arguments.scenario] if arguments.scenario else SCENARIOS:
            failed = sweep_scenario(arguments, pool) or failed
    return failed


if __name__ == "__main__":
    sys.exit(main())
