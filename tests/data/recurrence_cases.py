#!/usr/bin/python3
"""Writes the table of recurrence cases to standard output; recurrence_cases.tsv is that output.

The expected times come from python-dateutil, the other implementation. All of it happens on one wall without a zone.
Where dateutil and RFC 5545 part ways, the table asks for this:
- DTSTART is an occurrence, also where the rule leaves it out, and COUNT counts it (dateutil leaves it out).
- UNTIL as a date allows that whole day, as most programs mean it (dateutil: up to midnight).
- A week's BYSETPOS counts from the week's first day (dateutil: in the first week from DTSTART), so that such rules
  start with their week here.
- BYWEEKNO alone means DTSTART's day of the week (dateutil: all seven), so that it stands with BYDAY here.
- The week numbers 51 to 53 and -51 to -53 mean weeks of the year that most of their days lie in (dateutil: not
  around all new years), so that they stand by hand only.
- BYDAY=MO,1TU is a union (dateutil: nothing), so that numbered and plain days are not mixed here.
- Parts that RFC 5545 forbids with a frequency (BYWEEKNO with any but YEARLY, BYMONTHDAY with WEEKLY …) and mixtures
  of BYYEARDAY, BYWEEKNO and BYMONTHDAY, whose meaning it leaves open, do not occur.
"""

import datetime
import itertools
import random

from dateutil import rrule

DAY = datetime.timedelta(days=1)
LONGEST_ANSWER = 60


def parsed(text):
    return datetime.datetime.strptime(text, "%Y%m%dT%H%M%S" if "T" in text else "%Y%m%d")


def written(time, is_date):
    # strftime leaves years below 1000 without their zeros.
    day = f"{time.year:04}{time.month:02}{time.day:02}"
    return day if is_date else f"{day}T{time.hour:02}{time.minute:02}{time.second:02}"


def rule_of(text, start):
    parts = dict(part.split("=") for part in text.split(";"))
    if len(parts.get("UNTIL", "")) == 8:
        parts["UNTIL"] += "T235959"

    def made():
        rest = ";".join(f"{name}={value}" for name, value in parts.items())
        return rrule.rrulestr(rest, dtstart=start, cache=False)

    try:
        rule = made()
    except ValueError:  # it has found out that the rule gives nothing
        return None
    if "COUNT" in parts:
        if next(iter(rule), None) != start:
            parts["COUNT"] = str(int(parts["COUNT"]) - 1)
        if parts["COUNT"] == "0":
            return None
        rule = made()
    return rule


def expected(start, rules, rdates, exdates, begin, end):
    # Where dateutil gives up looking for the next time; by itself it looks through eight thousand years.
    datetime.MAXYEAR = min(end.year + 1, 9999)
    times = rrule.rruleset()
    times.rdate(start)
    for text in rules:
        rule = rule_of(text, start)
        if rule is not None:
            times.rrule(rule)
    for time in rdates:
        times.rdate(time)
    for time in exdates:
        times.exdate(time)
    inside = itertools.takewhile(lambda time: time < end, times.xafter(begin, inc=True))
    return list(itertools.islice(inside, LONGEST_ANSWER + 1))


class Table:
    def __init__(self):
        print("# name\tDTSTART\tRRULE (divided by |)\tRDATE\tEXDATE\tfrom\tto (excluded)\texpected starts")

    def add(self, name, start_text, rules, begin, end, rdates="", exdates=""):
        is_date = "T" not in start_text

        def times(text):
            return [parsed(t) for t in text.split(",") if t]

        found = expected(parsed(start_text), [r for r in rules.split("|") if r], times(rdates), times(exdates),
                         parsed(begin), parsed(end))
        if len(found) > LONGEST_ANSWER:
            # Cut the window off where the answer gets long.
            end = written(found[LONGEST_ANSWER], is_date)
            found = found[:LONGEST_ANSWER]
        print(name, start_text, rules, rdates, exdates, begin, end, ",".join(written(t, is_date) for t in found),
              sep="\t")


