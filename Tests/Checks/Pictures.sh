#!/bin/bash
# Pictures.sh <page> <scratch folder> <program that compares> <program that draws> -- [<emulator>...]
#
# The program draws exactly the pictures in the folder with the page's name, and the page shows all of them.
set -euo pipefail

page=$1 scratch=$2 compare=$3 draw=$4
shift 5
rm -rf "$scratch"
mkdir -p "$scratch/drawn"
cp -r "${page%.md}" "$scratch/kept"
(cd "$scratch/drawn" && "$@" "$draw") || exit $? # 77 means skipped
cd "$scratch"
diff <(ls kept) <(ls drawn)
for name in $(ls drawn); do
    grep -qF "$(basename "${page%.md}")/$name)" "$page" || {
        echo "$page does not show $name"
        exit 1
    }
done
"$@" "$compare" kept drawn $(ls drawn)
