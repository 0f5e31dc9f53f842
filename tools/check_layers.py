"""Checks that dependencies point inward and that no source uses what the house has ruled out. Argument: the repository."""

import re
import subprocess
import sys
from pathlib import Path

INCLUDE = re.compile(r'^\s*#\s*(?:include|import)\s+([<"])([^>"]+)[>"]', re.MULTILINE)
STANDARD = re.compile(r"^[a-z_]+$")  # <vector>; not <unistd.h>, not <unicode/unistr.h>

# The first prefix that fits a file decides: the house's own headers that it may include, and whether it may include
# headers beyond the standard library's.
LAYERS = [
    ("VeskSupport/", ("VeskSupport/",), True),
    ("VeskPlatform/Linux/", ("VeskPlatform/", "VeskSupport/"), True),
    ("VeskPlatform/Apple/", ("VeskPlatform/", "VeskSupport/"), True),
    ("VeskPlatform/Portable/", ("VeskPlatform/", "VeskSupport/"), True),
    ("VeskPlatform/", ("VeskPlatform/", "VeskSupport/"), False),
    ("VeskShellCore/", ("VeskShellCore/", "VeskPlatform/", "VeskSupport/"), False),
    ("VeskCapabilityBroker/", ("VeskCapabilityBroker/", "VeskShellCore/", "VeskPlatform/", "VeskSupport/"), True),
    ("vesk/", ("vesk/", "VeskShellCore/", "VeskPlatform/", "VeskSupport/"), True),
]
ADAPTERS = ("VeskPlatform/Linux/", "VeskPlatform/Apple/", "VeskPlatform/Portable/")
BLIND_TO_ADAPTERS = ("VeskShellCore/",)

CONDITION = re.compile(r"\b(?:if|while|switch)\s*(?:constexpr\s*)?\(")
PLATFORM_SWITCH = re.compile(r"^\s*#\s*(?:if|elif).*(?:__linux__|__APPLE__|_WIN32)", re.MULTILINE)


def layer_findings(name, text):
    layer = next((entry for entry in LAYERS if name.startswith(entry[0])), None)
    if layer is None:
        return
    prefix, allowed, foreign_allowed = layer
    for bracket, header in INCLUDE.findall(text):
        if bracket == "<":
            if not foreign_allowed and not STANDARD.match(header):
                yield f"includes <{header}>, which is not of the standard library"
        elif not header.startswith(allowed):
            yield f'includes "{header}", which lies outward'
        elif header.startswith(ADAPTERS) and (prefix in BLIND_TO_ADAPTERS or prefix == "VeskPlatform/"):
            yield f'includes the adapter "{header}"'


def condition_at(text, start):
    """The text of the condition whose opening parenthesis ends at `start`."""
    depth = 1
    for position in range(start, len(text)):
        depth += {"(": 1, ")": -1}.get(text[position], 0)
        if depth == 0:
            return text[start:position]
    return text[start:]


def house_findings(name, text):
    def line(position):
        return text.count("\n", 0, position) + 1

    for match in CONDITION.finditer(text):
        # g++ 12 lays the coroutine's frame out wrongly, and the program reads wild memory: name the result first.
        if "co_await" in condition_at(text, match.end()):
            yield f"line {line(match.start())}: co_await inside a condition"
    if name.startswith("VeskShellCore/"):
        for match in PLATFORM_SWITCH.finditer(text):
            yield f"line {line(match.start())}: an #if for a platform"


def main():
    root = Path(sys.argv[1])
    listing = subprocess.run(
        ["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.cpp", "*.hpp", "*.mm"],
        cwd=root, check=True, capture_output=True, text=True)
    findings = 0
    for name in sorted(set(listing.stdout.splitlines())):
        path = root / name
        if not path.exists():
            continue
        text = path.read_text(encoding="utf-8")
        for finding in [*layer_findings(name, text), *house_findings(name, text)]:
            print(f"{name}: {finding}", file=sys.stderr)
            findings += 1
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
