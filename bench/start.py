"""Runs that touch no store, beside the start of another program."""

SIZES = ()


def measure(bench, _sizes):
    for name, command in (("usage error", [bench.broker]), ("status", [bench.broker, "status"])):
        bench.judge_memory(name, command, 20)
    notmuch = bench.peer("notmuch")
    if not notmuch:
        return
    commands = [[bench.broker], [bench.broker, "status"], [notmuch, "--version"]]
    usage, status, other = bench.take_turns(commands, 41, [1, 0, 0])
    for name, run in (("usage error", usage), ("status", status), ("notmuch --version", other)):
        bench.row(name, run.seconds * 1000, "ms", "", None)
    ratio = usage.seconds / other.seconds
    bench.row("usage error / notmuch --version", ratio, "times", "<= 1", ratio <= 1)
    ratio = status.seconds / other.seconds
    bench.row("status / notmuch --version", ratio, "times", "<= 2", ratio <= 2)
