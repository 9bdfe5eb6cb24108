"""A place of its own for programs that meet faults: a folder, a network and process numbers apart from
the machine's, and what of all this is left when they have ended."""

import contextlib
import fcntl
import os
import resource
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SIOCSIFFLAGS, IFF_UP = 0x8914, 1
DEADLINE = 90  # seconds for what has no limit of its own; past it, a program hangs

REGISTRY = ('REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Another]\r\n"Kept"="always"\r\n\r\n'
            "[HKEY_CURRENT_USER\\Software\\Orvale\\Tessel\\ExtensionDlls100_64\\Intersect]\r\n"
            '"StartPort"=dword:00002710\r\n"EndPort"=dword:00002714\r\n'
            '"UserProperties"="OPR|Oil rate|0|1~"\r\n')


def enter():
    """Starts this program again where it has a network and process numbers of its own, if the
    system allows that."""
    if os.environ.get("GANTRY_FAULTS_STAGE"):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as control:
            fcntl.ioctl(control, SIOCSIFFLAGS, struct.pack("16sh14x", b"lo", IFF_UP))
        return
    apart = ["unshare", *([] if os.geteuid() == 0 else ["--user", "--map-root-user"]), "--net",
             "--pid", "--fork", "--kill-child", "--mount-proc"]
    os.environ["GANTRY_FAULTS_STAGE"] = "1"
    if subprocess.run([*apart, "true"], stderr=subprocess.DEVNULL, check=False).returncode == 0:
        os.execvp(apart[0], [*apart, sys.executable, *sys.argv])


def limit_memory():
    """No program needs more, whatever its peer claims."""
    resource.setrlimit(resource.RLIMIT_AS, (1 << 31, 1 << 31))


def status_of(process):
    """Its exit status; None when it hangs, and is ended."""
    try:
        return process.wait(DEADLINE)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()
        return None


class Stage:
    """A folder in which programs run. Their settings stand in it."""

    def __init__(self, programs):
        self.programs = Path(programs)
        self.place = Path(tempfile.mkdtemp(prefix="gantry-faults-"))
        self.folder, self.prepared = self.place / "now", self.place / "prepared"
        (self.folder / "settings/gantry").mkdir(parents=True)
        (self.folder / "temporary").mkdir()
        (self.folder / "settings/gantry/registry.reg").write_bytes(REGISTRY.encode())

    def keep(self):
        """What stands in the folder now is what `reset` goes back to."""
        shutil.copytree(self.folder, self.prepared)

    def reset(self):
        shutil.rmtree(self.folder)
        shutil.copytree(self.prepared, self.folder)

    def start(self, command, plan=None, output=None):
        variables = {**os.environ, "XDG_CONFIG_HOME": str(self.folder / "settings"),
                     "TMPDIR": str(self.folder / "temporary"), **(plan or {})}
        variables.pop("DISPLAY", None)
        return subprocess.Popen([self.programs / command[0], *command[1:]], cwd=self.folder,
                                env=variables, stdin=subprocess.DEVNULL, stderr=subprocess.STDOUT,
                                stdout=output or open(self.place / "output", "wb"), preexec_fn=limit_memory)

    def run(self, command, plan=None):
        """Its status, and all that it has said."""
        return status_of(self.start(command, plan)), (self.place / "output").read_text(errors="replace")

    @staticmethod
    def left_behind():
        """What runs on though all that was started has ended, and the locks that are held; what is
        left past the deadline is ended."""
        deadline = time.monotonic() + DEADLINE
        while (left := strangers()) and time.monotonic() < deadline:
            time.sleep(0.01)
        for process in left:
            os.kill(process, signal.SIGKILL)
        locks = [line.split()[-1] for line in Path("/proc/net/unix").read_text().splitlines()
                 if "@" in line and os.getpid() == 1]
        return [f"process {process}" for process in left] + [f"lock {name}" for name in locks]


def strangers():
    """The processes beside this one, where there are no others than its own."""
    if os.getpid() != 1:
        return []
    found = []
    for entry in Path("/proc").iterdir():
        if not entry.name.isdigit() or entry.name == "1":
            continue
        try:
            state = (entry / "stat").read_text().rpartition(") ")[2][0]
        except OSError:
            continue
        if state == "Z":
            with contextlib.suppress(ChildProcessError):
                os.waitpid(int(entry.name), os.WNOHANG)
        else:
            found.append(int(entry.name))
    return found
