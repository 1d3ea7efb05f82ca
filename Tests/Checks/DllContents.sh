#!/bin/bash
# DllContents.sh <objdump> <dll> <version>
#
# The DLL needs nothing but the system's own DLLs, and tells its version.
set -euo pipefail

headers=$("$1" -p "$2")
imports=$(awk '$1 == "DLL" && $2 == "Name:" { print tolower($3) }' <<<"$headers")
[ -n "$imports" ] || { echo "no import table found"; exit 1; }
if grep -vxE '(advapi32|kernel32|msvcrt|ntdll)\.dll' <<<"$imports"; then
    echo "(above) not DLLs of every Windows"
    exit 1
fi
# The resource holds its texts as UTF-16.
for text in "FileVersion $3" "ProductVersion $3" 'OriginalFilename ZmMath.dll'; do
    if ! tr -d '\0' <"$2" | grep -aF "${text// /}" >/dev/null; then
        echo "no version resource with $text"
        exit 1
    fi
done
