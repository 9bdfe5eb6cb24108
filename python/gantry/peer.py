"""A simulator of one's own: its half of the external-controller protocol.

A `Peer` answers a driver's messages by the functions that are registered with it::

    peer = Peer(wells={"P1": "PRODUCER"}, start=date(2020, 1, 1))

    @peer.well_number("BOTTOM_HOLE_PRESSURE")
    def pressure(well):                     # in the units that the peer was made with
        return ...

    @peer.advance
    def advance(days):                      # run on to `days` after the start
        ...
        return days                         # the time that was reached; math.inf at the end

    if __name__ == "__main__":
        peer.main()

`main` reads the command line with which a driver starts a simulator (`BASE
--dopt=external_controller_port:PORT`), waits for the driver and serves it until it shuts the run
down. All functions are called from that one thread. What they raise ends the session: its text
reaches the driver's user.

The limits that the driver sets on a well stand in `peer.limits[well]`, its state in
`peer.status[well]`, the part of the time that it is on in `peer.uptime[well]`.
"""

from __future__ import annotations

import argparse
import math
import socket
import sys
from dataclasses import dataclass, field
from datetime import date, datetime, timedelta
from typing import Any, Callable, Iterable, Mapping, Sequence, TypeVar

from . import wire
from .wire import Entry, Reader, Wire, integers, marker, numbers, texts

_Messages = Sequence[Sequence[Entry]]
_Function = TypeVar("_Function", bound=Callable[..., Any])
_Number = TypeVar("_Number", bound=Callable[[str], float])
_Text = TypeVar("_Text", bound=Callable[[str], str])

_VERSION = "V2"
_READY = [marker("READY")]
_STATUSES = ("OPEN", "SURFACE_SHUTIN", "ALL_COMPLETIONS_SHUTIN")


class Refused(Exception):
    """A request that can't be obeyed; the text reaches the driver's user."""


@dataclass
class FluidModel:
    """The equation of state of a compositional model.

    `properties` has a list for each property (MOLECULAR_WEIGHT, CRITICAL_TEMPERATURE, ...), in the
    peer's units; `binary_interaction` is the lower triangle row by row.
    """

    name: str
    eos: str  #: "PENG_ROBINSON" or "SOAVE_REDLICH_KWONG"
    components: Sequence[str]
    binary_interaction: Sequence[float] = ()
    properties: Mapping[str, Sequence[float]] = field(default_factory=dict)


