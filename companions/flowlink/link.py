"""The part of flowlink that runs inside flow.

flow calls `run` after every time step. At the end of a report step this script tells the adapter
the state of the wells, and then obeys it, one line of JSON for each message, until it is told to
go on. A question ("what would the wells do under these keywords?") is answered by a fork of the
whole simulator, which takes one tiny step under them and is gone: the run itself stays where it is.
"""

import json
import os
import signal
import socket
import stat

import opm_embedded

LINK_VARIABLE = "FLOWLINK_SOCKET"
TINY_STEP = "TUNING\n0.0005 /\n/\n/\n"
TIME_TOLERANCE = 0.5  # seconds

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
        if link.is_question:
            link.answer(summary_state)
        if summary_state.elapsed() > link.times[report_step + 1] - TIME_TOLERANCE:
            link.stop(schedule, report_step, summary_state)
        elif link.has_lost_adapter():
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


class Link:
    def __init__(self, schedule):
        self.socket = socket.socket(fileno=int(os.environ[LINK_VARIABLE]))
        self.lines = self.socket.makefile("r")
        self.parser = opm_embedded.Parser()
        self.is_question = False
        self.is_finished = False
        self.wells = list(schedule.well_names("*"))
        self.times = report_times(schedule)
        self.deck_wells = [deck_wells(schedule, self.wells, step)
                           for step in range(len(self.times) - 1)]
        start = self.receive()
        self.vectors = start["vectors"]
        self.units = start["units"]
        self.seconds_for_question = start["secondsForQuestion"]
        first = schedule.start
        self.send({"event": "model", "wells": self.wells,
                   "start": [first.year, first.month, first.day,
                             first.hour, first.minute, first.second]})

    def stop(self, schedule, report_step, summary_state):
        is_last = report_step + 2 >= len(self.times)
        next_step = report_step if is_last else report_step + 1
        self.send({"event": "stop", "days": summary_state.elapsed() / 86400.0, "last": is_last,
                   "wells": self.deck_wells[next_step], "values": self.values(summary_state)})
        while True:
            order = self.receive()
            if order["do"] == "ask" and self.ask(schedule, next_step, order["keywords"]):
                return
            if order["do"] == "advance":
                self.insert(schedule, next_step, order["keywords"])
                return
            if order["do"] == "finish":
                self.finish(schedule, next_step, is_last)
                return

    def ask(self, schedule, next_step, keywords):
        """Forks for an answer. True in the fork, which has to go on to its tiny step."""
        child = os.fork()
        if child == 0:
            self.is_question = True
            signal.alarm(self.seconds_for_question)
            close_files()
            self.insert(schedule, next_step, keywords + TINY_STEP)
            return True
        _, status = os.waitpid(child, 0)
        if status != 0:
            self.send({"event": "unanswered"})
        return False

    def answer(self, summary_state):
        self.send({"event": "answer", "values": self.values(summary_state)})
        os._exit(0)

    def finish(self, schedule, next_step, is_last):
        """Lets flow write out this report step; it is stopped in the next one."""
        self.is_finished = True
        if not is_last:
            self.insert(schedule, next_step, TINY_STEP)

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

    def send(self, message):
        self.socket.sendall((json.dumps(message) + "\n").encode())

    def receive(self):
        line = self.lines.readline()
        if not line:
            raise EOFError
        return json.loads(line)

    def has_lost_adapter(self):
        try:
            return self.socket.recv(1, socket.MSG_PEEK | socket.MSG_DONTWAIT) == b""
        except BlockingIOError:
            return False

    def fail(self, reason):
        # A question's own fault is told by its exit status: the run goes on.
        if not self.is_question:
            self.send({"event": "failed", "reason": reason})
        os._exit(1)


def report_times(schedule):
    """Seconds from the start to the beginning of each report step, and to the end of the last."""
    times = list(schedule.timesteps)
    if schedule.end > times[-1]:
        times.append(schedule.end)
    return [(time - schedule.start).total_seconds() for time in times]


def deck_wells(schedule, wells, step):
    """What the deck says of each well in a report step, before anybody changes it."""
    found = {}
    for name in wells:
        try:
            well = schedule.get_well(name, step)
        except Exception:
            continue  # not drilled yet
        if well.isproducer():
            limits = schedule.get_production_properties(name, step)
        else:
            limits = schedule.get_injection_properties(name, step)
        found[name] = {"producer": well.isproducer(), "status": well.status(), "limits": limits}
    return found


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
