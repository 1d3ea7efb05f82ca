#!/bin/bash
# DllContents.sh <objdump> <dll> <version>
#
# The DLL imports only the system's own DLLs and contains its version.
set -euo pipefail

imports=$("$1" -p "$2" | awk '$1 == "DLL" && $2 == "Name:" { print tolower($3) }')
if [ -z "$imports" ] || grep -vxE '(advapi32|kernel32|msvcrt|ntdll)\.dll' <<<"$imports"; then
    echo "it imports DLLs that not every Windows has (above), or none"
    exit 1
fi
# The resource stores its texts as UTF-16.
for text in "FileVersion$3" "ProductVersion$3" OriginalFilenameZmMath.dll; do
    tr -d '\0' <"$2" | grep -aF "$text" >/dev/null || { echo "no resource with $text"; exit 1; }
done
