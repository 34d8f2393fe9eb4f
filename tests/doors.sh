#!/bin/sh
# doors.sh: the rooms' doors: the store's file code and the wireless query layer include no item and make no window; platform/ includes nothing of the program.
# Usage: sh doors.sh [SOURCE_DIR]
set -u
SRC=$(cd "${1:-$(dirname "$0")/..}" && pwd)
cd "$SRC" || exit 1
failed=0

# room FILES... -- ALLOWED: every project include of the files must start with one of ALLOWED.
room() {
    files=""
    while [ "$1" != "--" ]; do files="$files $1"; shift; done
    shift
    for f in $files; do
        [ -f "$f" ] || { echo "doors: $f is missing"; failed=1; continue; }
        for inc in $(sed -n 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*"\([^"]*\)".*/\1/p' "$f"); do
            ok=0
            for allowed in "$@"; do
                case "$inc" in "$allowed"*) ok=1 ;; esac
            done
            [ $ok = 1 ] || { echo "doors: $f includes $inc"; failed=1; }
        done
    done
}

# no_window FILES...: none of them makes or moves a window or asks the user anything.
no_window() {
    for f in "$@"; do
        if grep -nE '\b(CreateWindow(Ex)?W?|CreateDialog[A-Za-z]*|DialogBox[A-Za-z]*|MessageBoxW?|SetWindowPos|MoveWindow|GetDlgItem)\b' "$f"; then
            echo "doors: $f makes or handles a window"
            failed=1
        fi
    done
}

# The store's file code and its portable parsers: every trafficlog/ file but the export dialog.
STORE=$(ls trafficlog/*.cpp trafficlog/*.h | grep -v export_dialog)
STORE_HEADERS=$(ls trafficlog/*.h | grep -v export_dialog)
WIRELESS="wireless/query.cpp wireless/bssidlist.cpp wireless/binding.cpp wireless/wireless.h wireless/bssidlist.h wireless/binding.h"
room $STORE -- platform/ $STORE_HEADERS
room $WIRELESS -- platform/ wireless/wireless.h wireless/bssidlist.h wireless/binding.h
no_window $STORE $WIRELESS
room $(find platform -name '*.cpp' -o -name '*.h') -- platform/
[ $failed = 0 ] && echo "doors: ok"
exit $failed