# Name, DTSTART, RRULE, and windows. Most of them are the examples of RFC 5545, section 3.8.5.3.
BY_HAND = [
    ("ten days", "19970902T090000", "FREQ=DAILY;COUNT=10", ["19970101 19980101", "19970908 19970930"]),
    ("daily until", "19970902T090000", "FREQ=DAILY;UNTIL=19971224T000000", ["19971201 19980101"]),
    ("every other day", "19970902T090000", "FREQ=DAILY;INTERVAL=2", ["19970901 19971001", "20230601 20230701"]),
    ("every tenth day five times", "19970902T090000", "FREQ=DAILY;INTERVAL=10;COUNT=5", ["19970101 19990101"]),
    ("every day in January, yearly", "19980101T090000",
     "FREQ=YEARLY;UNTIL=20000131T140000;BYMONTH=1;BYDAY=SU,MO,TU,WE,TH,FR,SA", ["19981220 19990301", "20000125 20010101"]),
    ("every day in January, daily", "19980101T090000", "FREQ=DAILY;UNTIL=20000131T140000;BYMONTH=1",
     ["19981220 19990301", "20000125 20010101"]),
    ("ten weeks", "19970902T090000", "FREQ=WEEKLY;COUNT=10", ["19970101 19980101", "19971001 19971101"]),
    ("weekly until", "19970902T090000", "FREQ=WEEKLY;UNTIL=19971224T000000", ["19971101 19980101"]),
    ("every other week", "19970902T090000", "FREQ=WEEKLY;INTERVAL=2;WKST=SU", ["19970901 19971101", "20300101 20300401"]),
    ("weekly on Tuesday and Thursday", "19970902T090000", "FREQ=WEEKLY;UNTIL=19971007T000000;WKST=SU;BYDAY=TU,TH",
     ["19970901 19980101"]),
    ("every other week on three days", "19970901T090000",
     "FREQ=WEEKLY;INTERVAL=2;UNTIL=19971224T000000;WKST=SU;BYDAY=MO,WE,FR", ["19970901 19980101", "19971015 19971120"]),
    ("every other week eight times", "19970902T090000", "FREQ=WEEKLY;INTERVAL=2;COUNT=8;WKST=SU;BYDAY=TU,TH",
     ["19970901 19980101"]),
    ("first Friday", "19970905T090000", "FREQ=MONTHLY;COUNT=10;BYDAY=1FR", ["19970101 19990101"]),
    ("first Friday until", "19970905T090000", "FREQ=MONTHLY;UNTIL=19971224T000000;BYDAY=1FR", ["19970101 19990101"]),
    ("first and last Sunday every other month", "19970907T090000", "FREQ=MONTHLY;INTERVAL=2;COUNT=10;BYDAY=1SU,-1SU",
     ["19970101 19990101"]),
    ("second-to-last Monday", "19970922T090000", "FREQ=MONTHLY;COUNT=6;BYDAY=-2MO", ["19970101 19990101"]),
    ("third-to-last day", "19970928T090000", "FREQ=MONTHLY;BYMONTHDAY=-3", ["19970901 19980401", "20230101 20240101"]),
    ("2nd and 15th", "19970902T090000", "FREQ=MONTHLY;COUNT=10;BYMONTHDAY=2,15", ["19970101 19990101"]),
    ("first and last day", "19970930T090000", "FREQ=MONTHLY;COUNT=10;BYMONTHDAY=1,-1", ["19970101 19990101"]),
    ("10th to 15th every 18 months", "19970910T090000",
     "FREQ=MONTHLY;INTERVAL=18;COUNT=10;BYMONTHDAY=10,11,12,13,14,15", ["19970101 20000101"]),
    ("Tuesdays every other month", "19970902T090000", "FREQ=MONTHLY;INTERVAL=2;BYDAY=TU",
     ["19970901 19980401", "20230101 20230601"]),
    ("June and July ten times", "19970610T090000", "FREQ=YEARLY;COUNT=10;BYMONTH=6,7", ["19970101 20050101"]),
    ("January to March every other year", "19970310T090000", "FREQ=YEARLY;INTERVAL=2;COUNT=10;BYMONTH=1,2,3",
     ["19970101 20050101"]),
    ("days of every third year", "19970101T090000", "FREQ=YEARLY;INTERVAL=3;COUNT=10;BYYEARDAY=1,100,200",
     ["19970101 20200101"]),
    ("twentieth Monday", "19970519T090000", "FREQ=YEARLY;BYDAY=20MO", ["19970101 20000101", "20300101 20330101"]),
    ("Monday of week 20", "19970512T090000", "FREQ=YEARLY;BYWEEKNO=20;BYDAY=MO", ["19970101 20000101", "20300101 20330101"]),
    ("Thursdays in March", "19970313T090000", "FREQ=YEARLY;BYMONTH=3;BYDAY=TH", ["19970101 20000101"]),
    ("Thursdays of the summer", "19970605T090000", "FREQ=YEARLY;BYDAY=TH;BYMONTH=6,7,8", ["19970101 19990101"]),
    ("Friday the 13th", "19970902T090000", "FREQ=MONTHLY;BYDAY=FR;BYMONTHDAY=13", ["19970901 20010101", "20240101 20300101"]),
    ("Saturday behind the first Sunday", "19970913T090000", "FREQ=MONTHLY;BYDAY=SA;BYMONTHDAY=7,8,9,10,11,12,13",
     ["19970901 19980701"]),
    ("presidential election day", "19961105T090000",
     "FREQ=YEARLY;INTERVAL=4;BYMONTH=11;BYDAY=TU;BYMONTHDAY=2,3,4,5,6,7,8", ["19960101 20150101", "20990101 21100101"]),
    ("third Tuesday to Thursday", "19970904T090000", "FREQ=MONTHLY;COUNT=3;BYDAY=TU,WE,TH;BYSETPOS=3", ["19970101 19990101"]),
    ("second-to-last work day", "19970929T090000", "FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-2",
     ["19970901 19980401", "20230101 20240101"]),
    ("every three hours until", "19970902T090000", "FREQ=HOURLY;INTERVAL=3;UNTIL=19970902T170000", ["19970901 19980101"]),
    ("every 15 minutes six times", "19970902T090000", "FREQ=MINUTELY;INTERVAL=15;COUNT=6", ["19970901 19980101"]),
    ("every hour and a half", "19970902T090000", "FREQ=MINUTELY;INTERVAL=90;COUNT=4", ["19970901 19980101"]),
    ("every 20 minutes of the work day, daily", "19970902T090000",
     "FREQ=DAILY;BYHOUR=9,10,11,12,13,14,15,16;BYMINUTE=0,20,40", ["19970902 19970904", "20230601 20230602"]),
    ("every 20 minutes of the work day, minutely", "19970902T090000",
     "FREQ=MINUTELY;INTERVAL=20;BYHOUR=9,10,11,12,13,14,15,16", ["19970902 19970904", "19980601 19980602"]),
    ("weeks from Monday", "19970805T090000", "FREQ=WEEKLY;INTERVAL=2;COUNT=4;BYDAY=TU,SU;WKST=MO", ["19970101 19980101"]),
    ("weeks from Sunday", "19970805T090000", "FREQ=WEEKLY;INTERVAL=2;COUNT=4;BYDAY=TU,SU;WKST=SU", ["19970101 19980101"]),
    ("days that some months lack", "20070115T090000", "FREQ=MONTHLY;BYMONTHDAY=15,30;COUNT=5", ["20070101 20080101"]),
    ("the 31st", "20200131T090000", "FREQ=MONTHLY", ["20200101 20210101", "20250101 20260101"]),
    ("the 31st every other month", "20200131T090000", "FREQ=MONTHLY;INTERVAL=2", ["20200101 20210101", "20250101 20260101"]),
    ("29 February", "20000229T100000", "FREQ=YEARLY", ["20000101 20130101", "20950101 21100101"]),
    ("29 February every third year", "20000229T100000", "FREQ=YEARLY;INTERVAL=3", ["20000101 20400101", "20950101 21200101"]),
    ("last day of February", "20000229", "FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=-1", ["20000101 20050101", "20240101 20290101"]),
    ("last day of the year", "20001231", "FREQ=YEARLY;BYYEARDAY=-1,366", ["20000101 20050101", "20240101 20290101"]),
    ("first day of a leap year's end", "20001231", "FREQ=YEARLY;BYYEARDAY=366", ["20000101 20130101"]),
    ("week 53", "20041227", "FREQ=YEARLY;BYWEEKNO=53;BYDAY=MO", ["20040101 20220101"]),
    ("the last week", "20041227", "FREQ=YEARLY;BYWEEKNO=-1;BYDAY=MO", ["20040101 20120101"]),
    ("week 1 that begins in December", "20031229T080000", "FREQ=YEARLY;BYWEEKNO=1;BYDAY=MO,TU,SU", ["20030101 20100101"]),
    ("week 1, weeks from Sunday", "20040104T080000", "FREQ=YEARLY;BYWEEKNO=1;BYDAY=SU,SA;WKST=SU", ["20030101 20100101"]),
    ("birthday in 2400", "19800715", "FREQ=YEARLY", ["19800101 19850101", "24000101 24020101"]),
    ("far beyond a time_t of 32 bits", "20000101T120000", "FREQ=WEEKLY;INTERVAL=3;BYDAY=SA", ["24990101 24990301"]),
    ("the end of the calendar", "20000101T120000", "FREQ=YEARLY", ["99950101 99991231"]),
    ("days at the end of the calendar", "97000101T120000", "FREQ=DAILY;INTERVAL=11", ["99991101 99991231"]),
    ("months at the end of the calendar", "97000131T120000", "FREQ=MONTHLY", ["99990101 99991231"]),
    ("weeks at the end of the calendar", "97000131T120000", "FREQ=WEEKLY;INTERVAL=2;BYDAY=TU,FR", ["99991101 99991231"]),
    ("work days by the hour", "20240101T090000", "FREQ=HOURLY;BYDAY=MO,TU,WE,TH,FR;BYHOUR=9,13,17",
     ["20240101 20240109", "20340105 20340110"]),
    ("every 36 hours", "20240101T090000", "FREQ=HOURLY;INTERVAL=36", ["20240101 20240115", "20240701 20240715"]),
    ("every 7 seconds of a minute", "20240101T090000", "FREQ=SECONDLY;INTERVAL=7;BYMINUTE=0;BYHOUR=9", ["20240101 20240102"]),
    ("seconds of an hour", "20240101T000000", "FREQ=HOURLY;BYMINUTE=0,30;BYSECOND=0,15", ["20240101 20240102"]),
    ("last minute of each listed hour", "20240101T005900", "FREQ=HOURLY;BYMINUTE=10,40,59;BYSETPOS=-1", ["20240101 20240103"]),
    ("first and last slot of the day", "20240101T080000", "FREQ=DAILY;BYHOUR=8,12,18;BYSETPOS=1,-1",
     ["20240101 20240110", "20300101 20300105"]),
    ("start that the rule leaves out", "20240103T090000", "FREQ=WEEKLY;BYDAY=MO", ["20240101 20240201"]),
    ("start that the rule leaves out and COUNT counts", "20240103T090000", "FREQ=WEEKLY;BYDAY=MO;COUNT=4", ["20240101 20240301"]),
    ("start that the rule leaves out, COUNT of one", "20240103T090000", "FREQ=WEEKLY;BYDAY=MO;COUNT=1", ["20240101 20240301"]),
    ("start that an hourly rule leaves out and COUNT counts", "20240103T090000", "FREQ=HOURLY;BYHOUR=10,12;COUNT=4",
     ["20240101 20240301"]),
    ("UNTIL as a date", "20240101T090000", "FREQ=DAILY;UNTIL=20240105", ["20240101 20240201"]),
    ("UNTIL as the date of all-day events", "20240101", "FREQ=DAILY;UNTIL=20240105", ["20240101 20240201"]),
    ("UNTIL at an occurrence", "20240101T090000", "FREQ=DAILY;UNTIL=20240105T090000", ["20240101 20240201"]),
    ("UNTIL just before an occurrence", "20240101T090000", "FREQ=DAILY;UNTIL=20240105T085959", ["20240101 20240201"]),
    ("UNTIL before the start", "20240101T090000", "FREQ=DAILY;UNTIL=20230105T090000", ["20220101 20250101"]),
    ("a date that never comes", "20240101T090000", "FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30", ["20240101 20340101"]),
    ("two rules", "20240101T090000", "FREQ=WEEKLY|FREQ=MONTHLY;BYMONTHDAY=1,15", ["20240101 20240401"]),
    ("window before the start", "20240601T090000", "FREQ=DAILY", ["20240501 20240603"]),
    ("window of one instant's length", "20240601T090000", "FREQ=DAILY", ["20240701T090000 20240701T090001", "20240701T090001 20240702T090000"]),
    ("first half of the last week, thirteen times", "20240101T090000", "FREQ=MONTHLY;BYDAY=-1MO,-1TU,-1WE;COUNT=13", ["20240101 20250101"]),
    ("fifth Mondays", "20240129T090000", "FREQ=MONTHLY;BYDAY=5MO", ["20240101 20250101", "20300101 20310101"]),
    ("fifth-to-last Mondays", "20240101T090000", "FREQ=MONTHLY;BYDAY=-5MO", ["20240101 20250101", "20300101 20310101"]),
    ("53rd Mondays", "20120101T090000", "FREQ=YEARLY;BYDAY=53MO", ["20120101 20400101"]),
    ("last Friday of the year", "20241227T090000", "FREQ=YEARLY;BYDAY=-1FR", ["20240101 20290101"]),
    ("last work day of the year", "20241231T090000", "FREQ=YEARLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-1", ["20240101 20290101"]),
    ("100th and last but one work day", "20240101T090000", "FREQ=YEARLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=100,-2", ["20240101 20290101"]),
    ("every other week around the new year", "20231225T090000", "FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,SU", ["20231201 20240301", "20330101 20330301"]),
    ("every fourth week on three days, far off", "20010110T090000", "FREQ=WEEKLY;INTERVAL=4;BYDAY=MO,WE,SU;WKST=WE",
     ["20010101 20010401", "20240101 20240401"]),
    ("monthly in some months", "20240331T090000", "FREQ=MONTHLY;BYMONTH=1,3,12;BYMONTHDAY=-1", ["20240101 20270101"]),
    ("every fifth month on the last work day", "20100129T090000", "FREQ=MONTHLY;INTERVAL=5;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-1",
     ["20100101 20130101", "20230101 20260101"]),
    ("weekly in some months", "20240102T090000", "FREQ=WEEKLY;BYMONTH=2,11;BYDAY=TU,FR", ["20240101 20250101", "20350101 20360101"]),
    ("every third day in some months", "20240101T090000", "FREQ=DAILY;INTERVAL=3;BYMONTH=2,11", ["20240101 20250101", "20350101 20360101"]),
    ("days on weekdays", "20240101T090000", "FREQ=DAILY;BYDAY=MO,WE;INTERVAL=2", ["20240101 20240401", "20350101 20350401"]),
    ("days on month days", "20240101T090000", "FREQ=DAILY;BYMONTHDAY=-1,1,13;BYDAY=FR,MO", ["20240101 20260101"]),
]

