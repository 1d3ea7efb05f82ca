#!/bin/bash
# HeaderDependencies.sh <compiler> <include folder> <header>...
#
# Public headers are cheap: apart from each other they may include only the C
# headers of this list, without their C++ wrappers, and what those include; and
# <new>, which is small, since containers construct items in place.
set -euo pipefail
allowed='assert.h float.h limits.h new stdarg.h stddef.h stdint.h stdio.h string.h'

compiler=$1
include=$2
shift 2

included() {
    "$compiler" -std=c++17 -I"$include" -x c++ -M - | tr -d '\\' | tr -s ' ' '\n' |
        grep '^/' | xargs -n1 realpath -s | sort -u
}

cheap=$(for header in $allowed; do echo "#include <$header>"; done | included)
failed=0
for header in "$@"; do
    expensive=$(echo "#include \"$header\"" | included |
        grep -v "^$(realpath -s "$include")/" | grep -vxF "$cheap" || true)
    if [ -n "$expensive" ]; then
        echo "$header includes more than small C headers:"
        printf '    %s\n' $expensive
        failed=1
    fi
done
exit $failed
