#!/usr/bin/env bash
# Usage: scripts/torture.sh HOURS [PRESET]
# Runs the tests of faults in their long form, round after round with fresh
# seeds, for so many hours (fractions allowed), and prints the scoreboard as a
# Markdown table. Fails when anything was found; the seeds of what was found are
# printed, and repeat it:
#   QUIRE_SEED=… QUIRE_TORTURE=… build/PRESET/bin/tst_…
#   PRESET         release (the default), debug or asan
#   QUIRE_TORTURE  how many times the rounds of an ordinary run each round
#                  does; 5 unless set
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"
. "$(dirname "$0")/lib/dependencies.sh"

hours=${1:-}
preset=${2:-release}
[[ $hours =~ ^[0-9]+(\.[0-9]+)?$ ]] || {
    sed -n '2,11s/^# \{0,1\}//p' "$0" >&2
    exit 2
}

export QUIRE_TORTURE=${QUIRE_TORTURE:-5}
need build run fonts test
configure "$preset" -DQUIRE_TEST_PATIENCE=$((${QUIRE_TORTURE%.*} * 4 + 4))
build "$preset" tests/faults/all

results=build/$preset/torture
rm -rf "$results"
mkdir -p "$results"
seconds=$(awk -v hours="$hours" 'BEGIN { printf "%d", hours * 3600 }')

say "Torturing for $seconds s, results in $results"
round=0
failed=0
SECONDS=0
while [ $SECONDS -lt "$seconds" ]; do
    round=$((round + 1))
    log=$results/round-$round.log
    # A whole round is always run: half of one would favour what comes first.
    if ctest --test-dir "build/$preset" -L '^faults$' --verbose --no-tests=error \
        --parallel "$(nproc)" >"$log" 2>&1; then
        echo "round $round: nothing found, $SECONDS s so far"
    else
        failed=$((failed + 1))
        echo "round $round: FOUND SOMETHING, $SECONDS s so far"
        grep -E 'QUIRE_SEED=[0-9]+: |\[  FAILED  \]|\*\*\*' "$log" | sort -u | head -n 40 || true
    fi
done

echo
/usr/bin/python3 scripts/lib/scoreboard.py "$results" "$(git rev-parse --short HEAD)" "$preset" "$SECONDS"
[ $failed -eq 0 ]