DATES_BY_HAND = [
    ("RDATE beside a rule", "20240101T090000", "FREQ=WEEKLY;COUNT=3", "20240103T110000,20240104T090000", ""),
    ("RDATE without a rule", "20240101T090000", "", "20240103T110000,20240301T090000,20240103T110000", ""),
    ("RDATE at a time of the rule", "20240101T090000", "FREQ=DAILY;COUNT=3", "20240102T090000", ""),
    ("RDATE before the start", "20240101T090000", "FREQ=DAILY;COUNT=3", "20231224T090000", ""),
    ("RDATE as dates of all-day events", "20240101", "FREQ=DAILY;COUNT=3", "20240110,20240112", "20240102"),
    ("EXDATE of several occurrences", "20240101T090000", "FREQ=DAILY;COUNT=6", "", "20240102T090000,20240104T090000"),
    ("EXDATE of the start", "20240101T090000", "FREQ=DAILY;COUNT=3", "", "20240101T090000"),
    ("EXDATE of an RDATE", "20240101T090000", "FREQ=DAILY;COUNT=3", "20240110T100000", "20240110T100000"),
    ("EXDATE that meets nothing", "20240101T090000", "FREQ=DAILY;COUNT=3", "", "20240102T090001"),
]


class Dice:
    """Random choices by random() alone, the only source that Python promises to keep."""

    def __init__(self, seed):
        self.random = random.Random(seed).random

    def between(self, low, high):
        return low + int(self.random() * (high - low + 1))

    def one(self, items):
        return items[self.between(0, len(items) - 1)]

    def some(self, items, most):
        chosen = {self.one(items) for _ in range(self.between(1, most))}
        return [item for item in items if item in chosen]

    def chance(self, probability):
        return self.random() < probability


