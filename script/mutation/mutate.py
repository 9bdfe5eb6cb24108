#!/usr/bin/env python3
"""Seeds faults into the C++ sources, one at a time, and counts how many the tests catch.

    script/mutate 50 --paths src companions --seed 1

A fault is drawn at random: first the file, by its lines of code, then the kind, then the place.
What doesn't compile is drawn again. The tests next to the file run first and the others after them,
up to the first failure; heavy ones are left out. A fault that no test notices has survived.

The checkout is left alone: the tool works on a clone of its last commit in the --build folder, and
configures it there on the first run (arguments for CMake may follow a '--'). Tests run in
namespaces of their own, where the system allows that, so that a faulty program can't signal a
process, take a port or delete a file outside; elsewhere, sources that could do such harm aren't
drawn from.
"""

import argparse
import difflib
import fnmatch
import json
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from collections import Counter, defaultdict, namedtuple
from pathlib import Path

from cpp_mutations import draw

CONFIGURE = ["-GNinja", "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0",
             "-DCMAKE_C_FLAGS_DEBUG=-O0"]
# Most of a fault's time goes into linking the programs anew.
if shutil.which("ld.lld"):
    CONFIGURE += [f"-DCMAKE_{kind}_LINKER_FLAGS=-fuse-ld=lld"
                  for kind in ("EXE", "SHARED", "MODULE")]
MEMORY = f"ulimit -v {8 << 20}"  # for each process, in KiB: a fault may ask for more and more
APART = ["unshare", "--pid", "--fork", "--kill-child", "--mount", "--mount-proc", "--net",
         "sh", "-c",
         'mount --bind /tmp /tmp && mount --bind "$0" "$0" && mount -o remount,bind,ro / && '
         f'ip link set lo up && {MEMORY} && exec "$@"']
HARMFUL = re.compile(r"\b(kill|unlink|rename|rmdir|remove|remove_all)\(")
Verdict = namedtuple("Verdict", "failed timed_out output")


def call(command, limit=None):
    """Runs a command: its exit status, None past the time limit, and all that it wrote."""
    with tempfile.TemporaryFile("w+", errors="replace") as output:
        process = subprocess.Popen([str(part) for part in command], stdin=subprocess.DEVNULL,
                                   stdout=output, stderr=subprocess.STDOUT, start_new_session=True)
        try:
            status = process.wait(limit)
        except subprocess.TimeoutExpired:
            status = None
        finally:
            if process.poll() is None:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()
        output.seek(0)
        return status, output.read()


def need(*command):
    status, output = call(command)
    if status != 0:
        sys.exit(f"{output}\nmutate: failed: {' '.join(str(part) for part in command)}")
    return output


