#!/usr/bin/env bash
# Builds the optimised program: build/release/bin/quire.
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"
. "$(dirname "$0")/lib/dependencies.sh"

need build run
configure release
build release quire
say "Built build/release/bin/quire"
