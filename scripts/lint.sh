#!/usr/bin/env bash
# Everything that is checked without running the program: form, likely faults,
# QML, shell, which folder includes which, and coroutine habits.
#
# usage: lint.sh [--fast]
#   --fast  leaves out clang-tidy, the only check that takes minutes
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"
. "$(dirname "$0")/lib/dependencies.sh"

fast=no
[ "${1:-}" = --fast ] && fast=yes

need build run test lint bench
configure debug -DQUIRE_BUILD_BENCHMARKS=ON # nothing else builds them in time to be checked

failed=()

# check NAME COMMAND...: runs all checks before failing, so that one run tells all.
check() {
    local name=$1
    shift
    say "$name"
    if "$@"; then
        echo "fine"
    else
        failed+=("$name")
    fi
}

mapfile -t cpp_files < <(git ls-files '*.cpp' '*.h')
mapfile -t shell_files < <(git ls-files '*.sh' .ci/run)

check_form() {
    clang-format-16 --dry-run -Werror "${cpp_files[@]}"
}

check_shell() {
    shellcheck "${shell_files[@]}"
}

check_includes() {
    /usr/bin/python3 scripts/lib/check_includes.py
}

# A condition, a closure or a braced temporary beside co_await hides what lives
# across the suspension: call into a variable first, then await the variable.
check_coroutines() {
    ! grep -nE '\b(if|while|switch|for) \(.*\bco_await\b|\bco_await\b[^;]*(\[[^]]*\] *[({]|\w\{)|\?.*\bco_await\b' "${cpp_files[@]}"
}

check_python() {
    git ls-files -z '*.py' | xargs -0 -r /usr/bin/python3 -m py_compile
}

check_qml() {
    cmake --build build/debug --target all_qmllint
}

check_faults() {
    /usr/bin/python3 scripts/lib/check_faults.py build/debug
}

check "Form (clang-format)" check_form
check "Shell (shellcheck)" check_shell
check "Python" check_python
check "Includes against the arrows" check_includes
check "Coroutine habits" check_coroutines
say "Generating sources"
cmake --build build/debug --parallel "$(nproc)" >/dev/null || failed+=("Build")
check "QML (qmllint)" check_qml
[ $fast = yes ] || check "Likely faults (clang-tidy)" check_faults

if [ ${#failed[@]} -gt 0 ]; then
    say "Lint failed: ${failed[*]}"
    exit 1
fi
say "Lint passed"
