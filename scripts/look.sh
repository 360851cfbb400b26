#!/usr/bin/env bash
# Usage: scripts/look.sh [PAGE...]
# Opens published pages in a browser without a window, wide and narrow, and leaves
# the pictures in build/pages/.
#   PAGE  an HTML file; the ones that the tests compare with unless given
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"
. "$(dirname "$0")/lib/dependencies.sh"

pages=("$@")
if [ ${#pages[@]} -eq 0 ]; then
    pages=(tests/publishing/golden/*.html)
fi

need browser fonts

profile=$(mktemp -d)
trap 'rm -rf "$profile"' EXIT
mkdir -p build/pages

# picture PAGE NAME WIDTH: refuses what a page without scripts never does, such as
# asking the network for anything.
picture() {
    local picture=build/pages/$2.png
    timeout 60 chromium --headless=new --no-sandbox --disable-gpu --hide-scrollbars --user-data-dir="$profile" \
        --host-resolver-rules='MAP * ~NOTFOUND' --window-size="$3,1600" --screenshot="$picture" \
        "file://$(realpath "$1")" >"build/pages/$2.log" 2>&1 || die "the browser failed: see build/pages/$2.log"
    [ -s "$picture" ] || die "no picture: see build/pages/$2.log"
    echo "$picture"
}

say "Looking at ${#pages[@]} pages"
for page in "${pages[@]}"; do
    name=$(basename "$page" .html)
    picture "$page" "$name-wide" 1280
    picture "$page" "$name-narrow" 500 # the narrowest that the browser makes
done
