# What run.sh and test.sh share: a sane environment and the Debian 12 packages. Sourced with the project's root as the
# current folder.

readonly kBuildPackages=(cmake ninja-build g++ pkg-config libcli11-dev nlohmann-json3-dev libutf8proc-dev
    qt6-base-dev qt6-multimedia-dev libgl-dev)
# Plain fonts for the board, and what registers the file type with the desktop.
readonly kDesktopPackages=(fonts-dejavu-core fonts-liberation desktop-file-utils shared-mime-info)
# What a Wayland desktop needs besides, for title bars of our own too, and its own file and print choosers.
readonly kWaylandPackages=(qt6-wayland xdg-desktop-portal xdg-desktop-portal-gtk)
readonly kScreenPackages=(xvfb openbox xdotool imagemagick)
readonly kTestPackages=(libgtest-dev libgmock-dev clang libclang-rt-14-dev lld python3 librsvg2-bin)
readonly kBenchPackages=(libbenchmark-dev libsqlite3-dev)
# Servers and clients of shared drives, and the machine in which some of them run.
readonly kDrivesPackages=(qemu-system-x86 debootstrap e2fsprogs iproute2 glusterfs-server glusterfs-client sshfs
    openssh-sftp-server bindfs)

say() { printf '%s\n' "$*" >&2; }

# A minimal container may give neither a home folder nor a UTF-8 locale. Both are set for this run only.
prepare_environment() {
    if [ -z "${HOME:-}" ] || [ ! -d "$HOME" ]; then
        HOME=$(getent passwd "$(id -u)" | cut -d: -f6)
        [ -d "$HOME" ] && [ -w "$HOME" ] || { mkdir -p build/home && HOME=$PWD/build/home; }
        export HOME
    fi
    if [ "$(locale charmap 2>/dev/null)" != UTF-8 ]; then
        [ -z "${LC_ALL:-}" ] || export LANG="$LC_ALL"
        unset LC_ALL
        export LC_CTYPE=C.UTF-8
    fi
}

# install_missing PACKAGE...: installs those that are not there; touches neither the network nor sudo when all are.
install_missing() {
    command -v dpkg-query >/dev/null && command -v apt-get >/dev/null || {
        say "This is no Debian system: the packages cannot be looked up. Going on with what is installed."
        return 0
    }
    local missing=() package root=()
    for package in "$@"; do
        dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            say "These packages are missing: ${missing[*]}"
            say "Installing them takes root rights and there is no sudo here. As root, run:"
            say "  apt-get update && apt-get install --no-install-recommends ${missing[*]}"
            exit 1
        }
        root=(sudo)
    fi
    say "Installing: ${missing[*]}"
    "${root[@]}" apt-get -q update >&2 || say "apt-get update failed; trying with the package lists at hand."
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q install -y --no-install-recommends "${missing[@]}" \
        >&2 </dev/null || {
        say "Not all packages could be installed: ${missing[*]}"
        exit 1
    }
}

# build_preset PRESET TARGET...: configures and builds; quiet unless it fails. A second copy of the script waits.
build_preset() {
    local preset=$1 launcher=() log
    shift
    if [ -z "${CMAKE_CXX_COMPILER_LAUNCHER:-}" ] && command -v ccache >/dev/null; then
        launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
        export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS:-pch_defines,time_macros,include_file_mtime,include_file_ctime}
    fi
    mkdir -p build
    log=build/configure-$preset.log
    cmake --preset "$preset" "${launcher[@]}" >"$log" 2>&1 || {
        cat "$log" >&2
        say "Configuring the preset $preset failed."
        exit 1
    }
    cmake --build --preset "$preset" ${1:+--target "$@"} >&2 || {
        say "Building the preset $preset failed."
        exit 1
    }
}
