#!/bin/sh
# usage_screens.sh: with a month of log in place, a tap on the usage icon shows the daily chart, on four screens.
# Usage: sh usage_screens.sh BUILD_DIR [KEEP_DIR]  (KEEP_DIR receives usage-daily-WxH.png)
#
# The log is a full month (744 records) of this month, written into a data
# folder of the test's own that InstallDir points at for the run; every day's
# bar height is known in advance and checked to the pixel, except today's,
# to which the host's own ticks may add the machine's real traffic.
set -u
BUILD=$(cd "${1:?usage: usage_screens.sh BUILD_DIR [KEEP_DIR]}" && pwd)
KEEP=${2:-${USAGE_SHOTS:-}}
HERE=$(cd "$(dirname "$0")" && pwd)
ART="$HERE/../../resources/art"
RUN="$BUILD/wine-run.sh"
KEY='HKLM\Software\Microsoft\Today\Items\Quorvane'
PREFIX="${QUORVANE_WINEPREFIX:-$BUILD/wineprefix}"
DATA_WIN='C:\quorvane-usage-e2e'
DATA="$PREFIX/drive_c/quorvane-usage-e2e"
OUT=$(mktemp -d)
SAVED=""

fail() { echo "usage_screens: $*"; exit 1; }
[ -f "$BUILD/todayhost.exe" ] || { echo "usage_screens: no host built, skipped"; exit 77; }
[ -n "${DISPLAY:-}" ] || { echo "usage_screens: no X display, skipped"; exit 77; }

restore() {
    if [ -n "$SAVED" ]; then
        "$RUN" reg add "$KEY" /v InstallDir /t REG_SZ /d "$SAVED" /f >/dev/null 2>&1
    else
        "$RUN" reg delete "$KEY" /v InstallDir /f >/dev/null 2>&1
    fi
    rm -rf "$DATA" "$OUT"
}
trap restore EXIT

SAVED=$("$RUN" reg query "$KEY" /v InstallDir 2>/dev/null | tr -d '\r' | sed -n 's/^ *InstallDir *REG_SZ *//p')
"$RUN" reg add "$KEY" /v InstallDir /t REG_SZ /d "$DATA_WIN" /f >/dev/null 2>&1 || fail "cannot set InstallDir"
mkdir -p "$DATA"
YEAR=$(date +%Y)
MONTH=$(date +%m)
TODAY=$(date +%d)

# The month's log. Day d has received R(d) and transmitted T(d) bytes in all,
# spread over its 24 hours; the peak day has 45,000,000 bytes, on the
# 40,960,000-51,200,000 row of the chart's scale (full scale 51,200,000), and
# today stays low, so that real traffic added meanwhile cannot change the scale.
cat > "$OUT/month.py" <<'PY'
def totals(d, today):
    peak = 28 if today != 28 else 27
    rx = 45000000 if d == peak else 45000000 * (30 if d == today else 40 + (d * 37) % 60) // 100
    return rx, rx * (20 + (d * 13) % 70) // 100
