#!/usr/bin/python3
"""Looks at the application that the check of the macOS build laid out: its places, its information dictionaries and what
kind of programs they are.

Argument: the application.
"""

import plistlib
import re
import subprocess
import sys
from pathlib import Path

PROGRAMS = {"MacOS/vesk": "app.veskhq.vesk", "Helpers/VeskCapabilityBroker": "app.veskhq.vesk.broker"}
# Without its sentence, the system ends a program that asks for consent.
SENTENCES = ("NSAppleEventsUsageDescription", "NSCalendarsFullAccessUsageDescription", "NSContactsUsageDescription",
             "NSMicrophoneUsageDescription", "NSRemindersFullAccessUsageDescription")
MACHINE = ("Arch: aarch64", "Platform: macos", "Version: 14.0")
ENTITLEMENT = "com.apple.security.automation.apple-events"


def printed(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def embedded_information(program):
    text = printed("llvm-objdump-19", "--macho", "--section=__TEXT,__info_plist", str(program))
    end = "</plist>"
    return plistlib.loads(text[text.index("<?xml"):text.index(end) + len(end)].encode())


def information_findings(name, information, identifier):
    if information.get("CFBundleIdentifier") != identifier:
        yield f"{name} has the identifier {information.get('CFBundleIdentifier')}"
    for key in SENTENCES:
        if not information.get(key):
            yield f"{name} does not say why it asks: {key}"


def program_findings(application, place, identifier):
    program = application / "Contents" / place
    if not program.is_file():
        yield f"{place} is not there"
        return
    kind = printed("llvm-readobj-19", "--macho-version-min", str(program))
    for line in MACHINE:
        if line not in kind:
            yield f"{place} is not of the kind '{line}'"
    yield from information_findings(place, embedded_information(program), identifier)


def findings(application):
    for place, identifier in PROGRAMS.items():
        yield from program_findings(application, place, identifier)
    information = plistlib.loads((application / "Contents/Info.plist").read_bytes())
    yield from information_findings("Info.plist", information, "app.veskhq.vesk")
    if not (application / "Contents/MacOS" / information.get("CFBundleExecutable", "")).is_file():
        yield "Info.plist names no program"
    if not re.fullmatch(r"\d+\.\d+\.\d+", information.get("CFBundleShortVersionString", "")):
        yield "Info.plist has no version"


def entitlement_findings(repository):
    path = repository / "VeskCapabilityBroker/VeskCapabilityBroker.entitlements"
    if plistlib.loads(path.read_bytes()).get(ENTITLEMENT) is not True:
        yield f"{path.name} does not grant {ENTITLEMENT}"


def main():
    repository = Path(__file__).resolve().parents[2]
    found = [*findings(Path(sys.argv[1])), *entitlement_findings(repository)]
    for text in found:
        print(f"Vesk.app: {text}", file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
