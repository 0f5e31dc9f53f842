"""Makes folders of calendar events to measure with.

A folder has three collections, one file per event: 5 % of the events recur, half of all carry the definition of their
zone. The same arguments make the same bytes.
"""

import argparse
import datetime
import random
from pathlib import Path

COLLECTIONS = ("home", "shared", "work")
YEARS = 4  # the events' first days lie in so many years around today
ZONE = """BEGIN:VTIMEZONE
TZID:Europe/Berlin
X-LIC-LOCATION:Europe/Berlin
BEGIN:DAYLIGHT
TZOFFSETFROM:+0100
TZOFFSETTO:+0200
TZNAME:CEST
DTSTART:19700329T020000
RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU
END:DAYLIGHT
BEGIN:STANDARD
TZOFFSETFROM:+0200
TZOFFSETTO:+0100
TZNAME:CET
DTSTART:19701025T030000
RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU
END:STANDARD
END:VTIMEZONE
"""
RULES = (
    "FREQ=WEEKLY",
    "FREQ=WEEKLY;BYDAY=MO,WE,FR;COUNT=150",
    "FREQ=DAILY;COUNT=30",
    "FREQ=MONTHLY;BYDAY=1TU",
    "FREQ=YEARLY",
    "FREQ=WEEKLY;INTERVAL=2",
)
SUBJECTS = ("Review", "Standup", "Lunch", "Dentist", "Call", "Planning", "Choir", "Training", "Interview", "Errand")


def times(chance, day, with_zone):
    """The lines of start and end."""
    start = datetime.datetime.combine(day, datetime.time(chance.randrange(6, 21), chance.choice((0, 15, 30, 45))))
    end = start + datetime.timedelta(minutes=chance.choice((15, 30, 60, 90)))
    kind = chance.random()
    if with_zone:
        return f"DTSTART;TZID=Europe/Berlin:{start:%Y%m%dT%H%M%S}\nDTEND;TZID=Europe/Berlin:{end:%Y%m%dT%H%M%S}\n"
    if kind < 0.3:
        following = day + datetime.timedelta(days=1)
        return f"DTSTART;VALUE=DATE:{day:%Y%m%d}\nDTEND;VALUE=DATE:{following:%Y%m%d}\n"
    suffix = "" if kind < 0.4 else "Z"
    return f"DTSTART:{start:%Y%m%dT%H%M%S}{suffix}\nDTEND:{end:%Y%m%dT%H%M%S}{suffix}\n"


def event(chance, number, today):
    """The bytes of one file."""
    with_zone = number % 2 == 0
    day = today + datetime.timedelta(days=chance.randrange(-183 * YEARS, 183 * YEARS))
    lines = [
        "BEGIN:VCALENDAR\nVERSION:2.0\nPRODID:-//Example//Benchmark//EN\n",
        ZONE if with_zone else "",
        f"BEGIN:VEVENT\nUID:{number:08d}-{chance.getrandbits(64):016x}@example.com\nDTSTAMP:20260101T000000Z\n",
        times(chance, day, with_zone),
        # Every twentieth recurs, of those with a zone and of those without alike.
        f"RRULE:{chance.choice(RULES)}\n" if (number // 2) % 20 == 0 else "",
        f"SUMMARY:{chance.choice(SUBJECTS)} {number}\nLOCATION:Room {chance.randrange(1, 40)}\n",
        "DESCRIPTION:" + "Words about it. " * chance.randrange(0, 4) + "\n",
        "STATUS:CONFIRMED\nEND:VEVENT\nEND:VCALENDAR\n",
    ]
    return "".join(lines).replace("\n", "\r\n").encode()


def make(folder, count, today, seed=1):
    """Makes a folder of `count` events around the date `today`."""
    chance = random.Random(f"{seed} {count}")
    for name in COLLECTIONS:
        (folder / name).mkdir(parents=True)
        (folder / name / "displayname").write_text(name.capitalize() + "\n", encoding="utf-8")
    for number in range(count):
        collection = COLLECTIONS[number % len(COLLECTIONS)]
        (folder / collection / f"{number:08d}.ics").write_bytes(event(chance, number, today))


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=Path, help="a folder that does not exist yet")
    parser.add_argument("count", type=int)
    parser.add_argument("--today", type=datetime.date.fromisoformat, default=datetime.date.today())
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    make(arguments.folder, arguments.count, arguments.today, arguments.seed)
