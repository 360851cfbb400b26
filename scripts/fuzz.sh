#!/usr/bin/env bash
# Lets every fuzz target run for so many whole minutes of a processor, one after the
# other, from the corpora in fuzz/corpus. What it finds new stays in build/fuzz;
# an input that breaks a promise is left there as crash-*, and ends the run.
# A run that was stopped is taken up where it was, until the fuzzer is built anew.
# usage: fuzz.sh MINUTES [target...]   e.g. fuzz.sh 30 feed
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"
. "$(dirname "$0")/lib/dependencies.sh"

minutes=${1:-}
[[ $minutes =~ ^[1-9][0-9]*$ ]] || {
    sed -n '2,6s/^# \{0,1\}//p' "$0" >&2
    exit 2
}
shift
need build run test
configure fuzz
build fuzz fuzzers

targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
    for folder in fuzz/corpus/*/; do
        targets+=("$(basename "$folder")")
    done
fi
export ASAN_OPTIONS=external_symbolizer_path=/usr/bin/llvm-symbolizer-16
export LC_ALL=C.UTF-8 TZ=Europe/Oslo

# Sets `now` to the seconds of processor time that this shell's children have taken.
clock=$(mktemp)
trap 'rm -f "$clock"' EXIT
read_clock() {
    times >"$clock"
    now=$(awk 'NR == 2 { gsub(/[ms]/, " "); print int($1 * 60 + $2 + $3 * 60 + $4) }' "$clock")
}

# In rounds of a minute of the clock, of which a busy machine gives a part only.
for target in "${targets[@]}"; do
    found=build/fuzz/found/$target
    mkdir -p "$found"
    say "Fuzzing $target for $minutes minutes of a processor"
    fuzzer=build/fuzz/bin/fuzz_$target
    ledger=build/fuzz/spent/$target-$(sha256sum "$fuzzer" | cut -c 1-16)
    mkdir -p "$(dirname "$ledger")"
    spent=$(cat "$ledger" 2>/dev/null || echo 0)
    read_clock
    while [ "$spent" -lt $((minutes * 60)) ]; do
        before=$now
        "$fuzzer" -max_total_time=60 -timeout=30 -rss_limit_mb=2048 \
            -artifact_prefix="$found/crash-" -print_final_stats=1 -verbosity=0 "$found" fuzz/corpus/"$target"
        read_clock
        spent=$((spent + now - before))
        echo "$spent" >"$ledger"
    done
    echo "$target: $spent s of a processor, nothing found"
done
