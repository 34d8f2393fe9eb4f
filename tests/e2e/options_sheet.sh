#!/bin/sh
# options_sheet.sh: the host's "Options..." opens the sheet; a user moves the taskbar icon and picks
# military hours; the registry, the taskbar and the usage table follow.
# Usage: sh options_sheet.sh BUILD_DIR  (OPTIONS_SHOT=FILE keeps the last screen)
#
# Clicked with xdotool as a user would, with winprobe telling where the
# controls are. The log has traffic at 01 and 13 o'clock today: in military
# hours every label of the usage table ends the same (":00"), in am/pm hours
# "01 am" and "01 pm" end differently, whatever other hour the machine's own
# traffic adds meanwhile.
set -u
BUILD=$(cd "${1:?usage: options_sheet.sh BUILD_DIR}" && pwd)
HERE=$(cd "$(dirname "$0")" && pwd)
ART="$HERE/../../resources/art"
RUN="$BUILD/wine-run.sh"
PROBE="$BUILD/winprobe.exe"
KEY='HKLM\Software\Microsoft\Today\Items\Quorvane'
PREFIX="${QUORVANE_WINEPREFIX:-$BUILD/wineprefix}"
DATA_WIN='C:\quorvane-options-e2e'
DATA="$PREFIX/drive_c/quorvane-options-e2e"
OUT=$(mktemp -d)
SAVED=""
HOST=""

fail() { echo "options_sheet: $*"; exit 1; }
[ -f "$BUILD/todayhost.exe" ] && [ -f "$PROBE" ] || { echo "options_sheet: host or winprobe not built, skipped"; exit 77; }
[ -n "${DISPLAY:-}" ] || { echo "options_sheet: no X display, skipped"; exit 77; }
command -v xdotool >/dev/null || { echo "options_sheet: no xdotool, skipped"; exit 77; }

restore() {
    [ -n "$HOST" ] && kill "$HOST" 2>/dev/null
    if [ -n "$SAVED" ]; then
        "$RUN" reg add "$KEY" /v InstallDir /t REG_SZ /d "$SAVED" /f >/dev/null 2>&1
    else
        "$RUN" reg delete "$KEY" /v InstallDir /f >/dev/null 2>&1
    fi
    for v in XLocation TFormat TIcon; do "$RUN" reg delete "$KEY" /v $v /f >/dev/null 2>&1; done
    rm -rf "$DATA" "$OUT"
}
trap restore EXIT

probe() { "$RUN" "$PROBE" "$@" | tr -d '\r'; }
shown() { "$RUN" "$PROBE" wait "$1" "$2" >/dev/null 2>&1; }   # winprobe's own status
# The centre of control ID of the window TITLE, as "x y".
centre() {
    probe list "$1" | awk -F'\t' -v id="$2" '$1 == id { split($3, r, " "); print int(r[1] + r[3] / 2), int(r[2] + r[4] / 2); exit }'
}
# Waits up to 5 s for control ID of TITLE to read TEXT.
reads() {
    for i in 1 2 3 4 5 6 7 8 9 10; do
        [ "$(probe text "$1" "$2" 2>/dev/null)" = "$3" ] && return 0
        sleep 0.5
    done
    return 1
}
click() { xdotool mousemove "$1" "$2" click 1; sleep 0.3; }
dword() { "$RUN" reg query "$KEY" /v "$1" 2>/dev/null | tr -d '\r' | sed -n "s/^ *$1 *REG_DWORD *//p"; }

SAVED=$("$RUN" reg query "$KEY" /v InstallDir 2>/dev/null | tr -d '\r' | sed -n 's/^ *InstallDir *REG_SZ *//p')
"$RUN" reg add "$KEY" /v InstallDir /t REG_SZ /d "$DATA_WIN" /f >/dev/null 2>&1 || fail "cannot set InstallDir"
"$RUN" reg add "$KEY" /v XLocation /t REG_DWORD /d 150 /f >/dev/null 2>&1
"$RUN" reg add "$KEY" /v TFormat /t REG_DWORD /d 1 /f >/dev/null 2>&1
"$RUN" reg add "$KEY" /v TIcon /t REG_DWORD /d 1 /f >/dev/null 2>&1
mkdir -p "$DATA"
python3 - "$DATA" "$(date +%Y)" "$(date +%m)" "$(date +%d)" <<'PY' || fail "cannot write the log"
import struct, sys
folder, year, month, day = sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), int(sys.argv[4])
record = lambda d, h, rx, tx: struct.pack("<bbHII", d, h, 0, rx, tx)
open("%s/%04d%02d.log" % (folder, year, month), "wb").write(record(day, 1, 3000000, 1000000) + record(day, 13, 5000000, 2000000))
PY

