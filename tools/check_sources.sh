#!/usr/bin/env bash
# Formatting and clang-tidy over the sources that git knows. Arguments: the repository, the number of jobs.
# Build files are taken from the preset `clang`, which is configured and not built.
set -euo pipefail
cd -- "$1"
jobs=$2

mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.hpp' '*.mm' 'tools/apple/*.h')
clang-format-16 --dry-run -Werror "${sources[@]}"

log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! cmake --preset clang >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
fi
# Only findings are printed: clang-tidy counts suppressed warnings of system headers on standard error.
if ! run-clang-tidy-16 -p build/clang -quiet -j "$jobs" "^$PWD/(Vesk|vesk/|bench/)" >"$log" 2>/dev/null; then
    grep -vE '^(clang-tidy-16|\[[0-9]+/[0-9]+\])' "$log" >&2 || cat "$log" >&2
    exit 1
fi
