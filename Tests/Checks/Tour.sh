#!/bin/bash
# Tour.sh <scratch folder> [<emulator>...] <ZmTour>
#
# The tour draws the same picture on any number of threads, remembers its camera, and refuses invalid input. Its
# settings go into the scratch folder, or into the emulator's prefix.
set -euo pipefail

scratch=$1
shift
tour=("$@")
rm -rf "$scratch"
mkdir -p "$scratch/settings"
cd "$scratch"
export XDG_CONFIG_HOME=$scratch/settings

# expect <exit code> <extended regular expression> <argument>...: some line of either stream must match.
expect() {
    local code=$1 pattern=$2 status=0
    shift 2
    "${tour[@]}" --size 64x64 "$@" >out.log 2>&1 </dev/null || status=$?
    if [ $status -eq 77 ]; then
        cat out.log
        exit 77
    fi
    if [ $status -ne "$code" ] || ! grep -qE -- "$pattern" out.log; then
        echo "ZmTour $*: exit code $status instead of $code, or no match for '$pattern' in"
        cat out.log
        exit 1
    fi
}

# The tour itself compares its picture with that of one thread.
expect 0 '^Camera +3,0\.25,1, as asked for' --output given --camera 3,0.25,1 --threads 3
expect 0 '^Camera +3,0\.25,1, as in the last tour' --output again --threads 2
cmp given/tour.png again/tour.png
expect 0 '^Camera .* as the scene says' --output scene --camera scene
expect 0 '^Camera .* as the scene says' --output scene
if cmp -s given/tour.png scene/tour.png; then
    echo "A different camera gave the same picture"
    exit 1
fi

expect 2 'takes HEIGHT,DOWN,VIEW' --camera 1,2
printf 'no mesh' >broken.obj
expect 1 'broken.obj: ' broken.obj --output broken
