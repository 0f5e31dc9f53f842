"""To-dos pass between the broker and the real todoman over one folder, in both directions.

Arguments: the folder of the programs, then unittest's own.
"""

import datetime
import json
import zoneinfo

import interchange

# As a synchronised to-do of another program looks: folded lines, properties that neither program knows.
GARDEN = """BEGIN:VCALENDAR
VERSION:2.0
PRODID:-//Example//Tasks//EN
BEGIN:VTODO
UID:garden
DTSTAMP:20260101T000000Z
CREATED:20260101T000000Z
SUMMARY:Garden
DESCRIPTION:Line one\\nline two\\, with a comma\\; and a semicolon that is
  folded
DUE;VALUE=DATE:20300426
PRIORITY:3
CATEGORIES:home,outside
RELATED-TO;RELTYPE=PARENT:house
X-EXAMPLE-SORT-ORDER;X-MODE="a:b":12
STATUS:NEEDS-ACTION
BEGIN:VALARM
UID:alarm
ACTION:DISPLAY
TRIGGER;RELATED=END:-PT15M
DESCRIPTION:Reminder
END:VALARM
END:VTODO
END:VCALENDAR
""".replace("\n", "\r\n")
HOUSE = """BEGIN:VCALENDAR
VERSION:2.0
PRODID:-//Example//Tasks//EN
BEGIN:VTODO
UID:house
DTSTAMP:20260101T000000Z
SUMMARY:House
RRULE:FREQ=WEEKLY
DUE;VALUE=DATE:20300426
END:VTODO
END:VCALENDAR
""".replace("\n", "\r\n")
GARDEN_NOTES = "Line one\nline two, with a comma; and a semicolon that is folded"
CHANGES_WITH_EACH_SAVE = ("DTSTAMP", "LAST-MODIFIED", "SEQUENCE")


def lasting_lines(text):
    """The lines of a file as they stand, apart from those that each save renews."""
    return [line for line in text.split("\r\n") if not line.startswith(CHANGES_WITH_EACH_SAVE)]


def content_lines(text):
    """The same, unfolded."""
    return lasting_lines(text.replace("\r\n ", ""))


