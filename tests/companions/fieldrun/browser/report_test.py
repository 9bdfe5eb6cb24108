"""report_test.py TEST FIELDRUN EXAMPLES: the report in a browser, as its reader uses it.

Ends with 77 where there is no browser.
"""

import csv
import io
import itertools
import json
import math
import os
import pathlib
import random
import re
import signal
import subprocess
import sys
import tempfile
import time

import browser

STEP_OF_EVENT = """
[[event]]
date = 2021-06-10
well = "P2"
action = "shut"
note = "a <b>pump</b> fails"

[[event]]
date = 2022-01-01
well = "P2"
action = "open"
"""


class Field:
    """A run of the five-spot with an event, and its report in a window."""

    def __init__(self, folder, fieldrun, examples, steps=48):
        self.folder = pathlib.Path(folder)
        self.fieldrun = fieldrun
        self.results = self.folder / "results"
        example = pathlib.Path(examples) / "five_spot"
        case = self.folder / "case.toml"
        text = (example / "case.toml").read_text()
        case.write_text(re.sub(r'deck = "', f'deck = "{example}/', text) + STEP_OF_EVENT)
        self.command = [fieldrun, "run", case, "-o", self.results, "-n", str(steps)]
        self.browser = browser.Browser(str(self.folder / "browser"))
        self._pages = []

    def run(self):
        subprocess.run([*self.command, "-q"], check=True)

    def page(self, **window):
        self._pages.append(browser.Page(self.browser, self.results / "report.html", **window))
        return self._pages[-1]

    def table(self, name):
        with open(self.results / name, newline="") as file:
            return list(csv.DictReader(file))

    def close(self):
        faults = [fault for page in self._pages for fault in page.faults()]
        self.browser.close()
        assert faults == [], faults


def rows_of(page, section):
    """The shown cells of a table."""
    rows = page.eval(f"""[...document.querySelectorAll('#{section} tr')].map((row) => [...row.cells]
        .map((cell) => cell.textContent.replace(/\\u202f/g, '').replace('−', '-')))""")
    return [list(row) for row in rows]


def is_shown(number, text):
    """Whether a number of the tables is what the page shows in five digits."""
    return math.isclose(float(number), float(text), rel_tol=2e-4, abs_tol=0.02)


def shows_the_step_of_the_slider(field):
    field.run()
    page = field.page()
    assert page.count("#field canvas") == 6
    wells = field.table("wells.csv")
    for step in 48, 7, 20:
        page.set("#step", step - 1)
        told = {row["well"]: row for row in wells if row["step"] == str(step)}
        shown = rows_of(page, "wells")
        heading = shown[0]
        for row in shown[1:]:
            cells = dict(zip(heading, row))
            table = told[cells["well"].removesuffix(" ⚠")]
            assert cells["at the step"].removeprefix("shut: ") == table["limited by"], cells
            for name in "oil (Sm3/d)", "water (Sm3/d)", "pressure (bara)":
                number = cells[name.replace(" (", ", ").rstrip(")")]
                assert is_shown(table[f"reported {name}"], number), (step, name, cells, table)
    page.eval("document.getElementById('P3').scrollIntoView()")
    page.until("document.querySelector('#P3 canvas')")
    notes = []
    for key, step in ("Home", 1), ("ArrowRight", 2), ("End", 48):
        page.press(key)
        row = [r for r in wells if r["well"] == "P3" and r["step"] == str(step)][0]
        notes += page.texts("#P3 .note")[:1]
        rate = float(row["oil (Sm3/d)"]) + float(row["water (Sm3/d)"])
        shown_rate, _, hold = re.match(r"([0-9.]+) (\S+) (.*)", notes[-1]).groups()
        assert math.isclose(rate, float(shown_rate), rel_tol=1e-3), (rate, notes)
        assert hold == row["limited by"]
    assert len(set(notes)) == 3, notes


