"""todo-list beside todoman over lists of to-dos. The broker keeps no index of them, todoman a cache."""

import datetime
import shutil

import make_todos

SIZES = (1_000, 10_000)


def configure_todoman(bench, folder, caches):
    bench.write_config("todoman/config.py", f"""path = "{folder}/*"
cache_path = "{caches}/todoman.sqlite3"
date_format = "%Y-%m-%d"
time_format = "%H:%M"
""")


def measure_list(bench, todoman, count):
    folder = bench.work / f"todos-{count}"
    make_todos.make(folder, count, datetime.date.today())
    caches = bench.use_folder("VESK_REMINDERS_DIR", folder)
    configure_todoman(bench, folder, caches)
    ours = [bench.broker, "todo-list"]
    commands = {"todo-list": ours} | ({"todoman list": [todoman, "--porcelain", "list"]} if todoman else {})
    label = f"{count:,} to-dos"
    bench.compare(f"{label}, first", commands, 1)
    bench.compare(f"{label}, warm", commands, 15, 10 if count == 1_000 else None)
    bench.judge_memory(label, ours, 60)
    shutil.rmtree(folder)


def measure(bench, sizes):
    todoman = bench.peer("todoman")
    bench.grant("reminders")
    for count in sizes:
        measure_list(bench, todoman, count)
