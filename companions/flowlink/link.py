"""The part of flowlink that runs inside flow.

flow calls `run` after every time step. At the end of a report step this script tells the adapter
the state of the wells, and then obeys it, one line of JSON for each message, until it is told to
go on. A question ("what would the wells do under these limits?") is answered by a fork of the
whole simulator, which takes one tiny step under them and is gone: the run itself stays where it is.

flow works through the rest of its schedule whenever a keyword is taken in. So the keywords of a
question have names in place of numbers: a first fork, the survey, takes them in, and forks anew for
each set of numbers, for as many at a time as there are processors.
"""

import ctypes
import gc
import json
import os
import resource
import signal
import socket
import stat

import opm_embedded

LINK_VARIABLE = "FLOWLINK_SOCKET"
TINY_STEP = "TUNING\n{} 5* 1E-12 /\n/\n/\n"  # cut so far, where there is no solution, that flow gives up
FIRST_STEP_DAYS = 0.0005
SAID_LENGTH = 4000  # the bytes of flow's last words that are passed on
TIME_TOLERANCE = 0.5  # seconds
PR_SET_PDEATHSIG = 1

link = None


class RunOver(Exception):
    pass


def run(ecl_state, schedule, report_step, summary_state, actionx_callback):
    global link
    try:
        if link is None:
            link = Link(schedule)
        if link.is_finished:
            raise RunOver("the host has ended the run here")
        if link.asker is not None:
            link.answer(summary_state)
        if summary_state.elapsed() > link.times[report_step + 1] - TIME_TOLERANCE:
            link.stop(schedule, report_step, summary_state)
        elif link.adapter.is_lost():
            os._exit(1)
    except RunOver:
        raise  # flow closes its files as it goes down with this
    except (OSError, EOFError):
        os._exit(1)
    except Exception as fault:
        if link is None:
            raise
        link.fail(str(fault))
    return True


class Line:
    """One end of a socket on which each line is a message."""

    def __init__(self, end):
        self.socket = end
        self.lines = end.makefile("r")

    def send(self, message):
        self.socket.sendall((json.dumps(message) + "\n").encode())

    def receive(self):
        line = self.lines.readline()
        if not line:
            raise EOFError
        return json.loads(line)

    def is_lost(self):
        try:
            return self.socket.recv(1, socket.MSG_PEEK | socket.MSG_DONTWAIT) == b""
        except BlockingIOError:
            return False

    def close(self):
        self.lines.close()
        self.socket.close()


class Fork:
    """A fork of this process, and a line between the two. It dies with whom it was forked from."""

    def __init__(self):
        ours, its = socket.socketpair()
        parent = os.getpid()
        self.process = os.fork()
        self.is_here = self.process == 0
        if self.is_here:
            libc.prctl(PR_SET_PDEATHSIG, signal.SIGKILL)
            if os.getppid() != parent:
                os._exit(1)
        (ours if self.is_here else its).close()
        self.line = Line(its if self.is_here else ours)

    def receive(self):
        """What it says, None when it ends without a word."""
        try:
            return self.line.receive()
        except EOFError:
            return None

    def end(self):
        self.line.close()
        os.waitpid(self.process, 0)


class Answerer(Fork):
    """A fork for one set of numbers. It writes nothing but what flow says, which is kept.

    flow writes out the report step ahead of the tiny one: files that the run opens anew each time
    must not be written by several.
    """

    def __init__(self, seconds):
        self.said = os.memfd_create("said")
        super().__init__()
        if self.is_here:
            os.dup2(self.said, 1)
            os.dup2(self.said, 2)
            resource.setrlimit(resource.RLIMIT_NOFILE, (0, 0))
            signal.alarm(seconds)

    def take_answer(self):
        values = self.receive()
        self.end()
        length = os.fstat(self.said).st_size
        begin = max(0, length - SAID_LENGTH)
        text = "" if values is not None else os.pread(self.said, length - begin, begin).decode(errors="replace")
        os.close(self.said)
        return {"values": values, "said": text}


