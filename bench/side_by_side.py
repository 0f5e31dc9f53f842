"""Measures whole runs of the broker beside other programs over the same folders.

Prints a table of medians and ratios with each target and whether it was met, and writes all figures as JSON. Runs of
two programs take turns, so that both see the same machine. Peak memory is taken by /usr/bin/time in runs of its own: a
child begins with the peak of the process that started it, and that of a Python is larger than the broker's.
"""

import argparse
import dataclasses
import datetime
import json
import os
import platform
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import make_events

ZONE = "Europe/Berlin"


@dataclasses.dataclass
class Run:
    """One run of a program."""

    seconds: float
    status: int


class Bench:
    """The private surroundings of all runs, and the rows that they yield."""

    def __init__(self, programs, work):
        self.programs = programs
        self.work = work
        self.rows = []
        self.omitted = []
        for name in ("home", "config/khal", "data", "state", "cache", "run"):
            (work / name).mkdir(parents=True)
        self.environment = {
            "PATH": "/usr/bin:/bin", "LANG": "C.UTF-8", "TZ": ZONE, "HOME": str(work / "home"),
            "XDG_CONFIG_HOME": str(work / "config"), "XDG_DATA_HOME": str(work / "data"),
            "XDG_STATE_HOME": str(work / "state"), "XDG_CACHE_HOME": str(work / "cache"),
            "XDG_RUNTIME_DIR": str(work / "run"), "VESK_APP_SUPPORT_DIR": str(work / "support"),
        }

    def run(self, command):
        """Runs a command to its end with its output thrown away."""
        null = [(os.POSIX_SPAWN_OPEN, 0, os.devnull, os.O_RDONLY, 0),
                (os.POSIX_SPAWN_OPEN, 1, os.devnull, os.O_WRONLY, 0),
                (os.POSIX_SPAWN_OPEN, 2, os.devnull, os.O_WRONLY, 0)]
        started = time.perf_counter()
        child = os.posix_spawn(command[0], command, self.environment, file_actions=null)
        _, status = os.waitpid(child, 0)
        return Run(time.perf_counter() - started, os.waitstatus_to_exitcode(status))

    def peak_memory(self, command):
        """The peak memory of a command in MB."""
        report = self.work / "memory"
        self.run(["/usr/bin/time", "--quiet", "-f", "%M", "-o", str(report), *command])
        return int(report.read_text(encoding="utf-8")) / 1024

    def take_turns(self, commands, rounds, expected, before=None):
        """Medians of each command over so many rounds; `before` gets the command's index ahead of each run."""
        runs = [[] for _ in commands]
        for _ in range(rounds):
            for index, command in enumerate(commands):
                if before:
                    before(index)
                runs[index].append(self.run(command))
                if runs[index][-1].status != expected[index]:
                    raise RuntimeError(f"{' '.join(map(str, command))}: status {runs[index][-1].status}")
        return [Run(statistics.median(run.seconds for run in some), some[-1].status) for some in runs]

    def row(self, name, value, unit, target, met):
        """Adds a row; `met` is none where nothing was promised."""
        self.rows.append({"name": name, "value": round(value, 3), "unit": unit, "target": target, "met": met})
        verdict = "" if met is None else ("met" if met else "MISSED")
        print(f"{name:58} {value:10.2f} {unit:6} {target:22} {verdict}", flush=True)

    def omit(self, what, why):
        self.omitted.append({"name": what, "reason": why})
        print(f"{what:58} not run: {why}", flush=True)

    def use_folder(self, folder):
        """Points both programs at a folder, with caches and consent of its own."""
        caches = self.work / f"caches-{folder.name}"
        caches.mkdir(exist_ok=True)
        self.environment |= {"VESK_CALENDARS_DIR": str(folder), "VESK_CACHE_DIR": str(caches / "vesk"),
                             "VESK_STATE_DIR": str(self.work / "state/vesk")}
        config = f"""[calendars]
[[all]]
path = {folder}/*
type = discover
[locale]
local_timezone = {ZONE}
default_timezone = {ZONE}
[sqlite]
path = {caches}/khal.db
"""
        (self.work / "config/khal/config").write_text(config, encoding="utf-8")
        return caches


def forget(caches, index):
    """Removes the index of the broker (0) or of khal (1)."""
    if index == 0:
        shutil.rmtree(caches / "vesk", ignore_errors=True)
    else:
        (caches / "khal.db").unlink(missing_ok=True)


def change_one_file(folder):
    """Gives one event a new text, as a synchronising program does: a new file renamed over the old one."""
    path = next(iter(sorted((folder / "work").glob("*.ics"))))
    text = path.read_bytes().replace(b"LOCATION:", b"LOCATION:New ", 1)
    path.with_suffix(".tmp").write_bytes(text)
    os.utime(path.with_suffix(".tmp"), ns=(time.time_ns(), time.time_ns()))
    path.with_suffix(".tmp").rename(path)


