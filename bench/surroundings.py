"""The private surroundings of all measured runs, and the rows that they yield.

Runs of two programs take turns, so that both see the same machine. Peak memory is taken by /usr/bin/time in runs of its
own: a child begins with the peak of the process that started it, and that of a Python is larger than the broker's.
"""

import dataclasses
import os
import shutil
import statistics
import subprocess
import time

ZONE = "Europe/Berlin"


@dataclasses.dataclass
class Run:
    """One run of a program."""

    seconds: float
    status: int


class Bench:
    """One subject after another gets its folders, its caches and its environment here."""

    def __init__(self, programs, work, micro):
        self.broker = str(programs / "VeskCapabilityBroker")
        self.companion = str(programs / "vesk")
        self.work = work
        self.micro = micro
        self.rows = []
        self.omitted = []
        for name in ("home", "config", "data", "state", "cache", "run"):
            (work / name).mkdir(parents=True)
        self.environment = {
            "PATH": "/usr/bin:/bin", "LANG": "C.UTF-8", "TZ": ZONE, "HOME": str(work / "home"),
            "XDG_CONFIG_HOME": str(work / "config"), "XDG_DATA_HOME": str(work / "data"),
            "XDG_STATE_HOME": str(work / "state"), "XDG_CACHE_HOME": str(work / "cache"),
            "XDG_RUNTIME_DIR": str(work / "run"), "VESK_STATE_DIR": str(work / "state/vesk"),
            "VESK_CACHE_DIR": str(work / "cache/vesk"), "VESK_APP_SUPPORT_DIR": str(work / "support"),
        }

    def grant(self, capability):
        subprocess.run([self.companion, "consent", "grant", capability, "--yes"], check=True, env=self.environment,
                       stdout=subprocess.DEVNULL)

    def use_folder(self, variable, folder):
        """Points the broker at a store, with caches of its own; the folder of those, for the other program's too."""
        caches = self.work / f"caches-{folder.name}"
        caches.mkdir(exist_ok=True)
        self.environment |= {variable: str(folder), "VESK_CACHE_DIR": str(caches / "vesk")}
        return caches

    def write_config(self, name, text):
        """Writes a file below the folder of configurations."""
        path = self.work / "config" / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def peer(self, name):
        """Another program's path; none where it is missing, which the results then say."""
        found = shutil.which(name, path="/usr/bin")
        if not found:
            self.omit(f"every comparison with {name}", f"{name} is missing (Debian package {name})")
        return found

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

    def judge_memory(self, name, command, most):
        """One row: the peak memory of a command, less than so many MB."""
        peak = self.peak_memory(command)
        self.row(f"{name}, peak memory", peak, "MB", f"< {most}", peak < most)

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

    def compare(self, name, commands, rounds, least=None, before=None):
        """Rows of the broker beside another program: `commands` are both by their labels, the broker's first. At least
        `least` times faster is the promise, where there is one."""
        runs = self.take_turns(list(commands.values()), rounds, [0] * len(commands), before)
        for label, run in zip(commands, runs):
            self.row(f"{name}, {label}", run.seconds * 1000, "ms", "", None)
        if len(runs) > 1:
            ratio = runs[1].seconds / runs[0].seconds
            self.row(f"{name}, times faster", ratio, "times", f">= {least}" if least else "",
                     ratio >= least if least else None)
        return runs

    def row(self, name, value, unit, target, met):
        """Adds a row; `met` is none where nothing was promised."""
        self.rows.append({"name": name, "value": round(value, 3), "unit": unit, "target": target, "met": met})
        verdict = "" if met is None else ("met" if met else "MISSED")
        print(f"{name:58} {value:10.2f} {unit:6} {target:22} {verdict}", flush=True)

    def omit(self, what, why):
        self.omitted.append({"name": what, "reason": why})
        print(f"{what:58} not run: {why}", flush=True)
