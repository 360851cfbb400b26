#!/usr/bin/env bash
# Usage: scripts/soak.sh HOURS [PRESET]
# Uses the program in a window for so many hours (fractions allowed), and prints
# what it took of memory, files and threads; fails when it grew, lost or complained.
#   PRESET  release (the default), debug or asan
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"
. "$(dirname "$0")/lib/dependencies.sh"

hours=${1:-}
preset=${2:-release}
[[ $hours =~ ^[0-9]+(\.[0-9]+)?$ ]] || {
    sed -n '2,5s/^# \{0,1\}//p' "$0" >&2
    exit 2
}

need build run fonts test
configure "$preset"
build "$preset" quire
say "Soaking for $hours hours"
exec /usr/bin/python3 tests/program/soak.py "$hours" --program "build/$preset/bin/quire"
