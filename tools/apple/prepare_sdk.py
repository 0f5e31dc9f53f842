#!/usr/bin/python3
"""Lays out what the check of the macOS build compiles and links against: our own declarations of Apple's frameworks, a
C library's headers with Darwin's types, the headers of portable libraries, and stubs with the symbols that we allow.

Arguments: the repository, the folder to write. Nothing is written that stands already, so that a build sees no change.
"""

import os
import re
import subprocess
import sys
from pathlib import Path

MUSL = Path("/usr/include/x86_64-linux-musl")
LIBCXX = Path("/usr/lib/llvm-19/include/c++/v1")
PORTABLE_HEADERS = ("unicode", "nlohmann", "asio", "asio.hpp", "CLI")

# Types that Darwin's C library has otherwise than musl on x86_64; they are part of mangled names and of overloads.
DARWIN_TYPES = {
    "int64_t": "signed long long", "uint64_t": "unsigned long long", "u_int64_t": "unsigned long long",
    "time_t": "long", "intmax_t": "long", "uintmax_t": "unsigned long", "suseconds_t": "int", "dev_t": "int",
    "nlink_t": "unsigned short", "mode_t": "unsigned short",
}

# The libraries that stubs are made for, beside the frameworks: the stub's place, and where each lies on a Mac.
LIBRARIES = {
    "libSystem": ("usr/lib/libSystem.tbd", "/usr/lib/libSystem.B.dylib"),
    "libm": ("usr/lib/libm.tbd", "/usr/lib/libSystem.B.dylib"),
    "libobjc": ("usr/lib/libobjc.tbd", "/usr/lib/libobjc.A.dylib"),
    "libc++": ("usr/lib/libc++.tbd", "/usr/lib/libc++.1.dylib"),
    "libicui18n": ("usr/local/lib/libicui18n.a", "libicui18n"),
    "libicuuc": ("usr/local/lib/libicuuc.a", "libicuuc"),
    "libicudata": ("usr/local/lib/libicudata.a", "libicudata"),
}

# Where the spellings of C++ symbols come from.
C_PLUS_PLUS = {
    "libc++": ("/usr/lib/llvm-19/lib/libc++.a", "/usr/lib/llvm-19/lib/libc++abi.a"),
    "libicui18n": ("/usr/lib/x86_64-linux-gnu/libicui18n.a",),
    "libicuuc": ("/usr/lib/x86_64-linux-gnu/libicuuc.a",),
}


def write(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    if not path.exists() or path.read_text(encoding="utf-8") != text:
        path.write_text(text, encoding="utf-8")


def link(path, target):
    path.parent.mkdir(parents=True, exist_ok=True)
    if not path.is_symlink() or os.readlink(path) != str(target):
        path.unlink(missing_ok=True)
        path.symlink_to(target)


def darwin_types(text):
    for name, definition in DARWIN_TYPES.items():
        text, count = re.subn(rf"^typedef .*\b{name};$", f"typedef {definition} {name};", text, flags=re.MULTILINE)
        if count == 0:
            raise SystemExit(f"prepare_sdk: musl's headers define no {name}")
    return text


def lay_out_headers(repository, folder):
    write(folder / "libc/bits/alltypes.h", darwin_types((MUSL / "bits/alltypes.h").read_text(encoding="utf-8")))
    # Debian's library says that it is the system's own. Without that line, what macOS 14 lacks is refused.
    site = (LIBCXX / "__config_site").read_text(encoding="utf-8")
    write(folder / "site/__config_site",
          re.sub(r"^#define _LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS\n", "", site, flags=re.MULTILINE))
    for name in PORTABLE_HEADERS:
        link(folder / "portable" / name, Path("/usr/include") / name)
    for framework in (repository / "tools/apple/sdk/System/Library/Frameworks").iterdir():
        link(folder / "sdk/System/Library/Frameworks" / framework.name / "Headers", framework / "Headers")


def c_plus_plus_symbols(library):
    """What a C++ library defines: its symbols and what they mean, in the words of the sources."""
    symbols = {}
    for archive in C_PLUS_PLUS[library]:
        names = subprocess.run(["llvm-nm-19", "--defined-only", "--extern-only", "--format=just-symbols", archive],
                               check=True, capture_output=True, text=True).stdout.split()
        names = sorted({name for name in names if not name.endswith(":")})
        meanings = subprocess.run(["llvm-cxxfilt-19"], input="\n".join(names), check=True, capture_output=True,
                                  text=True).stdout.splitlines()
        symbols.update(zip(names, meanings))
    return symbols


def plain(meaning):
    """A meaning without what only tells versions of a library apart."""
    meaning = re.sub(r"\bicu_\d+::", "icu::", re.sub(r"\b(__1|__fs)::", "", meaning))
    return re.sub(r"^(u\w*)_\d+$", r"\1", meaning)


def matches(meaning, name):
    """Whether a symbol is what a list names: a function, or any part of a class."""
    for prefix in ("", "vtable for ", "typeinfo for ", "typeinfo name for ", "VTT for "):
        if meaning.startswith(prefix + name) and meaning[len(prefix + name):][:1] in ("", "(", "<", ":", "["):
            return True
    return False


def expanded(library, names):
    """The symbols of a C++ library that a list allows. Their spellings come from the library itself, of which Debian has
    the same sources; a name that it does not know is a mistake in the list."""
    known = {symbol: plain(meaning) for symbol, meaning in c_plus_plus_symbols(library).items()}
    symbols = []
    for name in names:
        found = [symbol for symbol, meaning in known.items() if matches(meaning, name)]
        if not found:
            raise SystemExit(f"prepare_sdk: {library} has no {name}")
        symbols += ["_" + symbol for symbol in found]
    return sorted(set(symbols))


def listed(path):
    """The symbols of a list, in the linker's spelling, its Objective-C classes, and its names of C++."""
    symbols, classes, patterns = [], [], []
    for line in path.read_text(encoding="utf-8").splitlines():
        entry = line.split("#")[0].strip()
        if entry.startswith("class "):
            classes.append(entry.removeprefix("class "))
        elif entry.startswith("c++ "):
            patterns.append(entry.removeprefix("c++ "))
        elif entry:
            symbols.append("_" + entry)
    return symbols, classes, patterns


def stub(install_name, symbols, classes):
    def names(values):
        return "[ " + ", ".join(f"'{value}'" for value in sorted(values)) + " ]"

    lines = ["--- !tapi-tbd", "tbd-version: 4", "targets: [ arm64-macos ]", f"install-name: '{install_name}'"]
    if symbols or classes:
        lines += ["exports:", "  - targets: [ arm64-macos ]"]
    if symbols:
        lines.append("    symbols: " + names(symbols))
    if classes:
        lines.append("    objc-classes: " + names(classes))
    return "\n".join(lines) + "\n...\n"


def lay_out_stubs(repository, folder):
    for path in sorted((repository / "tools/apple/symbols").glob("*.txt")):
        name = path.stem
        symbols, classes, names = listed(path)
        if names:
            symbols += expanded(name, names)
        if name in LIBRARIES:
            place, install_name = LIBRARIES[name]
        else:
            place = f"System/Library/Frameworks/{name}.framework/{name}.tbd"
            install_name = f"/System/Library/Frameworks/{name}.framework/Versions/A/{name}"
        write(folder / "sdk" / place, stub(install_name, symbols, classes))


def main():
    repository, folder = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
    lay_out_headers(repository, folder)
    lay_out_stubs(repository, folder)


if __name__ == "__main__":
    main()
