#!/usr/bin/env bash
# Runs the benchmarks and prints their table, baselines beside them.
# usage: bench.sh [filter]   e.g. bench.sh DateParser
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"
. "$(dirname "$0")/lib/dependencies.sh"

need build run bench
configure release -DQUIRE_BUILD_BENCHMARKS=ON
build release quire_bench
say "Measuring ($(git describe --always --dirty 2>/dev/null || echo 'no commit'), $(nproc) cores)"
exec build/release/bin/quire_bench --benchmark_filter="${1:-.}" --benchmark_counters_tabular=true
