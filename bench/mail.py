"""mail-list and mail-check-followup beside notmuch over a Maildir account. The broker keeps an index of headers, notmuch
one of everything."""

import datetime
import shutil

import make_mail

SIZES = (20_000, 200_000)
MOST_FOLLOWUP = {20_000: 50, 200_000: 300}
MOST_TIMES_NOTMUCH = 1.5


def configure_notmuch(bench, folder):
    bench.write_config("notmuch/default/config", f"""[database]
path={folder}
[user]
name=The User
primary_email=user@example.com
[new]
tags=
[maildir]
synchronize_flags=true
""")


def measure_first(bench, label, broker, notmuch):
    """One row each: the time to know all messages."""
    commands = {"mail-check-followup": broker} | ({"notmuch new": [notmuch, "new", "--quiet"]} if notmuch else {})
    bench.compare(f"{label}, first", commands, 1, 1)


def measure_list(bench, label, notmuch):
    ours = [bench.broker, "mail-list", "--view", "unread", "--limit", "10"]
    bench.compare(f"{label}, first list", {"mail-list": ours}, 1)
    commands = {"mail-list": ours}
    if notmuch:
        commands["notmuch search"] = [notmuch, "search", "--format=json", "--limit=10", "tag:unread"]
    bench.compare(f"{label}, unread warm", commands, 21, 1 / MOST_TIMES_NOTMUCH)
    bench.judge_memory(f"{label}, unread", ours, 100)


def measure_mail(bench, notmuch, count):
    folder = bench.work / f"mail-{count}"
    make_mail.make(folder, count, datetime.datetime.now(datetime.timezone.utc))
    bench.use_folder("VESK_MAIL_DIR", folder)
    if notmuch:
        configure_notmuch(bench, folder)
    label = f"{count:,} messages"
    followup = [bench.broker, "mail-check-followup", "--subject", f"Budget plan {count // 10}"]
    measure_first(bench, label, followup, notmuch)
    run = bench.compare(f"{label}, follow-up warm", {"mail-check-followup": followup}, 15)[0]
    most = MOST_FOLLOWUP[count]
    bench.row(f"{label}, follow-up by subject", run.seconds * 1000, "ms", f"< {most}", run.seconds * 1000 < most)
    bench.judge_memory(f"{label}, follow-up", followup, 100)
    measure_list(bench, label, notmuch)
    shutil.rmtree(folder)


def measure(bench, sizes):
    notmuch = bench.peer("notmuch")
    bench.grant("mail")
    for count in sizes:
        measure_mail(bench, notmuch, count)
