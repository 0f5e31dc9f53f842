"""Measures whole runs of the broker beside other programs over the same folders.

Prints a table of medians and ratios with each target and whether it was met, and writes all figures as JSON. Without
subjects it measures all of them, and the micro-benchmarks.
"""

import argparse
import datetime
import json
import os
import platform
import sys
import tempfile
from pathlib import Path

import calendars
import contacts
import desktop
import desktop_focus
import files
import keyring
import mail
import micro
import pdf
import reel
import runtime
import start
import surroundings
import todos

# Each has SIZES, of the stores that it measures with, and measure(bench, sizes).
SUBJECTS = {"start": start, "calendars": calendars, "todos": todos, "contacts": contacts, "mail": mail,
            "desktop": desktop, "desktop_focus": desktop_focus, "pdf": pdf, "reel": reel, "files": files,
            "runtime": runtime, "secrets": keyring}


def parsed_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("subjects", nargs="*", metavar="SUBJECT", help=", ".join([*SUBJECTS, "micro"]))
    parser.add_argument("--programs", type=Path, required=True, help="folder of the built programs")
    parser.add_argument("--micro", type=Path, help="folder of the micro-benchmarks")
    parser.add_argument("--results", type=Path, required=True, help="file for the figures")
    parser.add_argument("--sizes", type=int, nargs="+", help="how many items each store has, instead of the usual")
    arguments = parser.parse_args()
    arguments.subjects = arguments.subjects or [*SUBJECTS, "micro"]
    if unknown := set(arguments.subjects) - {*SUBJECTS, "micro"}:
        parser.error(f"there is no subject {', '.join(sorted(unknown))}")
    return arguments


def main():
    arguments = parsed_arguments()
    programs = arguments.programs.resolve()
    if not Path("/usr/bin/time").exists():
        sys.exit("side_by_side: /usr/bin/time is missing (Debian package time)")
    if not (programs / "VeskCapabilityBroker").exists():
        sys.exit(f"side_by_side: the broker was not built in {programs}")
    figures = []
    with tempfile.TemporaryDirectory(prefix="vesk-bench.") as work:
        bench = surroundings.Bench(programs, Path(work), arguments.micro and arguments.micro.resolve())
        for name, subject in SUBJECTS.items():
            if name in arguments.subjects:
                subject.measure(bench, arguments.sizes or subject.SIZES)
        if "micro" in arguments.subjects:
            figures = micro.measure(bench)

    arguments.results.parent.mkdir(parents=True, exist_ok=True)
    arguments.results.write_text(json.dumps({
        "date": datetime.datetime.now(datetime.timezone.utc).isoformat(timespec="seconds"),
        "machine": {"system": platform.platform(), "cores": os.cpu_count()},
        "rows": bench.rows, "micro": figures, "notRun": bench.omitted}, indent=2) + "\n", encoding="utf-8")
    print(f"The figures lie in {arguments.results}.")
    return 1 if any(row["met"] is False for row in bench.rows) else 0


if __name__ == "__main__":
    sys.exit(main())
