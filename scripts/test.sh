#!/usr/bin/env bash
# Installs what is missing, builds, runs every test, and closes with the line
# "N passed, N failed", which counts cases and not programs.
#
# usage: test.sh [preset [folder...]]
#   preset  debug (the default), release, asan or tsan
#   folder  only the tests of these folders below tests/, e.g. persistence
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"
. "$(dirname "$0")/lib/dependencies.sh"

preset=${1:-debug}
shift || true
folders=("$@")

need build run fonts test
configure "$preset" "-DQUIRE_WARNINGS_AS_ERRORS=${QUIRE_WARNINGS_AS_ERRORS:-OFF}"


results=build/$preset/test-results
rm -rf "$results"
mkdir -p "$results"

selection=()
if [ ${#folders[@]} -eq 0 ]; then
    build "$preset"
else
    targets=()
    for folder in "${folders[@]}"; do
        targets+=("tests/$folder/all")
    done
    build "$preset" "${targets[@]}"
    selection=(-L "^($(
        IFS='|'
        echo "${folders[*]}"
    ))(/|\$)")
fi

# One more at a time than there are processors: tests of the whole program wait more than they work.
say "Testing ($preset)"
status=0
ctest --test-dir "build/$preset" --output-on-failure --no-tests=error --parallel "$(($(nproc) + 1))" \
    --output-junit "$QUIRE_ROOT/$results/ctest.junit" "${selection[@]}" || status=$?

/usr/bin/python3 scripts/lib/count_tests.py "$results" || status=$?
exit "$status"
