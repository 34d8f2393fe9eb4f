#!/bin/sh
# strip_screenshot.sh: the strip on a normal and a hi-res screen with traffic flowing, checked by its pixels.
# Usage: sh strip_screenshot.sh BUILD_DIR [KEEP_DIR]  (KEEP_DIR receives strip-normal.png, strip-hires.png, livegraph.png)
#
# Traffic: as root, the host runs in a network namespace of its own whose only
# Ethernet adapter is one end of a veth pair (198.51.100.10/24); a peer namespace
# (198.51.100.20) sends it a varying UDP load and an echo in the first namespace
# answers with a twelfth of it, so both counters move, the sent one lower.
# Without root the strip is still shot and checked, but for the traffic colours.
set -u
if [ -z "${DISPLAY:-}" ]; then
    command -v xvfb-run >/dev/null 2>&1 || { echo "strip_screenshot: no display and no xvfb-run, skipped"; exit 77; }
    exec xvfb-run -a -s "-screen 0 1280x1024x24" sh "$0" "$@"
fi
BUILD=$(cd "${1:?usage: strip_screenshot.sh BUILD_DIR [KEEP_DIR]}" && pwd)
KEEP=${2:-}
HERE=$(cd "$(dirname "$0")" && pwd)
ART="$HERE/../../resources/art"
RUN="$BUILD/wine-run.sh"
TICKS=${STRIP_TICKS:-23}
OUT=$(mktemp -d)
NS_A=qvstrip$$a
NS_B=qvstrip$$b
PREFIX="$BUILD/wineprefix-strip"
NETNS=0

cleanup() {
    [ -f "$OUT/echo.pid" ] && kill "$(cat "$OUT/echo.pid")" 2>/dev/null
    [ -f "$OUT/load.pid" ] && kill "$(cat "$OUT/load.pid")" 2>/dev/null
    if [ "$NETNS" = 1 ]; then
        ip netns exec "$NS_A" env WINEPREFIX="$PREFIX" wineserver -k >/dev/null 2>&1
        ip netns del "$NS_A" 2>/dev/null
        ip netns del "$NS_B" 2>/dev/null
    fi
    rm -rf "$OUT"
}
trap cleanup EXIT
trap 'exit 1' INT TERM HUP
fail() { echo "strip_screenshot: $*"; exit 1; }

[ -x "$BUILD/todayhost.exe" ] || [ -f "$BUILD/todayhost.exe" ] || fail "no todayhost.exe in $BUILD"

if [ "$(id -u)" = 0 ] && ip netns add "$NS_A" 2>/dev/null; then
    NETNS=1
    ip netns add "$NS_B" || fail "cannot make namespace $NS_B"
    ip link add qvs$$a type veth peer name qvs$$b || fail "cannot make the veth pair"
    ip link set qvs$$a netns "$NS_A"
    ip link set qvs$$b netns "$NS_B"
    ip -n "$NS_A" addr add 198.51.100.10/24 dev qvs$$a
    ip -n "$NS_B" addr add 198.51.100.20/24 dev qvs$$b
    for ns in "$NS_A" "$NS_B"; do ip -n "$ns" link set lo up; done
    ip -n "$NS_A" link set qvs$$a up
    ip -n "$NS_B" link set qvs$$b up

    # The echo: answers every datagram with a twelfth of its size.
    ip netns exec "$NS_A" python3 - "$OUT/echo.pid" <<'PY' &