def tells_all_values_under_the_pointer(field):
    field.run()
    page = field.page()
    rows = field.table("field.csv")
    row = rows[23]
    ends = [float(row["days"]) + float(row["length"]) for row in rows]
    box = page.eval("(({x, y, width, height}) => [x, y, width, height])"
                    "(document.querySelector('#field .u-over').getBoundingClientRect())")
    before = page.texts("#field .keys b")
    x = box[0] + box[2] * ends[23] / ends[-1]
    page.mouse("mouseMoved", x, box[1] + box[3] / 2)
    page.until(f"document.querySelector('#field .keys b').textContent !== {json.dumps(before[0])}")
    told = page.texts("#field .keys b")
    wanted = [row[name] for name in (
        "oil (Sm3/d)", "water (Sm3/d)", "water injected (Sm3/d)", "gas (kSm3/d)",
        "gas-oil ratio (Sm3/Sm3)", "total oil (Sm3)", "total water (Sm3)",
        "total water injected (Sm3)", "total gas (kSm3)", "water cut")]
    assert len(told) == len(wanted)
    for number, text in zip(wanted, told):
        assert is_shown(number, text), (wanted, told)
    bars = "document.querySelector('#wells .held').style.backgroundImage"
    whole = page.eval(bars)
    page.mouse("mousePressed", x, box[1] + 20)
    page.mouse("mouseMoved", x + 60, box[1] + 20)
    page.mouse("mouseReleased", x + 60, box[1] + 20)
    page.until(f"{bars} !== {json.dumps(whole)}")
    page.press("0")
    page.until(f"{bars} === {json.dumps(whole)}")
    step = "document.querySelectorAll('#field .band')[3].style.width"
    width = page.eval(step)
    page.press("+")
    page.until(f"{step} !== {json.dumps(width)}")
    page.press("0")
    page.until(f"{step} === {json.dumps(width)}")


def finds_wells(field):
    field.run()
    page = field.page()
    for query, wells in (("prod", ["P1", "P2", "P3", "P4"]), ("inj", ["I1"]), ("producer 3", ["P3"]),
                         ("nothing", []), ("", ["P1", "P2", "P3", "P4", "I1"])):
        page.set("#search", query)
        assert [row[1] for row in rows_of(page, "wells")[1:]] == wells
        assert page.eval("[...document.getElementById('cards').children].map((c) => c.id)") == wells
    page.press("/")
    page.send("Input.insertText", text="i1")
    page.drawn()
    assert page.count("#cards > *") == 1
    assert "P2: shut (a <b>pump</b> fails)" in page.eval(
        "JSON.parse(document.getElementById('data').textContent).events[0].text")
    assert rows_of(page, "events")[1][5] == "a <b>pump</b> fails"


def hands_out_what_it_shows(field):
    field.run()
    page = field.page()
    page.set("#search", "producer")
    heading = rows_of(page, "wells")[0].index("oil, Sm3/d")
    page.eval(f"document.querySelectorAll('#wells th')[{heading}].querySelector('button').click()")
    name, content = page.download("document.querySelector('#wells h2 button').click()")
    assert name == "Five-spot-water-flood-wells.csv", name
    shown = rows_of(page, "wells")
    pictures = [i for i, title in enumerate(shown[0]) if title in ("print", "held by, over time")]
    shown = [[cell for i, cell in enumerate(row) if i not in pictures] for row in shown]
    sent = list(csv.reader(io.StringIO(content.decode())))
    assert len(sent) == len(shown) == 5 and sent[0] == shown[0]
    for ours, theirs in zip(shown[1:], sent[1:]):
        for text, field_text in zip(ours, theirs):
            same = text == field_text
            assert same or is_shown(field_text, text), (text, field_text)
    oil = [float(row[3]) for row in shown[1:]]
    assert oil == sorted(oil, reverse=True)
    name, content = page.download("document.querySelectorAll('#field .tools button')[1].click()")
    assert name.endswith("Liquid-rates.png") and content.startswith(b"\x89PNG") and len(content) > 5000
    name, content = page.download("document.querySelectorAll('#field .tools button')[0].click()")
    table = list(csv.reader(io.StringIO(content.decode())))
    assert table[0] == ["date", "days", "oil (Sm3/d)", "water (Sm3/d)", "water injected (Sm3/d)"]
    rows = field.table("field.csv")
    assert len(table) == len(rows) + 2
    for row, ours in zip(rows, table[2:]):
        assert is_shown(row["oil (Sm3/d)"], ours[2]), (row, ours)


def prints_a_page_and_half_a_page_for_each_well(field):
    field.run()
    page = field.page()

    def pages():
        return len(re.findall(rb"/Type\s*/Page\b", page.pdf()))

    assert pages() == 1 + 3, "five wells"
    page.press("a")
    assert pages() == 1
    page.eval("document.querySelector('#wells input').click()")
    assert pages() == 2
    page.drawn()
    assert page.count("#sheets") == 0 and page.count("#field canvas") == 6


