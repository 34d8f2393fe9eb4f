#!/bin/sh
# livegraph_screen.sh: a tap on the strip's graph opens the live graph; the screenshot shows it, on four screens.
set -u
BUILD=${1:?usage: livegraph_screen.sh BUILD_DIR}
RUN="$BUILD/wine-run.sh"
ART="$(cd "$(dirname "$0")/../../resources/art" && pwd)"
OUT=$(mktemp -d)
trap 'rm -rf "$OUT"' EXIT
fail() { echo "livegraph_screen: $*"; exit 1; }

[ -x "$RUN" ] && [ -f "$BUILD/todayhost.exe" ] || { echo "livegraph_screen: no host built"; exit 77; }

# Screen, tap inside the graph area (item coordinates), scale.
for case in 240x320:10,10:1 480x640:20,20:2 320x240:10,10:1 640x480:20,20:2; do
    screen=${case%%:*}
    rest=${case#*:}
    tap=${rest%:*}
    scale=${rest#*:}
    shot="$OUT/livegraph-$screen.png"
    # The labels show once the item has ticked twice (the first tick only
    # primes the counters) and the graph has repainted after that. Counted in
    # seconds, that window shrank under load (the dialog's opening and every
    # timer slip); counted in the host's own 2-second cycles, processed in
    # turn with the item's ticks and the graph's repaints, five cycles always
    # hold two ticks and a repaint after them.
    "$RUN" "$BUILD/todayhost.exe" --screen "$screen" --tap "$tap" --ticks 5 --screenshot "$shot" \
        || fail "host on $screen exited with $?"
    python3 - "$ART" "$shot" "$scale" <<'PY' || fail "the $screen screenshot does not show the live graph"
import sys
sys.path.insert(0, sys.argv[1])
from artlib import load_png
img = load_png(sys.argv[2])
s = int(sys.argv[3])
w, h = img.width, img.height
def px(x, y):
    return img.get(x, y)[:3]

RED, BLUE, WHITE = (255, 0, 0), (0, 0, 255), (255, 255, 255)
# The background's legend: a red bar (3 x 9 at scale 1) over a blue one 14
# below, at surface (178, 15). The strip's own legend lies above y 50 s.
def bar(x, y, colour):
    return all(px(x + i, y + j) == colour for i in range(3 * s) for j in range(9 * s))
found = None
for y in range(50 * s, h - 30 * s):
    for x in range(0, w - 3 * s):
        if px(x, y) == RED and bar(x, y, RED) and px(x, y - 1) != RED and px(x - 1, y) != RED \
                and bar(x, y + 14 * s, BLUE):
            found = (x, y)
            break
    if found:
        break
assert found, "no live graph legend below the strip"
ox, oy = found[0] - 178 * s, found[1] - 15 * s      # the painted surface's origin
assert ox >= 0 and oy >= 0 and ox + 210 * s <= w and oy + 120 * s <= h, ("surface off screen", ox, oy)
S = lambda x, y: px(ox + x * s, oy + y * s)
# White around the image, the image's frame and axis where the painter's baseline is.
assert S(1, 1) == WHITE and S(20, 116) == WHITE, (S(1, 1), S(20, 116))
r, g, b = S(100, 114)
assert b > r + 20 and r < 120, ("baseline", (r, g, b))
# Scale labels (drawn once there is a sample): dark ink in the top label box.
ink = sum(1 for y in range(7 * s, 22 * s) for x in range(2 * s, 29 * s) if sum(px(ox + x, oy + y)) < 200)
assert ink > 5 * s, ("no scale label", ink)
# The dialog sits on the device screen, under the taskbar's top edge.
assert oy > 16 * s, oy
print("livegraph_screen: %s surface at %d,%d" % (sys.argv[2].rsplit("-", 1)[1], ox, oy))
PY
done
[ -n "${LIVEGRAPH_SHOTS:-}" ] && mkdir -p "$LIVEGRAPH_SHOTS" && cp "$OUT"/*.png "$LIVEGRAPH_SHOTS"/
echo "livegraph_screen: ok"
