#!/bin/bash
# Loading.sh [emulator...] <program> <library> <module>
#
# Runs the program that loads and unloads the library: as it is, then where a
# process has no home, a folder that nobody can write to, or no streams; and
# lets it end amid threads, often since not every run ends one where it matters.
set -euo pipefail

# A file, since an emulator's own processes may outlive the program and would keep a pipe open.
output=$(mktemp)
trap 'rm -f "$output"' EXIT

run() { # <what> <command...>
    local status=0
    "${@:2}" >"$output" 2>&1 </dev/null || status=$?
    [ "$status" -ne 0 ] || return 0
    echo "$1: the program gave $status"
    cat "$output"
    exit "$status"
}
# Root may write anywhere but there.
in_locked_folder() { (cd /proc && "$@"); }
without_streams() { "$@" <&- >&- 2>&-; }

run 'as it is' "$@"
run 'without a home' env -u HOME -u USERPROFILE -u XDG_CONFIG_HOME -u XDG_CACHE_HOME -u XDG_DATA_HOME -u TMPDIR "$@"
run 'in a folder that it cannot write to' in_locked_folder "$@"
# An emulator would take the numbers of closed streams for its own pipes, and what is printed would go into those.
[ $# -gt 3 ] || run 'without standard streams' without_streams "$@"
for _ in {1..10}; do
    run 'ending amid threads' timeout 20 "$@" --end-amid-threads
done
