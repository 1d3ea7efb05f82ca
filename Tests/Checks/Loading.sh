#!/bin/bash
# Loading.sh [emulator...] <program> <library> <module>
#
# Runs the program that loads and unloads the library: as it is, without a home
# folder, in a folder that is not writable, and without standard streams. Also lets
# it print after the log is gone, and ends it while threads run, several times,
# since not every run hits a critical point.
set -euo pipefail

# A file instead of a pipe: an emulator's own processes may outlive the program and would keep a pipe open.
output=$(mktemp)
trap 'rm -f "$output"' EXIT

run() { # <what> <command...>
    local status=0
    "${@:2}" >"$output" 2>&1 </dev/null || status=$?
    [ "$status" -ne 0 ] || return 0
    echo "$1: the program exited with $status"
    cat "$output"
    exit "$status"
}
# The only place where even root cannot write.
in_locked_folder() { (cd /proc && "$@"); }
without_streams() { "$@" <&- >&- 2>&-; }

run 'unchanged' "$@"
run 'without a home' env -u HOME -u USERPROFILE -u XDG_CONFIG_HOME -u XDG_CACHE_HOME -u XDG_DATA_HOME -u TMPDIR "$@"
run 'in a read-only folder' in_locked_folder "$@"
# An emulator would reuse the numbers of the closed streams for its own pipes, and output would go into those.
[ $# -gt 3 ] || run 'without standard streams' without_streams "$@"
run 'printing after the log' "$@" --print-at-end
for _ in {1..10}; do
    run 'exiting while threads run' timeout 20 "$@" --end-amid-threads
done