WEEKDAYS = ["MO", "TU", "WE", "TH", "FR", "SA", "SU"]
MONTH_DAYS = [d for d in range(-31, 32) if d != 0]


def listed(values):
    return ",".join(str(value) for value in values)


def numbered_days(dice, most):
    return listed([f"{dice.one([n for n in range(-most, most + 1) if n])}{day}" for day in dice.some(WEEKDAYS, 3)])


def yearly_parts(dice):
    shape = dice.between(0, 6)
    months = {"BYMONTH": listed(dice.some(range(1, 13), 3))}
    if shape == 0:
        return {}
    if shape == 1:
        return months
    if shape == 2:
        return {**months, "BYMONTHDAY": listed(dice.some(MONTH_DAYS, 3))}
    if shape == 3:
        return {"BYYEARDAY": listed(dice.some([d for d in range(-366, 367) if d], 4))}
    if shape == 4:
        return {"BYWEEKNO": listed(dice.some([w for w in range(-50, 51) if w], 3)), "BYDAY": listed(dice.some(WEEKDAYS, 3))}
    if shape == 5:
        return {**months, "BYDAY": numbered_days(dice, 5) if dice.chance(0.5) else listed(dice.some(WEEKDAYS, 2))}
    return {"BYDAY": numbered_days(dice, 53) if dice.chance(0.5) else listed(dice.some(WEEKDAYS, 2))}


