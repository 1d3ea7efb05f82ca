#!/bin/bash
# ZmArchive.sh <scratch folder> [<emulator>...] <zmarchive>
#
# Runs the tool as a user would: checks exit codes, messages, what it writes and what it refuses to write.
set -euo pipefail

scratch=$1
shift
tool=("$@")
rm -rf "$scratch"
mkdir -p "$scratch/in/Dir/sub" "$scratch/work"
cd "$scratch/work"

# expect <exit code> <extended regular expression> <argument>...: both streams together must match, line by line.
expect() {
    local code=$1 pattern=$2 status=0
    shift 2
    "${tool[@]}" "$@" >out.log 2>&1 </dev/null || status=$?
    tr -d '\r' <out.log >out
    if [ $status -eq 77 ] && [ "$code" -ne 77 ]; then
        cat out
        exit 77
    fi
    if [ $status -ne "$code" ] || { [ -n "$pattern" ] && ! grep -qE -- "$pattern" out; }; then
        echo "zmarchive $*: exit code $status instead of $code, or no match for '$pattern' in"
        cat out
        exit 1
    fi
}
fail() {
    echo "$*"
    exit 1
}
# archive <name>...: creates an archive with entries of one byte, 'x'; names may contain printf escapes.
archive() {
    local LC_ALL=C file=$1 index='' name size=0
    shift
    for name; do
        index+="$name\\0\\1\\0\\0\\0"
        printf -v name '%b' "$name"
        size=$((size + ${#name} + 5))
    done
    printf "ZMBG$(printf '\\x%02x\\x%02x' $((size % 256)) $((size / 256)))\\0\\0$index" >"$file"
    printf 'x%.0s' "$@" >>"$file"
}

printf 'read me' >../in/README.txt
head -c 700000 /dev/urandom >../in/Dir/sub/large.bin
: >../in/Dir/empty
expect 0 '^in.zmbg: 3 entries, 683.6 KB$' create in.zmbg ../in
grep -q '^saving 100 %$' out || fail 'no plain lines of progress'
grep -q '^note: some names include a folder' out || fail 'nothing about look-ups'
expect 0 '^       7 B  readme.txt$' list in.zmbg
expect 0 '^sound: 3 entries of 683.6 KB$' verify in.zmbg
expect 0 '^3 entries, 683.6 KB, extracted to out' extract in.zmbg --to out.d
cmp out.d/dir/sub/large.bin ../in/Dir/sub/large.bin
cmp out.d/readme.txt ../in/README.txt
[ -e out.d/dir/empty ] || fail 'the empty file is missing'

for force in '' --force; do
    expect 0 '3 entries' create $force ../in/self.zmbg ../in # without itself
done
rm ../in/self.zmbg
head -c 1023950 /dev/zero >thousand
expect 0 '1 entry, 1.0 MB$' create thousand.zmbg thousand

# Changes.
printf 'new' >new.txt
expect 1 'already exists \(--force' create in.zmbg new.txt
expect 0 '' add in.zmbg new.txt --quiet
[ ! -s out ] || fail '--quiet talks'
expect 1 'already in the archive \(--replace' add in.zmbg new.txt
printf 'newer' >new.txt
expect 0 '4 entries' add --replace in.zmbg new.txt
printf 'NEW.txt\nreadme.txt\n' >list
expect 0 '4 entries' reorder in.zmbg list
expect 0 '^new.txt$' list --names in.zmbg
[ "$(head -n 2 out | tail -n 1)" = readme.txt ] || fail 'not reordered'
expect 0 '2 entries' remove in.zmbg dir/empty README.TXT
expect 1 'new.txt already exists \(--force' extract in.zmbg New.txt
printf 'changed' >new.txt
expect 0 '^1 entry, 5 B, extracted' extract in.zmbg New.txt --force
[ "$(cat new.txt)" = newer ] || fail 'not what was added'
expect 0 '3 entries' create --flat flat.zmbg ../in
expect 0 '^large.bin$' list --names flat.zmbg
: >list
expect 0 '2 entries' reorder in.zmbg list # to the same order

for command in 'create --quiet quiet.zmbg ../in' 'extract --quiet quiet.zmbg --to quiet.d'; do
    expect 0 '' $command
    [ ! -s out ] || fail "--quiet talks: $command"
done

# Changes that are refused and leave the archive unchanged.
cp in.zmbg before
printf 'new.txt\nnone\n' >list
expect 1 'none not found' reorder in.zmbg list
printf 'new.txt' >list
expect 1 'line feed' reorder in.zmbg list
expect 1 'nothing cannot be read' reorder in.zmbg nothing
expect 1 '' reorder in.zmbg out.d
expect 1 'no entry none' remove in.zmbg new.txt none
expect 1 'no entry none' extract in.zmbg none
expect 1 'nothing: no such file or folder' add in.zmbg nothing
expect 1 'would both be named readme.txt' create --flat twice.zmbg out.d/readme.txt ../in
cmp in.zmbg before
printf 'new.txt\n' >list
for command in list extract verify 'add none new.txt' 'remove none a' 'reorder none list'; do
    set -- $command
    expect 1 'none: no such file' "$1" none "${@:3}"
done
[ ! -e none ] || fail 'reading makes a file'
for arguments in '' 'fold' 'list' 'list in.zmbg more' 'create x' 'list --flat in.zmbg' 'list --none in.zmbg' \
    'extract in.zmbg --to' 'create x y --clash none'; do
    expect 2 '^For help, run zmarchive --help$' $arguments
done
expect 0 'lower case' --help
expect 0 '^zmarchive [0-9]' --version
expect 0 'new.txt' list -- in.zmbg
expect 1 '^zmarchive: -x: no such file' list -- -x
expect 0 'in 0 entries' list - # an empty file is an empty archive

# Lists of files, in their order and named as written; streams instead of files; hashes; listings for programs.
printf './Dir/sub/large.bin\r\n\nREADME.txt\n' >list
(cd ../in && "${tool[@]}" create --quiet --from - ../listed.zmbg) <list
expect 0 '^readme.txt$' list --names ../listed.zmbg
[ "$(head -n 1 out)" = dir/sub/large.bin ] || fail 'not in the order of the list'
printf '../in/README.txt\n' >list
expect 1 'leads out of the current folder' create up.zmbg --from list
expect 1 'none cannot be read' create up.zmbg --from none
"${tool[@]}" create - ../in >piped.zmbg 2>err
[ ! -s err ] || fail 'talks while the archive goes to the standard output'
expect 0 '3 entries' create whole.zmbg ../in
cmp piped.zmbg whole.zmbg
"${tool[@]}" list --json - <whole.zmbg | tr -d '\r' >json
printf '[\n  {"name": "%s", "size": %d, "whole": true},\n  {"name": "%s", "size": %d, "whole": true},\n  {"name": "%s", "size": %d, "whole": true}\n]\n' \
    dir/empty 0 dir/sub/large.bin 700000 readme.txt 7 | cmp - json
"${tool[@]}" extract --to - whole.zmbg dir/sub/large.bin | cmp - ../in/Dir/sub/large.bin
for size in 0 1 55 56 63 64 65 119 120; do # around the blocks of the hash
    mkdir -p hashed && head -c $size ../in/Dir/sub/large.bin >hashed/$size
done
"${tool[@]}" create --quiet hashed.zmbg hashed
"${tool[@]}" list --sha256 hashed.zmbg | tr -d '\r' >sums
(cd hashed && sha256sum --quiet -c ../sums)
[ "$(wc -l <sums)" -eq 9 ] || fail 'not a hash for each entry'
expect 0 'the bytes of the entries against the list' verify --against sums hashed.zmbg
{ grep -v '  64$' sums && printf '%064d  ./more\n' 0; } | sed 's/^0/1/; t; s/^./0/' >other-sums
expect 1 '^DAMAGED' verify --against other-sums hashed.zmbg
grep -q '^64 is not in the list' out && grep -q '^more is not in the archive' out &&
    grep -q '^120 has other bytes' out || fail 'not every difference'
expect 1 'no list of SHA-256 hashes' verify --against json hashed.zmbg
archive strange 'a"b\\c' 'tab\tname' '\xc3\xa9' 'x\xff' '\xed\xa0\x80'
expect 0 'a\\u0022b\\u005cc' list --json strange
for text in 'tab\u0009name' $'"\xc3\xa9"' '"x\udcff"' '"\udced\udca0\udc80"'; do
    grep -qF -- "$text" out || fail "no $text in the listing for programs"
done

# Damaged and hostile archives.
printf 'PK' >other
expect 1 'not an archive' verify other
head -c -1 in.zmbg >short
expect 1 '^DAMAGED' verify short
expect 1 'is incomplete' extract short --to short.d
expect 0 'incomplete' list short
expect 1 'not saved' add short other
head -c 20 in.zmbg >cut
expect 1 'index of Big File cut is damaged' verify cut
expect 1 'was not changed' remove cut new.txt
(cat in.zmbg && echo) >long
expect 1 '1 B after the last entry' verify long
archive evil ../up /root 'c:\\drive' a/../../up '\\back' 'a\\..\\..\\up' good a/ . '' b//c 'tab\tname' 'del\x7f' a a
expect 1 '^[34] entries, [34] B, extracted' extract evil --to evil.d/deep # a name with a tab is none on Windows
[ "$(find . ../in -newer evil -type f ! -path './evil.d/deep/*' ! -name 'out*')" = '' ] || fail 'written outside'
[ -f evil.d/deep/good ] && [ -f evil.d/deep/a ] || fail 'not extracted'
expect 0 'tab\\x09name' list evil
expect 0 'del\\x7f' list evil

# The largest sizes, and more entries than there are percentages.
{
    printf 'ZMBG\0\014\0\0'
    printf 'a\0\377\377\377\177%.0s' {1..512}
} >huge
expect 0 '^ 1024.0 GB  in 512 entries$' list huge
archive many n{1..250}
expect 0 '^250 entries, 250 B, extracted' extract many --to many.d

# The longest names, over old files; what stands in the way stays.
long=$(printf 'n%.0s' {1..255})
case ${tool[*]} in
*.exe) long=${long:200} ;; # whole paths have at most 260 characters there
esac
mkdir -p way.d/sub/file
archive long.zmbg "$long" sub/file
expect 0 '2 entries' extract long.zmbg --to long.d
printf 'old' >"long.d/$long"
expect 0 '2 entries' extract long.zmbg --to long.d --force
[ "$(cat "long.d/$long")" = x ] || fail 'the old file stays'
expect 1 'way.d/sub/file is not a file' extract long.zmbg --to way.d --force
rm -r way.d/sub
printf 'stays' >way.d/sub
expect 1 'way.d/sub is not a folder' extract long.zmbg --to way.d --force
expect 1 'cannot use the folder new.txt: .' extract long.zmbg --to new.txt
[ "$(cat way.d/sub)" = stays ] || fail 'a file replaced by a folder'
[ -z "$(find . -name '*.tmp')" ] || fail "files left behind: $(find . -name '*.tmp')"

case ${tool[*]} in
*.exe) exit ;;
esac
mkdir -p outside links.d
ln -s ../outside links.d/dir
ln -s ../new.txt links.d/readme.txt
archive links dir/file readme.txt
expect 1 'is a link' extract links --to links.d --force
[ -z "$(ls outside)" ] && [ "$(cat new.txt)" = newer ] || fail 'written through a link'
mkdir other.d pack
mkfifo other.d/dir other.d/readme.txt pack/pipe
expect 1 'other.d/dir is not a folder' extract links --to other.d
grep -q 'other.d/readme.txt is not a file' out || fail 'a pipe taken for a file'
archive notext "$(printf '\\x80%.0s' {1..255})"
expect 0 '1 entry' extract notext --to notext.d # its new file cannot be named after any part of it

ln -s ../../in pack/link
printf 'x' >pack/file
expect 0 '^pack.zmbg: 1 entry' create pack.zmbg pack # neither what the link leads to nor the pipe
printf 'x' >'pack/a\b'
printf 'y' >pack/FILE
printf 'z' >pack/file~2
expect 1 'pack/a.b has a backslash in its name' create --force pack.zmbg pack
grep -q '^zmarchive: 2 entries cannot be packed' out && grep -q 'pack/FILE and pack/file would both be named file' out ||
    fail 'not all clashes are named'
expect 0 '^note: pack/file left out$' create --force --clash skip pack.zmbg pack
expect 0 '^pack.zmbg: 4 entries' create --force --clash rename pack.zmbg pack
expect 0 '^a_b$' list --names pack.zmbg
[ "$(tail -n +2 out | tr '\n' ' ')" = 'file file~3 file~2 ' ] || fail 'not renamed in place'
expect 0 '' extract pack.zmbg --to pack.d
[ "$(cat pack.d/file pack.d/file~3 pack.d/file~2)" = yxz ] || fail 'renamed to the wrong names'
expect 1 'File name too long' create none "$(printf 'n%.0s' {1..300})"
if command -v script >/dev/null; then
    script -qec "$(printf '%q ' "${tool[@]}" create --force bar.zmbg ../in)" bar.log >/dev/null </dev/null
    grep -qF '[########################################] 100 %' bar.log || fail 'no bar on a terminal'
fi
if [ -e /dev/full ]; then
    ! "${tool[@]}" list in.zmbg >/dev/full 2>/dev/null || fail 'a full device is not noticed'
fi
