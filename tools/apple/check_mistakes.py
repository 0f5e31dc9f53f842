#!/usr/bin/python3
"""Shows that the check of the macOS build can fail: compiles each source of tools/apple/mistakes as an adapter is
compiled, links where its first line says so, and demands the diagnosis that stands there, and no other.

Argument: the build folder of the preset check-apple, configured.

The first line of a source is one of
    // expects: REGULAR EXPRESSION          of the compiler's errors
    // links: expects: REGULAR EXPRESSION   of the linker's errors, in what compiles
    // blocks: expects: REGULAR EXPRESSION  of what is said of its blocks, in what compiles
    // expects nothing                      it compiles and links, so that the others fail for their mistakes alone
"""

import json
import re
import shlex
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

MISTAKES = Path(__file__).resolve().parent / "mistakes"
BLOCKS = Path(__file__).resolve().parent / "check_blocks.py"
FIRST_LINE = re.compile(r"// (?:(?:(?P<step>links|blocks): )?expects: (?P<pattern>.+)|expects nothing)$")
# As in the diagnosis "X.mm:5:3: error: …" and "ld64.lld-19: error: …".
ERROR = re.compile(r"^.*?error: (?P<text>.*)$", re.MULTILINE)
LINKING_FAILED = "linker command failed"


class Build:
    """How the build compiles an adapter and a portable source, and how it links a program."""

    def __init__(self, folder):
        self.folder = folder
        commands = json.loads((folder / "compile_commands.json").read_text(encoding="utf-8"))
        self.compilations = {suffix: self._compilation(commands, suffix) for suffix in (".mm", ".cpp")}
        link = (folder / "CMakeCache.txt").read_text(encoding="utf-8")
        self.linker_flags = shlex.split(re.search(r"^CMAKE_EXE_LINKER_FLAGS:STRING=(.*)$", link, re.MULTILINE)[1])

    def _compilation(self, commands, suffix):
        command = next(c for c in commands if c["file"].endswith(suffix) and "/VeskPlatform/" in c["file"])
        arguments = shlex.split(command["command"])
        arguments = [a for a in arguments if a not in ("-c", command["file"]) and "ccache" not in a]
        at = arguments.index("-o")
        return arguments[:at] + arguments[at + 2:]

    def compile(self, source, output):
        return run(self.compilations[source.suffix] + ["-c", str(source), "-o", str(output)], self.folder)

    def check_blocks(self, source):
        return run([sys.executable, str(BLOCKS), "--source", str(source), *self.compilations[source.suffix]], self.folder)

    def link(self, source, compiled, output):
        frameworks = sorted((self.folder / "prepared/sdk/System/Library/Frameworks").glob("*/*.tbd"))
        named = [word for framework in frameworks for word in ("-framework", framework.stem)]
        command = [self.compilations[source.suffix][0], "--target=arm64-apple-macos14.0", "-isysroot",
                   str(self.folder / "prepared/sdk"), str(compiled), "-o", str(output), *self.linker_flags, *named]
        return run(command, self.folder)


def run(command, folder):
    """What a tool that failed has to say; nothing where it did not fail."""
    result = subprocess.run(command, cwd=folder, capture_output=True, text=True)
    return result.stderr + result.stdout if result.returncode != 0 else ""


def diagnose(build, source, folder, step):
    output = build.compile(source, folder / (source.name + ".o"))
    if step == "blocks" and not output:
        output = build.check_blocks(source)
    if step == "links" and not output:
        output = build.link(source, folder / (source.name + ".o"), folder / source.stem)
    return output


def finding(build, source, folder):
    """What is wrong with the check itself, as far as this source shows it; None where it does as it should."""
    first_line = FIRST_LINE.match(source.read_text(encoding="utf-8").splitlines()[0])
    if first_line is None:
        return "its first line does not say what is expected"
    pattern = first_line["pattern"]
    step = "links" if pattern is None else first_line["step"]
    output = diagnose(build, source, folder, step)
    errors = [match["text"] for match in ERROR.finditer(output) if LINKING_FAILED not in match["text"]]
    if pattern is None:
        return "it is no mistake, but fails: " + output if output else None
    if not output:
        return "nobody complains"
    others = [error for error in errors if not re.search(pattern, error)]
    if others or not errors:
        return "another diagnosis than expected: " + ("; ".join(others) or output)
    return None


def main():
    build = Build(Path(sys.argv[1]).resolve())
    sources = sorted(path for path in MISTAKES.iterdir() if path.suffix in (".mm", ".cpp"))
    with tempfile.TemporaryDirectory() as folder, ThreadPoolExecutor() as pool:
        findings = list(pool.map(lambda source: finding(build, source, Path(folder)), sources))
    for source, text in zip(sources, findings):
        if text is not None:
            print(f"{source.name}: {text}", file=sys.stderr)
    if any(text is not None for text in findings):
        return 1
    print(f"{len(sources) - 1} planted mistakes were found, each with its diagnosis.")
    return 0


if __name__ == "__main__":
    sys.exit(main())
