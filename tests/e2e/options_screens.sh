#!/bin/sh
# options_screens.sh: each page of the options sheet, opened with --options and chosen by its tab, on three screens.
# Usage: sh options_screens.sh BUILD_DIR [KEEP_DIR]  (KEEP_DIR receives options-PAGE-WxH.png)
set -u
BUILD=$(cd "${1:?usage: options_screens.sh BUILD_DIR [KEEP_DIR]}" && pwd)
KEEP=${2:-${OPTIONS_SHOTS:-}}
HERE=$(cd "$(dirname "$0")" && pwd)
ART="$HERE/../../resources/art"
RUN="$BUILD/wine-run.sh"
PROBE="$BUILD/winprobe.exe"
KEY='HKLM\Software\Microsoft\Today\Items\Quorvane'
PREFIX="${QUORVANE_WINEPREFIX:-$BUILD/wineprefix}"
DATA_WIN='C:\quorvane-options-screens'
DATA="$PREFIX/drive_c/quorvane-options-screens"
OUT=$(mktemp -d)
SAVED=""
restore() {
    if [ -n "$SAVED" ]; then
        "$RUN" reg add "$KEY" /v InstallDir /t REG_SZ /d "$SAVED" /f >/dev/null 2>&1
    else
        "$RUN" reg delete "$KEY" /v InstallDir /f >/dev/null 2>&1
    fi
    rm -rf "$DATA" "$OUT"
}
trap restore EXIT

fail() { echo "options_screens: $*"; exit 1; }
[ -f "$BUILD/todayhost.exe" ] && [ -f "$PROBE" ] || { echo "options_screens: host or winprobe not built, skipped"; exit 77; }
[ -n "${DISPLAY:-}" ] || { echo "options_screens: no X display, skipped"; exit 77; }
command -v xdotool >/dev/null || { echo "options_screens: no xdotool, skipped"; exit 77; }
probe() { "$RUN" "$PROBE" "$@" | tr -d '\r'; }

# A data folder of the run's own with three months of logs (empty files list as well as full ones).
SAVED=$("$RUN" reg query "$KEY" /v InstallDir 2>/dev/null | tr -d '\r' | sed -n 's/^ *InstallDir *REG_SZ *//p')
"$RUN" reg add "$KEY" /v InstallDir /t REG_SZ /d "$DATA_WIN" /f >/dev/null 2>&1 || fail "cannot set InstallDir"
mkdir -p "$DATA" && touch "$DATA/202510.log" "$DATA/202511.log" "$DATA/$(date +%Y%m).log"

# Page name, the tab's offset from the tab control's left edge, and a
# control only that page has.
for case in adapter:25:1011 options:80:1081 about:130:0; do
    page=${case%%:*}
    rest=${case#*:}
    offset=${rest%:*}
    control=${rest#*:}
    for screen in 240x320 480x640 320x240; do
        [ "$page" != options ] && [ "$screen" != 240x320 ] && continue
        shot="$OUT/options-$page-$screen.png"
        "$RUN" "$BUILD/todayhost.exe" --screen "$screen" --options --seconds 7 --screenshot "$shot" &
        host=$!
        "$RUN" "$PROBE" wait "class:#32770" 6 >/dev/null 2>&1 || { kill $host; fail "no sheet on $screen"; }
        for i in 1 2 3 4 5 6 7 8; do
            probe list "class:#32770" | grep -q "^1000	" && break
            sleep 0.3
        done
        set -- $(probe list "class:#32770" | awk -F'\t' '$2 == "SysTabControl32" { print $3; exit }')
        [ $# -ge 2 ] || { kill $host; fail "no tab control on $screen"; }
        xdotool mousemove $(($1 + offset)) $(($2 + 10)) click 1
        sleep 0.5
        if [ "$control" != 0 ]; then
            probe list "class:#32770" | grep -q "^$control	" || { kill $host; fail "the $page tab shows no control $control on $screen"; }
        fi
        if [ "$page" = options ]; then
            rows=$(probe items "class:#32770" 1080 | wc -l)
            [ "$rows" -ge 3 ] || { kill $host; fail "the log list shows $rows rows on $screen, not 3"; }
        fi
        wait $host || fail "host on $screen exited with $?"
        [ -n "$KEEP" ] && mkdir -p "$KEEP" && cp "$shot" "$KEEP"/
        python3 - "$shot" "$ART" <<'PY' || fail "the $page page on $screen shows no blue header"
import sys
sys.path.insert(0, sys.argv[2])
from artlib import load_png
img = load_png(sys.argv[1])
blue = sum(1 for y in range(img.height) for x in range(img.width) if img.get(x, y)[:3] == (0, 0, 255))
assert blue > 20, blue
PY
    done
done
echo "options_screens: ok"
