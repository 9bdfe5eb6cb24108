"""The work of script/decks, whose head says what it does."""

import argparse
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import time

TOTALS = ["FOPT", "FWPT", "FGPT", "FWIT", "FGIT"]
TOTAL_BOUND, PRESSURE_BOUND = 0.005, 0.01
QUICK_CELLS = 2000
LONGEST_RUN = 1800  # seconds
NO_DECKS = 77
BIN = pathlib.Path("build/release/bin").resolve()
WORK = pathlib.Path("build/decks").resolve()
KEPT = ["bottom_hole_pressure", "oil_rate", "water_rate", "gas_rate", "liquid_rate",
        "reservoir_rate", "tubing_head_pressure"]


def blocks(file):
    """Name and values of each array of a result file, in big-endian records."""
    data = file.read_bytes()
    kinds = {b"INTE": ("i", 4), b"REAL": ("f", 4), b"DOUB": ("d", 8), b"CHAR": ("8s", 8),
             b"LOGI": ("i", 4), b"MESS": ("8s", 8)}
    at = 0
    while at < len(data):
        name, count, kind = struct.unpack(">8si4s", data[at + 4:at + 20])
        at += 24
        letter, size = kinds.get(kind) or (kind.decode()[1:].lstrip("0") + "s", int(kind[1:]))
        raw = b""
        while len(raw) < count * size:
            length = struct.unpack(">i", data[at:at + 4])[0]
            raw += data[at + 4:at + 4 + length]
            at += 8 + length
        yield name.decode().strip(), struct.unpack(f">{count}" + letter if len(letter) == 1 else
                                                   ">" + letter * count, raw[:count * size])


class Summary:
    """The summary of a run: values over time, and the days at which report steps end."""

    def __init__(self, base):
        head = dict(blocks(base.with_suffix(".SMSPEC")))
        names = head.get("WGNAMES") or head["NAMES"]
        self.keys = [(word.decode().strip(), name.decode().strip())
                     for word, name in zip(head["KEYWORDS"], names)]
        self.rows, self.report_days = [], []
        for name, values in blocks(base.with_suffix(".UNSMRY")):
            if name == "SEQHDR" and self.rows:
                self.report_days.append(self.rows[-1][0])
            elif name == "PARAMS":
                self.rows.append(values)
        if self.rows:
            self.report_days.append(self.rows[-1][0])

    def column(self, word, name=None):
        for place, key in enumerate(self.keys):
            if key[0] == word and (name is None or key[1] == name):
                return place
        return None

    def at(self, day, column):
        """Between two time steps on the line between them."""
        before = None
        for row in self.rows:
            if row[0] >= day - 1e-3:
                if before is None or abs(row[0] - day) < 1e-3:
                    return row[column]
                part = (day - before[0]) / (row[0] - before[0])
                return before[column] + part * (row[column] - before[column])
            before = row
        return before[column]


def records(text, keyword):
    """The records of each occurrence of a keyword, repeat counts spread out."""
    text = re.sub(r"--[^\n]*", "", text)
    for found in re.finditer(rf"^\s*{keyword}\b[^\n]*\n(.*?)^\s*/", text, re.M | re.S | re.I):
        for line in found.group(1).split("/"):
            items = []
            for item in line.replace("'", " ").split():
                repeat = re.fullmatch(r"(\d+)\*(.*)", item)
                items += [repeat.group(2)] * int(repeat.group(1)) if repeat else [item]
            if items:
                yield items


def names_of(pattern, wells):
    return [well for well in wells if re.fullmatch(pattern.replace("*", ".*"), well)]


