#!/bin/bash
# Layers.sh <project folder>
#
# Each folder of Sources/ includes only folders below it, and only Platform/Posix
# and Platform/Win32 use the operating system.
set -euo pipefail
cd "$1"

declare -A below=(
    [Platform]=''
    [Foundations]='Platform'
    [Math]='Platform'
    [Threads]='Platform Foundations'
    [Logging]='Platform Foundations Files'
    [Files]='Platform Foundations Logging'
    [Queries]='Platform Math'
    [Imaging]='Platform Foundations Math'
    [Configuration]='Platform Foundations Logging Files'
    [Library]='Platform Foundations Math Threads Logging Files Queries Imaging Configuration'
)
os_headers='<(windows|win[a-z0-9]+|shlobj|io|direct|process|conio|unistd|pthread|sched|semaphore|dlfcn|fcntl|dirent|poll|pwd|glob|syslog|termios|ucontext|link|elf|execinfo|(sys|linux|asm|arpa|netinet|net)/[a-z_./]+)\.h>'
os_macros='\b(_WIN32|_WIN64|WIN32|_MSC_VER|__MINGW(32|64)__|__linux__|__linux|linux|__unix__|__unix|__APPLE__|__GLIBC__)\b'

failed=0
fail() {
    echo "$*"
    failed=1
}

declare -A folder_of
for source in Sources/*/*.cpp; do
    folder=${source%/*} name=${source##*/}
    folder_of[${name%.cpp}.h]=${folder##*/}
done
# Headers without a source file: all their functions are inline.
folder_of[ZmImageDescEx.h]=Imaging
folder_of[ZmImageOptions.h]=Imaging
for header in ZmArithmetic ZmBuilders ZmInline ZmInterop ZmInterpolation ZmOBB ZmOperators ZmPrint ZmSphere; do
    folder_of[$header.h]=Math
done
for header in XArray XGUID XHashFun XHashTable XInterop; do
    folder_of[$header.h]=Foundations
done
# A header with one source file for each family of its functions.
folder_of[ZmIntersect.h]=Queries
# Headers that only include others; those without a folder that all may include.
collections=" ZmMath.h $(sed -nE 's/^#include "(.+)"/\1/p' Include/ZmMath.h | tr '\n' ' ')"
folderless=' ZmApi.h ZmVersion.h '

check() { # <file> <folder> <included folder> <included name>
    if [ "$3" != "$2" ] && [[ " ${below[$2]} " != *" $3 "* ]]; then
        fail "$1: $2 must not include $4 of $3"
    fi
}

for header in Include/*.h; do
    name=${header#Include/}
    [[ -n "${folder_of[$name]-}" || "$folderless$collections" == *" $name "* ]] ||
        fail "$header: say in Tests/Checks/Layers.sh to which folder it belongs"
done

while IFS=: read -r file name; do
    case $file in
        Sources/*)
            folder=${file#Sources/}
            folder=${folder%%/*}
            ;;
        *) folder=${folder_of[${file#Include/}]-} ;;
    esac
    [ -n "$folder" ] || continue
    if [ -z "${below[$folder]+known}" ]; then
        fail "$file: say in Tests/Checks/Layers.sh what $folder may include"
    elif [[ "$name" == */* ]]; then
        check "$file" "$folder" "${name%%/*}" "$name"
    elif [ ! -e "Include/$name" ]; then
        fail "$file: write \"Folder/$name\" for an internal header"
    elif [ -n "${folder_of[$name]-}" ]; then
        check "$file" "$folder" "${folder_of[$name]}" "$name"
    elif [[ "$folderless" != *" $name "* ]]; then
        fail "$file: include the headers that are needed instead of $name"
    fi
done < <(grep -rE --include='*.h' --include='*.cpp' '^[[:space:]]*#[[:space:]]*include[[:space:]]*"' Sources Include |
    sed -E 's/^([^:]+):[^"]*"([^"]+)".*/\1:\2/' | sort)

folders=
for folder in Include Sources Tests Examples Benchmarks Fuzz Tools; do
    [ ! -d "$folder" ] || folders+=" $folder"
done
leaks=$(grep -rnE --include='*.h' --include='*.cpp' \
    "^[[:space:]]*#[[:space:]]*(include[[:space:]]*$os_headers|(if|ifdef|ifndef|elif)\b.*$os_macros)" $folders |
    grep -vE '^[^:]*/(Posix|Win32)/' | grep -v '^Include/ZmApi\.h:' || true)
if [ -n "$leaks" ]; then
    fail "The operating system is named outside the Posix and Win32 folders:
$leaks"
fi
exit $failed