def measure_start(bench, notmuch):
    """Runs that touch no store."""
    broker = str(bench.programs / "VeskCapabilityBroker")
    for name, command in (("usage error", [broker]), ("status", [broker, "status"])):
        peak = bench.peak_memory(command)
        bench.row(f"{name}, peak memory", peak, "MB", "< 20", peak < 20)
    if not notmuch:
        bench.omit("start-up beside notmuch", "notmuch is missing (Debian package notmuch)")
        return
    commands = [[broker], [broker, "status"], [notmuch, "--version"]]
    usage, status, other = bench.take_turns(commands, 41, [1, 0, 0])
    for name, run in (("usage error", usage), ("status", status), ("notmuch --version", other)):
        bench.row(name, run.seconds * 1000, "ms", "", None)
    ratio = usage.seconds / other.seconds
    bench.row("usage error / notmuch --version", ratio, "times", "<= 1", ratio <= 1)
    ratio = status.seconds / other.seconds
    bench.row("status / notmuch --version", ratio, "times", "<= 2", ratio <= 2)


def compare(bench, name, commands, rounds, least, before=None):
    """One row of calendar-today against khal: how many times faster the broker is."""
    runs = bench.take_turns(commands, rounds, [0] * len(commands), before)
    bench.row(f"{name}, calendar-today", runs[0].seconds * 1000, "ms", "", None)
    if len(runs) > 1:
        bench.row(f"{name}, khal list today 1d", runs[1].seconds * 1000, "ms", "", None)
        ratio = runs[1].seconds / runs[0].seconds
        target = f">= {least}" if least else ""
        bench.row(f"{name}, times faster", ratio, "times", target, ratio >= least if least else None)
    return runs


def measure_today(bench, khal, count):
    """calendar-today over so many events: with an index, after a change, without one."""
    folder = bench.work / f"events-{count}"
    make_events.make(folder, count, datetime.date.today())
    caches = bench.use_folder(folder)
    commands = [[str(bench.programs / "VeskCapabilityBroker"), "calendar-today"]]
    if khal:
        commands.append([khal, "list", "today", "1d"])
    judged = count == 5_000
    label = f"{count:,} events"
    # khal takes minutes to index a large folder, so that is measured once there. It leaves both indexes made.
    compare(bench, f"{label}, no index", commands, 3 if count <= 5_000 else 1, 50 if judged else None,
            lambda index: forget(caches, index))
    warm = compare(bench, f"{label}, warm", commands, 15 if count <= 10_000 else 5,
                   {5_000: 10, 100_000: 5}.get(count))
    if judged:
        compare(bench, f"{label}, one file changed", commands, 7, 20, lambda index: change_one_file(folder))
    if count == 100_000:
        bench.row(f"{label}, warm", warm[0].seconds, "s", "< 0.25", warm[0].seconds < 0.25)
        peak = bench.peak_memory(commands[0])
        bench.row(f"{label}, warm, peak memory", peak, "MB", "< 80", peak < 80)
        forget(caches, 0)
        peak = bench.peak_memory(commands[0])
        bench.row(f"{label}, no index, peak memory", peak, "MB", "< 80", peak < 80)
    shutil.rmtree(folder)


def micro_benchmarks(bench, folder):
    """The figures of the micro-benchmarks, as their library reports them."""
    figures = []
    for program in sorted(folder.glob("Bench*")) if folder else []:
        report = subprocess.run([program, "--benchmark_format=json"], check=True, capture_output=True, text=True)
        for figure in json.loads(report.stdout)["benchmarks"]:
            figures.append({"name": figure["name"], "nanoseconds": figure["cpu_time"]})
            print(f"{figure['name']:58} {figure['cpu_time']:10.0f} ns", flush=True)
    if not figures:
        bench.omit("micro-benchmarks", "no programs named Bench* were built")
    return figures


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--programs", type=Path, required=True, help="folder of the built programs")
    parser.add_argument("--micro", type=Path, help="folder of the micro-benchmarks")
    parser.add_argument("--results", type=Path, required=True, help="file for the figures")
    parser.add_argument("--events", type=int, nargs="*", default=[1_000, 5_000, 10_000, 100_000])
    arguments = parser.parse_args()
    khal, notmuch = shutil.which("khal", path="/usr/bin"), shutil.which("notmuch", path="/usr/bin")

    with tempfile.TemporaryDirectory(prefix="vesk-bench.") as work:
        bench = Bench(arguments.programs.resolve(), Path(work))
        if not Path("/usr/bin/time").exists():
            sys.exit("side_by_side: /usr/bin/time is missing (Debian package time)")
        if not khal:
            bench.omit("every comparison with khal", "khal is missing (Debian package khal)")
        if not (bench.programs / "VeskCapabilityBroker").exists():
            bench.omit("every run of the broker", f"it was not built in {bench.programs}")
        else:
            bench.use_folder(bench.work / "nothing")
            subprocess.run([bench.programs / "vesk", "consent", "grant", "calendar", "--yes"], check=True,
                           env=bench.environment, stdout=subprocess.DEVNULL)
            measure_start(bench, notmuch)
            for count in arguments.events:
                measure_today(bench, khal, count)
        micro = micro_benchmarks(bench, arguments.micro)

    arguments.results.parent.mkdir(parents=True, exist_ok=True)
    arguments.results.write_text(json.dumps({
        "date": datetime.datetime.now(datetime.timezone.utc).isoformat(timespec="seconds"),
        "machine": {"system": platform.platform(), "cores": os.cpu_count()},
        "rows": bench.rows, "micro": micro, "notRun": bench.omitted}, indent=2) + "\n", encoding="utf-8")
    print(f"The figures lie in {arguments.results}.")
    return 1 if any(row["met"] is False for row in bench.rows) else 0


if __name__ == "__main__":
    sys.exit(main())
