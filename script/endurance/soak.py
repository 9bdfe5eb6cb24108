#!/usr/bin/env python3
"""Runs the module as a host does, over and over, and fails unless what it takes stays flat.

    script/soak MINUTES [--seed S]

Rounds are drawn at random: runs of a few steps on this machine and on a cluster, runs side by side in
threads, the module unloaded and loaded again, its simulator killed or the host itself, each at any
stage of a run. After each round every process that it has started must have ended. Memory, descriptors, threads,
processes and files of this process and of the cluster's service are measured after each round; the
first quarter of the time counts as warm-up.
"""

import _ctypes
import argparse
import ctypes
import os
import random
import re
import shutil
import signal
import statistics
import struct
import subprocess
import sys
import tempfile
import threading
import time
from collections import Counter
from pathlib import Path

START, START_RUN, TIMESTEP, GET_IPR, SET_OP_PT, CLOSE, READ_WELLS, SET_PROPERTY = (
    23, 48, 49, 50, 53, 56, 63, 97)
STAGES = ["made", "started", "run begun", "wells read", "point set", "stepped"]
STEPS, WELLS, DAYS, AT_ONCE = 3, 5, 10.0, 4
MOST_GROWTH_KB = 1024  # of the memory, from the end of the warm-up on
PATIENCE = 30.0  # seconds for processes to end
MARK = "GANTRY_SOAK"  # the variable by which the processes of this run are known


class Failed(Exception):
    """A command of the module has failed, with the module's text."""


class Module:
    def __init__(self, path):
        self.library = ctypes.CDLL(str(path))
        self.identity = ctypes.create_string_buffer(2048)
        self.library.ExtIdentify(self.identity, None)

    def unload(self):
        _ctypes.dlclose(self.library._handle)
        if "libIntersect.so" in Path("/proc/self/maps").read_text():
            sys.exit("soak: the module stays in the process")


class Model:
    """One simulator behind the module. A record is a buffer with values put at their places."""

    def __init__(self, module, settings):
        self.call = module.library.ExtCmd
        self.destroy = module.library.ExtDestroyInstance
        self.handle = ctypes.c_void_p()
        module.library.ExtCreateInstance(ctypes.byref(self.handle), None)
        for name, value in settings.items():
            self.set(f"Intersect.CaseDetails.{name}", str(value))

    def do(self, command, record=None):
        error = ctypes.create_string_buffer(264)
        if self.call(self.handle, None, command, record, 0, error) != 0:
            raise Failed(error.raw[4:].split(b"\0")[0].decode("cp1252"))

    def set(self, path, value):
        texts = [ctypes.create_string_buffer(text.encode()) for text in (path, value)]
        self.do(SET_PROPERTY, self.record(24, (8, "Q", ctypes.addressof(texts[0])),
                                          (16, "Q", ctypes.addressof(texts[1]))))

    @staticmethod
    def record(size, *values):
        record = ctypes.create_string_buffer(size)
        for offset, kind, value in values:
            struct.pack_into(kind, record, offset, value)
        return record

    def start_run(self):
        wells = (ctypes.c_int32 * WELLS)(*range(WELLS))
        self.do(START_RUN, self.record(192, (8, "Q", ctypes.addressof(wells)), (128, "i", WELLS),
                                       (172, "i", 1)))

    def choose_points(self, exchange):
        for well in range(WELLS):
            struct.pack_into("i", exchange, 4, well)
            self.do(GET_IPR, exchange)
            middle = struct.unpack_from("i", exchange, 496)[0] // 2
            for array in (16, 96, 176, 256):
                exchange[array:array + 8] = exchange[array + 8 * middle:array + 8 * middle + 8]
            self.do(SET_OP_PT, exchange)

    def run(self, steps, at=lambda stage: None):
        """A whole run; `at` is told each stage that it has come to."""
        exchange = self.record(105368)
        at("made")
        self.do(START)
        at("started")
        self.start_run()
        at("run begun")
        for _ in range(steps):
            self.do(READ_WELLS)
            at("wells read")
            self.choose_points(exchange)
            at("point set")
            self.do(TIMESTEP, self.record(152, (8, "d", DAYS)))
            at("stepped")
        self.do(CLOSE)

    def end(self):
        self.destroy(self.handle, None)


