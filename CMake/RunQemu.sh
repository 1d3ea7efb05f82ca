#!/bin/bash
# RunQemu.sh <qemu> <program> [argument...]
#
# Exit code 77: skipped.
case $1 in
    *-NOTFOUND)
        echo "skipped: this system cannot run 32-bit programs, and QEMU is not installed"
        exit 77
        ;;
esac
exec "$@"
