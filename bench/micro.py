"""The micro-benchmarks, as their library reports them."""

import json
import subprocess


def measure(bench):
    """The figures of each program named Bench* in the folder of the micro-benchmarks."""
    figures = []
    for program in sorted(bench.micro.glob("Bench*")) if bench.micro else []:
        report = subprocess.run([program, "--benchmark_format=json"], check=True, capture_output=True, text=True)
        for figure in json.loads(report.stdout)["benchmarks"]:
            figures.append({"name": figure["name"], "nanoseconds": figure["cpu_time"]})
            print(f"{figure['name']:58} {figure['cpu_time']:10.0f} ns", flush=True)
    if not figures:
        bench.omit("micro-benchmarks", "no programs named Bench* were built")
    return figures
