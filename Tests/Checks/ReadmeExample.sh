#!/bin/bash
# ReadmeExample.sh <README.md> <source> <program>...
#
# The first C++ block of the page must be the source, and the first text block
# what the program prints.
set -euo pipefail

readme=$1 source=$2
shift 2

block() { # <language>
    awk -v fence="\`\`\`$1" '$0 == fence { inside = 1; next } /^```/ && inside { exit } inside' "$readme"
}

if ! diff -u --label "$readme" --label "$source" <(block cpp) "$source"; then
    echo "The example in $(basename "$readme") is not the one that is tested."
    exit 1
fi
printed=$("$@") || exit $? # 77 means skipped
diff -u --label "$readme" --label "what it prints" <(block text) <(tr -d '\r' <<<"$printed")
