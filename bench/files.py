"""`vesk files`: the first items of a large folder, and a large text read and written."""

import shutil
import subprocess

SIZES = (100_000,)
TEXT_MB = 50
LIST_MS = 20
# How many times its size a text may take in memory: itself, as a JSON value, and as the document.
TEXT_COPIES = 6


def make_application(bench):
    """The companion in an application that is set up for the cloud."""
    programs = bench.work / "Vesk.app/Contents/MacOS"
    programs.mkdir(parents=True)
    companion = shutil.copy(bench.companion, programs / "vesk")
    (programs.parent / "Info.plist").write_text(
        '<plist version="1.0"><dict><key>VeskICloudEnabled</key><true/></dict></plist>', encoding="utf-8")
    return companion


def median_ms(bench, command):
    (run,) = bench.take_turns([command], 9, [0])
    return run.seconds * 1000


def measure_listing(bench, companion, drive, count):
    folder = drive / f"folder-{count}"
    folder.mkdir()
    for number in range(count):
        (folder / f"entry-{number:06}.txt").touch()
    taken = median_ms(bench, [companion, "files", "list", folder.name])
    bench.row(f"files list, {count:,} entries", taken, "ms", f"< {LIST_MS}", taken < LIST_MS)


def measure_text(bench, companion, drive):
    line = "A line of text with a few letters beyond ASCII: grün, déjà vu.\n".encode()
    text = line * (TEXT_MB * 1_000_000 // len(line))
    (drive / "large.txt").write_bytes(text)
    read = [companion, "files", "read", "large.txt"]
    bench.row(f"files read, {TEXT_MB} MB", median_ms(bench, read), "ms", "", None)
    bench.judge_memory(f"files read, {TEXT_MB} MB", read, TEXT_MB * TEXT_COPIES)
    write = ["/bin/sh", "-c", f"exec '{companion}' files write copy.txt --overwrite < '{drive / 'large.txt'}'"]
    bench.row(f"files write, {TEXT_MB} MB", median_ms(bench, write), "ms", "", None)
    bench.judge_memory(f"files write, {TEXT_MB} MB", write, TEXT_MB * TEXT_COPIES)
    subprocess.run(["/usr/bin/cmp", str(drive / "large.txt"), str(drive / "copy.txt")], check=True)


def measure(bench, sizes):
    companion = make_application(bench)
    drive = bench.work / "drive"
    drive.mkdir()
    bench.environment["VESK_CLOUD_DRIVE"] = str(drive)
    for count in sizes:
        measure_listing(bench, companion, drive, count)
    measure_text(bench, companion, drive)
