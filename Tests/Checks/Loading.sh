#!/bin/bash
# Loading.sh [emulator...] <program> <library> <module>
#
# Runs the program that loads and unloads the library: as it is, then where a
# process has no home, a folder that nobody can write to, or no streams.
set -euo pipefail

# A file, since an emulator's own processes may outlive the program and would keep a pipe open.
output=$(mktemp)
trap 'rm -f "$output"' EXIT

failed=0
run() { # <what> <command...>
    local status=0
    "${@:2}" >"$output" 2>&1 </dev/null || status=$?
    [ "$status" -eq 77 ] && exit 77
    if [ "$status" -ne 0 ]; then
        echo "$1: the program gave $status"
        cat "$output"
        failed=1
    fi
}
# Root may write anywhere but there.
in_locked_folder() { (cd /proc && "$@"); }
without_streams() { "$@" <&- >&- 2>&-; }

run 'as it is' "$@"
run 'without a home' env -u HOME -u USERPROFILE -u XDG_CONFIG_HOME -u XDG_CACHE_HOME -u XDG_DATA_HOME -u TMPDIR "$@"
run 'in a folder that it cannot write to' in_locked_folder "$@"
run 'without standard streams' without_streams "$@"
exit "$failed"
