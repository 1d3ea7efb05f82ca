#!/bin/bash
# Run.sh <settings> <way>
#
# Builds and runs a project outside the tree that uses the library in one of the ways of README.md. The settings are
# made by CMake: see CMakeLists.txt beside Checks.
set -euo pipefail
exec </dev/null

source "$1"
way=$2
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
scratch=$scratch/$way
rm -rf "$scratch"
mkdir -p "$scratch"

# build_user <project> <cmake argument>...: what the project's program prints.
build_user() {
    local project=$1
    shift
    "$cmake" -S "$here/$project" -B "$scratch/user" -G Ninja -Wno-dev "${toolchain[@]}" "$@" >"$scratch/log" 2>&1 &&
        "$cmake" --build "$scratch/user" >>"$scratch/log" 2>&1 || { cat "$scratch/log" && return 1; }
    run "$scratch/user/User"
    if [ -e "$scratch"/user/StaticUser* ]; then
        run "$scratch/user/StaticUser"
    fi
}

# run <program> <argument>...
run() {
    local program=$1
    shift
    [ ! -e "$program.exe" ] || program+=.exe
    "${emulator[@]}" "$program" "$@"
}

# use_prefix <prefix>: by find_package(), and by pkg-config where the compiler alone makes programs of the variant.
use_prefix() {
    local prefix=$1
    build_user FindPackage "-DCMAKE_PREFIX_PATH=$prefix" -DCMAKE_BUILD_TYPE=Release \
        "-DZMMATH_EXPECTED_VERSION=$version"
    if [ -z "$compiler" ] || ! command -v pkg-config >/dev/null; then
        echo "pkg-config left out"
        return
    fi
    export PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig
    [ "$(pkg-config --modversion zmmath)" = "$version" ]
    [[ $(pkg-config --variable=samebits zmmath) == -ffp-contract=off* ]]
    "$compiler" "$here/Main.cpp" -o "$scratch/UserByPkgConfig" $(pkg-config --variable=samebits zmmath) \
        $(pkg-config --cflags --libs zmmath)
    LD_LIBRARY_PATH=$prefix/$libdir "$scratch/UserByPkgConfig"
}

# pack <generator>...: packages of the build, into the scratch folder.
pack() {
    local generators=$*
    (cd "$build" && "$cpack" -G "${generators// /;}" -B "$scratch/packages" >"$scratch/log" 2>&1) ||
        { cat "$scratch/log" && return 1; }
}

case $way in
    installed)
        "$cmake" --install "$build" --prefix "$scratch/first" >/dev/null
        # Packages are found where they lie, not where they were installed.
        mv "$scratch/first" "$scratch/prefix"
        use_prefix "$scratch/prefix"
        [ ! -e "$scratch/prefix/bin/zmarchive" ] || run "$scratch/prefix/bin/zmarchive" --version
        ;;
    debian)
        pack DEB
        cd "$scratch/packages"
        for package in *.deb; do
            dpkg-deb -f "$package" Package Version Depends
            dpkg-deb -x "$package" "$scratch/root"
        done
        [ "$(for package in *.deb; do dpkg-deb -f "$package" Package; done | sort | paste -sd' ')" = \
            "libzmmath-dev libzmmath${version%.*} zmmath-doc zmmath-tools" ]
        [ "$(dpkg-deb -f libzmmath0*.deb Version)" = "$version" ]
        for package in *.deb; do
            [ -e "$scratch/root/usr/share/doc/$(dpkg-deb -f "$package" Package)/copyright" ]
        done
        dpkg-deb --ctrl-tarfile libzmmath0*.deb | tar -xO ./triggers | grep -q ldconfig
        use_prefix "$scratch/root/usr"
        run "$scratch/root/usr/bin/zmarchive" --version
        ;;
    archive)
        pack "$archive_format"
        mkdir "$scratch/unpacked"
        (cd "$scratch/unpacked" && "$cmake" -E tar xf "$scratch"/packages/ZmMath-"$version"-*.*)
        use_prefix "$(echo "$scratch"/unpacked/*)"
        ;;
    subdirectory)
        build_user Subdirectory "-DZMMATH_FOLDER=$source"
        ;;
    fetchcontent)
        build_user FetchContent "-DZMMATH_REPOSITORY=$source" "-DFETCHCONTENT_SOURCE_DIR_ZMMATH=$source"
        ;;
esac
