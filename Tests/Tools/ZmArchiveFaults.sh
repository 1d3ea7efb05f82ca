#!/bin/bash
# ZmArchiveFaults.sh <scratch folder> <disturber> [<emulator>...] <zmarchive>
#
# Full disks, kills and other processes cost no file and lead to none outside the target folder.
set -euo pipefail

scratch=$1 program=$2
shift 2
tool=("$@")
disturber=("${@:1:$#-1}" "$program")
rm -rf "$scratch"
mkdir -p "$scratch"
cd "$scratch"

fail() {
    echo "$*"
    cat out
    exit 1
}
run() {
    "${tool[@]}" "$@" >out 2>&1 </dev/null || return $?
}
no_leftovers() {
    [ -z "$(find . -name '*.tmp')" ] || fail "files left behind: $(find . -name '*.tmp')"
}

head -c 200000 /dev/urandom >large.bin
run create large.zmbg large.bin
mkdir target
printf 'old' >target/large.bin
chmod 640 target/large.bin

# A full disk, in effect: files cannot grow beyond 64 KB.
status=0
(trap '' XFSZ && ulimit -f 64 && run extract large.zmbg --to target --force) || status=$?
[ $status -eq 1 ] && grep -q 'large.bin cannot be written: ' out || fail 'a full disk is not reported'
[ "$(cat target/large.bin)" = old ] || fail 'a full disk costs the old file'
no_leftovers

