#!/bin/sh
# host_smoke.sh: the desktop Today host loads the real DLL, refreshes, screenshots, and settings are defaulted.
set -u
BUILD=${1:?usage: host_smoke.sh BUILD_DIR}
RUN="$BUILD/wine-run.sh"
ART="$(cd "$(dirname "$0")/../../resources/art" && pwd)"
KEY='HKLM\Software\Microsoft\Today\Items\Quorvane'
OUT=$(mktemp -d)
trap 'rm -rf "$OUT"' EXIT
fail() { echo "host_smoke: $*"; exit 1; }

x86_64-w64-mingw32-objdump -p "$BUILD/quorvane.dll" > "$OUT/exports.txt" || fail "objdump failed"
grep -q 'Ordinal Base.*240' "$OUT/exports.txt" || fail "no ordinal base 240"
grep -Eq '\+base\[ *240\].*' "$OUT/exports.txt" && grep -Eq '\+base\[ *241\]' "$OUT/exports.txt" \
    || fail "ordinals 240 and 241 not exported"

"$RUN" reg delete "$KEY" /f >/dev/null 2>&1

size_of() {   # prints "W H" of a PNG
    python3 -c 'import struct,sys; d=open(sys.argv[1],"rb").read(24); assert d[:8]==b"\x89PNG\r\n\x1a\n"; print(*struct.unpack(">II", d[16:24]))' "$1"
}

"$RUN" "$BUILD/todayhost.exe" --ticks 3 --screenshot "$OUT/normal.png" || fail "host exited with $?"
[ "$(size_of "$OUT/normal.png")" = "240 320" ] || fail "normal screenshot is not 240x320"

"$RUN" "$BUILD/todayhost.exe" --screen 480x640 --seconds 3 --screenshot "$OUT/hires.png" || fail "hi-res host exited with $?"
[ "$(size_of "$OUT/hires.png")" = "480 640" ] || fail "hi-res screenshot is not 480x640"

"$RUN" "$BUILD/todayhost.exe" --disabled --seconds 1 || fail "host with a disabled item exited with $?"

# Every failed start says what failed and what to do. Without a display
# (the run's other Wine programs keep theirs, so the prefix stays usable):
for case in "3|windows|env -u DISPLAY" "2|option --bogus|" "4|cannot load|"; do
    code=${case%%|*}
    rest=${case#*|}
    words=${rest%%|*}
    prefix=${rest#*|}
    args="--seconds 1"
    [ "$code" = 2 ] && args="--bogus"
    [ "$code" = 4 ] && args="--dll $OUT/none.dll --seconds 1"
    $prefix "$RUN" "$BUILD/todayhost.exe" $args 2> "$OUT/err.txt"
    rc=$?
    [ "$rc" = "$code" ] && grep -q "$words" "$OUT/err.txt" || { cat "$OUT/err.txt"; fail "exit $rc, not $code with a word on '$words'"; }
done

"$RUN" reg query "$KEY" | tr -d '\r' > "$OUT/key.txt"
for pair in 'XLocation 0x4b' 'TIcon 0x1' 'TFormat 0x1'; do
    name=${pair% *}
    value=${pair#* }
    grep -Eq "^ +$name +REG_DWORD +$value\$" "$OUT/key.txt" || { cat "$OUT/key.txt"; fail "$name is not $value"; }
done

# The taskbar drawn by the host is on the screenshot, so the capture is of the device screen.
python3 - "$ART" "$OUT/normal.png" <<'PY' || fail "screenshot does not show the Today screen"
import sys
sys.path.insert(0, sys.argv[1])
from artlib import load_png
img = load_png(sys.argv[2])
def px(x, y):
    return img.get(x, y)[:3]
assert px(120, 2) == (16, 52, 120), px(120, 2)      # taskbar
r, g, b = px(120, 300)                             # Today background
assert b > 200 and r > 180, (r, g, b)
PY
echo "host_smoke: ok"
