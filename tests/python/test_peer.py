"""The simulator's half of the wire in Python: with the driver, and with a controller of the test's own.

The rules of the protocol that every simulator keeps are test_check.py's.
"""

import socket
import subprocess
from concurrent.futures import ThreadPoolExecutor
from datetime import date

import gantry
import pytest
from gantry.peer import FluidModel, Peer
from gantry.wire import Wire, integers, marker, numbers, texts

SET_UP = [marker("SETUP"), texts("VERSION", ["V2"])]


@pytest.fixture
def talk():
    """A peer of two wells, a wire to it, and the session that it serves there, as a future."""
    fluid = FluidModel("F", "PENG_ROBINSON", ["C1", "C7"], [0.01], {"MOLECULAR_WEIGHT": [16, 200]})
    peer = Peer({"P": "PRODUCER", "G": "GAS_INJECTOR"}, date(2020, 2, 1), fluid=fluid)
    peer.well_number("OIL_PRODUCTION_RATE")(lambda well: 7.0)
    peer.advance(lambda days: days if days < 100 else float("inf"))
    with socket.create_server(("127.0.0.1", 0)) as listener:
        ours = socket.create_connection(listener.getsockname())
        theirs, _ = listener.accept()
    with ThreadPoolExecutor() as pool, ours:
        yield peer, Wire(ours), pool.submit(peer.serve, theirs)


def test_the_example_runs_under_fieldrun_and_floods(examples, fieldrun, tmp_path):
    case = examples / "python_simulator/case.toml"
    subprocess.run([fieldrun, "run", case, "-q", "-o", tmp_path], check=True)
    results = gantry.Results(tmp_path)
    assert results.steps == 120 and results.warnings == []
    cut = results.field["water cut"]
    assert cut[0] < 0.001 and cut[-1] > 0.8
    assert results.field["water injected"] == pytest.approx([1800] * 120)


def test_a_compositional_run_sends_what_is_injected(talk):
    peer, wire, session = talk

    def ask(*message):
        wire.send(list(message))
        return wire.receive()

    ask(*SET_UP)
    wire.receive()
    reply = ask(marker("QUERY"), marker("QRFLUIDMODEL"))
    wire.receive()
    reply.marker("REPLY")
    assert (reply.text("FLUIDMODELDNAME"), reply.text("EOSNAME")) == ("F", "PENG_ROBINSON")
    assert reply.texts("NCOMPS") == ["C1", "C7"] and reply.numbers("BIC") == [0.01]
    assert reply.text("EOSPROPNAME") == "MOLECULAR_WEIGHT" and reply.numbers("VALUES") == [16, 200]
    reply.end()
    for well, can in (("P", 0), ("G", 1)):
        reply = ask(marker("SET"), marker("CREATE_FLDSRCEXT"), texts("WELLNAME", [well]),
                    texts("STNAME", ["S"]), texts("STPHASE", ["GAS"]))  # fmt: skip
        wire.receive()
        reply.marker("REPLY")
        assert reply.integer("STRET") == can
    ask(marker("SET"), marker("SETWSTRE"), texts("STNAME", ["S"]), numbers("STCMPVALUES", [0.75, 0.25]),
        texts("STCMPNAMES", ["TOTAL_MOLE_FRACTION[1]", "TOTAL_MOLE_FRACTION[2]"]), texts("STPHASE", [""]))  # fmt: skip
    assert peer.composition["G"] == {"TOTAL_MOLE_FRACTION[1]": 0.75, "TOTAL_MOLE_FRACTION[2]": 0.25}
    position = ask(marker("CONTINUE_UNTIL"), numbers("TIME", [100.0]))
    position.marker("STEP")
    assert position.text("POSITION") == "END_SIMULATE"
    ask(marker("SHUTDOWN")).marker("FINISHED")
    assert session.exception() is None


REFUSED = [
    ([marker("SET"), marker("SETWELLS"), texts("SETITEM", ["UPTIME_FRACTION"]), texts("WELNAMES", ["X"]),
      numbers("VALUES", [1])], "Unknown well X"),
    ([marker("SET"), marker("SETWSTATUS"), texts("WCLOSURE", ["USER"]), texts("SETITEM", ["STATUS"]),
      texts("WELNAMES", ["P"]), texts("VALUES", ["ASLEEP"])], "Unknown well status ASLEEP"),
    ([marker("QUERY"), marker("QIPRDATA"), texts("WELNAMES", ["P"]), texts("PRESSURETYPES", ["BHP"]),
      integers("NPOINTS", [3]), numbers("SKEWNESS", [1])], "this simulator measures no inflow of its own"),
]  # fmt: skip


@pytest.mark.parametrize("message, reason", REFUSED, ids=lambda value: value if isinstance(value, str) else "")
def test_what_cannot_be_obeyed_ends_the_session_with_its_reason(talk, message, reason):
    _, wire, session = talk
    wire.send(SET_UP, message)
    wire.receive()
    wire.receive()
    assert wire.receive().entry().name == f"ERROR: {reason}"
    assert str(session.exception()) == reason