class Link:
    def __init__(self, schedule):
        gc.disable()  # a collection would touch, and so copy, every object in a fork
        self.adapter = Line(socket.socket(fileno=int(os.environ[LINK_VARIABLE])))
        self.parser = opm_embedded.Parser()
        self.asker = None
        self.survey = None
        self.is_finished = False
        self.asked = 0
        self.wells = list(schedule.well_names("*"))
        self.times = report_times(schedule)
        start = self.adapter.receive()
        self.vectors = start["vectors"]
        self.units = start["units"]
        self.seconds_for_question = start["secondsForQuestion"]
        first = schedule.start
        self.adapter.send({"event": "model", "wells": self.wells,
                           "start": [first.year, first.month, first.day,
                                     first.hour, first.minute, first.second],
                           "deck": changes_of_wells(schedule, self.wells, self.times)})

    def stop(self, schedule, report_step, summary_state):
        is_last = report_step + 2 >= len(self.times)
        next_step = report_step if is_last else report_step + 1
        self.adapter.send({"event": "stop", "days": summary_state.elapsed() / 86400.0,
                           "last": is_last, "report": report_step + 1,
                           "values": self.values(summary_state)})
        while True:
            order = self.adapter.receive()
            if order["do"] == "ask":
                if self.ask(order, schedule, next_step, summary_state):
                    return
                continue
            self.end_survey()
            if order["do"] == "advance":
                self.insert(schedule, next_step, order["keywords"])
                set_numbers(summary_state, order["numbers"])
            elif order["do"] == "finish":
                self.finish(schedule, next_step, is_last)
            return

    def ask(self, order, schedule, next_step, summary_state):
        """Has a survey answer. True in a fork that has to go on to its tiny step."""
        keywords = order["keywords"] + TINY_STEP.format(order["days"])
        if self.survey is None or self.keywords != keywords:
            self.end_survey()
            self.keywords = keywords
            self.survey = Fork()
        if self.survey.is_here:
            self.adapter.close()
            close_files()
            self.asker = self.survey.line
            self.insert(schedule, next_step, self.keywords)
            return self.serve(summary_state)
        self.asked += len(order["sets"])
        self.survey.line.send(order["sets"])
        answers = self.survey.receive()
        if answers is None:
            self.end_survey()
            answers = [{"values": None, "said": ""} for _ in order["sets"]]
        self.adapter.send({"event": "answers", "answers": answers})
        return False

    def serve(self, summary_state):
        """The survey's work. True in a fork for one set of numbers."""
        processors = len(os.sched_getaffinity(0))
        while True:
            answers, asked = [], []
            for numbers in self.asker.receive():
                if len(asked) == processors:
                    answers.append(asked.pop(0).take_answer())
                asked.append(Answerer(self.seconds_for_question))
                if asked[-1].is_here:
                    self.asker = asked[-1].line
                    set_numbers(summary_state, numbers)
                    return True
            self.asker.send(answers + [fork.take_answer() for fork in asked])

    def answer(self, summary_state):
        self.asker.send(self.values(summary_state))
        os._exit(0)

    def end_survey(self):
        if self.survey is not None:
            self.survey.end()
        self.survey = None

    def finish(self, schedule, next_step, is_last):
        """Lets flow write out this report step; it is stopped in the next one."""
        self.is_finished = True
        self.tell_cost()
        if not is_last:
            self.insert(schedule, next_step, TINY_STEP.format(FIRST_STEP_DAYS))

    def tell_cost(self):
        run, questions = (sum(resource.getrusage(who)[:2])
                          for who in (resource.RUSAGE_SELF, resource.RUSAGE_CHILDREN))
        print(f"flowlink: processor time: {run:.1f} s for the run, {questions:.1f} s for "
              f"{self.asked} questions", flush=True)

    def insert(self, schedule, step, text):
        if not text:
            return
        # A text that is parsed by itself is metric unless it says otherwise.
        keywords = self.parser.parse_string(self.units + "\n\n" + text)
        wanted = [keyword for keyword in keywords if keyword.name != self.units]
        schedule.insert_keywords(wanted, step)

    def values(self, summary_state):
        return {well: [well_value(summary_state, well, vector) for vector in self.vectors]
                for well in self.wells}

    def fail(self, reason):
        # A question's own fault is told by its silence: the run goes on.
        if self.asker is None:
            self.adapter.send({"event": "failed", "reason": reason})
        os._exit(1)


def set_numbers(summary_state, numbers):
    for well, name, value in numbers:
        summary_state.update_well_var(well, name, value)


def report_times(schedule):
    """Seconds from the start to the beginning of each report step, and to the end of the last."""
    times = list(schedule.timesteps)
    if schedule.end > times[-1]:
        times.append(schedule.end)
    return [(time - schedule.start).total_seconds() for time in times]


def changes_of_wells(schedule, wells, times):
    """What the deck says of the wells, from when on; before anybody else changes it."""
    changes, known = [], {}
    for step, start in enumerate(times[:-1]):
        found = deck_wells(schedule, wells, step)
        changed = {name: well for name, well in found.items() if known.get(name) != well}
        if changed:
            changes.append({"days": start / 86400.0, "wells": changed})
        known = found
    return changes


def deck_wells(schedule, wells, step):
    found = {}
    for name in wells:
        try:
            well = schedule.get_well(name, step)
        except Exception:
            continue  # not drilled yet
        found[name] = {"producer": well.isproducer(), "status": well.status(),
                       "limits": deck_limits(schedule, well, step)}
    return found


def deck_limits(schedule, well, step):
    """None for a well whose limits are quantities that are computed in the run."""
    try:
        if well.isproducer():
            return schedule.get_production_properties(well.name, step)
        return schedule.get_injection_properties(well.name, step)
    except ValueError:
        return {}


def well_value(summary_state, well, vector):
    return summary_state.well_var(well, vector) if summary_state.has_well_var(well, vector) else 0.0


def close_files():
    """Points every open file at the null device, so that a fork writes nothing anywhere."""
    null = os.open(os.devnull, os.O_RDWR)
    for number in map(int, os.listdir("/proc/self/fd")):
        try:
            if number in (1, 2) or stat.S_ISREG(os.fstat(number).st_mode):
                os.dup2(null, number)
        except OSError:
            pass  # the folder that was being listed


libc = ctypes.CDLL(None)
