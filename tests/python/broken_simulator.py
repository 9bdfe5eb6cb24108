#!/usr/bin/env python3
"""broken_simulator.py BASE FAULT... --dopt=...: the example's simulator with faults of the protocol in it."""

import array
import os
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "examples/python_simulator"))

import tank  # noqa: E402  (brings the package along)
from gantry import peer, wire  # noqa: E402
from gantry.wire import Entry, marker, numbers, texts  # noqa: E402

simulator = tank.peer
send, receive, messages = wire.Wire.send, wire.Wire.receive, peer._MESSAGES


def changed_entry(name, change, behind=None):
    """Every entry of this name goes through `change`, where `behind` is some text of its message."""

    def fault():
        def change_message(message):
            if behind and not any(behind in entry.values for entry in message if entry.kind == "CSTR"):
                return message
            return [change(entry) if entry.name == name else entry for entry in message]

        later = wire.Wire.send
        wire.Wire.send = lambda self, *sent: later(self, *map(change_message, sent))

    return fault


def changed_answer(request, change):
    def fault():
        serve = messages[request]
        messages[request] = lambda self, message: change(self, message, serve)

    return fault


def changed_values(kind, change):
    return lambda entry: Entry(entry.name, kind, change(entry.values))


def by_another_kind(entry):
    return Entry(entry.name, "INTE", array.array("i", [0] * len(entry.values)))


def forget_limits_after_a_sweep():
    asked = []

    def set_limits(self, message, serve):
        asked.append("set")
        if asked[-20:] == ["set", "asked"] * 9 + ["asked", "set"]:
            asked.clear()
        return serve(self, message)

    def answer(self, message, serve):
        reply = serve(self, message)
        asked.append("asked")
        if asked[-20:] == ["set", "asked"] * 10:
            for limits in self.limits.values():
                limits.clear()
        return reply

    changed_answer("SET SETWCONSTRAINTS", set_limits)()
    changed_answer("QUERY QWELLS", answer)()


def add_limits(self, message, serve):
    before = {well: dict(limits) for well, limits in self.limits.items()}
    reply = serve(self, message)
    for well, limits in before.items():
        self.limits[well] = limits | self.limits[well]
    return reply


def flow_above_limits():
    flow = tank.liquid_rate

    def rate(well):
        limits, tank.peer.limits[well] = tank.peer.limits[well], {}
        try:
            return flow(well)
        finally:
            tank.peer.limits[well] = limits

    tank.liquid_rate = rate


def stay_open(self, message, serve):
    reply = serve(self, message)
    for well, status in self.status.items():
        self.status[well] = "OPEN" if status == "SURFACE_SHUTIN" else status
    return reply


def stop_short(self, message, serve):
    reply = serve(self, message)
    self.days -= 0.5
    return [self._stop()]


def never_end():
    serve = peer.Peer.serve
    peer.Peer.serve = lambda self, connection: (serve(self, connection), time.sleep(1000))


def crash(text):
    def fault():
        refuse = wire.ProtocolError.__init__

        def init(self, reason):
            if text in reason:
                os.abort()
            refuse(self, reason)

        wire.ProtocolError.__init__ = init

    return fault


class Anything(dict):
    """Knows every message."""

    def get(self, name, default=None):
        return super().get(name) or (lambda self, message: [[marker("READY")]])


def take_anything():
    peer._MESSAGES = Anything(messages)


FAULTS = {
    "ends at once": lambda: sys.exit("no licence"),
    "never listens": lambda: time.sleep(1000),
    "greets wrongly": changed_entry("STARTED", lambda entry: marker("STARTET")),
    "begins elsewhere": lambda: setattr(simulator, "position", "BEGIN_NEWTON"),
    "has a word for a version": lambda: simulator._texts.update(IX_VERSION="newest"),
    "has a month 13": changed_entry("VALUES", changed_values("INTE", lambda values: [values[0], 13, *values[2:]]), "START_DATE"),
    "tells two units": changed_entry("VALUES", changed_values("CSTR", lambda values: [*values, ""]), "UNIT_SYSTEM"),
    "is one value short": changed_entry("VALUES", changed_values("DOUB", lambda values: values[:-1]), "UPTIME_FRACTION"),
    "orders items anew": changed_answer("QUERY QWELLS", lambda self, message, serve: [
        [entry if entry.name != "QITEMS" else texts("QITEMS", entry.values[::-1]) for entry in part]
        for part in serve(self, message)]),
    "has no pressure": lambda: simulator.well_number("TUBING_HEAD_PRESSURE")(lambda well: float("nan")),
    "has no density": lambda: simulator.well_number("GAS_DENSITY")(lambda well: float("inf")),
    "sends integers": changed_entry("VALUES", by_another_kind, "BOTTOM_HOLE_PRESSURE"),
    "lacks an item": lambda: simulator._well_numbers.pop("OIL_DENSITY"),
    "adds up limits": changed_answer("SET SETWCONSTRAINTS", add_limits),
    "ignores limits": flow_above_limits,
    "forgets the last rung": forget_limits_after_a_sweep,
    "doesn't shut": changed_answer("SET SETWSTATUS", stay_open),
    "isn't ready": changed_answer("SET SETWELLS", lambda self, message, serve: serve(self, message)[1:]),
    "hangs up": changed_answer("SET SETWELLS", lambda self, message, serve: sys.exit(3)),
    "stops short": changed_answer("CONTINUE_UNTIL", stop_short),
    "makes values up": lambda: setattr(simulator, "_well_numbers", Made(simulator._well_numbers)),
    "takes any version": changed_entry("ERRORS", changed_values("CSTR", lambda values: [])),
    "takes anything": take_anything,
    "reads over the end": lambda: setattr(wire.Reader, "end", lambda self: self.marker("END")),
    "never ends": never_end,
    "crashes": crash("Unknown type"),
}  # fmt: skip


class Made(dict):
    def __contains__(self, item):
        return True

    def __missing__(self, item):
        return lambda well: 0.0


if __name__ == "__main__":
    faults = [word for word in sys.argv[2:] if not word.startswith("--")]
    for name in faults:
        FAULTS[name]()
    simulator.main([word for word in sys.argv[1:] if word not in faults])
