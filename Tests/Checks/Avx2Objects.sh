#!/bin/bash
# Avx2Objects.sh <nm> <object>...
#
# Code compiled for AVX2 must not reach processors without it. A weak symbol
# (an inline function or template instance) could replace the plain copy of
# another file, and a static initialiser would run without the processor check.
set -euo pipefail

nm=$1
shift
failed=0
complain() {
    if [ -n "$2" ]; then
        printf '%s: %s:\n%s\n' "$(basename "$object")" "$1" "$2"
        failed=1
    fi
}

if [ $# -eq 0 ]; then
    echo "no object file named *Avx2.cpp"
    exit 1
fi
for object in "$@"; do
    symbols=$("$nm" -C --defined-only "$object")
    complain "weak or unique symbols" "$(grep -E '^[0-9a-f]* [WwVvuC] ' <<<"$symbols" || true)"
    complain "static initialisers" "$(grep -E ' _GLOBAL__sub_I| __static_initialization' <<<"$symbols" || true)"
    complain "external symbols other than functions of namespace zm" "$(grep -E '^[0-9a-f]* [A-TX-Z] ' <<<"$symbols" |
        grep -vE ' T (zm::|__x86\.get_pc_thunk\.)| R \.refptr\.' || true)"
done
exit $failed
