"""calendar-today beside khal over folders of events: with an index, after a change, without one."""

import datetime
import os
import shutil
import time

import make_events
from surroundings import ZONE

SIZES = (1_000, 5_000, 10_000, 100_000)


def configure_khal(bench, folder, caches):
    bench.write_config("khal/config", f"""[calendars]
[[all]]
path = {folder}/*
type = discover
[locale]
local_timezone = {ZONE}
default_timezone = {ZONE}
[sqlite]
path = {caches}/khal.db
""")


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


def measure_today(bench, khal, count):
    folder = bench.work / f"events-{count}"
    make_events.make(folder, count, datetime.date.today())
    caches = bench.use_folder("VESK_CALENDARS_DIR", folder)
    configure_khal(bench, folder, caches)
    ours = [bench.broker, "calendar-today"]
    commands = {"calendar-today": ours} | ({"khal list today 1d": [khal, "list", "today", "1d"]} if khal else {})
    judged = count == 5_000
    label = f"{count:,} events"
    # khal takes minutes to index a large folder, so that is measured once there. It leaves both indexes made.
    bench.compare(f"{label}, no index", commands, 3 if count <= 5_000 else 1, 50 if judged else None,
                  lambda index: forget(caches, index))
    warm = bench.compare(f"{label}, warm", commands, 15 if count <= 10_000 else 5, {5_000: 10, 100_000: 5}.get(count))
    if judged:
        bench.compare(f"{label}, one file changed", commands, 7, 20, lambda index: change_one_file(folder))
    if count == 100_000:
        bench.row(f"{label}, warm", warm[0].seconds, "s", "< 0.25", warm[0].seconds < 0.25)
        bench.judge_memory(f"{label}, warm", ours, 80)
        forget(caches, 0)
        bench.judge_memory(f"{label}, no index", ours, 80)
    shutil.rmtree(folder)


def measure(bench, sizes):
    khal = bench.peer("khal")
    bench.grant("calendar")
    for count in sizes:
        measure_today(bench, khal, count)
