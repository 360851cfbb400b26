#!/usr/bin/env bash
# Installs what is missing, builds Quire, and starts it.
#
# usage: run.sh [--demo]
#   --demo  starts with a throw-away library of invented books and local stand-ins
#           for the outside services; touches nothing of your own
#
# Without a display it starts on a virtual one, saves a screenshot in build/, says
# where, and ends.
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"
. "$(dirname "$0")/lib/dependencies.sh"
. "$(dirname "$0")/lib/screen.sh"

program=("$QUIRE_ROOT/build/release/bin/quire")
picture=$QUIRE_ROOT/build/quire.png
purposes=(build run fonts)
case "${1:-}" in
    '') ;;
    --demo)
        program=(/usr/bin/python3 -B "$QUIRE_ROOT/scripts/demo/demo.py" "${program[0]}")
        picture=$QUIRE_ROOT/build/demo.png
        purposes+=(demo)
        ;;
    *) die "unknown option $1; usage: run.sh [--demo]" ;;
esac

if ! has_display; then
    purposes+=(headless)
elif has_only_wayland; then
    purposes+=(wayland)
fi

need "${purposes[@]}"
configure release
build release quire

say "Starting Quire"
if has_display; then
    exec "${program[@]}"
fi
show_on_virtual_screen "$picture" "${program[@]}"
