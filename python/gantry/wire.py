"""The frames and entries of the external-controller protocol, as docs/wire-protocol.md gives them.

A message is a list of entries, each a name with a list of values of one kind: no values at all
(a marker), integers, numbers or texts. `Reader` walks a received message strictly: what doesn't
stand where it belongs raises `ProtocolError` with the header that came and the one that was due.
"""

from __future__ import annotations

import array
import socket
import struct
import sys
from dataclasses import dataclass
from typing import Any, Iterable, Sequence

Values = Any  #: a sequence of the elements of a kind

LONGEST_CHUNK = 65536
LONGEST_NAME = 255
_PROVEN = 1 << 20  # bytes that are taken on a header's word


class ProtocolError(Exception):
    """A message or frame that isn't as the protocol has it."""


@dataclass(frozen=True)
class Entry:
    """One named array; `kind` is "MESS", "INTE", "DOUB" or "CSTR"."""

    name: str
    kind: str
    values: Values = ()

    def __str__(self) -> str:
        return f"{self.name}-{len(self.values)}-{self.kind}"


def marker(name: str) -> Entry:
    return Entry(name, "MESS")


def texts(name: str, values: Iterable[str]) -> Entry:
    return Entry(name, "CSTR", [str(value) for value in values])


def numbers(name: str, values: Iterable[float]) -> Entry:
    return Entry(name, "DOUB", array.array("d", values))


def integers(name: str, values: Iterable[int]) -> Entry:
    return Entry(name, "INTE", array.array("i", values))


def _little(values: array.array[Any]) -> bytes:
    if sys.byteorder == "big":
        values = values[:]
        values.byteswap()
    return values.tobytes()


def _elements(entry: Entry) -> bytes:
    if entry.kind == "CSTR":
        encoded = [text.encode("latin-1") for text in entry.values]
        return b"".join(struct.pack("<Q", len(text)) + text for text in encoded)
    if entry.kind == "MESS":
        return b""
    return _little(entry.values)


def encode(entries: Iterable[Entry]) -> bytes:
    """The payload of a message, the END marker included."""
    parts = []
    for entry in [*entries, marker("END")]:
        name = entry.name.encode("latin-1")[:LONGEST_NAME]
        parts.append(struct.pack("<B", len(name)) + name)
        parts.append(struct.pack("<Q4s", len(entry.values), entry.kind.encode()))
        parts.append(_elements(entry))
    return b"".join(parts)


def frame(payload: bytes) -> bytes:
    """The bytes on the wire: the payload in chunks, each behind its length."""
    parts = [struct.pack("<Q", len(payload))]
    for begin in range(0, max(len(payload), 1), LONGEST_CHUNK):
        chunk = payload[begin : begin + LONGEST_CHUNK]
        parts += [struct.pack("<Q", len(chunk)), chunk]
    return b"".join(parts)


class Reader:
    """A received message, read entry by entry from its payload."""

    def __init__(self, payload: bytes) -> None:
        self._payload = payload
        self._at = 0

    def _take(self, size: int) -> bytes:
        taken = self._payload[self._at : self._at + size]
        if len(taken) < size:
            raise ProtocolError("Not enough data read from network")
        self._at += size
        return taken

    def entry(self) -> Entry:
        """The next entry, whatever it is."""
        name = self._take(self._take(1)[0]).decode("latin-1")
        count, tag = struct.unpack("<Q4s", self._take(12))
        kind = tag.decode("latin-1")
        if kind == "MESS":
            if count:
                raise ProtocolError(f"Incorrect header (received: {name}-{count}-MESS vs expected: {name}-0-MESS)")
            return Entry(name, kind)
        if kind == "CSTR":
            values = []
            for _ in range(count):
                (length,) = struct.unpack("<Q", self._take(8))
                values.append(self._take(length).decode("latin-1"))
            return Entry(name, kind, values)
        if kind not in ("INTE", "DOUB"):
            raise ProtocolError(f"Unknown type: {kind}")
        found: array.array[Any] = array.array("i" if kind == "INTE" else "d")
        found.frombytes(self._take(count * found.itemsize))
        if sys.byteorder == "big":
            found.byteswap()
        return Entry(name, kind, found)

    def _expect(self, name: str, kind: str, count: int | None) -> Entry:
        entry = self.entry()
        wanted = len(entry.values) if count is None else count
        if (entry.name, entry.kind, len(entry.values)) != (name, kind, wanted):
            raise ProtocolError(f"Incorrect header (received: {entry} vs expected: {name}-{wanted}-{kind})")
        return entry

    def marker(self, name: str) -> None:
        self._expect(name, "MESS", 0)

    def texts(self, name: str, count: int | None = None) -> list[str]:
        return list(self._expect(name, "CSTR", count).values)

    def text(self, name: str) -> str:
        return self.texts(name, 1)[0]

    def numbers(self, name: str, count: int | None = None) -> list[float]:
        return list(self._expect(name, "DOUB", count).values)

    def number(self, name: str) -> float:
        return self.numbers(name, 1)[0]

    def integer(self, name: str) -> int:
        return int(self._expect(name, "INTE", 1).values[0])

    def next_is(self, name: str) -> bool:
        """Whether the next entry has this name; nothing is taken."""
        length = self._payload[self._at] if self._at < len(self._payload) else -1
        return self._payload[self._at + 1 : self._at + 1 + length] == name.encode("latin-1")

    def end(self) -> None:
        """The END marker, and nothing behind it."""
        self.marker("END")
        if self._at != len(self._payload):
            raise ProtocolError(
                "Received message is longer than expected "
                f"(received: {len(self._payload)} vs expected: {self._at})"
            )


class Wire:
    """One TCP connection to the other side, message by message. Blocks; of one thread."""

    def __init__(self, connection: socket.socket) -> None:
        connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self._connection = connection
        self._ahead = connection.makefile("rb", buffering=LONGEST_CHUNK)

    def send(self, *messages: Sequence[Entry]) -> None:
        """Several messages leave in one piece."""
        self._connection.sendall(b"".join(frame(encode(message)) for message in messages))

    def _read(self, size: int) -> bytes:
        """Storage grows as the bytes arrive, whatever length a header claims."""
        parts = []
        while size > 0:
            part = self._ahead.read(min(size, _PROVEN))
            if not part:
                raise ConnectionError("the other side has closed the connection")
            parts.append(part)
            size -= len(part)
        return b"".join(parts)

    def receive(self) -> Reader:
        (total,) = struct.unpack("<Q", self._read(8))
        chunks: list[bytes] = []
        got = 0
        while True:
            (length,) = struct.unpack("<Q", self._read(8))
            if chunks and length == 0:
                raise ProtocolError("Incorrect zero chunk length received.")
            if length > total - got:
                raise ProtocolError(f"Incorrect length in header ({length} of {total - got} that are left)")
            chunks.append(self._read(length))
            got += length
            if got == total:
                return Reader(b"".join(chunks))

    def close(self) -> None:
        self._ahead.close()
        self._connection.close()
