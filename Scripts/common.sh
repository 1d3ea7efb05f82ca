# Functions for the scripts of this folder, which source this file. The scripts
# work from any current directory, without a terminal, as root or with sudo, and
# write only into the build folder.
set -euo pipefail
exec </dev/null

project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

die() {
    echo "$*" >&2
    exit 1
}

# install_packages <group>...: installs the missing packages of the groups in Scripts/packages.
install_packages() {
    local group package missing=()
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        echo "Not a Debian system: Scripts/packages lists the packages to install"
        return
    fi
    for group in "$@"; do
        for package in $(sed -n "s/^$group://p" "$project/Scripts/packages"); do
            if [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
                missing+=("$package")
            fi
        done
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || die "Please install as root: apt-get install ${missing[*]}"
        as_root=(sudo)
    fi
    mkdir -p "$project/build"
    local log=$project/build/packages.log
    echo "Installing ${missing[*]}"
    if ! { "${as_root[@]}" apt-get update &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
        tail -n 30 "$log"
        die "Packages could not be installed; the full output is in $log"
    fi
}

# build <preset> [target]: configures and builds; prints nothing unless it fails.
build() {
    local preset=$1 log=$project/build/$1/build.log
    mkdir -p "$(dirname "$log")"
    if ! { cd "$project" && cmake --preset "$preset" &&
        cmake --build --preset "$preset" ${2+--target "$2"}; } >"$log" 2>&1; then
        echo "The $preset build failed:"
        # Filters out progress and command lines.
        awk 'length < 300 && !/^(\[[0-9]+\/[0-9]+\]|-- |Preset CMake|  [A-Z][A-Za-z_:]*=)/' "$log" | tail -n 60
        echo "(the full output is in $log)"
        return 1
    fi
}
