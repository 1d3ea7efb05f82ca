#!/bin/bash
# RunWine.sh <prefix> <win32|win64> <wine> --prepare <probe.exe>
# RunWine.sh <prefix> <win32|win64> <wine> --stop
# RunWine.sh <prefix> <win32|win64> <wine> <program.exe> [argument...]
#
# --prepare creates the prefix and checks with the probe, a program that exits
# with 42, that Wine runs programs of this word size. Exit code 77: skipped.
set -euo pipefail

export WINEPREFIX=$1 WINEARCH=$2
wine=$3
shift 3
export WINEDEBUG=-all DISPLAY='' WINEDLLOVERRIDES='mscoree,mshtml,winemenubuilder.exe='
# Keeps everything that Wine and its children write inside the prefix.
export HOME=$WINEPREFIX/home TMPDIR=$WINEPREFIX/tmp
ready=$WINEPREFIX/ready

skip() {
    echo "skipped: $*"
    exit 77
}

wineserver() {
    local server
    for server in "$(dirname "$wine")"/wineserver{64,} /usr/lib/wine/wineserver{64,} "$(command -v wineserver || true)"; do
        if [ -x "$server" ]; then
            "$server" "$@"
            return
        fi
    done
}

case $wine in
    *-NOTFOUND) skip "no Wine installed" ;;
esac

case $1 in
--prepare)
    if [ ! -e "$ready" ]; then
        rm -rf "$WINEPREFIX"
        mkdir -p "$HOME" "$TMPDIR"
        "$wine" wineboot --init >"$HOME/wineboot.log" 2>&1 </dev/null || true
        wineserver -w || true
        status=0
        "$wine" "$2" >>"$HOME/wineboot.log" 2>&1 </dev/null || status=$?
        if [ "$status" -ne 42 ]; then
            if [ "$WINEARCH" = win32 ]; then
                skip "$wine cannot run 32-bit programs"
            fi
            cat "$HOME/wineboot.log"
            echo "$wine does not run a program that exits with 42: it exited with $status"
            exit 1
        fi
        wineserver -w || true
        touch "$ready"
    fi
    # One server for all tests: a server that is shutting down would make the next program fail. It also keeps Wine's
    # services running: if a test started them, they would keep its output pipe open.
    wineserver -p </dev/null >/dev/null 2>&1 || true
    "$wine" "$2" >>"$HOME/wineboot.log" 2>&1 </dev/null || true
    ;;
--stop)
    wineserver -k || true
    ;;
*)
    [ -e "$ready" ] || skip "no Wine that runs $WINEARCH programs"
    mkdir -p "$TMPDIR"
    exec "$wine" "$@"
    ;;
esac
