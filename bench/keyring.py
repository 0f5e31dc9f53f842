"""`vesk secrets` beside secret-tool, over one keyring on a bus of its own."""

import shlex
import subprocess
import time

SIZES = ()
ROUNDS = 41
SECRET = "0123456789abcdef" * 4


def started_bus(bench):
    """The daemon of a new session bus; its address goes into the environment of all that follows."""
    folder = bench.work / "secrets"
    folder.mkdir()
    bus = subprocess.Popen(["/usr/bin/dbus-daemon", "--session", "--nofork", "--print-address=1",
                            f"--address=unix:path={folder / 'bus'}"], stdout=subprocess.PIPE, text=True,
                           env=bench.environment)
    bench.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
    return bus


def started_keyring(bench, program):
    keyring = subprocess.Popen([program, "--unlock", "--components=secrets", "--foreground"], stdin=subprocess.PIPE,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=bench.environment)
    keyring.stdin.write(b"opens the keyring")
    keyring.stdin.close()
    return keyring


def wait_for(tool, bench):
    """Stores the first secret once the keyring is there."""
    end = time.monotonic() + 20
    command = [tool, "store", "--label=Vesk: READ", "service", "Vesk", "account", "READ"]
    while subprocess.run(command, input=SECRET, text=True, env=bench.environment, check=False,
                         stderr=subprocess.DEVNULL).returncode != 0:
        if time.monotonic() > end:
            raise RuntimeError("the keyring did not start")


def fed(command, secret):
    """A command with the secret on its standard input."""
    return ["/bin/sh", "-c", f"exec {shlex.join(map(str, command))} < {shlex.quote(str(secret))}"]


def measure_against(bench, tool):
    attributes = ["service", "Vesk", "account"]
    bench.compare("secrets read", {"vesk": [bench.companion, "secrets", "read", "READ"],
                                   "secret-tool": [tool, "lookup", *attributes, "READ"]}, ROUNDS, 1)
    secret = bench.work / "secrets/secret"
    secret.write_text(SECRET, encoding="utf-8")
    bench.compare("secrets set, one that is there",
                  {"vesk": fed([bench.companion, "secrets", "set", "READ"], secret),
                   "secret-tool": fed([tool, "store", "--label=Vesk: READ", *attributes, "READ"], secret)}, ROUNDS, 1)

    def forget(_):
        subprocess.run([tool, "clear", *attributes, "NEW"], env=bench.environment, check=False)

    bench.compare("secrets set, a new one",
                  {"vesk": fed([bench.companion, "secrets", "set", "NEW"], secret),
                   "secret-tool": fed([tool, "store", "--label=Vesk: NEW", *attributes, "NEW"], secret)}, ROUNDS, 1,
                  forget)


def measure(bench, _sizes):
    tool, keyring_program = bench.peer("secret-tool"), bench.peer("gnome-keyring-daemon")
    if not tool or not keyring_program:
        return
    bus = started_bus(bench)
    keyring = started_keyring(bench, keyring_program)
    try:
        wait_for(tool, bench)
        measure_against(bench, tool)
    finally:
        for daemon in (keyring, bus):
            daemon.terminate()
            daemon.wait()
        del bench.environment["DBUS_SESSION_BUS_ADDRESS"]
