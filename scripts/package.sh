#!/usr/bin/env bash
# Builds the Debian package of a hardened, optimised Quire in build/package, has
# lintian judge it, and says where it is.
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"
. "$(dirname "$0")/lib/dependencies.sh"

need build package
configure package
build package

say "Packing"
rm -f build/package/quire_*.deb
cpack --config build/package/CPackConfig.cmake -B "$QUIRE_ROOT/build/package" >build/package/cpack.log 2>&1 || {
    cat build/package/cpack.log >&2
    die "packing failed"
}
packages=(build/package/quire_*.deb)
[ -s "${packages[0]}" ] || die "no package: see build/package/cpack.log"

say "Judging (lintian)"
lintian --allow-root --fail-on error,warning "${packages[@]}"

dpkg-deb --info "${packages[0]}"
say "Built ${packages[0]}; install it with: sudo apt install ./${packages[0]}"