"$RUN" "$BUILD/todayhost.exe" --seconds 45 --screenshot "$OUT/after.png" &
HOST=$!
shown "Quorvane - Today" 20 || fail "no host window"
# The device screen's origin on the X screen; the menu bar lies just above it.
SCREEN=$(probe list "Quorvane - Today" | awk -F'\t' '$2 == "QuorvaneDeviceScreen" { print $3; exit }')
set -- $SCREEN
SX=$1 SY=$2
[ -n "$SX" ] || fail "no device screen"
click $((SX + 30)) $((SY - 10))                       # "Options..."
shown "class:#32770" 10 || fail "the menu entry opened no sheet"
reads "class:#32770" 1000 "Today: Quorvane" || fail "the sheet shows no page"
probe text "class:#32770" 1007 | grep -q . || echo "options_sheet: no Ethernet adapter on this machine"
probe items "class:#32770" 1011 | sed 's/^/options_sheet: adapter page: /'

TAB=$(probe list "class:#32770" | awk -F'\t' '$2 == "SysTabControl32" { print $3; exit }')
set -- $TAB
click $(($1 + 80)) $(($2 + 10))                       # the "Options" tab
reads "class:#32770" 1081 150 || fail "the Options page does not show x location 150"
# The up-down's upper half moves the icon left, one pixel a click.
SPIN=$(probe list "class:#32770" | awk -F'\t' '$1 == 1032 { print $3; exit }')
set -- $SPIN
xdotool mousemove $(($1 + $3 / 2)) $(($2 + $4 / 4)) click --repeat 50 --delay 40 1
reads "class:#32770" 1081 100 || fail "50 clicks on the up arrow show $(probe text "class:#32770" 1081), not 100"
click $(centre "class:#32770" 1076)                   # "Military Format"
click $(centre "class:#32770" 1)                      # OK
for i in 1 2 3 4 5 6 7 8 9 10; do
    shown "class:#32770" 0 || break
    sleep 0.5
done
shown "class:#32770" 0 && fail "the sheet did not close"
[ "$(dword XLocation)" = "0x64" ] || fail "XLocation is $(dword XLocation), not 0x64"
[ "$(dword TFormat)" = "0x0" ] || fail "TFormat is $(dword TFormat), not 0x0"

# Two ticks for the icon, then the usage dialog: hourly, as a table.
sleep 4.5
click $((SX + 77)) $((SY + 60))
shown "class:#32770" 10 || fail "no usage dialog"
click $(centre "class:#32770" 1007)
xdotool key Down Return
sleep 0.5
DIALOG=$(probe wait "class:#32770" 1)
set -- $DIALOG
echo "$2 $3" > "$OUT/dialog.txt"
click $(($2 + 31 + 12)) $(($3 + 43 + 12))             # the table icon
wait "$HOST"
HOST=""
[ -f "$OUT/after.png" ] || fail "no screenshot"
[ -n "${OPTIONS_SHOT:-}" ] && cp "$OUT/after.png" "$OPTIONS_SHOT"

python3 - "$OUT/after.png" "$ART" $SX $SY $(cat "$OUT/dialog.txt") <<'PY' || fail "the screen does not show the new settings"
import sys
sys.path.insert(0, sys.argv[2])
from artlib import load_png
img = load_png(sys.argv[1])
sx, sy, dx, dy = map(int, sys.argv[3:7])
px = lambda x, y: img.get(x, y)[:3]
BAR = (16, 52, 120)
# The icon at its new place, and the taskbar clean at its old one.
new = sum(1 for y in range(5, 21) for x in range(100, 116) if px(x, y) != BAR)
old = sum(1 for y in range(5, 21) for x in range(150, 166) if px(x, y) != BAR)
assert new > 60 and old == 0, ("icon pixels at 100:", new, "at 150:", old)
# The table's hour labels: left-aligned text in the dialog's column 10..41,
# found by their ink; the part right of the hour digits is compared.
ox, oy = dx - sx, dy - sy
dark = lambda x, y: sum(px(x, y)) < 300
xs = range(ox + 10, ox + 44)
inked = [y for y in range(oy + 89, oy + 200) if any(dark(x, y) for x in xs)]
bands = []
for y in inked:
    if bands and y == bands[-1][-1] + 1:
        bands[-1].append(y)
    else:
        bands.append([y])
assert len(bands) >= 2, ("label rows", bands)
left = min(x for b in bands for y in b for x in xs if dark(x, y))
right = max(x for b in bands for y in b for x in xs if dark(x, y))
height = max(len(b) for b in bands)
cut = left + (right - left) * 45 // 100
ends = set(tuple(dark(x, b[0] + y) for y in range(height) for x in range(cut, right + 1)) for b in bands)
assert len(ends) == 1, ("the hour labels do not all end alike: not military hours", [b[0] for b in bands], left, right)
print("options_sheet: icon at 100 (%d pixels), %d hour rows in military format" % (new, len(bands)))
PY
echo "options_sheet: ok"
