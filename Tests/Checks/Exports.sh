#!/bin/bash
# Exports.sh <list> <objdump> <library> [--update]
#
# Compares the symbols that a library exports, demangled and sorted, with the
# committed list; --update rewrites the list instead.
set -euo pipefail
export LC_ALL=C

list=$1
objdump=$2
library=$3

exported() {
    case $library in
        *.dll)
            # The lines of the export table have the form: [ 12] +base[ 13] 000c name
            "$objdump" -p "$library" | sed '1,/^\[Ordinal\/Name Pointer\] Table/d; /^$/,$d' |
                awk '/^[[:space:]]*\[/ { print $NF }'
            ;;
        *)
            "$objdump" -T "$library" | awk '/^[0-9a-f]+ / && !/\*UND\*/ { print $NF }'
            ;;
    # Type names are exported along with their typeinfo; DLLs do not export them.
    esac | c++filt | grep -v '^typeinfo name for ' | sort -u
}

if [ "${4-}" = --update ]; then
    exported >"$list"
    exit
fi
if ! diff -u --label "$(basename "$list")" --label "$(basename "$library")" "$list" <(exported); then
    echo "The exported symbols changed. If that is intended, run Scripts/update-exports."
    exit 1
fi