class Deck:
    """A deck, copied to a folder of its own, with the totals in its summary."""

    def __init__(self, file):
        self.name = file.stem
        self.folder = WORK / self.name
        shutil.rmtree(self.folder, ignore_errors=True)
        # A folder that holds decks of other folders too gives this one alone.
        if any(entry.is_dir() and list(entry.glob("*.DATA")) for entry in file.parent.iterdir()):
            self.folder.mkdir(parents=True)
            shutil.copy(file, self.folder)
        else:
            shutil.copytree(file.parent, self.folder)
        subprocess.run(["chmod", "-R", "u+w", self.folder], check=True)
        self.file = self.folder / file.name
        text = self.file.read_text(errors="replace")
        wanted = "".join(word + "\n" for word in TOTALS) + "WBHP\n/\n"
        if not re.search(r"^\s*SUMMARY\b", text, re.M | re.I):
            wanted = "SUMMARY\n" + wanted
        self.text = re.sub(r"^\s*SCHEDULE\b", wanted + "SCHEDULE", text, count=1, flags=re.M | re.I)
        self.file.write_text(self.text)

    def cells(self):
        for word in ("DIMENS", "SPECGRID"):
            found = re.search(rf"^\s*{word}[^\n]*\n([^/]*)/", re.sub(r"--[^\n]*", "", self.text), re.M)
            if found:
                across, along, layers = map(int, found.group(1).split()[:3])
                return across * along * layers
        return 0

    def case(self):
        """A case whose limits are never tighter than the deck's, which are kept."""
        metric = re.search(r"^\s*METRIC\b", self.text, re.M)
        pressure = 0.0 if metric else 14.69595
        names = [record[0] for record in records(self.text, "WELSPECS")]
        wells = {}
        for keyword, mode, table in (("WCONPROD", 2, 10), ("WCONINJE", 3, 8)):
            for record in records(self.text, keyword):
                gas = keyword == "WCONINJE" and record[1].upper() == "GAS"
                kind = "producer" if keyword == "WCONPROD" else (
                    "gas_injector" if gas else "water_injector")
                limits = dict(limits_in(record, kind, pressure))
                for name in names_of(record[0], names):
                    well = wells.setdefault(name, {"kind": kind, "limits": limits, "left": False})
                    # On a lift curve, held by its group or a quantity that the deck computes, or of
                    # changing kind.
                    well["left"] |= (kind != well["kind"] or item(record, table) not in ("", "0")
                                     or None in limits.values()
                                     or item(record, mode).upper() == "GRUP")
                    well["limits"] = {key: looser(key, well["limits"][key], limits[key])
                                      for key in well["limits"] if key in limits}
        for record in records(self.text, "WELTARG"):
            for name in names_of(record[0], names):
                well = wells[name]
                for key, value in target_in(record, well["kind"], pressure):
                    if key in well["limits"]:
                        well["limits"][key] = looser(key, well["limits"][key], value)
        lines = ["[case]", f'units = "{"metric" if metric else "field"}"', "[simulator]",
                 'deck = "COUPLED.afi"', 'inflow_model = "block"', "[time]", "duration = 36500"]
        for name, well in wells.items():
            lines += ["[[well]]", f'name = "{name}"', f'kind = "{well["kind"]}"']
            lines += ["connected = false"] if well["left"] else [
                f"{key} = {value:.10g}" for key, value in well["limits"].items()]
        return "\n".join(lines) + "\n"


LIMITS = {"producer": [("max_oil", 3, "ORAT"), ("max_water", 4, "WRAT"), ("max_gas", 5, "GRAT"),
                       ("max_liquid", 6, "LRAT"), ("min_bottom_hole_pressure", 8, "BHP")],
          "water_injector": [("water_rate", 4, "WRAT"), ("max_bottom_hole_pressure", 6, "BHP")],
          "gas_injector": [("gas_rate", 4, "GRAT"), ("max_bottom_hole_pressure", 6, "BHP")]}


def item(record, place):
    return record[place] if len(record) > place else ""


def in_case(key, text, pressure):
    """In the units of a case; None for a quantity that the deck computes."""
    if not re.match(r"[-+.\d]", text):
        return None
    value = float(text)
    return value - pressure if "pressure" in key else value * 1e-3 if "gas" in key else value


def limits_in(record, kind, pressure):
    for key, place, _ in LIMITS[kind]:
        if item(record, place):
            yield key, in_case(key, record[place], pressure)


def target_in(record, kind, pressure):
    for key, _, mode in LIMITS[kind]:
        if record[1].upper() == mode:
            yield key, in_case(key, record[2], pressure)


def looser(key, one, other):
    return None if None in (one, other) else min(one, other) if key.startswith("min") else max(one, other)


def run(command, folder, log):
    """Status, wall seconds and the last line that was said."""
    begin = time.monotonic()
    with open(folder / log, "w") as out:
        try:
            status = subprocess.run(command, cwd=folder, stdout=out, stderr=subprocess.STDOUT,
                                    timeout=LONGEST_RUN).returncode
        except subprocess.TimeoutExpired:
            status = "too long"
    said = [line for line in (folder / log).read_text(errors="replace").splitlines() if line.strip()]
    return status, time.monotonic() - begin, said[-1] if said else ""


def share(value, reference, scale):
    """Relative to the reference, where that is more than nothing much."""
    return abs(value - reference) / scale if scale > 0 else float(value != reference)