def monthly_parts(dice):
    shape = dice.between(0, 4)
    parts = {"BYMONTH": listed(dice.some(range(1, 13), 5))} if dice.chance(0.25) else {}
    if shape in (1, 3):
        parts["BYMONTHDAY"] = listed(dice.some(MONTH_DAYS, 4))
    if shape in (2, 3):
        parts["BYDAY"] = listed(dice.some(WEEKDAYS, 4))
    if shape == 4:
        parts["BYDAY"] = numbered_days(dice, 5)
    return parts


def weekly_parts(dice):
    parts = {"BYMONTH": listed(dice.some(range(1, 13), 6))} if dice.chance(0.2) else {}
    if dice.chance(0.8):
        parts["BYDAY"] = listed(dice.some(WEEKDAYS, 4))
    return parts


def day_filters(dice):
    parts = {"BYMONTH": listed(dice.some(range(1, 13), 6))} if dice.chance(0.3) else {}
    if dice.chance(0.3):
        parts["BYMONTHDAY"] = listed(dice.some(MONTH_DAYS, 8))
    if dice.chance(0.4):
        parts["BYDAY"] = listed(dice.some(WEEKDAYS, 5))
    return parts


def time_parts(dice, names):
    sizes = {"BYHOUR": 24, "BYMINUTE": 60, "BYSECOND": 60}
    return {name: listed(dice.some(range(sizes[name]), 3)) for name in names if dice.chance(0.4)}