# The same limit kills a process that does not ask for an error.
status=0
(ulimit -c 0 && ulimit -f 64 && run extract large.zmbg --to target --force) || status=$?
[ $status -gt 128 ] || fail "not killed, but $status"
[ "$(cat target/large.bin)" = old ] || fail 'a kill costs the old file'
rm -f target/*.tmp

run extract large.zmbg --to target --force || fail 'not extracted'
cmp target/large.bin large.bin
[ "$(stat -c %a target/large.bin)" = 640 ] || fail 'other permissions'
no_leftovers

# System calls that fail. Not where programs cannot be traced or make calls of their own, as those with a sanitizer do.
traced() {
    strace -qq -o trace.log "${@:1:$faultWords}" "${tool[@]}" "${@:$((faultWords + 1))}" >out 2>&1 </dev/null
}
faultWords=0
if [ ${#tool[@]} -eq 1 ] && ! grep -q -e __asan_init -e __tsan_init "${tool[0]}" && command -v strace >/dev/null && traced --version; then
    mkdir fresh listed
    printf 'x' >listed/x
    nextOwner=$(id -u)
    while read -r code result command fault; do
        rm -f fresh/*
        printf 'old' >target/large.bin
        chown "$nextOwner:2345" target/large.bin 2>/dev/null || true
        nextOwner=1234 # from the second on another user's, not only another group's
        owner=$(stat -c %u:%g target/large.bin)
        words=($fault) status=0
        faultWords=${#words[@]}
        case $command in
        replace) traced "${words[@]}" extract large.zmbg --to target --force || status=$? ;;
        extract) traced "${words[@]}" extract large.zmbg --to fresh || status=$? ;;
        pack) traced "${words[@]}" create packed.zmbg listed || status=$? ;;
        esac
        [ $status -eq "$code" ] || fail "$fault: exit code $status instead of $code"
        grep -q "${result//_/ }" out || fail "$fault: no word of '$result'"
        case $command$status in
        replace0) cmp target/large.bin large.bin ;;
        replace1) [ "$(cat target/large.bin)" = old ] || fail "$fault costs the old file" ;;
        extract0) cmp fresh/large.bin large.bin ;;
        extract1) [ -z "$(ls fresh)" ] || fail "$fault: a file that is not whole" ;;
        esac
        case $fault in
        *fchown*) ;;
        *) [ "$(stat -c %u:%g target/large.bin)" = "$owner" ] || fail "$fault: another owner" ;;
        esac
        no_leftovers
    done <<'END'
0 extracted replace -e inject=fsync:error=EINVAL
0 extracted replace -e inject=fsync:error=EINVAL
0 extracted replace -e inject=fchown:error=EPERM
0 extracted replace -e inject=write:error=EINTR:when=1
0 extracted extract -e inject=renameat2:error=EINVAL
0 extracted extract -e inject=renameat2:error=ENOSYS
1 large.bin_cannot_be_written:_Input replace -e inject=fsync:error=EIO
1 large.bin_cannot_be_written:_Input replace -e inject=write:error=EIO:when=1
1 large.bin_cannot_be_written:_Perm replace -e inject=renameat:error=EACCES
1 large.bin_cannot_be_created:_No_space replace -P target -e inject=openat:error=ENOSPC:when=2
1 large.bin:_cannot_be_read replace -P large.zmbg -e inject=read:error=EIO:when=3+
0 extracted replace -P large.zmbg -e inject=newfstatat:error=EIO:when=3+
1 large.bin: replace -P large.zmbg -e inject=lseek:error=EIO:when=3
1 large.bin: replace -P large.zmbg -e inject=lseek:error=EIO:when=4
1 large.bin: replace -P large.zmbg -e inject=lseek:error=EIO:when=5
1 large.bin_already_exists extract -e inject=renameat2:error=EINVAL -e inject=linkat:error=EEXIST
1 large.bin_cannot_be_written:_Perm extract -e inject=renameat2:error=EACCES
1 cannot_be_read:_Input pack -e inject=getdents64:error=EIO:when=2+
END
else
    echo 'no system call made to fail: programs cannot be traced here'
fi

# A save with ever more files that may be open: it fails, or it is complete. In between, the last file to be opened is
# the one to pack.
printf 'packed' >packed
run create in.zmbg packed
cp in.zmbg before
printf 'more' >more
unread=0
for command in 'create --force in.zmbg more' 'add in.zmbg more'; do
    done=0
    for limit in {4..40}; do
        status=0
        (ulimit -n $limit && run $command) 2>/dev/null || status=$?
        if [ $status -eq 0 ]; then
            done=1
            break
        fi
        cmp in.zmbg before || fail "$command failed and changed the archive"
        if [ $status -eq 1 ] && grep -q 'more cannot be read: nothing is saved' out; then
            grep -q 'in.zmbg was not saved' out || fail 'not reported'
            unread=$((unread + 1))
        fi
    done
    [ $done -eq 1 ] || fail "$command never succeeds"
    cp before in.zmbg
done
# Not with both commands: sanitizers, which open pipes for their checks, may end the program first.
[ $unread -gt 0 ] || fail 'no save failed because of the file to pack'
no_leftovers

# A folder that becomes a link and a folder again, all the time.
mkdir -p in/dir/sub outside swapped/dir
for i in {0..19}; do
    printf 'x' | tee "in/dir/f$i" >"in/dir/sub/f$i"
done
run create swapped.zmbg in
ln -s ../outside swapped/link
"${disturber[@]}" 3 swap swapped/dir swapped/link &
runs=0 refusals=0
while kill -0 $! 2>/dev/null; do
    run extract swapped.zmbg --to swapped --force || refusals=$((refusals + 1))
    runs=$((runs + 1))
    [ -z "$(ls outside)" ] || fail "written outside: $(ls outside)"
done
wait $! || exit $?
[ $refusals -gt 0 ] || fail 'the link was never in the way'
[ -n "$(find swapped -name 'f*')" ] || fail 'nothing was extracted'
no_leftovers

# Without --force: a file that appears while its entry is being extracted. 30 entries have its name.
printf 'ZMBG\264\0\0\0' >same
for i in {1..30}; do printf 'a\0\001\0\0\0'; done >>same
printf 'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxx' >>same
mkdir guarded
"${disturber[@]}" 2 guard guarded/a &
while kill -0 $! 2>/dev/null; do
    run extract same --to guarded || true
done
wait $! || fail 'a file that appeared meanwhile was replaced'
no_leftovers