def compare(alone, coupled):
    """The worst relative differences at alone's report dates, as far as both runs came."""
    end = coupled.rows[-1][0] if coupled.rows else 0.0
    days = [day for day in alone.report_days if day <= end + 1e-3]
    differences = {}
    if not days:
        return {}, 0.0, alone.report_days[-1] - end
    for word in TOTALS:
        ours, theirs = coupled.column(word), alone.column(word)
        if ours is None or theirs is None:
            continue
        last = alone.at(alone.report_days[-1], theirs)
        if last <= 0:
            continue
        # A total that has barely begun is measured by a hundredth of the last one.
        differences[word] = max(
            share(coupled.at(day, ours), alone.at(day, theirs),
                  max(alone.at(day, theirs), 0.01 * last)) for day in days)
    worst = 0.0
    for word, well in alone.keys:
        if word != "WBHP":
            continue
        ours, theirs = coupled.column(word, well), alone.column(word, well)
        for day in days:
            reference = alone.at(day, theirs)
            if ours is not None and reference > 0:
                worst = max(worst, share(coupled.at(day, ours), reference, reference))
    return differences, worst, alone.report_days[-1] - end


def couple(deck, report_step):
    (deck.folder / "COUPLED.afi").write_text(
        f'deck = "{deck.file.name}"\nreport_step = "{report_step}"\ngroups = "deck"\n'
        "way_back = false\n"
        f"keep = {KEPT}\n".replace("'", '"'))
    (deck.folder / "case.toml").write_text(deck.case())
    command = [BIN / "fieldrun", "run", "case.toml", "--quiet", "--simulator", BIN / "flowlink",
               "--output", "results"]
    return run(command, deck.folder, "coupled.log")


def percent(value):
    return "-" if value is None else f"{100 * value:.2f} %"


def row(deck, report_step):
    """Of the table, and whether it is as it should be."""
    alone_status, alone_seconds, said = run(
        ["flow", "--threads-per-process=1", "--output-dir=alone", deck.file.name], deck.folder,
        "alone.log")
    if alone_status != 0:
        return [deck.name, "flow alone fails"] + ["-"] * (len(TOTALS) + 1) + [
            f"{alone_seconds:.0f} s", "-"], True
    status, seconds, said = couple(deck, report_step)
    results = sorted(deck.folder.rglob("COUPLED.UNSMRY"))
    times = [f"{alone_seconds:.1f} s", f"{seconds:.1f} s"]
    if not results:
        return [deck.name, "refused: " + said] + ["-"] * (len(TOTALS) + 1) + times, status == 1
    totals, pressure, missing = compare(Summary(deck.folder / "alone" / deck.name.upper()),
                                        Summary(results[0].with_suffix("")))
    is_close = max(totals.values(), default=0.0) <= TOTAL_BOUND and pressure <= PRESSURE_BOUND
    is_whole = missing < 0.5
    word = ("within" if is_close else "**beyond**") if is_whole else (
        f"**ends {missing:.0f} days early**")
    cells = [percent(totals.get(total)) for total in TOTALS] + [percent(pressure)]
    return [deck.name, word] + cells + times, is_close and is_whole


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--months", action="store_true")
    parser.add_argument("--table", type=pathlib.Path)
    parser.add_argument("folders", nargs="*", type=pathlib.Path)
    choice = parser.parse_args()
    folders = choice.folders or [pathlib.Path("../shared/data")]
    files = sorted(file for folder in folders for file in folder.resolve().rglob("*.DATA")
                   if re.search(r"^\s*RUNSPEC\b", file.read_text(errors="replace"), re.M | re.I))
    if not files:
        print("decks: no deck under " + " ".join(map(str, folders)), file=sys.stderr)
        sys.exit(NO_DECKS)
    lines = ["| deck | coupled | " + " | ".join(TOTALS) + " | pressure | flow alone | coupled |",
             "| --- " * (len(TOTALS) + 5) + "|"]
    print("\n".join(lines), flush=True)
    all_good = True
    for file in files:
        deck = Deck(file)
        if choice.quick and deck.cells() > QUICK_CELLS:
            continue
        columns, is_good = row(deck, "month" if choice.months else "deck")
        all_good = all_good and is_good
        lines.append("| " + " | ".join(columns) + " |")
        print(lines[-1], flush=True)
    if choice.table:
        choice.table.write_text("\n".join(lines) + "\n")
    sys.exit(0 if all_good else 1)


main()
