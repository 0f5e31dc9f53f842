"""Events pass between the broker and the real khal over one folder, in both directions.

Arguments: the folder of the programs, then unittest's own.
"""

import interchange

FORMAT = "{start-long}|{end-long}|{title}|{location}|{description}|{calendar}"


class KhalInterchange(interchange.Interchange):
    """Each test has the empty collections home and work."""

    other = "/usr/bin/khal"
    capability = "calendar"

    def setUp(self):
        super().setUp()
        for name in ("home", "work"):
            (self.folder / "calendars" / name).mkdir(parents=True)

    def use_zone(self, zone):
        super().use_zone(zone)
        self.environment["VESK_CALENDARS_DIR"] = str(self.folder / "calendars")
        self.write_config("khal/config", f"""[calendars]
[[all]]
path = {self.folder}/calendars/*
type = discover
[locale]
local_timezone = {zone}
default_timezone = {zone}
timeformat = %H:%M
dateformat = %Y-%m-%d
longdateformat = %Y-%m-%d
datetimeformat = %Y-%m-%d %H:%M
longdatetimeformat = %Y-%m-%d %H:%M
[sqlite]
path = {self.folder}/khal.db
""")

    def created(self, *arguments, calendar="home"):
        return self.broker("calendar-create", "--calendar", calendar, *arguments)["event"]

    def khal_new(self, *arguments, calendar="home"):
        self.run_program(self.other, "new", "-a", calendar, *arguments)

    def khal_list(self, day):
        output = self.run_program(self.other, "list", "--format", FORMAT, "--day-format", "", day, "1d")
        return [line for line in output.splitlines() if line]

    def listed(self, day):
        """What the broker lists for a day, in the form of khal_list."""
        lines = []
        for event in self.broker("calendar-date", "--date", day)["events"]:
            start, end = (event[key][:10 if event["allDay"] else 16].replace("T", " ") for key in ("startAt", "endAt"))
            lines.append("|".join((start, end, event["title"], event.get("location", ""), event.get("notes", ""),
                                   event["calendarTitle"])))
        return lines

    def test_khal_shows_what_the_broker_created(self):
        self.created("--title", "Größe; Umfang, 'usw.'", "--start", "2026-04-26 14:00", "--end", "2026-04-26T15:30",
                     "--location", "Room 1, left", "--notes", "Bring tea")
        self.assertEqual(self.khal_list("2026-04-26"),
                         ["2026-04-26 14:00|2026-04-26 15:30|Größe; Umfang, 'usw.'|Room 1, left|Bring tea|home"])

    def test_khal_shows_the_calendar_that_was_chosen(self):
        self.created("--title", "Sync", "--start", "2026-04-26 14:00", calendar="WORK")
        self.assertEqual(self.khal_list("2026-04-26"), ["2026-04-26 14:00|2026-04-26 15:00|Sync|||work"])

    def test_khal_shows_an_all_day_event_on_its_days_only(self):
        self.created("--title", "Fair", "--start", "2026-03-28", "--end", "2026-03-30", "--all-day")
        for day, shown in (("2026-03-27", 0), ("2026-03-28", 1), ("2026-03-29", 1), ("2026-03-30", 0)):
            self.assertEqual(len(self.khal_list(day)), shown, day)

    def test_khal_shows_times_around_the_daylight_saving_changes(self):
        for day in ("2026-03-29", "2026-10-25"):
            for hour in ("01:30", "03:30"):
                self.created("--title", "At " + hour, "--start", f"{day} {hour}")
                self.assertIn(f"{day} {hour}|", "".join(self.khal_list(day)))

    def test_khal_in_another_zone_shows_the_same_instant(self):
        self.created("--title", "Sync", "--start", "2026-07-01 14:00")
        self.use_zone("America/New_York")
        self.assertEqual(self.khal_list("2026-07-01"), ["2026-07-01 08:00|2026-07-01 09:00|Sync|||home"])
        self.assertEqual(self.listed("2026-07-01"), self.khal_list("2026-07-01"))

    def test_khal_shows_a_time_of_the_hour_that_comes_twice_at_its_instant(self):
        event = self.created("--title", "Late", "--start", "2026-10-25 02:30")
        self.assertEqual(event["startAt"], "2026-10-25T02:30:00+01:00")
        self.use_zone("UTC")
        self.assertEqual(self.khal_list("2026-10-25"), ["2026-10-25 01:30|2026-10-25 02:30|Late|||home"])

    def test_the_broker_shows_what_khal_created(self):
        self.khal_new("2026-04-26", "14:00", "15:30", "Team lunch", "::", "Bring tea", "-l", "Room 1, left")
        expected = ["2026-04-26 14:00|2026-04-26 15:30|Team lunch|Room 1, left|Bring tea|home"]
        self.assertEqual(self.listed("2026-04-26"), expected)
        self.assertEqual(self.khal_list("2026-04-26"), expected)

    def test_the_broker_notices_what_khal_adds_later(self):
        self.assertEqual(self.listed("2026-04-26"), [])
        self.khal_new("2026-04-26", "14:00", "15:00", "First")
        self.assertEqual(len(self.listed("2026-04-26")), 1)
        self.khal_new("2026-04-26", "16:00", "17:00", "Second", calendar="work")
        self.assertEqual([line.split("|")[2] for line in self.listed("2026-04-26")], ["First", "Second"])

    def test_the_broker_shows_khals_all_day_events(self):
        self.khal_new("2026-04-26", "2026-04-27", "Fair")  # khal names the last day
        for day, shown in (("2026-04-25", []), ("2026-04-26", ["Fair"]), ("2026-04-27", ["Fair"]), ("2026-04-28", [])):
            self.assertEqual([line.split("|")[2] for line in self.listed(day)], shown, day)

    def test_the_broker_shows_khals_recurring_events_over_a_change_of_the_clock(self):
        self.khal_new("-r", "weekly", "-u", "2026-11-15", "2026-10-18", "09:00", "10:00", "Choir")
        for day in ("2026-10-18", "2026-10-25", "2026-11-01", "2026-11-08"):
            self.assertEqual(self.listed(day), [f"{day} 09:00|{day} 10:00|Choir|||home"])
            self.assertEqual(self.listed(day), self.khal_list(day))
        for day in ("2026-10-11", "2026-10-19", "2026-11-22"):
            self.assertEqual(self.listed(day), [])

    def test_both_list_one_calendar_alike(self):
        for hour in range(8, 18):
            title, start, end = f"Event {hour}", f"{hour:02}:00", f"{hour:02}:45"
            if hour % 2:
                self.created("--title", title, "--start", f"2026-04-26 {start}", "--end", f"2026-04-26 {end}")
            else:
                self.khal_new("2026-04-26", start, end, title)
        self.assertEqual(len(self.listed("2026-04-26")), 10)
        self.assertEqual(self.listed("2026-04-26"), self.khal_list("2026-04-26"))


if __name__ == "__main__":
    interchange.main()
