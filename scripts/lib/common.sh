# Shared by every script here; to be sourced, not run.
# shellcheck shell=bash

QUIRE_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
export QUIRE_ROOT
cd "$QUIRE_ROOT" || exit

# Builds of different checkouts share the compiler's cache.
export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$QUIRE_ROOT}
export CCACHE_NOHASHDIR=${CCACHE_NOHASHDIR:-1}

say() { printf '\n==> %s\n' "$*"; }

die() {
    printf 'error: %s\n' "$*" >&2
    exit 1
}

# Runs a command with the rights to install packages; fails where there is no way to them.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        printf 'There is no sudo here, and you are not root.\n' >&2
        return 1
    fi
}

# configure PRESET [-DNAME=VALUE...]
configure() {
    local preset=$1
    shift
    say "Configuring ($preset)"
    if ! cmake --preset "$preset" "$@" >"$QUIRE_ROOT/build/configure-$preset.log" 2>&1; then
        cat "$QUIRE_ROOT/build/configure-$preset.log" >&2
        die "configuring failed"
    fi
}

# build PRESET [TARGET...]
build() {
    local preset=$1
    shift
    local targets=()
    if [ $# -gt 0 ]; then
        targets=(--target "$@")
    fi
    say "Building ($preset)"
    cmake --build "build/$preset" --parallel "$(nproc)" "${targets[@]}"
}

mkdir -p "$QUIRE_ROOT/build"