class TodomanInterchange(interchange.Interchange):
    """Each test has the empty list "Vesk Todos"."""

    other = "/usr/bin/todoman"
    capability = "reminders"

    def setUp(self):
        super().setUp()
        self.list = self.folder / "reminders/vesk-todos"
        self.list.mkdir(parents=True)
        (self.list / "displayname").write_text("Vesk Todos", encoding="utf-8")

    def use_zone(self, zone):
        super().use_zone(zone)
        self.environment["VESK_REMINDERS_DIR"] = str(self.folder / "reminders")
        self.write_config("todoman/config.py", f"""path = "{self.folder}/reminders/*"
cache_path = "{self.folder}/todoman.sqlite3"
default_list = "Vesk Todos"
default_due = 0
date_format = "%Y-%m-%d"
time_format = "%H:%M"
""")

    def put(self, name, text):
        (self.list / name).write_bytes(text.encode())

    def text(self, name):
        return (self.list / name).read_bytes().decode()

    def added(self, *arguments):
        return self.broker("todo-add", *arguments)["item"]

    def items(self, view="all"):
        """The titles of the broker's to-dos, each with the to-do."""
        return {item["title"]: item for item in self.broker("todo-list", "--view", view)["items"]}

    def todoman(self, *arguments, text=""):
        return self.run_program(self.other, *arguments, text=text)

    def todoman_items(self, status="ANY"):
        """The same of todoman."""
        items = json.loads(self.todoman("--porcelain", "list", "--status", status))
        self.assertEqual({item["list"] for item in items} - {"Vesk Todos"}, set())
        return {item["summary"]: item for item in items}

    def todoman_change(self, command, title, *arguments):
        self.todoman(command, *arguments, str(self.todoman_items()[title]["id"]))

    def todoman_due(self, title):
        """The due date as todoman shows it in its list."""
        line = next(line for line in self.todoman("list", "--status", "ANY").splitlines() if title in line)
        return line.split("]", 1)[1].split(title)[0].split(maxsplit=1)[1].strip("! ")

    def test_todoman_shows_what_the_broker_added(self):
        self.added("--title", "Größe; Umfang, 'usw.'", "--notes", "Line one\nline two, with a comma; \"quoted\"",
                   "--due", "2030-04-26 09:30")
        item = self.todoman_items("NEEDS-ACTION")["Größe; Umfang, 'usw.'"]
        self.assertEqual(item["description"], "Line one\nline two, with a comma; \"quoted\"")
        due = datetime.datetime(2030, 4, 26, 9, 30, tzinfo=zoneinfo.ZoneInfo(self.zone))
        self.assertEqual(item["due"], due.timestamp())
        self.assertEqual((item["completed"], item["percent"]), (False, 0))

    def test_todoman_shows_the_due_dates_that_the_broker_wrote(self):
        for title, due in (("None", None), ("Day", "2030-04-26"), ("Time", "2030-04-26 09:30"),
                           ("Winter", "2030-12-24T18:00"), ("Midnight", "2030-04-26 00:00")):
            self.added("--title", title, *(("--due", due) if due else ()))
            self.assertEqual(self.todoman_due(title), (due or "(no due date)").replace("T", " "), title)

    def test_todoman_in_another_zone_shows_the_same_instant(self):
        self.added("--title", "Call", "--due", "2030-07-01 14:00")
        self.added("--title", "Day", "--due", "2030-07-01")
        self.use_zone("America/New_York")
        self.assertEqual(self.todoman_due("Call"), "2030-07-01 08:00")
        self.assertEqual(self.todoman_due("Day"), "2030-07-01")
        self.assertEqual(self.items()["Call"]["due"]["iso"], "2030-07-01T08:00")

    def test_todoman_follows_the_brokers_changes(self):
        identifier = self.added("--title", "Milk")["id"]
        self.assertEqual(list(self.todoman_items("NEEDS-ACTION")), ["Milk"])
        self.broker("todo-complete", "--id", identifier)
        self.assertEqual(self.todoman_items("NEEDS-ACTION"), {})
        item = self.todoman_items("COMPLETED")["Milk"]
        self.assertEqual((item["completed"], item["percent"]), (True, 100))
        self.assertIsNotNone(item["completed_at"])
        self.broker("todo-reopen", "--id", identifier)
        item = self.todoman_items("NEEDS-ACTION")["Milk"]
        self.assertEqual((item["completed"], item["percent"], item["completed_at"]), (False, 0, None))
        self.broker("todo-update", "--id", identifier, "--title", "Bread", "--due", "2030-04-26")
        self.assertEqual(list(self.todoman_items()), ["Bread"])
        self.assertEqual(self.todoman_due("Bread"), "2030-04-26")
        self.broker("todo-delete", "--id", identifier)
        self.assertEqual(self.todoman_items(), {})

    def test_the_broker_shows_what_todoman_added(self):
        self.todoman("new", "--read-description", "--due", "2030-04-26 09:30", "--priority", "high", "Größe; a, b",
                     text="Line one\nline two, with a comma; \"quoted\"")
        self.todoman("new", "--due", "2030-04-26", "Day")
        self.todoman("new", "None")
        items = self.items()
        self.assertEqual(sorted(items), ["Day", "Größe; a, b", "None"])
        self.assertEqual(items["Größe; a, b"]["due"]["iso"], "2030-04-26T09:30")
        self.assertEqual(items["Day"]["due"]["iso"], "2030-04-26")
        self.assertFalse(items["Day"]["due"]["hasTime"])
        self.assertNotIn("due", items["None"])
        self.assertEqual(items["Größe; a, b"]["notes"].replace("\n\n", "\n"),  # todoman doubles breaks of its input
                         "Line one\nline two, with a comma; \"quoted\"")

    def test_the_broker_follows_todomans_changes(self):
        self.added("--title", "Milk", "--notes", "two, cold\nand fresh", "--due", "2030-04-26 09:30")
        self.todoman_change("edit", "Milk", "--due", "2030-05-01")
        self.assertEqual(self.items()["Milk"]["due"]["iso"], "2030-05-01")
        self.todoman_change("edit", "Milk", "--due", "2030-05-01 18:15", "--priority", "low")
        self.assertEqual(self.items()["Milk"]["due"]["iso"], "2030-05-01T18:15")
        self.assertEqual(self.items()["Milk"]["notes"], "two, cold\nand fresh")
        self.todoman_change("done", "Milk")
        self.assertEqual(list(self.items("done")), ["Milk"])
        self.assertIn("completionDate", self.items("done")["Milk"])
        self.todoman_change("delete", "Milk", "--yes")
        self.assertEqual(self.items(), {})

    def test_each_can_change_what_the_other_changed(self):
        identifier = self.added("--title", "Milk")["id"]
        self.todoman_change("done", "Milk")
        self.broker("todo-reopen", "--id", identifier)
        self.todoman_change("edit", "Milk", "--due", "2030-05-01 18:15", "--priority", "low")
        self.broker("todo-update", "--id", identifier, "--title", "Bread")
        item = self.todoman_items("NEEDS-ACTION")["Bread"]
        self.assertEqual(item["priority"], 9)
        self.assertEqual(self.todoman_due("Bread"), "2030-05-01 18:15")
        self.todoman_change("done", "Bread")
        self.assertTrue(self.items()["Bread"]["completed"])

    def test_the_brokers_changes_leave_all_other_bytes(self):
        self.put("garden.ics", GARDEN)
        self.put("house.ics", HOUSE)
        self.assertEqual(self.items()["Garden"]["notes"], GARDEN_NOTES)
        self.broker("todo-complete", "--id", "garden")
        self.assertEqual(self.todoman_items("COMPLETED")["Garden"]["priority"], 3)
        self.broker("todo-reopen", "--id", "garden")
        self.assertEqual(lasting_lines(self.text("garden.ics")), lasting_lines(GARDEN))
        self.broker("todo-update", "--id", "garden", "--title", "Beds, all", "--due", "2030-05-01")
        wanted = GARDEN.replace("SUMMARY:Garden", "SUMMARY:Beds\\, all").replace("20300426", "20300501")
        self.assertEqual(lasting_lines(self.text("garden.ics")), lasting_lines(wanted))
        self.assertEqual(self.todoman_items()["Beds, all"]["description"], GARDEN_NOTES)
        self.assertEqual(self.text("house.ics"), HOUSE)

    def test_alarms_and_subtasks_survive_both_programs_in_turn(self):
        """todoman writes its file anew, so what is compared is what the lines say. It loses the categories itself."""
        self.put("garden.ics", GARDEN)
        self.put("house.ics", HOUSE)
        kept = [line for line in content_lines(GARDEN)
                if line.startswith(("BEGIN", "END", "UID", "X-", "RELATED", "PRIORITY", "ACTION", "TRIGGER", "DESC"))]
        for change in (lambda: self.todoman_change("edit", "Garden", "--due", "2030-05-01 18:15"),
                       lambda: self.broker("todo-complete", "--id", "garden"),
                       lambda: self.todoman_change("edit", "Garden", "--due", "2030-05-02"),
                       lambda: self.broker("todo-update", "--id", "garden", "--due", "2030-05-03 07:00")):
            change()
            self.assertEqual(sorted(set(kept) - set(content_lines(self.text("garden.ics")))), [])
        self.assertEqual(self.items()["Garden"]["due"]["iso"], "2030-05-03T07:00")
        self.assertEqual(self.items()["Garden"]["notes"], GARDEN_NOTES)
        self.assertEqual(self.todoman_due("Garden"), "2030-05-03 07:00")

    def test_the_broker_shows_the_next_instance_of_what_todoman_completed(self):
        self.put("house.ics", HOUSE)
        self.todoman_change("done", "House")
        listed = self.broker("todo-list", "--view", "all")["items"]
        self.assertEqual([(item["completed"], item["due"]["iso"][:10]) for item in listed],
                         [(False, "2030-05-03"), (True, "2030-04-26")])

    def test_both_list_one_folder_alike(self):
        for number in range(10):
            due = f"2030-04-{number + 10} 08:30" if number % 3 else f"2030-04-{number + 10}"
            if number % 2:
                self.added("--title", f"Number {number}", "--due", due)
            else:
                self.todoman("new", "--due", due, f"Number {number}")
        dues = {title: item["due"]["iso"].replace("T", " ") for title, item in self.items().items()}
        self.assertEqual(len(dues), 10)
        self.assertEqual(dues, {title: self.todoman_due(title) for title in self.todoman_items()})


if __name__ == "__main__":
    interchange.main()
