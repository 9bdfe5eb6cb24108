#!/usr/bin/env python3
"""Stands between the driver and its peer, counts their messages and puts one fault into one of them.

    proxy.py BASE --dopt=external_controller_port:PORT ...    in place of the simulator tanksim
    proxy.py PORT PEER                                        before a service on the port PEER

The variables that say which: sweep.py, `plan_of`. Behind a message that was changed, whoever waits for
more than comes is released by the end of the connection.
"""

import os
import re
import select
import socket
import struct
import subprocess
import sys
import time
from pathlib import Path

SILENCE = 2.0  # seconds after which both sides wait for each other
DELAY = 0.3


def frame_of_simulator(data):
    """The length of the first frame: its own length, then chunks with theirs. None until it is whole."""
    total, at = 0, 8
    while len(data) >= at + 8:
        chunk = struct.unpack_from("<Q", data, at)[0]
        total, at = total + chunk, at + 8 + chunk
        if total >= struct.unpack_from("<Q", data)[0]:
            return at if len(data) >= at else None
    return None


def frame_of_cluster(data):
    length = 4 + struct.unpack_from("<I", data)[0] if len(data) >= 4 else len(data) + 1
    return length if len(data) >= length else None


def flipped(message, at):
    return message[:at] + bytes([message[at] ^ 1]) + message[at + 1:]


def with_length(length):
    """Every length word of the frame's head in place of its own; one of 4 bytes takes what fits."""
    def change(message, size):
        return (length & (1 << 8 * size) - 1).to_bytes(size, "little") + message[size:]
    return change


# What becomes of a message whose length word has so many bytes, and whether the connection ends there.
FAULTS = {
    "cut": (lambda message, _: b"", True),
    "half": (lambda message, _: message[:len(message) // 2], True),
    "truncated": (lambda message, _: message[:-1], True),
    "flipped length": (lambda message, _: flipped(message, 0), False),
    "flipped body": (lambda message, _: flipped(message, (len(message) + 16) // 2), False),
    "flipped end": (lambda message, _: flipped(message, len(message) - 1), False),
    "twice": (lambda message, _: message * 2, False),
    "huge length": (with_length((1 << 62) + (1 << 31) - 1), False),
    "negative length": (with_length(-1), False),
    "byte by byte": (lambda message, _: message, False),
    "delayed": (lambda message, _: message, False),
}


class Proxy:
    """One connection, as two sockets whose bytes are taken apart into messages."""

    def __init__(self, client, peer, frame_of, word):
        self.client, self.ends = client, {client: peer, peer: client}
        self.waiting = {client: b"", peer: b""}
        self.frame_of, self.word = frame_of, word
        self.fault, self.at = os.environ["GANTRY_FAULT_FAMILY"], int(os.environ["GANTRY_FAULT_AT"])
        self.tally = Path(os.environ["GANTRY_FAULT_TALLY"])
        self.messages, self.is_changed = 0, False
        for end in self.ends:
            end.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)

    def run(self):
        try:
            while self.pass_on():
                pass
        except OSError:
            pass  # an end has gone, and so does the other one
        for end in self.ends:
            end.close()

    def pass_on(self):
        """What has come; false at the end of the connection."""
        readable = select.select(list(self.ends), [], [], SILENCE if self.is_changed else None)[0]
        for end in readable:
            data = end.recv(1 << 20)
            if not data or not self.take(end, data):
                return False
        return bool(readable)

    def take(self, end, data):
        if self.is_changed:
            self.ends[end].sendall(data)
            return True
        self.waiting[end] += data
        while (length := self.frame_of(self.waiting[end])) is not None:
            message, self.waiting[end] = self.waiting[end][:length], self.waiting[end][length:]
            self.messages += 1
            self.tally.write_bytes(struct.pack("QQ", self.messages, 0))
            if self.messages != self.at:
                self.ends[end].sendall(message)
            elif not self.send_changed(self.ends[end], message):
                return False
        return True

    def send_changed(self, end, message):
        change, ends_here = FAULTS[self.fault]
        if self.fault == "delayed":
            time.sleep(DELAY)
        changed = change(message, self.word)
        for piece in self.pieces(end, changed):
            end.sendall(piece)
        self.is_changed = changed != message
        return not ends_here

    def pieces(self, end, message):
        """The length of a reply from a cluster comes whole: the driver takes it by one read."""
        if self.fault != "byte by byte":
            return [message]
        whole = self.word if end is self.client and self.word == 4 else 1
        return [message[:whole], *(message[at:at + 1] for at in range(whole, len(message)))]


def connect(port, while_true=lambda: True):
    while while_true():
        try:
            return socket.create_connection(("127.0.0.1", port))
        except ConnectionRefusedError:
            time.sleep(0.01)
    return None


def stand_for_simulator(arguments):
    """The simulator's exit status."""
    place = next(i for i, word in enumerate(arguments) if "controller_port:" in word)
    port = int(re.search(r"port:(\d+)", arguments[place])[1])
    listener = socket.create_server(("127.0.0.1", port))
    arguments[place] = arguments[place].replace(f":{port}", f":{port + 1000}")
    tanksim = Path(os.environ["GANTRY_FAULT_PROGRAMS"]) / "tanksim"
    with subprocess.Popen([tanksim, *arguments]) as simulator:
        peer = connect(port + 1000, lambda: simulator.poll() is None)
        if peer:
            Proxy(listener.accept()[0], peer, frame_of_simulator, 8).run()
    return simulator.returncode


def stand_before_service(port, peer):
    listener = socket.create_server(("127.0.0.1", port))
    print("listens on", port, flush=True)
    while True:
        Proxy(listener.accept()[0], connect(peer), frame_of_cluster, 4).run()


if __name__ == "__main__":
    if len(sys.argv) == 3 and sys.argv[1].isdigit():
        stand_before_service(int(sys.argv[1]), int(sys.argv[2]))
    sys.exit(stand_for_simulator(sys.argv[1:]))
