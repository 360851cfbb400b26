#!/usr/bin/env bash
# Usage: scripts/torture.sh HOURS [PRESET]
# Runs the tests of faults in their long form, round after round with fresh
# seeds and in another order, for so many hours (fractions allowed), and prints
# the scoreboard as a Markdown table; what it has when it is stopped before. Fails
# when anything was found; the seeds of what was found are printed, and repeat it:
#   QUIRE_SEED=… QUIRE_TORTURE=… build/PRESET/bin/tst_…
#   PRESET              release (the default), debug or asan
#   QUIRE_TORTURE       how many times the rounds of an ordinary run each round
#                       does; 5 unless set
#   QUIRE_TORTURE_JOBS  programs at a time; as many as processors unless set
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"
. "$(dirname "$0")/lib/dependencies.sh"

hours=${1:-}
preset=${2:-release}
[[ $hours =~ ^[0-9]+(\.[0-9]+)?$ ]] || {
    sed -n '2,12s/^# \{0,1\}//p' "$0" >&2
    exit 2
}

export QUIRE_TORTURE=${QUIRE_TORTURE:-5}
need build run fonts test
configure "$preset" -DQUIRE_TEST_PATIENCE=$((${QUIRE_TORTURE%.*} * 4 + 4))
build "$preset" tests/faults/all

commit=$(git rev-parse --short HEAD) # what was built, whatever is committed meanwhile
results=build/$preset/torture
rm -rf "$results"
mkdir -p "$results"
seconds=$(awk -v hours="$hours" 'BEGIN { printf "%d", hours * 3600 }')

round=0
failed=0
running=
SECONDS=0

finish() {
    trap - EXIT INT TERM
    if [ -n "$running" ]; then
        kill "$running" 2>/dev/null || true # timeout passes it on to all that it started
        wait "$running" || true
    fi
    echo
    /usr/bin/python3 scripts/lib/scoreboard.py "$results" "$commit" "$preset" "$SECONDS"
    exit "$1"
}
trap 'finish 130' INT TERM

say "Torturing for $seconds s, results in $results"
while [ $SECONDS -lt "$seconds" ]; do
    round=$((round + 1))
    log=$results/round-$round.log
    # The clock may end a round in its middle: in random order that favours nobody.
    timeout $((seconds - SECONDS)) ctest --test-dir "build/$preset" -L '^faults$' --verbose --no-tests=error \
        --schedule-random --parallel "${QUIRE_TORTURE_JOBS:-$(nproc)}" >"$log" 2>&1 &
    running=$!
    status=0
    wait "$running" || status=$?
    running=
    if grep -qE '^([0-9]+: )?\[  FAILED  \]|\*\*\*(Failed|Exception|Timeout)' "$log"; then
        failed=$((failed + 1))
        echo "round $round: FOUND SOMETHING, $SECONDS s so far"
        grep -E 'QUIRE_SEED=[0-9]+: .|\[  FAILED  \]|\*\*\*' "$log" | sort -u | head -n 40 || true
    elif [ $status -eq 124 ]; then
        echo "round $round: nothing found until the time was over, $SECONDS s"
    elif [ $status -ne 0 ]; then
        failed=$((failed + 1))
        echo "round $round: ENDED with status $status, see $log"
    else
        echo "round $round: nothing found, $SECONDS s so far"
    fi
done
finish $((failed > 0))
