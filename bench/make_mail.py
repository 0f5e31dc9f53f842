"""Makes a Maildir account of so many messages, as a mail program would have fetched them: a tenth of them unread, every
fiftieth flagged, a fifth of them in an archive, with plain, HTML and mixed bodies."""

import argparse
import datetime
import email.utils
from pathlib import Path

TOPICS = ("Quarterly report", "Budget plan", "Lunch on Friday", "Re: Minutes of the meeting", "Invoice",
          "=?utf-8?q?Gr=C3=BC=C3=9Fe_aus_K=C3=B6ln?=", "Holiday photos", "[list] Build fails on a new machine")
PEOPLE = ("Anna Beck", "Bob Stone", "=?utf-8?q?J=C3=BCrgen_Wei=C3=9F?=", "Carol Day", "Dana Field")
PARAGRAPH = "The figures of the last weeks are in, and they look better than any of us had thought. " * 4


def body(number):
    """The headers that tell of the body, and the body."""
    if number % 3 == 0:
        return "Content-Type: text/plain; charset=utf-8", f"Hello,\n\n{PARAGRAPH}\n\n{number}\n"
    html = f"<html><head><style>p {{ color: #333 }}</style></head><body><p>{PARAGRAPH}</p><p>{number}</p></body></html>"
    if number % 3 == 1:
        return "Content-Type: text/html; charset=utf-8", html
    boundary = f"part-{number}"
    parts = "".join(f"--{boundary}\nContent-Type: {kind}; charset=utf-8\n\n{text}\n"
                    for kind, text in (("text/plain", PARAGRAPH), ("text/html", html)))
    return f'MIME-Version: 1.0\nContent-Type: multipart/alternative; boundary="{boundary}"', \
        f"{parts}--{boundary}--\n"


def message(number, when):
    person = PEOPLE[number % len(PEOPLE)]
    stamp = email.utils.format_datetime(when)
    kind, content = body(number)
    return f"""Return-Path: <person{number % 97}@example.org>
Received: from relay.example.org (relay.example.org [192.0.2.7])
\tby mail.example.com (Postfix) with ESMTPS id {number:08X}
\tfor <user@example.com>; {stamp}
Received: from client.example.org by relay.example.org; {stamp}
Message-ID: <{number}.{int(when.timestamp())}@example.org>
Date: {stamp}
From: {person} <person{number % 97}@example.org>
To: The User <user@example.com>
Subject: {TOPICS[number % len(TOPICS)]} {number // len(TOPICS)}
{kind}

{content}"""


def make(folder, count, newest):
    """`newest` is the moment of the last message; each is a minute older than the next."""
    inbox, archive = folder / "home/INBOX", folder / "home/Archive"
    for place in (inbox, archive):
        for part in ("cur", "new", "tmp"):
            (place / part).mkdir(parents=True)
    for number in range(count):
        when = newest - datetime.timedelta(minutes=count - number)
        flags = ("F" if number % 50 == 0 else "") + ("" if number % 10 == 0 else "S")
        place = archive if number % 5 == 4 else inbox
        name = f"{int(when.timestamp())}.M{number}P1.machine:2,{flags}"
        (place / "cur" / name).write_text(message(number, when), encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=Path)
    parser.add_argument("count", type=int)
    arguments = parser.parse_args()
    make(arguments.folder, arguments.count, datetime.datetime(2026, 11, 20, 12, tzinfo=datetime.timezone.utc))


if __name__ == "__main__":
    main()
