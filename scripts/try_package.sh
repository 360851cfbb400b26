#!/usr/bin/env bash
# Tries the Debian package in a bare Debian: installs it with nothing but what it
# depends on, starts it from its menu entry on a virtual screen, takes a picture,
# ends it as a desktop session does, starts it once more without a part of the
# toolkit, and purges it.
#
# usage: try_package.sh [PACKAGE.deb]
#   PACKAGE.deb  the one in build/package unless given (scripts/package.sh builds it)
#
# The bare Debian is made once, from the archive that this machine is set up with,
# and stays in build/try-package/base; the picture is build/try-package/quire.png.
set -euo pipefail
. "$(dirname "$0")/lib/common.sh"
. "$(dirname "$0")/lib/dependencies.sh"
. "$(dirname "$0")/lib/screen.sh"

built=(build/package/quire_*.deb)
package=${1:-${built[0]}}
[ -f "$package" ] || die "no package $package: scripts/package.sh builds it"
folder=$QUIRE_ROOT/build/try-package
root=$folder/root
reader=1000

need try
rights=()
[ "$(id -u)" -eq 0 ] || rights=(sudo)
mkdir -p "$folder"

# Debian's own archive as this machine knows it: lines of address, suite, component.
archive() {
    # shellcheck disable=SC2016 # apt expands them
    apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' 'Origin: Debian' | sort -u
}

# in_root [NAME=value...] COMMAND...: in the root, with mounts that end with it; as whoever $user
# says. Becomes that command, so that a signal and its status are the command's.
in_root() {
    # shellcheck disable=SC2016,SC2031 # expands there; the screen's own subshell set it
    exec "${rights[@]}" unshare --mount sh -c '
        root=$1 user=$2
        shift 2
        mount --rbind /proc "$root/proc"
        exec chroot --userspec="$user" --groups= "$root" "$@"
    ' sh "$root" "${user:-0}:${user:-0}" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 \
        DEBIAN_FRONTEND=noninteractive DISPLAY="${DISPLAY:-}" "$@"
}

as_reader() {
    user=$reader in_root HOME=/home/reader XDG_RUNTIME_DIR=/home/reader/runtime "$@"
}

make_base() {
    local address suite
    suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
    address=$(archive | awk -v suite="$suite" '$2 == suite && $3 == "main" { print $1; exit }')
    [ -n "$address" ] || die "apt knows no archive of $suite on this machine: run apt-get update"
    say "Making a bare Debian $suite"
    "${rights[@]}" rm -rf "$folder/base"
    "${rights[@]}" debootstrap --variant=minbase "$suite" "$folder/base" "$address" >"$folder/debootstrap.log" 2>&1 \
        || die "debootstrap failed: see $folder/debootstrap.log"
    "${rights[@]}" touch "$folder/base/whole"
}

make_root() {
    "${rights[@]}" rm -rf "$root"
    "${rights[@]}" cp -a "$folder/base" "$root"
    archive | sed 's/^/deb /' | "${rights[@]}" tee "$root/etc/apt/sources.list" >/dev/null
    apt-config dump | grep -i '::proxy' | "${rights[@]}" tee "$root/etc/apt/apt.conf.d/90proxy" >/dev/null || true
    "${rights[@]}" cp /etc/resolv.conf /etc/hosts "$root/etc/"
    "${rights[@]}" cp "$package" "$root/quire.deb"
    (in_root useradd --uid "$reader" --create-home reader)
    (as_reader mkdir -m 700 /home/reader/runtime)
}

# What the menu entry starts, in words.
entry() {
    sed -n 's/^Exec=//p' "$root/usr/share/applications/quire.desktop"
}

# What the package brought that is still there; a folder only if nobody else has it.
left_over() {
    local path
    while read -r path; do
        if [ -d "$root$path" ] && [ ! -L "$root$path" ]; then
            (in_root dpkg --search "$path") >/dev/null 2>&1 || echo "$path"
        elif [ -e "$root$path" ] || [ -L "$root$path" ]; then
            echo "$path"
        fi
    done <"$folder/files.txt"
}

[ -e "$folder/base/whole" ] || make_base
make_root

say "Installing $package, and nothing that it only recommends"
(in_root apt-get update -q) >"$folder/install.log" 2>&1 || die "apt-get update failed: see $folder/install.log"
(in_root apt-get install -q -y --no-install-recommends /quire.deb) >>"$folder/install.log" 2>&1 \
    || die "installing failed: see $folder/install.log"
(in_root dpkg --listfiles quire) | grep -vx '/\.' >"$folder/files.txt"
(in_root dpkg --list) | grep -c '^ii' | sed 's/$/ packages are installed/'

say "Starting it from the menu entry"
said=$folder/said.txt
read -ra command < <(entry)
show_on_virtual_screen "$folder/quire.png" as_reader "${command[@]}" 2>"$said" || die "it failed: $(cat "$said")"
[ ! -s "$said" ] || die "it complained: $(cat "$said")"
library=$root/home/reader/.local/share/Quire/quire.db
"${rights[@]}" test -s "$library" || die "it made no library"

say "Starting it without a part of the toolkit"
(in_root dpkg --remove --force-depends qml6-module-qtquick-templates) >>"$folder/install.log" 2>&1
status=0
(as_reader QT_QPA_PLATFORM=offscreen timeout 60 "${command[@]}") 2>"$said" || status=$?
[ "$status" -eq 1 ] || die "it ended with status $status: $(cat "$said")"
grep -F 'QtQuick.Templates' "$said" || die "it does not say what is missing: $(cat "$said")"

say "Purging it"
(in_root dpkg --purge quire) >>"$folder/install.log" 2>&1 || die "purging failed: see $folder/install.log"
left=$(left_over)
[ -z "$left" ] || die "it left behind: $left"
"${rights[@]}" test -s "$library" || die "the reader's library is gone"
"${rights[@]}" rm -rf "$root"
say "Nothing is left of it but the reader's library"
