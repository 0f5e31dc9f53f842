"""Makes a folder of to-dos to measure with.

The folder has the one list that the broker keeps, one file per to-do: a fifth of the to-dos is completed, three in four
have a due date, some have notes, alarms or a parent. The same arguments make the same bytes.
"""

import argparse
import datetime
import random
from pathlib import Path

from make_events import ZONE

LIST = "vesk-todos"
TITLE = "Vesk Todos"
TASKS = ("Call", "Pay", "Read", "Mend", "Book", "Return", "Write to", "Buy", "Water", "Ask about")
ALARM = "BEGIN:VALARM\nACTION:DISPLAY\nTRIGGER;RELATED=END:-PT15M\nDESCRIPTION:Reminder\nEND:VALARM\n"


def due(chance, today):
    """The line of the due date, and whether it refers to a zone."""
    day = today + datetime.timedelta(days=chance.randrange(-30, 180))
    hour, minute = chance.randrange(6, 21), chance.choice((0, 15, 30, 45))
    kind = chance.random()
    if kind < 0.25:
        return "", False
    if kind < 0.5:
        return f"DUE;VALUE=DATE:{day:%Y%m%d}\n", False
    if kind < 0.75:
        return f"DUE:{day:%Y%m%d}T{hour:02}{minute:02}00Z\n", False
    return f"DUE;TZID=Europe/Berlin:{day:%Y%m%d}T{hour:02}{minute:02}00\n", True


def todo(chance, number, identifiers, today):
    """The bytes of one file."""
    due_line, with_zone = due(chance, today)
    lines = [
        "BEGIN:VCALENDAR\nVERSION:2.0\nPRODID:-//Example//Benchmark//EN\n",
        ZONE if with_zone else "",
        f"BEGIN:VTODO\nUID:{identifiers[number]}\nDTSTAMP:20260101T000000Z\nCREATED:20260101T000000Z\n",
        f"LAST-MODIFIED:202601{chance.randrange(1, 29):02}T000000Z\n",
        f"SUMMARY:{chance.choice(TASKS)} {number}\n",
        "DESCRIPTION:" + "Words about it\\, and a break.\\n" * chance.randrange(1, 4) + "\n" if number % 3 == 0 else "",
        due_line,
        f"PRIORITY:{chance.randrange(1, 10)}\n" if number % 2 == 0 else "",
        f"RELATED-TO:{identifiers[number // 10]}\n" if number % 10 == 1 else "",
        ("STATUS:COMPLETED\nCOMPLETED:20260115T120000Z\nPERCENT-COMPLETE:100\n" if number % 5 == 0
         else "STATUS:NEEDS-ACTION\n"),
        ALARM if number % 4 == 0 else "",
        "END:VTODO\nEND:VCALENDAR\n",
    ]
    return "".join(lines).replace("\n", "\r\n").encode()


def make(folder, count, today, seed=1):
    """Makes a folder of `count` to-dos around the date `today`."""
    chance = random.Random(f"{seed} {count}")
    identifiers = [f"{number:08d}-{chance.getrandbits(64):016x}@example.com" for number in range(count)]
    (folder / LIST).mkdir(parents=True)
    (folder / LIST / "displayname").write_text(TITLE, encoding="utf-8")
    for number in range(count):
        (folder / LIST / f"{number:08d}.ics").write_bytes(todo(chance, number, identifiers, today))


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=Path, help="a folder that does not exist yet")
    parser.add_argument("count", type=int)
    parser.add_argument("--today", type=datetime.date.fromisoformat, default=datetime.date.today())
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    make(arguments.folder, arguments.count, arguments.today, arguments.seed)
