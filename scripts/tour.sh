#!/usr/bin/env bash
# Usage: scripts/tour.sh [PATTERN]
# Takes a picture of every view of the program in each size, scale and look that a
# reader may choose, on a screen of its own, and leaves them in build/tour/.
#   PATTERN  only the looks of such a name, as '920x700-*' or '*-white'
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"
. "$(dirname "$0")/lib/dependencies.sh"

need build run fonts test demo
configure release
build release quire
say "Looking at every view"
exec /usr/bin/python3 tests/program/tour_pictures.py build/tour --program build/release/bin/quire --only "${1:-*}"
