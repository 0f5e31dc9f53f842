"""Runs of a packaged runtime as the shell's client makes them, beside the same program run bare."""

import json
import subprocess

SIZES = ()


def measure(bench, _sizes):
    program = bench.micro and bench.micro / "RuntimeRuns"
    if not program or not program.exists():
        bench.omit("runs of a packaged runtime", "RuntimeRuns was not built")
        return
    root = bench.micro.parent / "fixtures/.build/vesk-runtime"
    environment = bench.environment | {"VESK_SAMPLE_STATE": str(bench.work / "runtime-state")}
    report = subprocess.run([program, root], check=True, capture_output=True, text=True, env=environment)
    figures = json.loads(report.stdout)
    bare, asked = figures["turns"]["bare"], figures["turns"]["asked"]
    bench.row("runtime status, the program alone", bare, "ms", "", None)
    bench.row("runtime status, start to decoded record", asked, "ms", "", None)
    bench.row("runtime status, above the program's own time", asked - bare, "ms", "< 3", asked - bare < 3)
    many = figures["many"]
    left = [many[name] for name in ("descriptorsLeft", "childrenLeft", "threadsLeft")]
    bench.row(f"{many['runs']} runs at once", many["milliseconds"], "ms", "nothing left over", not any(left))
