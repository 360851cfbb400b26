#!/usr/bin/env bash
# Takes the pictures of README.md anew: the program's screens with the demo's
# library, in docs/pictures.
# usage: screenshots.sh [PRESET]
#   PRESET  release (the default) or debug
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"
. "$(dirname "$0")/lib/dependencies.sh"

preset=${1:-release}
need build run fonts demo test
configure "$preset"
build "$preset" quire
say "Taking pictures"
/usr/bin/python3 -B scripts/demo/pictures.py "build/$preset/bin/quire" docs/pictures
