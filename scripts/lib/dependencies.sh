# The Debian packages that Quire needs, by purpose, and their installation;
# to be sourced, not run.
# shellcheck shell=bash disable=SC2034

packages_build=(
    clang-16 lld-16 g++ cmake ninja-build ccache pkg-config git
    qt6-base-dev qt6-base-dev-tools qt6-declarative-dev qt6-declarative-dev-tools qt6-svg-dev
    libgl1-mesa-dev qcoro-qt6-dev libsqlite3-dev libssl-dev libavif-dev bootstrap-icons
    libgtest-dev libgmock-dev libbenchmark-dev librsvg2-bin
)

# The Debian package depends on the same, and on the libraries that it is linked with.
packages_run=(
    tzdata ca-certificates qt6-image-formats-plugins
    qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript
    qml6-module-qtquick qml6-module-qtquick-templates
)

# The families that the interface offers, or their nearest free relatives.
packages_fonts=(
    fonts-inter fonts-lato fonts-texgyre fonts-sil-charis fonts-noto-core
    fonts-adf-baskervald fonts-adf-gillius fonts-league-spartan fonts-linuxlibertine
    fonts-droid-fallback fonts-noto-color-emoji
)

packages_wayland=(qt6-wayland)

packages_headless=(xvfb xauth xdotool imagemagick)

# The demo draws its covers itself.
packages_demo=(python3 python3-gi python3-gi-cairo gir1.2-pango-1.0)

packages_test=(
    libclang-rt-16-dev llvm-16 qml6-module-qttest
    python3 python3-gi gir1.2-atspi-2.0 python3-pyatspi at-spi2-core dbus dbus-x11
    python3-html5lib sqlite3 appstream desktop-file-utils mandoc "${packages_headless[@]}"
)

# What makes the Debian package and judges it.
packages_package=(dpkg-dev file lintian man-db)

# A bare Debian to try the package in.
packages_try=(debootstrap "${packages_headless[@]}")

# What the benchmarks are measured against.
packages_bench=(sqlite3)

# A browser to look at a published page in.
packages_browser=(chromium)

packages_lint=(clang-tidy-16 clang-format-16 shellcheck python3)

# need PURPOSE...: installs what is missing of the named lists, and says so.
need() {
    local purpose package missing=()
    for purpose in "$@"; do
        local -n list="packages_$purpose"
        for package in "${list[@]}"; do
            if ! dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed; then
                missing+=("$package")
            fi
        done
    done
    if [ ${#missing[@]} -eq 0 ]; then
        return
    fi
    say "Installing ${#missing[@]} packages, and what they depend on: ${missing[*]}"
    # Another installation, such as the desktop's own updates, may be under way.
    local apt=(env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300)
    local install=(install -y --no-install-recommends "${missing[@]}")
    if ! as_root "${apt[@]}" update || ! as_root "${apt[@]}" "${install[@]}"; then
        die "that failed; what is to be done as root: apt-get update && apt-get ${install[*]}"
    fi
}