def random_case(dice, table, number):
    frequency = dice.one(["YEARLY", "MONTHLY", "WEEKLY", "DAILY"] * 2 + ["HOURLY", "MINUTELY", "SECONDLY"])
    below_day = frequency in ("HOURLY", "MINUTELY", "SECONDLY")
    start = datetime.datetime(dice.between(1985, 2035), 1, 1) + DAY * dice.between(0, 364)
    is_date = not below_day and dice.chance(0.25)
    if not is_date:
        start += datetime.timedelta(hours=dice.between(0, 23), minutes=dice.one([0, 0, 15, 30, 59]))
    makers = {"YEARLY": yearly_parts, "MONTHLY": monthly_parts, "WEEKLY": weekly_parts}
    parts = makers.get(frequency, day_filters)(dice)
    interval = dice.one([1, 1, 1, 2, 3, 4, 5, 7, 13])
    if not is_date and (below_day or dice.chance(0.2)):
        parts.update(time_parts(dice, ["BYHOUR", "BYMINUTE", "BYSECOND"]))
    week_start = dice.one(WEEKDAYS) if frequency in ("WEEKLY", "YEARLY") and dice.chance(0.5) else ""
    if parts and frequency != "SECONDLY" and dice.chance(0.25):
        parts["BYSETPOS"] = listed(dice.some([-3, -2, -1, 1, 2, 3], 2))
        if frequency == "WEEKLY":
            first = WEEKDAYS.index(week_start or "MO")
            start -= DAY * ((start.weekday() - first) % 7)
    if interval > 1:
        parts["INTERVAL"] = interval
    if week_start:
        parts["WKST"] = week_start
    units = {"YEARLY": 365, "MONTHLY": 30, "WEEKLY": 7, "DAILY": 1}
    # dateutil steps one by one, so that windows of the short frequencies stay near.
    short_units = {"HOURLY": DAY, "MINUTELY": DAY / 4, "SECONDLY": DAY / 144}
    unit = short_units[frequency] if below_day else DAY * units[frequency]
    ending = dice.between(0, 3)
    if ending == 0:
        parts["COUNT"] = dice.between(1, 40)
    elif ending == 1:
        parts["UNTIL"] = written(start + unit * interval * dice.between(1, 60), is_date)
    far = dice.one([0, 0, 5, 40, 1000]) if not below_day else dice.one([0, 0, 3])
    begin = start + min(unit * interval * far, DAY * 365 * 300) - DAY * dice.between(0, 3)
    end = begin + unit * interval * dice.between(2, 30)
    rdates, exdates = "", ""
    if dice.chance(0.15):
        rdates = written(begin + DAY * dice.between(0, 20), is_date)
    if dice.chance(0.25):
        known = expected(start, [";".join([f"FREQ={frequency}"] + [f"{k}={v}" for k, v in parts.items()])], [], [],
                         begin, end)
        if known:
            exdates = written(dice.one(known), is_date)
    rule = ";".join([f"FREQ={frequency}"] + [f"{name}={value}" for name, value in parts.items()])
    table.add(f"random {number}", written(start, is_date), rule, written(begin, is_date), written(end, is_date),
              rdates, exdates)


def main():
    table = Table()
    for name, start, rule, windows in BY_HAND:
        for window in windows:
            table.add(name, start, rule, *window.split(" "))
    for name, start, rule, rdates, exdates in DATES_BY_HAND:
        table.add(name, start, rule, "20231201", "20250101", rdates, exdates)
    dice = Dice(20240229)
    for number in range(1, 601):
        random_case(dice, table, number)


main()
