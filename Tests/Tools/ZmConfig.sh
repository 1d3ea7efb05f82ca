#!/bin/bash
# ZmConfig.sh <scratch folder> [<emulator>...] <zmconfig>
#
# Runs the tool as a user would: checks exit codes, what it prints and what it writes.
set -euo pipefail

scratch=$1
shift
tool=("$@")
rm -rf "$scratch"
mkdir -p "$scratch"
cd "$scratch"

# expect <exit code> <text> <argument>...: what the tool prints, or for an empty text anything.
expect() {
    local code=$1 text=$2 status=0
    shift 2
    "${tool[@]}" "$@" >out.log 2>&1 <in || status=$?
    tr -d '\r' <out.log >out
    if [ $status -eq 77 ] && [ "$code" -ne 77 ]; then
        cat out
        exit 77
    fi
    if [ $status -ne "$code" ] || { [ -n "$text" ] && [ "$(cat out)" != "$text" ]; }; then
        echo "zmconfig $*: exit code $status instead of $code, or not '$text' but"
        cat out
        exit 1
    fi
}
# holds <file> <text>: the contents of a file.
holds() {
    if [ "$(tr -d '\r' <"$1")" != "$2" ]; then
        echo "$1 is not '$2' but"
        cat "$1"
        exit 1
    fi
}
: >in

printf '# top\nname = Ada\n\n<Video>\n  # pixels\n  Width=640\n</Video>\n' >game.cfg
expect 0 640 get game.cfg Video.Width
expect 0 480 get game.cfg Video.Height 480
expect 1 'zmconfig: game.cfg has no entry Video.Height' get game.cfg Video.Height
expect 0 '' set game.cfg Video.Width 1280
expect 0 '' set game.cfg Sound.Volume '0.5 of all'
holds game.cfg '# top
name = Ada

<Video>
  # pixels
  Width=1280
</Video>
<Sound>
  Volume = 0.5 of all
</Sound>'
expect 0 'name = Ada
Video.Width = 1280
Sound.Volume = 0.5 of all' list game.cfg
expect 1 '' remove game.cfg name Video.none
expect 0 Ada get game.cfg name # nothing is removed unless all is there
expect 0 '' remove game.cfg name Video.Width
expect 0 'Sound.Volume = 0.5 of all' list game.cfg
expect 0 '' set new.cfg a b
holds new.cfg 'a = b'
printf 'b = 2' >in
expect 0 'b = 2' list -
expect 0 'b = 2' format -

printf 'none\n' >bad.ini
# All mistakes at once, and what is no mistake but read otherwise.
{
    printf 'c = %01100d\r\na\n<S>\nb = 1\nb = 2\n</T>\n<U\n</S>\n</S>\n<V>\n' 0
} >bad.cfg
expect 1 "bad.cfg:1: longer than 1023 characters: it is read in pieces
bad.cfg:2: can't find equal ('=') separator
bad.cfg:5: an earlier entry has this name, and the first one wins
bad.cfg:6: closing bad section : T != S
bad.cfg:7: can't find end of section tag
bad.cfg:9: closing bad section : S != root
bad.cfg:10: the section is not closed" check new.cfg bad.cfg
expect 0 '' check game.cfg new.cfg
[ ! -s out ] || { echo 'a sound file has mistakes' && exit 1; }
expect 1 '' set bad.cfg x y
expect 1 "zmconfig: bad.ini:1: can't find equal ('=') separator" list bad.ini

printf 'a=1\r\n<S>\r\n#  why\r\n\tb  =2=3\r\n<T>\r\n</T>\r\n</S>\r\n' >loose.cfg
expect 0 '' format --indent 4 loose.cfg
holds loose.cfg 'a = 1
<S>
    #  why
    b = 2=3
    <T>
    </T>
</S>'

printf '\xef\xbb\xbf; settings\nuser: Ada\n\n[Video]\nwidth=640 ; pixels\ntitle = "a ; b"\n[Video.Shadows]\nsize = 5;6\n' >game.ini
expect 0 '# settings
user = Ada

<Video>
  width = 640
  title = a ; b
</Video>
<Video>
  <Shadows>
    size = 5;6
  </Shadows>
</Video>' import game.ini -
expect 0 '' import game.ini made.cfg
expect 0 '5;6' get made.cfg Video.Shadows.size
expect 1 'zmconfig: made.cfg already exists' import game.ini made.cfg
printf '[open\n' >bad.ini
expect 1 "zmconfig: bad.ini:1: the section has no ']'" import bad.ini none.cfg
[ ! -e none.cfg ] || { echo 'a file for nothing' && exit 1; }

expect 1 'zmconfig: none: no such file' get none a
for arguments in '' 'fold x' 'get x' 'list x y' 'set x y' 'list --none x' 'format x --indent' 'format --indent -1 x'; do
    expect 2 '' $arguments
    grep -q 'For help, run zmconfig --help' out
done
expect 0 '' --help
expect 0 '' --version
case ${tool[*]} in
*.exe) ;;
*)
    chmod 640 loose.cfg
    ln -s loose.cfg link.cfg
    expect 0 '' format link.cfg
    [ -L link.cfg ] && [ "$(stat -c %a loose.cfg)" = 640 ] || { echo 'a link or permissions are lost' && exit 1; }
    if [ -e /dev/full ] && "${tool[@]}" list loose.cfg >/dev/full 2>/dev/null; then
        echo 'a full device is not noticed'
        exit 1
    fi
    ;;
esac
[ -z "$(find . -name '*.tmp' -o -name '*.log' ! -name out.log)" ] || { echo 'files left behind' && exit 1; }
