#!/bin/bash
# Examples.sh <folder of expected texts> <scratch folder> <program>... -- [<emulator>...]
#
# Each program, run in the empty scratch folder, must print the expected text of its name.
set -euo pipefail

texts=$1 scratch=$2
shift 2
programs=()
while [ "$1" != -- ]; do
    programs+=("$1")
    shift
done
shift

status=0
for program in "${programs[@]}"; do
    rm -rf "$scratch"
    mkdir -p "$scratch"
    name=$(basename "$program" .exe)
    printed=$(cd "$scratch" && "$@" "$program") || exit $? # 77 means skipped
    diff -u --label "$name.txt" --label "what it prints" "$texts/${name#ZmExample}.txt" <(tr -d '\r' <<<"$printed") ||
        status=1
done
exit $status
