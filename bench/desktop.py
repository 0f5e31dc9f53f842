"""The commands of the desktop on an X server without a screen, beside programs that take screenshots: a photograph of
1920x1080 on the ground, a terminal in front."""

import contextlib
import os
import subprocess
import time

SIZES = ()
PHOTOGRAPH = ["-size", "1920x1080", "plasma:fractal", "-attenuate", "0.06", "+noise", "Gaussian"]
DESKTOP_FILES = 200
LETTERS = 100
PAUSE = 6  # milliseconds after each letter
ROUNDS = 11
DEADLINE = 20


class Desktop:
    """A server, a window manager and their clients, for as long as it is open."""

    def __init__(self, bench):
        self.bench = bench
        self.programs = []

    def start(self, command, **options):
        program = subprocess.Popen(command, env=self.bench.environment, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL, **options)
        self.programs.append(program)
        return program

    def __enter__(self):
        reading, writing = os.pipe()
        self.start(["Xvfb", "-displayfd", str(writing), "-screen", "0", "1920x1080x24", "-nolisten", "tcp"],
                   pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as number:
            self.bench.environment["DISPLAY"] = ":" + number.readline().strip()
        # Windows that come before it has begun may never be shown.
        ready = self.bench.work / "managed"
        self.start(["openbox", "--startup", f"touch {ready}"])
        try:
            self.wait_for("the window manager", ready.exists)
        except RuntimeError:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for program in reversed(self.programs):
            program.terminate()
            program.wait()
        self.bench.environment.pop("DISPLAY", None)

    @staticmethod
    def wait_for(what, condition):
        deadline = time.monotonic() + DEADLINE
        while not condition():
            if time.monotonic() > deadline:
                raise RuntimeError(f"waited in vain for {what}")
            time.sleep(0.02)

    def output(self, *arguments):
        return subprocess.run([self.bench.broker, *arguments], env=self.bench.environment, capture_output=True,
                              check=False, text=True).stdout

    @contextlib.contextmanager
    def terminal(self):
        """A terminal in front, which lets all input pass."""
        program = self.start(["xterm", "-e", "cat"])
        self.wait_for("the terminal", lambda: f'"processIdentifier" : {program.pid}\n' in self.output("active-app"))
        yield
        program.terminate()
        program.wait()
        self.programs.remove(program)

    def show_photograph(self):
        picture = str(self.bench.work / "photograph.png")
        subprocess.run(["convert", "-seed", "7", *PHOTOGRAPH, picture], check=True)
        # Its status is 1 whether it could or not.
        subprocess.run(["display", "-window", "root", picture], check=False, env=self.bench.environment)


def add_desktop_files(bench):
    """As many as a well filled desktop has, so that looking one up costs what it costs there."""
    folder = bench.work / "data/applications"
    folder.mkdir(parents=True, exist_ok=True)
    for number in range(DESKTOP_FILES):
        names = "".join(f"Name[x{language}]=Program {number}\n" for language in range(60))
        (folder / f"program-{number}.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Program {number}\n{names}Exec=true\nStartupWMClass=P{number}\n",
            encoding="utf-8")


def measure_front(bench):
    add_desktop_files(bench)
    command = [bench.broker, "active-app"]
    run = bench.take_turns([command], 4 * ROUNDS, [0])[0]
    bench.row(f"active-app, {DESKTOP_FILES} desktop files", run.seconds * 1000, "ms", "< 15", run.seconds * 1000 < 15)
    bench.judge_memory("active-app", command, 30)


def measure_typing(bench):
    """What a letter costs beyond its pause: a text beside one of a single letter."""
    def command(length):
        return [bench.broker, "type", "--text", ("typing all the letters " * length)[:length]]

    long, short = bench.take_turns([command(LETTERS + 1), command(1)], ROUNDS, [0, 0])
    more = (long.seconds - short.seconds) * 1000 - LETTERS * PAUSE
    bench.row(f"type, {LETTERS} letters beyond their pauses", more, "ms", "< 2", more < 2)


def measure_screenshot(bench):
    pictures = {name: str(bench.work / f"{name}.png") for name in ("screenshot", "maim", "import", "scrot")}
    commands = {"screenshot": [bench.broker, "screenshot", "--output", pictures["screenshot"]]}
    for name, options in (("maim", []), ("import", ["-window", "root"]), ("scrot", ["-o"])):
        if program := bench.peer(name):
            commands[name] = [program, *options, pictures[name]]
    runs = dict(zip(commands, bench.take_turns(list(commands.values()), ROUNDS, [0] * len(commands))))
    sizes = {name: os.path.getsize(pictures[name]) for name in commands}
    for name, run in runs.items():
        bench.row(f"screenshot of a photograph, {name}", run.seconds * 1000, "ms", "", None)
        bench.row(f"screenshot of a photograph, {name}", sizes[name] / 1e6, "MB", "", None)
    for name, least in (("maim", 1), ("import", 2)):
        if name in runs:
            ratio = runs[name].seconds / runs["screenshot"].seconds
            bench.row(f"screenshot, times faster than {name}", ratio, "times", f">= {least}", ratio >= least)
    if "scrot" in sizes:
        ratio = sizes["screenshot"] / sizes["scrot"]
        bench.row("screenshot, size / scrot's", ratio, "times", "<= 1.3", ratio <= 1.3)


def measure(bench, _sizes):
    missing = [name for name in ("Xvfb", "openbox", "xterm", "convert") if not bench.peer(name)]
    if missing:
        return
    for capability in ("accessibility", "screen_recording"):
        bench.grant(capability)
    with Desktop(bench) as desktop:
        with desktop.terminal():
            measure_front(bench)
            measure_typing(bench)
        desktop.show_photograph()
        measure_screenshot(bench)