class Workshop:
    """The clone, its build and its tests. A test is known by its number in CTest's list."""

    def __init__(self, checkout, folder, jobs, cmake_arguments):
        if need("git", "-C", checkout, "status", "--porcelain"):
            sys.exit("mutate: the checkout has changes that aren't committed")
        folder.mkdir(parents=True, exist_ok=True)
        self.source, self.build, self.jobs = folder / "source", folder / "build", jobs
        if not self.source.exists():
            need("git", "clone", "-q", checkout, self.source)
        need("git", "-C", self.source, "fetch", "-q", checkout.resolve(), "HEAD")
        need("git", "-C", self.source, "checkout", "-q", "--force", "--detach", "FETCH_HEAD")
        if not (self.build / "build.ninja").exists():
            need("cmake", "-S", self.source, "-B", self.build, *CONFIGURE, *cmake_arguments)
        self.wrapper = [*APART, folder.resolve()]
        self.is_apart = call([*self.wrapper, "true"])[0] == 0
        if not self.is_apart:
            self.wrapper = ["sh", "-c", f'{MEMORY} && exec "$@"', "sh"]
        self.commands = json.loads((self.build / "compile_commands.json").read_text())

    def texts(self, paths, only):
        """The C++ sources under the paths that the build uses; headers once there is a build."""
        used = {Path(entry["file"]).resolve() for entry in self.commands}
        for line in call(["ninja", "-C", self.build, "-t", "deps"])[1].splitlines():
            if line.startswith("    ") and line.endswith(".h"):
                used.add((self.build / line.strip()).resolve())
        names = need("git", "-C", self.source, "ls-files", *paths).split()
        texts = {name: (self.source / name).read_text() for name in names
                 if fnmatch.fnmatch(name, only) and (self.source / name).resolve() in used}
        return {name: text for name, text in texts.items()
                if self.is_apart or not HARMFUL.search(text)}

    def make(self, targets):
        return call(["cmake", "--build", self.build, "--parallel", self.jobs, "--target", *targets])

    def find_tests(self):
        """Runs every test once on the unchanged sources, which all must pass: their programs."""
        if (made := self.make(["all"]))[0] != 0:
            sys.exit(made[1] + "\nmutate: the sources don't build as they are")
        listed = need("ctest", "--test-dir", self.build, "-LE", "heavy", "--show-only=json-v1")
        tests = json.JSONDecoder().raw_decode(listed[listed.index("{"):])[0]["tests"]
        self.names = {number: test["name"] for number, test in enumerate(tests, 1)}
        self.programs = {test["name"]: Path(test["command"][0]).name for test in tests}
        self.folders = defaultdict(set)
        for entry in self.commands:
            target = re.search(r"CMakeFiles/([^/]+)\.dir/", entry["command"])
            folder = Path(os.path.relpath(entry["file"], self.source.resolve())).parent.parts
            if folder[0] == "tests" and target and target[1] in self.programs.values():
                self.folders[target[1]].add(folder[1:])
        verdict = self.test(self.names, whole=True)
        if verdict.failed:
            sys.exit(f"{verdict.output[-4000:]}\nmutate: tests fail on the unchanged sources")
        self.seconds = {name: float(seconds) for name, seconds in
                        re.findall(r"Test\s+#\d+: (.+?) \.\.+.* ([\d.]+) sec", verdict.output)}
        return self.programs

    def near(self, name):
        """The test programs for a source: those whose folder shares the most of its path from the
        start, or has the same last part."""
        place = tuple(part for part in Path(name).parent.parts if part != "src")
        shared = {program: max(len(os.path.commonprefix([place, folder])) for folder in folders)
                  for program, folders in self.folders.items()}
        most = max(1, *shared.values())
        return sorted(program for program, folders in self.folders.items()
                      if shared[program] == most
                      or any(folder[-1:] == place[-1:] for folder in folders))

    def test(self, numbers, limit=None, whole=False):
        """Runs tests up to the first failure, or all: a Verdict. Past the time limit, the tests
        that were running then have failed."""
        chosen = self.build / "mutate-tests.txt"
        chosen.write_text("0,0,0," + ",".join(map(str, numbers)) + "\n")
        status, output = call([*self.wrapper, "ctest", "--test-dir", self.build.resolve(), "-LE",
                               "heavy", "--parallel", self.jobs, "-I", chosen.resolve(),
                               *([] if whole else ["--stop-on-failure"])], limit)
        if status is None:
            ended = set(re.findall(r"Test\s+#\d+: (.+?) \.\.+", output))
            started = re.findall(r"^\s+Start\s+\d+: (.+)$", output, re.M)
            running = [test for test in started if test not in ended]
            return Verdict(running or ["(none)"], True, output)
        listed = output.partition("The following tests FAILED:")[2]
        failed = re.findall(r"^\s+\d+ - (.+) \([^()]*\)$", listed, re.M)
        # Without a name, a program couldn't even list its tests.
        failed = failed or ["(list of tests)"] * (status != 0)
        return Verdict(failed, "***Timeout" in output, output)

    def test_twice(self, numbers, limit, whole):
        """Runs tests; what fails must fail again, since on a busy machine a sound test may fail."""
        for _ in range(3):
            verdict = self.test(numbers, limit, whole)
            again = [number for number in numbers if self.names[number] in verdict.failed]
            if whole or not again or verdict.timed_out or self.test(again, limit).failed:
                break
        return verdict

    def judge(self, name, limit, whole):
        """Builds and tests the sources as they are: a Verdict, or None if they don't compile."""
        near = self.near(name)
        first = [number for number, test in self.names.items()
                 if self.programs[test] in near and not whole]
        rest = sorted(self.names.keys() - first)
        verdict = Verdict([], False, "")
        for targets, numbers in ((near, first), (["all"], rest)):
            if numbers and not verdict.failed:
                if self.make(targets)[0] != 0:
                    return None
                expected = sum(self.seconds.get(self.names[number], 1) for number in numbers)
                verdict = self.test_twice(numbers, limit or 30 + 2 * expected, whole)
        return verdict


