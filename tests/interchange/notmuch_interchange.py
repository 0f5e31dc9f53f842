"""The broker and the real notmuch over one Maildir, which Python's mailbox module delivers to.

Arguments: the folder of the programs, then unittest's own.
"""

import email.message
import email.utils
import mailbox

import interchange

SUBJECTS = ("Budget", "Grüße aus Köln", "日本", "A subject that is long enough to be folded when it is written, twice over")


class NotmuchInterchange(interchange.Interchange):
    """Each test has the empty account home."""

    other = "/usr/bin/notmuch"
    capability = "mail"

    def setUp(self):
        super().setUp()
        self.inbox = mailbox.Maildir(self.folder / "mail/home/INBOX")
        self.write_config("notmuch/default/config", f"""[database]
path={self.folder}/mail
[user]
name=The User
primary_email=user@example.com
[new]
tags=
[maildir]
synchronize_flags=true
""")

    def use_zone(self, zone):
        super().use_zone(zone)
        (self.folder / "mail/home").mkdir(parents=True, exist_ok=True)
        self.environment["VESK_MAIL_DIR"] = str(self.folder / "mail")

    def deliver(self, number, flags=None, subdir="new"):
        message = email.message.EmailMessage()
        message["From"] = email.utils.formataddr(("Jürgen Weiß", "j@example.org"))
        message["Subject"] = SUBJECTS[number % len(SUBJECTS)]
        message["Message-ID"] = f"<{number}@example.org>"
        message["Date"] = email.utils.formatdate(1_780_000_000 + number)
        message.set_content(f"Grüße {number}\n")
        delivered = mailbox.MaildirMessage(message)
        delivered.set_subdir(subdir)
        if flags:
            delivered.set_flags(flags)
        self.inbox.add(delivered)

    def notmuch(self, *arguments):
        return self.run_program(self.other, *arguments).split()

    def listed(self, view):
        return self.broker("mail-list", "--view", view, "--limit", "50")["messages"]

    def assert_same(self, view, query):
        self.notmuch("new", "--quiet")
        theirs = [line.removeprefix("id:") for line in self.notmuch("search", "--output=messages", query)]
        self.assertEqual([message["messageId"] for message in self.listed(view)], theirs)
        return theirs

    def test_both_find_the_same_messages_in_the_same_order(self):
        for number in range(20):
            if number % 3:
                self.deliver(number, flags="FS"[number % 2:], subdir="cur")
            else:
                self.deliver(number)
        self.assertEqual(len(self.assert_same("recent", "*")), 20)
        self.assertEqual(len(self.assert_same("unread", "tag:unread")), 7)
        self.assertEqual(len(self.assert_same("flagged", "tag:flagged")), 6)

    def test_the_broker_notices_what_notmuch_changes(self):
        for number in range(4):
            self.deliver(number)
        self.assertEqual(len(self.assert_same("unread", "tag:unread")), 4)
        self.notmuch("tag", "-unread", "+flagged", "id:1@example.org")
        self.assertEqual(len(self.assert_same("unread", "tag:unread")), 3)
        self.assertEqual(self.assert_same("flagged", "tag:flagged"), ["1@example.org"])

    def test_the_broker_decodes_what_python_writes(self):
        for number, subject in enumerate(SUBJECTS):
            self.deliver(number)
            message = self.listed("recent")[0]
            self.assertEqual(message["subject"], subject)
            self.assertEqual(message["sender"], "Jürgen Weiß <j@example.org>")
            self.assertEqual(message["preview"], f"Grüße {number}")


if __name__ == "__main__":
    interchange.main()