class Peer:
    """A simulator as a driver sees it.

    wells: their names with their types: PRODUCER, WATER_INJECTOR or GAS_INJECTOR.
    metric: True for sm3, bar and degC; False for stb, Mscf, psi and degF.
    version: of the simulator, a decimal number; the driver's range for local runs ends at 2017.2.
    """

    def __init__(
        self,
        wells: Mapping[str, str],
        start: date,
        *,
        metric: bool = True,
        version: str = "2017.2",
        fluid: FluidModel | None = None,
    ) -> None:
        self.wells = dict(wells)
        self.start = datetime(start.year, start.month, start.day)
        self.fluid = fluid
        self.days = 0.0  #: since the start, as far as the run has come
        self.position = "MODEL_DEFINITION"
        self.limits: dict[str, dict[str, float]] = {well: {} for well in self.wells}
        self.status = {well: "OPEN" for well in self.wells}
        self.uptime = {well: 1.0 for well in self.wells}
        self.composition: dict[str, dict[str, float]] = {}  #: of each gas injector, by component
        model = "COMPOSITIONAL" if fluid else "BLACKOIL"
        self._texts = {
            "IX_VERSION": version,
            "UNIT_SYSTEM": "ECLIPSE_METRIC" if metric else "ECLIPSE_FIELD",
            "FM_FLUID_MODEL": model,
            "RES_FLUID_MODEL": model,
        }
        self._sources: dict[str, str] = {}  # the well of each fluid source
        self._well_numbers: dict[str, Callable[[str], float]] = {
            "UPTIME_FRACTION": lambda well: self.uptime[well]
        }
        self._well_texts: dict[str, Callable[[str], str]] = {
            "TYPE": lambda well: self.wells[well],
            "STATUS": lambda well: self.status[well],
        }
        self._advance: Callable[[float], float] = lambda days: days
        self._changed: Callable[[str], None] = lambda well: None
        self._inflow: Callable[..., Mapping[str, Sequence[float]]] | None = None

    # What a simulator registers.

    def well_number(self, *items: str) -> Callable[[_Number], _Number]:
        """Registers what answers for these items of a well: f(well) -> number, for the well as it
        flows under its present limits."""
        return self._register(self._well_numbers, items)

    def well_text(self, *items: str) -> Callable[[_Text], _Text]:
        """Registers what answers for these items of a well: f(well) -> text."""
        return self._register(self._well_texts, items)

    @staticmethod
    def _register(table: dict[str, Any], items: Sequence[str]) -> Callable[[_Function], _Function]:
        def register(function: _Function) -> _Function:
            table.update({item: function for item in items})
            return function

        return register

    def advance(self, function: Callable[[float], float]) -> Callable[[float], float]:
        """Registers what runs on: f(days) -> the days since the start that were reached; math.inf
        says that the run has come to its own end."""
        self._advance = function
        return function

    def well_changed(self, function: Callable[[str], None]) -> Callable[[str], None]:
        """Registers what hears of each well whose limits, status, uptime or composition have
        changed."""
        self._changed = function
        return function

    def inflow(
        self, function: Callable[..., Mapping[str, Sequence[float]]]
    ) -> Callable[..., Mapping[str, Sequence[float]]]:
        """Registers what measures an inflow table itself: f(well, pressure_type, points, skewness)
        -> a list of values for each item. Drivers of today sweep the wells instead."""
        self._inflow = function
        return function

    # Serving.

    def serve(self, connection: socket.socket) -> None:
        """Serves one driver until it shuts the run down. Raises ConnectionError when it has gone,
        and what ended the session otherwise, after the driver has been told."""
        peer = Wire(connection)
        try:
            self._set_up(peer)
            while self._serve_one(peer):
                pass
        finally:
            peer.close()

    def main(self, arguments: Sequence[str] | None = None) -> None:
        """The whole program: command line, waiting for the driver, serving it. Ends the process."""
        parser = argparse.ArgumentParser(description=(sys.modules["__main__"].__doc__ or "").strip())
        parser.add_argument("base", metavar="BASE", help="the dataset's path without its ending")
        parser.add_argument("--dopt", action="append", default=[], metavar="NAME:VALUE")
        parser.add_argument("--version", action="version", version=f"%(prog)s {self._texts['IX_VERSION']}")
        options = parser.parse_args(arguments)
        given = dict(option.partition(":")[::2] for option in options.dopt)
        try:
            port = int(given.get("external_controller_port", ""))
            seconds = float(given.get("external_controller_wait", "20"))
        except ValueError:
            parser.error("--dopt=external_controller_port:PORT is missing or no number")
        try:
            with socket.create_server(("127.0.0.1", port)) as listener:
                listener.settimeout(seconds)
                connection, _ = listener.accept()
            connection.settimeout(None)
            self.serve(connection)
        except Exception as error:  # the program's own last words
            parser.exit(1, f"{parser.prog}: {error}\n")

    # The session.

    def _set_up(self, peer: Wire) -> None:
        message = peer.receive()
        try:
            message.marker("SETUP")
            version = message.text("VERSION")
            message.end()
            fault = "" if version == _VERSION else f'only version "{_VERSION}" of the protocol is spoken here'
        except wire.ProtocolError as error:
            fault = f"Malformed set-up: {error}"
        started = [marker("STARTED"), texts("ERRORS", [fault] if fault else [])]
        if fault:
            peer.send(started)
            raise Refused(fault)
        peer.send(started, self._stop())

    def _stop(self) -> list[Entry]:
        today = self.start + timedelta(days=self.days)
        day = [today.year, today.month, today.day, today.hour, today.minute, today.second]
        return [
            marker("STEP"),
            texts("POSITION", [self.position]),
            numbers("TIME", [self.days]),
            integers("DATE", day),
        ]

    def _serve_one(self, peer: Wire) -> bool:
        message = peer.receive()
        try:
            words = [message.entry().name]
            if words[0] in ("QUERY", "SET"):
                words.append(message.entry().name)
            serve = _MESSAGES.get(" ".join(words))
            if serve is None:
                raise Refused("Unknown message " + " ".join(words))
            peer.send(*serve(self, message))
            return words[0] != "SHUTDOWN"
        except OSError:
            raise
        except Exception as error:
            peer.send([marker(f"ERROR: {error}")])
            raise

    def _known(self, names: Sequence[str]) -> list[str]:
        return list(self.wells) if list(names) == ["*"] else [name for name in names if name in self.wells]

    def _well(self, name: str) -> str:
        if name not in self.wells:
            raise Refused(f"Unknown well {name}")
        return name

    # Moving on.

    def _continue(self, message: Reader) -> _Messages:
        message.end()
        self.position = "BEGIN_NEWTON"
        return [self._stop()]

    def _continue_until(self, message: Reader) -> _Messages:
        days = message.number("TIME")
        message.end()
        reached = self._advance(days)
        if math.isinf(reached):
            self.position = "END_SIMULATE"
        else:
            self.days = reached
        return [self._stop()]

    def _shut_down(self, message: Reader) -> _Messages:
        message.end()
        return [[marker("FINISHED")]]

    # Queries.

    def _query_wells(
        self, message: Reader, table: Mapping[str, Callable[[str], Any]], form: Callable[[str, Iterable[Any]], Entry]
    ) -> _Messages:
        items = [item for item in message.texts("QITEMS") if item in table]
        wells = self._known(message.texts("WELNAMES"))
        message.end()
        reply = [marker("REPLY"), texts("QITEMS", items)]
        for well in wells:
            reply += [texts("WELLNAME", [well]), form("VALUES", [table[item](well) for item in items])]
        return [reply, _READY]

    def _query_well_numbers(self, message: Reader) -> _Messages:
        return self._query_wells(message, self._well_numbers, numbers)

    def _query_well_texts(self, message: Reader) -> _Messages:
        return self._query_wells(message, self._well_texts, texts)

    def _query_reservoir(self, message: Reader) -> _Messages:
        items = message.texts("QITEMS")
        message.end()
        reply = [marker("REPLY")]
        if "START_DATE" in items:
            day = [self.start.year, self.start.month, self.start.day, 0, 0, 0]
            reply += [texts("QITEM", ["START_DATE"]), integers("VALUES", day)]
        return [reply, _READY]

    def _query_reservoir_texts(self, message: Reader) -> _Messages:
        items = [item for item in message.texts("QITEMS") if item in self._texts]
        message.end()
        reply = [marker("REPLY")]
        for item in items:
            reply += [texts("QITEM", [item]), texts("VALUES", [self._texts[item]])]
        return [reply, _READY]

    def _query_limits(self, message: Reader) -> _Messages:
        wells = self._known(message.texts("WELNAMES"))
        message.end()
        reply = [marker("REPLY")]
        for well in wells:
            limits = self.limits[well]
            reply += [
                texts("WELLNAME", [well]),
                texts("ITEMS", limits),
                numbers("VALUES", limits.values()),
                texts("SETTERS", ["USER"] * len(limits)),
            ]
        return [reply, _READY]

    def _query_inflow(self, message: Reader) -> _Messages:
        wells = message.texts("WELNAMES")
        types = message.texts("PRESSURETYPES", len(wells))
        points, skewness = message.integer("NPOINTS"), message.number("SKEWNESS")
        message.end()
        if self._inflow is None:
            raise Refused("this simulator measures no inflow of its own")
        reply = [marker("REPLY")]
        for well, kind in zip(wells, types):
            reply += [texts("WELLNAME", [well]), integers("NPOINTS", [points])]
            for item, values in self._inflow(self._well(well), kind, points, skewness).items():
                reply += [texts("ITEM", [item]), numbers("VALUES", values)]
        return [reply, _READY]

    def _query_components(self, message: Reader) -> _Messages:
        message.end()
        names = [texts("NCOMPS", self.fluid.components)] if self.fluid else []
        return [[marker("REPLY"), *names], _READY]

    def _query_fluid(self, message: Reader) -> _Messages:
        message.end()
        reply = [marker("REPLY")]
        if self.fluid:
            reply += [
                texts("FLUIDMODELDNAME", [self.fluid.name]),
                texts("EOSNAME", [self.fluid.eos]),
                texts("NCOMPS", self.fluid.components),
                numbers("BIC", self.fluid.binary_interaction),
            ]
            for item, values in self.fluid.properties.items():
                reply += [texts("EOSPROPNAME", [item]), numbers("VALUES", values)]
        return [reply, _READY]

    # Setters.

    def _set_limits(self, message: Reader) -> _Messages:
        wanted = []
        while message.next_is("WELLNAME"):
            well = self._well(message.text("WELLNAME"))
            items = message.texts("ITEMS")
            values = message.numbers("VALUES", len(items))
            message.texts("SETTERS", len(items))
            wanted.append((well, dict(zip(items, values))))
        message.end()
        for well, limits in wanted:
            self.limits[well] = limits  # a new list takes the old one's place
            self._changed(well)
        return [_READY]

    def _set_status(self, message: Reader) -> _Messages:
        message.text("WCLOSURE")
        self._set_item(message, "STATUS")
        wells = message.texts("WELNAMES")
        statuses = message.texts("VALUES", len(wells))
        message.end()
        for well, status in zip(wells, statuses):
            if status not in _STATUSES:
                raise Refused(f"Unknown well status {status}")
            self.status[self._well(well)] = status
            self._changed(well)
        return [_READY]

    def _set_uptime(self, message: Reader) -> _Messages:
        self._set_item(message, "UPTIME_FRACTION")
        wells = message.texts("WELNAMES")
        fractions = message.numbers("VALUES", len(wells))
        message.end()
        for well, fraction in zip(wells, fractions):
            self.uptime[self._well(well)] = min(max(fraction, 0.0), 1.0)
            self._changed(well)
        return [_READY]

    @staticmethod
    def _set_item(message: Reader, expected: str) -> None:
        item = message.text("SETITEM")
        if item != expected:
            raise Refused(f"Unknown well item to set: {item}")

    def _create_source(self, message: Reader) -> _Messages:
        well, source = message.text("WELLNAME"), message.text("STNAME")
        message.text("STPHASE")
        message.end()
        can_take = self.fluid is not None and self.wells.get(well) == "GAS_INJECTOR"
        if can_take:
            self._sources[source] = well
        return [[marker("REPLY"), integers("STRET", [int(can_take)])], _READY]

    def _set_source(self, message: Reader) -> _Messages:
        source = message.text("STNAME")
        fractions = message.numbers("STCMPVALUES")
        items = message.texts("STCMPNAMES", len(fractions))
        message.text("STPHASE")
        message.end()
        if source not in self._sources:
            raise Refused(f"Unknown fluid source {source}")
        well = self._sources[source]
        self.composition[well] = dict(zip(items, fractions))
        self._changed(well)
        return [_READY]


_MESSAGES: dict[str, Callable[[Peer, Reader], _Messages]] = {
    "CONTINUE": Peer._continue,
    "CONTINUE_UNTIL": Peer._continue_until,
    "SHUTDOWN": Peer._shut_down,
    "QUERY QWELLS": Peer._query_well_numbers,
    "QUERY QWELLS_STR": Peer._query_well_texts,
    "QUERY QRESVR": Peer._query_reservoir,
    "QUERY QRESVR_STR": Peer._query_reservoir_texts,
    "QUERY QWCONSTRAINTS": Peer._query_limits,
    "QUERY QIPRDATA": Peer._query_inflow,
    "QUERY QFMFLUIDMODEL": Peer._query_components,
    "QUERY QRFLUIDMODEL": Peer._query_fluid,
    "SET SETWCONSTRAINTS": Peer._set_limits,
    "SET SETWSTATUS": Peer._set_status,
    "SET SETWELLS": Peer._set_uptime,
    "SET CREATE_FLDSRCEXT": Peer._create_source,
    "SET SETWSTRE": Peer._set_source,
}
