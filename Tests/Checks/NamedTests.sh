#!/bin/bash
# NamedTests.sh <project folder>
#
# Comments name the test that holds a required oddity, as "(SuiteTest, Name)": that test must exist.
set -euo pipefail
cd "$1"

# A comment may break the name across lines.
named=$(find Include Sources Tools Examples -name '*.h' -o -name '*.cpp' | sort | while IFS= read -r file; do
    sed -E 's|^[[:space:]]*//+||' "$file" | tr -s '\n ' ' ' | grep -oE '\([A-Za-z]+Test, [A-Za-z0-9]+\)' |
        sed "s|^|$file |" || true
done)
[ -n "$named" ] || { echo "No comment names a test: has the format of the names changed?" && exit 1; }
tests=$(grep -rhoE 'TEST(_F|_P)?\([A-Za-z]+, [A-Za-z0-9]+\)' Tests | sed -E 's/^TEST(_F|_P)?//')

failed=0
while read -r file name; do
    if ! grep -qxF -- "$name" <<<"$tests"; then
        echo "$file: there is no test $name"
        failed=1
    fi
done <<<"$named"
exit $failed
