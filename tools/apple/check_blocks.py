#!/usr/bin/python3
"""Looks for blocks that keep less than they seem to.

A block copies what it captures, but of a C++ reference it copies the reference and of an object's member the `this`:
once a completion handler is called, both may be gone. The compiler has no warning for it, so its syntax tree is read.
A block that is only called within the function that makes it captures a pointer, which says so to the reader.

check_blocks.py DATABASE              every Objective-C++ source of a compile_commands.json that has blocks
check_blocks.py --source FILE COMMAND one more source, by a compiler's command line without the source
"""

import json
import re
import shlex
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

BLOCK = re.compile(r"\^\s*[({]")
# As in: capture ParmVar 0x55cb04b4c08 'take' 'const TakeAnswer &':'const std::function<void (Answer)> &'
CAPTURE = re.compile(
    r"\bcapture (?:nested )?\w+ 0x[0-9a-f]+ '(?P<name>[^']*)' '(?P<type>[^']*)'(?::'(?P<meant>[^']*)')?")


def tree_of(command, directory):
    """The compiler's tree of a source, the last word of the command."""
    asked = command + ["-fsyntax-only", "-fno-color-diagnostics", "-Xclang", "-ast-dump"]
    done = subprocess.run(asked, cwd=directory, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise SystemExit(f"check_blocks: the source does not compile: {command[-1]}\n{done.stderr[:2000]}")
    return done.stdout


def mistakes_in(tree):
    """What blocks capture by reference, in the order of the source, each once."""
    found = {}
    for line in tree.splitlines():
        capture = CAPTURE.search(line)
        if capture and any(text.endswith("&") for text in capture.group("type", "meant") if text):
            name = capture["name"]
            found[f"a block captures the reference '{name}'"] = None
        elif "BlockDecl" in line and "captures_this" in line:
            found["a block captures 'this'"] = None
    return list(found)


def without_output(command):
    """A compile command that writes nothing."""
    kept = list(command)
    if "-o" in kept:
        at = kept.index("-o")
        del kept[at:at + 2]
    return [word for word in kept if word != "-c" and not word.endswith("ccache")]


def examined(entry):
    source = Path(entry["file"])
    if source.suffix != ".mm" or not BLOCK.search(source.read_text()):
        return source, []
    compiler, *words = without_output(shlex.split(entry["command"]))
    command = [compiler, "-Xclang", "-ast-dump-filter=vesk", *words]  # the tree of our own namespace alone
    return source, mistakes_in(tree_of(command, entry["directory"]))


def main(arguments):
    if arguments[:1] == ["--source"]:
        results = [(Path(arguments[1]), mistakes_in(tree_of(without_output(arguments[2:]) + [arguments[1]], None)))]
    else:
        entries = json.loads(Path(arguments[0]).read_text())
        with ThreadPoolExecutor(2) as pool:
            results = list(pool.map(examined, entries))
    for source, mistakes in results:
        for mistake in mistakes:
            print(f"{source}: error: {mistake}")
    return 1 if any(mistakes for _, mistakes in results) else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
