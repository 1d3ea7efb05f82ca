#!/bin/bash
# Run.sh <cmake> <build folder> <version> <scratch folder> <library folder>
#     <compiler for the pkg-config part, or none> <cmake argument>... [-- <emulator>...]
#
# Installs the build into the scratch folder, moves the result, and builds and
# runs the outside project with it: by find_package() and by pkg-config.
set -euo pipefail

cmake=$1 build=$2 version=$3 scratch=$4 libdir=$5 compiler=$6
shift 6
arguments=()
while [ $# -gt 0 ] && [ "$1" != -- ]; do
    arguments+=("$1")
    shift
done
[ $# -eq 0 ] || shift
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

rm -rf "$scratch"
"$cmake" --install "$build" --prefix "$scratch/first" >/dev/null
# Packages are found where they lie, not where they were installed.
mv "$scratch/first" "$scratch/prefix"

"$cmake" -S "$here" -B "$scratch/user" -G Ninja "-DCMAKE_PREFIX_PATH=$scratch/prefix" \
    -DCMAKE_BUILD_TYPE=Release \
    "-DZMMATH_EXPECTED_VERSION=$version" "${arguments[@]}"
"$cmake" --build "$scratch/user"
user=$scratch/user/User
if [ -e "$user.exe" ]; then
    user=$user.exe
    cp "$scratch"/prefix/bin/ZmMath.dll "$scratch/user/"
fi
"$@" "$user"
tool=$scratch/prefix/bin/zmarchive
[ ! -e "$tool.exe" ] || tool+=.exe
if [ -e "$tool" ]; then
    "$@" "$tool" --version
fi

if [ "$compiler" = none ] || ! command -v pkg-config >/dev/null; then
    echo "pkg-config part left out"
    exit
fi
export PKG_CONFIG_PATH=$scratch/prefix/$libdir/pkgconfig
[ "$(pkg-config --modversion zmmath)" = "$version" ]
"$compiler" "$here/Main.cpp" -o "$scratch/user/UserByPkgConfig" $(pkg-config --cflags --libs zmmath)
LD_LIBRARY_PATH=$scratch/prefix/$libdir "$scratch/user/UserByPkgConfig"
