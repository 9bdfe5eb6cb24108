"""Runs from Python, with the driver module and tanksim."""

import os
import shutil
import signal
import subprocess
import sys
import threading

import gantry
import numpy as np
import pytest


def without_run_id(table: bytes) -> list[bytes]:
    return [line.rpartition(b",")[0] for line in table.splitlines()]


def test_a_run_that_changes_nothing_equals_fieldruns_own(examples, fieldrun, tmp_path):
    file = examples / "five_spot/case.toml"
    case = gantry.Case(file, output=tmp_path / "python")
    with case.run(steps=6) as run:
        assert run.wells == ["P1", "P2", "P3", "P4", "I1"]
        assert [step.number for step in run] == list(range(1, 7))
    subprocess.run([fieldrun, "run", file, "-n", "6", "-q", "-o", tmp_path / "own"], check=True)
    for table in ("wells.csv", "field.csv", "inflow.csv"):
        ours, own = ((tmp_path / folder / table).read_bytes() for folder in ("python", "own"))
        assert without_run_id(ours) == without_run_id(own)
    assert (tmp_path / "python/report.html").stat().st_size > 10000


def test_what_python_decides_goes_to_the_simulator_and_into_the_results(examples, tmp_path):
    case = gantry.Case(examples / "five_spot/case.toml", output=tmp_path)
    with case.run(steps=3) as run:
        for step in run:
            inflow = step.inflow["P1"]
            assert inflow.pressure.size == 10 and np.all(np.diff(inflow.oil) < 0)
            taken = step.control("P1", bottom_hole_pressure=200)
            assert taken.bottom_hole_pressure == pytest.approx(200)
            assert (taken.oil, taken.water, taken.gas) == pytest.approx(inflow.rates_at(200))
            assert step.control("P2", liquid=100, oil=90).oil == pytest.approx(90)
            assert step.control("I1", water=500).water == pytest.approx(500)
            step.shut("P3", "logging")
            assert not step.control("P1", bottom_hole_pressure=500).is_open
            step.control("P1", bottom_hole_pressure=200)
            step.set_point("P4", 260, oil=50, water=0, gas=4.5)
            if step.number > 1:
                assert step.reported["P2"].oil == pytest.approx(90, rel=0.02)
                assert step.reported["P4"].oil == pytest.approx(50, rel=0.02)
                assert step.reported["P3"].oil == 0
        with pytest.raises(StopIteration):
            next(run)
    wells = gantry.Results(tmp_path).wells
    assert list(wells["P3"]["limited by"]) == ["logging"] * 3
    assert wells["P2"]["oil"] == pytest.approx([90] * 3)
    assert wells["I1"]["reported water"] == pytest.approx([500] * 3, rel=1e-3)


def test_paths_and_what_is_refused(examples, tmp_path):
    case = gantry.Case(examples / "five_spot/case.toml", output=tmp_path)
    with pytest.raises(gantry.CaseError, match="no such file"):
        gantry.Case(tmp_path / "none.toml")
    with case.run(steps=1) as run:
        step = next(run)
        assert run.get("Intersect.IsRunning") == "1"
        run.set("Intersect.StaticWell[{P1}].OpMode", 3)
        assert run.get("Intersect.StaticWell[{P1}].OpMode") == "3"
        with pytest.raises(gantry.DriverError):
            run.get("Intersect.NoSuchThing")
        with pytest.raises(KeyError, match="no well 'P9'; it has P1"):
            step.inflow["P9"]
        for wrong in ({}, {"oil": float("nan")}, {"bottom_hole_pressure": float("inf")}):
            with pytest.raises(ValueError, match="P1"):
                step.control("P1", **wrong)
        with pytest.raises(RuntimeError, match="Another run"):
            case.run()
    assert gantry.Results(tmp_path).steps == 0, "nobody has let the step go on"


PUBLISHED = """
[simulator]
deck = "FIVE_SPOT.afi"
store_file = "case.state"
[time]
steps = 2
[[well]]
name = "P1"
kind = "producer"
[[well]]
name = "P4"
kind = "producer"
connected = false
"""