def difference(name, text, changed):
    lines = difflib.unified_diff(text.splitlines(), changed.splitlines(), name, name, "", "", 1, "")
    return "\n".join(list(lines)[2:])


def mutate(shop, texts, arguments, results):
    """Draws mutants and tries them until there are enough; adds what became of each."""
    for name, mutation in draw(texts, random.Random(arguments.seed)):
        if len(results) == arguments.count:
            return
        text, begin = texts[name], time.monotonic()
        changed = text[:mutation.start] + mutation.text + text[mutation.end:]
        result = {"file": name, "line": text.count("\n", 0, mutation.start) + 1,
                  "kind": mutation.kind, "diff": difference(name, text, changed)}
        place = f"{name}:{result['line']} {mutation.kind}"
        if arguments.list:
            results.append(result)
            print(f"{place}\n{result['diff']}")
            continue
        try:
            (shop.source / name).write_text(changed)
            verdict = shop.judge(name, arguments.timeout, arguments.whole)
        finally:
            (shop.source / name).write_text(text)
        if verdict is None:
            print(f"  not compiled: {place}", flush=True)
            continue
        result["outcome"] = ("timed out" if verdict.timed_out else
                             "killed" if verdict.failed else "survived")
        result |= {"failed": verdict.failed, "seconds": round(time.monotonic() - begin, 1)}
        results.append(result)
        by = f" by {verdict.failed[0]}" if verdict.failed else ""
        more = f" and {len(verdict.failed) - 1} more" if len(verdict.failed) > 1 else ""
        print(f"[{len(results)}/{arguments.count}] {result['outcome']}: {place}{by}{more} "
              f"({result['seconds']} s)", flush=True)
        arguments.results.write_text(json.dumps(results, indent=1) + "\n")


def report(results, programs):
    """Tells of the survivors, which programs caught the others, and the score."""
    killed = [result for result in results if result["outcome"] != "survived"]
    for result in results:
        if result not in killed:
            print(f"\nsurvived: {result['file']}:{result['line']} {result['kind']}")
            print(result["diff"])
    killers = Counter(programs.get(result["failed"][0], "none") for result in killed)
    print("\ncaught first by:", ", ".join(f"{name} {n}" for name, n in killers.most_common()))
    print("caught none first:", ", ".join(sorted(set(programs.values()) - set(killers))))
    share = 100 * len(killed) / max(1, len(results))
    print(f"mutation score {len(killed)} of {len(results)} ({share:.0f} %)")


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--source", type=Path, default=Path("."), help="the checkout")
    parser.add_argument("--build", type=Path, required=True,
                        help="folder for the clone and its build")
    parser.add_argument("--paths", nargs="+", default=["src", "companions"], help="where to mutate")
    parser.add_argument("--only", default="*", metavar="GLOB", help="files to mutate, as '*.cpp'")
    parser.add_argument("--count", type=int, default=20, help="mutants that compile")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--timeout", type=float, metavar="SECONDS",
                        help="for the tests of a mutant; without it, a multiple of what they take")
    parser.add_argument("--parallel", type=int, default=2 * os.cpu_count(), metavar="JOBS",
                        help="tests wait more than they compute [two for each processor]")
    parser.add_argument("--whole", action="store_true",
                        help="go on after a failure, to see how many tests catch each mutant")
    parser.add_argument("--list", action="store_true", help="show what would be drawn, and end")
    parser.add_argument("--results", type=Path, metavar="FILE", help="[BUILD/results.json]")
    parser.add_argument("cmake", nargs="*", help="arguments for CMake, after a '--'")
    arguments = parser.parse_args()
    arguments.results = arguments.results or arguments.build / "results.json"

    def stop(*_):
        raise KeyboardInterrupt

    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, stop)
    results, programs = [], {}
    try:
        shop = Workshop(arguments.source, arguments.build, arguments.parallel, arguments.cmake)
        if not arguments.list:
            programs = shop.find_tests()
        mutate(shop, shop.texts(arguments.paths, arguments.only), arguments, results)
    except KeyboardInterrupt:
        print("stopped; the sources are as they were")
    if not arguments.list:
        report(results, programs)


if __name__ == "__main__":
    main()