import os, socket, sys
open(sys.argv[1], "w").write(str(os.getpid()))
s = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
s.bind(("198.51.100.10", 7000))
while True:
    data, peer = s.recvfrom(65536)
    s.sendto(data[: max(1, len(data) // 12)], peer)
PY
    # The load: a different volume every 2 s, from a few hundred bytes to a megabyte.
    ip netns exec "$NS_B" python3 - "$OUT/load.pid" <<'PY' &
import os, socket, sys, time
open(sys.argv[1], "w").write(str(os.getpid()))
s = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
s.setblocking(False)
pattern = [600, 3000, 14000, 45000, 120000, 30000, 8000, 260000, 650000, 1000000,
           380000, 90000, 20000, 5000, 1500, 70000, 160000, 420000, 48000, 9000]
time.sleep(1.0)
start = time.time()
period = 0
while True:
    total = pattern[period % len(pattern)]
    end = start + 2.0 * (period + 1)
    chunks = max(1, total // 1400)
    for i in range(chunks):
        try:
            s.sendto(b"q" * min(1400, total), ("198.51.100.10", 7000))
        except BlockingIOError:
            pass
        try:
            while True:
                s.recv(65536)
        except BlockingIOError:
            pass
        time.sleep(max(0.0, (end - 0.3 - time.time()) / max(1, chunks - i)))
    time.sleep(max(0.0, end - time.time()))
    period += 1
PY
    # A prefix of its own whose server lives in the namespace, so Wine sees the veth
    # adapter; a server left over from an interrupted run would live elsewhere.
    WINEPREFIX="$PREFIX" wineserver -k >/dev/null 2>&1
    ip netns exec "$NS_A" env QUORVANE_WINEPREFIX="$PREFIX" "$RUN" cmd /c exit >/dev/null 2>&1
    ip netns exec "$NS_A" env WINEPREFIX="$PREFIX" wineserver -p >/dev/null 2>&1
    HOSTRUN="ip netns exec $NS_A env QUORVANE_WINEPREFIX=$PREFIX $RUN"
else
    echo "strip_screenshot: not root, no traffic: the traffic colours are not checked"
    HOSTRUN="$RUN"
fi

$HOSTRUN "$BUILD/todayhost.exe" --screen 240x320 --ticks "$TICKS" --screenshot "$OUT/strip-normal.png" \
    || fail "host (240x320) exited with $?"
$HOSTRUN "$BUILD/todayhost.exe" --screen 480x640 --ticks "$TICKS" --screenshot "$OUT/strip-hires.png" \
    || fail "host (480x640) exited with $?"

python3 - "$ART" "$OUT" "$NETNS" <<'PY' || fail "the screenshots lack an essential"
import sys
sys.path.insert(0, sys.argv[1])
from artlib import load_png
import iconkit as kit

out, traffic = sys.argv[2], sys.argv[3] == "1"
TOOLS = [  # x of the icon at s = 1, its tile colour: the order of the strip
    (69, "usage"), (88, "dhcp"), (107, "ping"), (126, "adapter"), (145, "scanner"),
    (164, "card"), (183, "intruder"), (202, "applet17"), (221, "applet19")]

def near(p, c, tol):
    return all(abs(p[i] - c[i]) <= tol for i in range(3))

def check(name, s):
    img = load_png("%s/strip-%s.png" % (out, name))
    top = 48 * s                       # the item sits under the host's taskbar and date line
    px = lambda x, y: img.get(x, top + y)
    problems = []
    # Graph background: its frame and paper where the painter copies the surface.
    gx, gy = 3, 1 if s == 1 else 3
    w, h = (44, 22) if s == 1 else (88, 33)
    if not near(px(gx, gy), (138, 154, 176), 4):
        problems.append("graph frame missing at (%d,%d): %s" % (gx, gy, px(gx, gy)))
    paper = sum(1 for y in range(gy, gy + h) for x in range(gx, gx + w)
                if near(px(x, y), (227, 234, 243), 14) or near(px(x, y), (247, 249, 252), 6))
    if paper < w * h // 3:
        problems.append("graph paper covers only %d pixels" % paper)
    # Silver baseline once samples exist, at the baseline row from x 1.
    base = (20 if s == 1 else 31) + gy
    silver = sum(1 for x in range(gx + 1, gx + (41 if s == 1 else 85)) if near(px(x, base), (192, 192, 192), 2))
    if silver < 20:
        problems.append("silver baseline missing (%d pixels)" % silver)
    if traffic:
        red = sum(1 for y in range(gy, gy + h) for x in range(gx, gx + w) if px(x, y)[:3] == (255, 0, 0))
        blue = sum(1 for y in range(gy, gy + h) for x in range(gx, gx + w) if px(x, y)[:3] == (0, 0, 255))
        if red < 10 or blue < 10:
            problems.append("traffic lines missing: %d red, %d blue pixels" % (red, blue))
    # The signal icon over its tap range: grey or coloured bars.
    sig = [px(x, y) for y in range(4, 4 + 16 * s) for x in range(50 * s, 66 * s)]
    if sum(1 for p in sig if any(near(p, c, 30) for c in kit.LEVEL_COLOURS)) < 12 * s * s:
        problems.append("signal icon missing")
    # Each tool's tile under its tap range.
    for x0, tool in TOOLS:
        colour = kit.TOOL_COLOURS[tool]
        box = [px(x, y) for y in range(4, 4 + 16 * s) for x in range(x0 * s, (x0 + 16) * s + 1)]
        hits = sum(1 for p in box if near(p, colour, 48))
        if hits < len(box) // 6:     # the tile shows around its white glyph
            problems.append("%s icon missing (%d of %d pixels)" % (tool, hits, len(box)))
    return problems

bad = check("normal", 1) + ["hi-res: " + p for p in check("hires", 2)]
for p in bad:
    print(p)
sys.exit(1 if bad else 0)
PY

if [ -n "$KEEP" ]; then
    mkdir -p "$KEEP"
    # For the README: the live graph over the same traffic (opened by a tap on the graph).
    $HOSTRUN "$BUILD/todayhost.exe" --screen 480x640 --tap 20,20 --ticks "$TICKS" --screenshot "$OUT/livegraph.png" \
        || fail "host (live graph) exited with $?"
    # The host writes its pictures uncompressed; these are kept, so squeeze them.
    python3 - "$ART" "$OUT" "$KEEP" <<'PY' || fail "cannot write to $KEEP"
import sys
sys.path.insert(0, sys.argv[1])
from artlib import load_png, save_png
for name in ("strip-normal.png", "strip-hires.png", "livegraph.png"):
    save_png(load_png("%s/%s" % (sys.argv[2], name)), "%s/%s" % (sys.argv[3], name))
PY
fi
echo "strip_screenshot: ok"