PY
python3 - "$DATA/$YEAR$MONTH.log" "$YEAR" "$MONTH" "$TODAY" "$OUT" <<'PY' || fail "cannot write the log"
import calendar, struct, sys
sys.path.insert(0, sys.argv[5])
from month import totals
path, year, month, today = sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), int(sys.argv[4])
out = bytearray()
for d in range(1, calendar.monthrange(year, month)[1] + 1):
    rx, tx = totals(d, today)
    for h in range(24):
        last = h == 23
        out += struct.pack("<bbHII", d, h, 0, rx // 24 + (rx % 24 if last else 0), tx // 24 + (tx % 24 if last else 0))
open(path, "wb").write(out)
PY

for case in 240x320:77,12:1 480x640:154,20:2 320x240:77,12:1 640x480:154,20:2; do
    screen=${case%%:*}
    rest=${case#*:}
    tap=${rest%:*}
    scale=${rest#*:}
    shot="$OUT/usage-daily-$screen.png"
    "$RUN" "$BUILD/todayhost.exe" --screen "$screen" --tap "$tap" --seconds 5 --screenshot "$shot" \
        || fail "host on $screen exited with $?"
    python3 - "$shot" "$scale" "$YEAR" "$MONTH" "$TODAY" "$ART" "$OUT" <<'PY' || fail "the $screen screenshot does not show the daily chart"
import calendar, sys
sys.path[:0] = [sys.argv[6], sys.argv[7]]
from artlib import load_png
from month import totals
img = load_png(sys.argv[1])
s, year, month, today = int(sys.argv[2]), int(sys.argv[3]), int(sys.argv[4]), int(sys.argv[5])
w, h = img.width, img.height
px = lambda x, y: img.get(x, y)[:3]
RED, BLUE = (255, 0, 0), (0, 0, 255)
AXIS, GRID = (70, 80, 96), (200, 208, 220)
bar = lambda c: c in (RED, BLUE)

# Bars: columns with a run of at least 20 bar pixels below the strip.
def run_bottom(x):
    best, start = None, None
    for y in range(60 * s, h):
        if bar(px(x, y)):
            start = y if start is None else start
            if y - start + 1 >= 20:
                best = y
        else:
            start = None
    return best
bottoms = {x: run_bottom(x) for x in range(w)}
columns = [x for x in range(w) if bottoms[x] is not None]
assert len(columns) >= 60, ("too few bar columns", len(columns))
base = max(set(bottoms[x] for x in columns), key=lambda b: sum(1 for x in columns if bottoms[x] == b))
first = min(x for x in columns if bottoms[x] == base)
assert bar(px(first + 2, base)) and not bar(px(first - 1, base)) and not bar(px(first + 3, base)), "bars are not 3 wide"

days = calendar.monthrange(year, month)[1]
full = 51200000.0
for d in range(1, days + 1):
    rx, tx = totals(d, today)
    pr, pt = int(rx * (1 / full) * 100), int(tx * (1 / full) * 100)
    x = first + (d - 1) * 5 * s
    if d == today:
        continue
    height = 0
    while bar(px(x, base - height)):
        height += 1
    assert height == max(pr, pt) * s, ("day", d, "bar", height, "expected", max(pr, pt) * s)
    # The shorter bar in front at the bottom, the taller one above it.
    assert px(x, base) == (RED if pt < pr else BLUE), ("day", d, "front colour", px(x, base))
    assert px(x, base - height + 1) == (BLUE if pt < pr else RED), ("day", d, "top colour")

# The axis right under the bars, the 100 % grid line level with a full bar's top.
assert sum(1 for x in range(first, first + 150 * s) if px(x, base + 1) == AXIS) > 120 * s, "no axis under the bars"
top = base - 100 * s + 1
assert sum(1 for x in range(first, first + 150 * s) if px(x, top) == GRID) > 30 * s, "no grid at 100 %"
assert not any(px(x, top - s) == GRID for x in range(first, first + 150 * s)), "grid off its level"
# The scale labels left of the chart, the top one ("50MB") beside the 100 % line.
chart_x = first - 5 * s
ink = lambda y0, y1: sum(1 for y in range(y0, y1) for x in range(max(0, chart_x - 27 * s), chart_x - s)
                         if sum(px(x, y)) < 200)
assert ink(top - 6 * s, top + 6 * s) > 5 * s, "no label at 100 %"
assert ink(top + 74 * s, top + 86 * s) > 5 * s, "no label at 20 %"
assert ink(base - 10 * s, base + 1) == 0, "ink beside the base line"
print("usage_screens: %dx%d chart base %d, day 1 at x %d" % (w, h, base, first))
PY
done
if [ -n "$KEEP" ]; then
    mkdir -p "$KEEP" && cp "$OUT"/*.png "$KEEP"/
fi
echo "usage_screens: ok"