def test_published_variables_are_read_and_written_at_the_simulator(examples, fieldrun, tmp_path):
    case_file = tmp_path / "case.toml"
    case_file.write_text(PUBLISHED)
    shutil.copy(examples / "five_spot/FIVE_SPOT.afi", tmp_path)
    names = ["P1:Oil production rate", "P4:Oil production rate"]
    subprocess.run([fieldrun, "variables", case_file, "--add", names[0], "--add", names[1]], check=True)
    with gantry.Case(case_file, output=tmp_path / "out").run() as run:
        next(run)
        assert set(names) < set(run.published) and run.published[names[1]] > 1000
        run.published[names[1]] = 300
        assert run.published[names[1]] == pytest.approx(300)
        # A connected well is at the end of its inflow, 0.1 ** 2.5 of the most
        at_rest = next(run).inflow["P1"].oil[-1]
        assert run.published[names[0]] == pytest.approx(at_rest, rel=1e-3)
        assert run.published[names[1]] == pytest.approx(300), "an order outlives the step"
        with pytest.raises(gantry.DriverError, match="well P1 is connected"):
            run.published[names[0]] = 5
        with pytest.raises(KeyError):
            run.published["P9:Water cut"]


def test_an_error_ends_the_run_in_order_and_stands_in_its_results(examples, tmp_path):
    case = gantry.Case(examples / "five_spot/case.toml", output=tmp_path)
    with pytest.raises(ZeroDivisionError):
        with case.run() as run:
            for step in run:
                1 / (3 - step.number)
    results = gantry.Results(tmp_path)
    assert results.steps == 2
    assert results.info["end"]["failure"] == "ZeroDivisionError: division by zero"
    with case.run(steps=1) as run:  # the simulator and the folder are free again
        next(run)


def test_the_example_shares_out_lift_gas_for_more_oil(examples, tmp_path):
    program = examples / "python_network/gas_lift.py"
    case = examples / "five_spot/case.toml"
    for gas in ("0", "60"):
        subprocess.run([sys.executable, program, case, gas, tmp_path / gas], check=True, stdout=subprocess.DEVNULL)
    without, with_gas = (gantry.Results(tmp_path / gas).field["total oil"][-1] for gas in ("0", "60"))
    assert with_gas > 1.01 * without


WAITING = """
import pathlib, time, original

@original.peer.advance
def advance(days):
    pathlib.Path("busy").touch()
    while not pathlib.Path("go").exists():
        time.sleep(0.01)
    return days

original.peer.main()
"""


@pytest.fixture
def waiting_case(examples, tmp_path):
    """The example's simulator, which says by the file "busy" that it runs on, and ends its step when "go" is there."""
    shutil.copytree(examples / "python_simulator", tmp_path, dirs_exist_ok=True)
    program = tmp_path / "tank.py"
    program.rename(tmp_path / "original.py")
    program.write_text(f"#!{sys.executable}\n" + WAITING)
    program.chmod(0o755)
    return tmp_path / "case.toml"


def wait_for(path):
    while not path.exists():
        pass


def test_other_threads_run_while_the_simulator_works(waiting_case, tmp_path):
    def let_go():
        wait_for(tmp_path / "busy")
        (tmp_path / "go").touch()

    other = threading.Thread(target=let_go)
    other.start()
    with gantry.Case(waiting_case, output=tmp_path / "out").run(steps=2) as run:
        assert len(list(run)) == 2
    other.join()


def test_ctrl_c_finishes_the_step_and_ends_in_order(waiting_case, tmp_path):
    code = (
        "import gantry, sys\n"
        "with gantry.Case(sys.argv[1], output=sys.argv[2]).run() as run:\n"
        "    for step in run: print(step.number, flush=True)\n"
    )
    program = subprocess.Popen(
        [sys.executable, "-c", code, waiting_case, tmp_path / "out"],
        stdout=subprocess.PIPE, stderr=subprocess.PIPE, start_new_session=True,
    )  # fmt: skip
    wait_for(tmp_path / "busy")
    os.killpg(program.pid, signal.SIGINT)  # as a terminal does: to all that it has started
    (tmp_path / "go").touch()
    out, err = program.communicate()
    assert out.split() == [b"1"], err
    assert b"KeyboardInterrupt" in err
    results = gantry.Results(tmp_path / "out")
    assert results.steps == 1 and results.info["end"]["failure"] == "KeyboardInterrupt: "