def processes(program=None):
    """The processes of this run but this one, by their environment."""
    mark = f"{MARK}={os.environ[MARK]}".encode()
    for folder in Path("/proc").glob("[0-9]*"):
        try:
            if int(folder.name) == os.getpid() or mark not in (folder / "environ").read_bytes():
                continue
            if program is None or (folder / "exe").resolve().name == program:
                yield int(folder.name)
        except (OSError, ValueError):
            continue


def wait_for_end(but):
    """Waits until no process of this run is left but one."""
    limit = time.monotonic() + PATIENCE
    while left := [pid for pid in processes() if pid != but]:
        if time.monotonic() > limit:
            sys.exit(f"soak: processes still run: {left}")
        time.sleep(0.005)


def kill(pids):
    for pid in pids:
        try:
            os.kill(pid, signal.SIGKILL)
        except ProcessLookupError:
            pass


class Soak:
    def __init__(self, folder, build, seed):
        self.folder, self.build, self.draw = folder, build, random.Random(seed)
        self.path = build / "lib" / "libIntersect.so"
        self.module = Module(self.path)
        self.rounds = Counter()

    def settings(self, number=0, cluster=False):
        settings = {"SimExeName": self.build / "bin" / "tanksim",
                    "FileName": self.folder / f"cases{number}" / "FIVE_SPOT.afi"}
        if cluster:
            settings |= {"ConnectionMode": 1, "HeadNode": "127.0.0.1", "LinuxIXVersion": 20172,
                         "HeadNodePort": self.port}
        return settings

    def serve(self):
        """Starts the cluster's service."""
        self.factory = subprocess.Popen(
            [self.build / "bin" / "runfactory", "--allow-root", "--listen", "127.0.0.1:0", "--simulator",
             self.build / "bin" / "tanksim", "--root", self.folder, "--log", self.folder / "factory.log"],
            stdout=subprocess.PIPE, text=True)
        self.port = int(re.search(r":(\d+)", self.factory.stdout.readline())[1])

    def run(self, settings, at=lambda stage: None):
        model = Model(self.module, settings)
        try:
            model.run(STEPS, at)
        finally:
            model.end()

    def steps(self):
        self.run(self.settings())

    def cluster_steps(self):
        self.run(self.settings(cluster=True))

    def side_by_side(self):
        faults = []

        def one(number):
            try:
                self.run(self.settings(number))
            except Failed as failed:
                faults.append(str(failed))

        threads = [threading.Thread(target=one, args=(number,)) for number in range(AT_ONCE)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        if faults:
            sys.exit(f"soak: a run beside others failed: {faults}")

    def reload(self):
        self.module.unload()
        self.module = Module(self.path)

    def kill_simulator(self, cluster=False):
        stage, seen = self.draw.choice(STAGES[1:-1]), []

        def at(present):
            if present == stage and not seen:
                seen.append(stage)
                kill(processes("tanksim"))

        try:
            self.run(self.settings(cluster=cluster), at)
        except Failed as failed:
            if not str(failed):
                sys.exit(f"soak: no text for a simulator that was killed: {stage}")
            return
        if stage != "started":  # the begin of a run starts a simulator that has gone anew
            sys.exit(f"soak: a run outlived its simulator: {stage}")

    def kill_cluster_simulator(self):
        self.kill_simulator(cluster=True)

    def kill_host(self, cluster=False):
        stage = self.draw.choice(STAGES)
        host = subprocess.Popen([sys.executable, __file__, "--host", stage, self.build, *(
            f"{name}={value}" for name, value in self.settings(cluster=cluster).items())],
            stdout=subprocess.PIPE)
        if not host.stdout.readline():
            sys.exit(f"soak: a host ended before it was to be killed: {stage}")
        host.kill()
        host.wait()
        host.stdout.close()

    def kill_cluster_host(self):
        self.kill_host(cluster=True)

    def round(self):
        name = self.draw.choice(ROUNDS)
        getattr(self, name)()
        wait_for_end(self.factory.pid)
        self.rounds[name] += 1

    def measure(self):
        """What this process and the service hold, by name."""
        found = {"processes": len(list(processes()))}
        for who, pid in ("host", os.getpid()), ("service", self.factory.pid):
            status = Path(f"/proc/{pid}/status").read_text()
            found[f"{who}'s memory, kB"] = int(re.search(r"VmRSS:\s+(\d+)", status)[1])
            found[f"{who}'s threads"] = int(re.search(r"Threads:\s+(\d+)", status)[1])
            found[f"{who}'s descriptors"] = len(os.listdir(f"/proc/{pid}/fd"))
        found["files"] = sum(len(files) for _, _, files in os.walk(self.folder))
        return found


ROUNDS = ["steps", "cluster_steps", "side_by_side", "reload", "kill_simulator", "kill_cluster_simulator",
          "kill_host", "kill_cluster_host"]


def host(stage, build, settings):
    """A host that comes to a stage, tells so, and waits there to be killed."""
    def at(present):
        if present == stage:
            print("there", flush=True)
            signal.pause()

    Model(Module(Path(build) / "lib" / "libIntersect.so"), settings).run(STEPS, at)


def judge(figures):
    """Prints what was held after the warm-up and at the end, and tells whether that is flat: counts
    the same, memory no more than a little above. What is held for a moment, such as a thread that has
    been joined and not yet left, is in a row or two and not in the middle one."""
    early = [row for share, row in figures if 0.25 <= share < 0.5]
    late = [row for share, row in figures if share >= 0.75]
    if not early or not late:
        sys.exit("soak: too short a time for figures")
    is_flat = True
    print(f"{'':<24}{'after the warm-up':>20}{'at the end':>20}")
    for name in early[0]:
        is_memory = "memory" in name
        before, after = (statistics.median(row[name] for row in rows) for rows in (early, late))
        is_sound = after <= before + (MOST_GROWTH_KB if is_memory else 0)
        is_flat = is_flat and is_sound
        print(f"{name:<24}{before:>20.0f}{after:>20.0f}{'' if is_sound else '  grows'}")
    return is_flat


def soak(folder, build, minutes, seed):
    for number in range(AT_ONCE):
        shutil.copytree("examples/five_spot", folder / f"cases{number}")
    soak = Soak(folder, build, seed)
    soak.serve()
    begin, figures = time.monotonic(), []
    try:
        while (share := (time.monotonic() - begin) / (60 * minutes)) < 1:
            soak.round()
            figures.append((share, soak.measure()))
    finally:
        soak.factory.terminate()
        soak.factory.wait()
        kill(processes())
    print(f"{sum(soak.rounds.values())} rounds in {minutes:g} minutes:",
          ", ".join(f"{name} {count}" for name, count in sorted(soak.rounds.items())))
    return judge(figures)


def divert_errors(folder):
    """What the programs that are killed and left say goes to a file; this script's own doesn't."""
    sys.stderr = os.fdopen(os.dup(2), "w", buffering=1)
    with open(folder / "errors", "w") as errors:
        os.dup2(errors.fileno(), 2)


def main():
    if sys.argv[1:2] == ["--host"]:
        stage, build, *settings = sys.argv[2:]
        return host(stage, build, dict(setting.split("=", 1) for setting in settings))
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("minutes", type=float)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--build", type=Path, default=Path("build/release"))
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="gantry-soak-") as folder:
        os.environ[MARK] = folder
        os.environ["XDG_CONFIG_HOME"] = folder
        divert_errors(Path(folder))
        is_flat = soak(Path(folder), arguments.build.resolve(), arguments.minutes, arguments.seed)
    if not is_flat:
        sys.exit("soak: not flat")


if __name__ == "__main__":
    main()
