"""focused-element in an accessible session of its own: with a direct focus, and with a walk through a whole window."""

import contextlib
import json
import os
import re
import signal
import subprocess
import sys
import time
from pathlib import Path

# How many elements the window of the walk has; the walk takes no more than 500.
SIZES = (500,)

LAUNCHER = Path("/usr/share/dbus-1/services/org.a11y.Bus.service")
NEEDED = {"Xvfb": "xvfb", "openbox": "openbox", "dbus-daemon": "dbus-daemon", "dbus-monitor": "dbus-bin",
          "mousepad": "mousepad"}
PATIENCE = 20

BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
  "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><listen>unix:path={folder}/bus</listen><auth>EXTERNAL</auth>
<servicedir>{folder}/services</servicedir>
<policy context="default"><allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/></policy>
</busconfig>
"""


def missing_package(bench):
    """The first Debian package that is not there; none where all are."""
    for program, package in NEEDED.items():
        if not Path("/usr/bin", program).exists():
            return package
    if not LAUNCHER.exists():
        return "at-spi2-core"
    probe = bench.run([sys.executable, "-c", "import PyQt5.QtWidgets"])
    return "python3-pyqt5" if probe.status else None


class Session:
    """A virtual screen with a window manager and a bus, on which programs become accessible."""

    def __init__(self, bench):
        self.bench = bench
        self.programs = []

    def __enter__(self):
        folder = self.bench.work / "run"
        folder.chmod(0o700)
        services = folder / "services"
        services.mkdir(exist_ok=True)
        (services / LAUNCHER.name).write_text(LAUNCHER.read_text(encoding="utf-8"), encoding="utf-8")
        (folder / "bus.conf").write_text(BUS.format(folder=folder), encoding="utf-8")
        self.bench.environment |= {
            "DISPLAY": self.start_server(), "DBUS_SESSION_BUS_ADDRESS": f"unix:path={folder}/bus",
            "GSETTINGS_BACKEND": "memory", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
        self.start(["/usr/bin/dbus-daemon", f"--config-file={folder}/bus.conf", "--nofork"])
        wait_for((folder / "bus").exists, "the session bus")
        self.start(["/usr/bin/openbox"])
        return self

    def __exit__(self, *_):
        for program in reversed(self.programs):
            self.stop(program)
        for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "GSETTINGS_BACKEND", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON"):
            del self.bench.environment[name]

    def start_server(self):
        """The display of an X server that has just been started."""
        reading, writing = os.pipe()
        self.start(["/usr/bin/Xvfb", "-displayfd", str(writing), "-screen", "0", "1920x1080x24", "-nolisten", "tcp"],
                   pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as number:
            return f":{number.readline().strip()}"

    def start(self, command, **options):
        self.programs.append(subprocess.Popen(
            command, env=self.bench.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL, start_new_session=True, **options))
        return self.programs[-1]

    def stop(self, program):
        self.programs.remove(program)
        with contextlib.suppress(ProcessLookupError):
            os.killpg(program.pid, signal.SIGTERM)
        program.wait()

    def accessibility_address(self):
        answer = subprocess.run(
            ["/usr/bin/dbus-send", "--session", "--print-reply=literal", "--dest=org.a11y.Bus", "/org/a11y/bus",
             "org.a11y.Bus.GetAddress"], env=self.bench.environment, check=True, capture_output=True, text=True)
        return answer.stdout.strip()


def wait_for(condition, what):
    deadline = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > deadline:
            raise RuntimeError(f"waited in vain for {what}")
        time.sleep(0.02)


def answer_of(bench, command):
    """What the broker prints; nothing where it fails."""
    run = subprocess.run(command, env=bench.environment, capture_output=True, text=True, check=False)
    return json.loads(run.stdout) if run.returncode == 0 else {}


def calls_of(session, command):
    """How many method calls a command makes on the accessibility bus, by listening there."""
    monitor = subprocess.Popen(["/usr/bin/dbus-monitor", "--address", session.accessibility_address(),
                                "type='method_call'"], env=session.bench.environment, stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL, text=True, bufsize=1)
    # Its own first call is the sign that it listens; the last call of the command has come when the bus says so.
    name = re.compile(r"sender=(:\S+)")
    with monitor:
        session.bench.run(command)
        subprocess.run(["/usr/bin/dbus-send", f"--bus={session.accessibility_address()}", "--print-reply",
                        "--dest=org.freedesktop.DBus", "/", "org.freedesktop.DBus.GetId"],
                       env=session.bench.environment, check=True, capture_output=True)
        senders = {}
        for line in monitor.stdout:
            if line.startswith("method call") and (found := name.search(line)):
                senders[found[1]] = senders.get(found[1], 0) + 1
            if "member=GetId" in line:
                break
        monitor.terminate()
    return max(senders.values())


def measure_window(session, name, program, detail, most):
    """Rows of the time and the calls with a program's window in front."""
    bench = session.bench
    command = [bench.broker, "focused-element"]
    started = session.start(program)
    wait_for(lambda: detail in answer_of(bench, command).get("detail", ""), f"the focus of {program[0]}")
    [run] = bench.take_turns([command], 21, [0])
    bench.row(f"focused-element, {name}", run.seconds * 1000, "ms", f"< {most}", run.seconds * 1000 < most)
    bench.row(f"focused-element, {name}, D-Bus calls", calls_of(session, command), "calls", "", None)
    session.stop(started)


def measure(bench, sizes):
    if package := missing_package(bench):
        bench.omit("focused-element", f"Debian package {package} is missing")
        return
    bench.grant("accessibility")
    window = str(Path(__file__).with_name("qt_window.py"))
    with Session(bench) as session:
        measure_window(session, "direct", ["/usr/bin/mousepad", "--disable-server"], "currently focused", 20)
        for size in sizes:
            measure_window(session, f"walk over {size} elements", [sys.executable, window, str(size), "Window"],
                           "after scanning", 150)