def fits_its_window_in_light_and_dark(field):
    field.run()
    page = field.page()
    for width in 1280, 760, 420:
        page.resize(width)
        page.drawn()
        wide = page.eval("document.documentElement.scrollWidth")
        assert wide <= width, (wide, width)
        cut = page.eval("""[...document.querySelectorAll('h1, h3, p, figcaption, .tile, .keys, canvas')]
            .filter((e) => e.getBoundingClientRect().right > innerWidth).map((e) => e.textContent)""")
        assert cut == [], (width, cut)
    colours = {page.eval("getComputedStyle(document.body).backgroundColor")}
    page.press("t")
    colours.add(page.eval("getComputedStyle(document.body).backgroundColor"))
    page.send("Emulation.setEmulatedMedia",
              features=[{"name": "prefers-color-scheme", "value": "dark"}])
    page.eval("sessionStorage.clear()")
    assert len(colours) == 2, colours
    page.press("?")
    assert page.eval("document.getElementById('help').open")


def follows_a_run(field):
    """The run is held in its middle, so that the page can be looked at, and then let go."""
    run = subprocess.Popen([*field.command, "--json", "--watch"], stdout=subprocess.PIPE, text=True)
    for line in run.stdout:
        if '"event":"step"' in line:
            break
    os.kill(run.pid, signal.SIGSTOP)
    page = field.page()
    assert page.texts("#ended")[0].startswith("The run is going on."), page.texts("#ended")
    seen = page.count("#steps tbody tr")
    assert 0 < seen < 48, seen
    page.set("#search", "p2")
    page.set("#step", 0)
    os.kill(run.pid, signal.SIGCONT)
    run.communicate()
    assert run.returncode == 0
    assert not (field.results / "report.watch.js").exists()
    while page.texts("#ended") != ["The run is complete."]:
        field.browser.wait("Page.loadEventFired")
        page.await_ready()
    assert page.count("#steps tbody tr") == 48
    assert page.count("#cards > *") == 1, "the search is kept"
    assert page.texts("output")[0].startswith("step 1 of 48") or seen == 1
    # The page's own looking at a file that has gone is no fault of it.
    gone = "report.watch.js"
    field.browser.events = [e for e in field.browser.events if gone not in json.dumps(e)]


def make_a_thousand_wells(results):
    """Puts a thousand wells in the place of those of a run, each like the first but for its numbers."""
    chance = random.Random(1)
    names = [f"W{i:04}" for i in range(1000)]
    run = json.loads((results / "run.json").read_text())
    run["wells"] = [{"name": name, "kind": 0} for name in names]
    (results / "run.json").write_text(json.dumps(run))
    for table in results / "wells.csv", results / "inflow.csv", results / "events.csv":
        heading, *rows = table.read_text().splitlines(keepends=True)
        with open(table, "w") as file:
            file.write(heading)
            for row, name in itertools.product([row for row in rows if ",P1," in row], names):
                part = chance.uniform(0.98, 1.02)
                moved = re.sub(r"\d+\.\d+", lambda number: f"{float(number[0]) * part:.5g}", row)
                file.write(moved.replace(",P1,", f",{name},"))


def carries_a_thousand_wells(field):
    field.command[-1] = "120"
    field.run()
    make_a_thousand_wells(field.results)
    subprocess.run([field.fieldrun, "report", field.results], check=True, stdout=subprocess.DEVNULL)
    size = (field.results / "report.html").stat().st_size
    page = field.page()
    spent = page.eval("performance.getEntriesByName('first chart')[0].startTime")
    print(f"{size / 1e6:.2f} MB, first chart after {spent:.0f} ms, "
          f"all of the page after {page.eval('performance.now()'):.0f} ms at most")
    assert size <= 10e6, size
    assert page.count("#wells tbody tr") == 1000
    assert page.count("canvas") < 40, "charts are made when they are looked at"
    page.set("#search", "w0777")
    page.eval("document.getElementById('W0777').scrollIntoView()")
    page.until("document.querySelector('#W0777 canvas')")
    assert page.count("#cards > *") == 1


def main():
    name, fieldrun, examples = sys.argv[1:]
    if not browser.is_installed():
        sys.exit(77)
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder:
        field = Field(folder, fieldrun, examples)
        try:
            globals()[name](field)
        finally:
            field.close()


main()
