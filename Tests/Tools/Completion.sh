#!/bin/bash
# Completion.sh <folder of the completions> <tool>
#
# The completions of a tool know each command and each option that its help names, and bash completes them.
set -euo pipefail

folder=$1
tool=$2
name=$(basename "$tool")
words=$("$tool" --help | sed -nE 's/^  (--[a-z0-9]+|[a-z]+ [a-z]+).*/\1/p' | cut -d' ' -f1)
[ "$(wc -w <<<"$words")" -gt 8 ]
for word in $words; do
    for file in "$folder/$name.bash" "$folder/_$name"; do
        grep -qE -- "(^|[^a-z-])$word([^a-z]|\$)" "$file" || { echo "$file does not know $word" && exit 1; }
    done
done

# completed <word>...: what bash offers for the last of the words.
completed() {
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    COMPREPLY=()
    "_$name"
    echo "${COMPREPLY[*]}"
}
source "$folder/$name.bash"
for word in $words; do
    if [[ $word != -* ]]; then
        [[ " $(completed "$tool" "${word:0:2}") " == *" $word "* ]] || { echo "$word is not completed" && exit 1; }
    fi
done
