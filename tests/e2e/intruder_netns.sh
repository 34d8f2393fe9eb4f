#!/bin/sh
# intruder_netns.sh: on a test /24 the detector finds exactly the live hosts, their MACs and nmbd's name; ping's three outcomes.
# Usage: sh intruder_netns.sh BUILD_DIR [SHOTS_DIR]  (SHOTS_DIR receives the dialogs' screenshots)
#
# Six live hosts behind a bridge (tests/lan_netns.sh), one of them Samba's
# nmbd, one without NetBIOS; the device at .33. Wine runs in a fresh prefix
# whose wineserver starts in the device's namespace, with a HOME of its own
# (the documents folder, where the report goes). The host opens the detector
# by a tap; Detect, Export and the message box are clicked with xdotool at
# the places winprobe reads.
set -u
BUILD=$(cd "${1:?usage: intruder_netns.sh BUILD_DIR [SHOTS_DIR]}" && pwd)
SHOTS=${2:-${INTRUDER_SHOTS:-}}
HERE=$(cd "$(dirname "$0")" && pwd)
RUN="$BUILD/wine-run.sh"
PROBE="$BUILD/winprobe.exe"

skip() { echo "intruder_netns: skipped: $*"; exit 77; }
fail() { echo "intruder_netns: $*"; [ -f "$WORK/host.log" ] && cat "$WORK/host.log"; exit 1; }

[ "$(id -u)" = 0 ] || skip "needs root for network namespaces"
for tool in ip python3 xdotool; do command -v $tool >/dev/null 2>&1 || skip "no $tool"; done
command -v nmbd >/dev/null 2>&1 || [ -x /usr/sbin/nmbd ] || skip "no nmbd (Debian's samba)"
PATH=$PATH:/usr/sbin
[ -f "$BUILD/todayhost.exe" ] && [ -f "$PROBE" ] || skip "no host or winprobe built"
if [ -z "${DISPLAY:-}" ]; then
    command -v xvfb-run >/dev/null 2>&1 || skip "no display and no xvfb-run"
    exec xvfb-run -a -s "-screen 0 1280x1024x24" sh "$0" "$@"
fi

WORK=$(mktemp -d /tmp/intruder_netns.XXXXXX)
LAN_TAG=q11$$
LAN_WORK=$WORK
. "$HERE/../lan_netns.sh"
NS=$LAN_TAG-s
export QUORVANE_WINEPREFIX="$WORK/prefix" WINEPREFIX="$WORK/prefix" HOME="$WORK/home"
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="

cleanup() {
    [ -n "${HOST:-}" ] && kill "$HOST" 2>/dev/null
    lan_down
    rm -rf "/etc/netns/$NS" "$WORK"
}
trap cleanup EXIT
trap 'exit 1' INT TERM HUP

# Names for the device: one test host by name; any other name goes to a
# resolver on loopback where nothing listens.
mkdir -p "/etc/netns/$NS" "$HOME"
echo "198.51.100.7 qvlive" > "/etc/netns/$NS/hosts"
echo "nameserver 127.0.0.1" > "/etc/netns/$NS/resolv.conf"
lan_up || skip "network namespaces, bridges or veths unavailable"

lan_wine_up || fail "wineboot failed"
DATA="$WINEPREFIX/drive_c/Program Files/Ostrik/Quorvane"
mkdir -p "$DATA"
# .7 is known: its MAC is in the safe list.
python3 -c "import sys; open(sys.argv[1], 'wb').write(bytes([2, 0x11, 0, 0, 0, 7]))" "$DATA/slist.dat"

probe() { lan_in_scan "$RUN" "$PROBE" "$@" 2>/dev/null | tr -d '\r'; }
# Clicks the middle of control ID of the window titled TITLE.
click() {
    rect=$(probe list "$1" | awk -F '\t' -v id="$2" '$1 == id { print $3 }')
    [ -n "$rect" ] || fail "no control $2 in \"$1\""
    set -- $rect
    xdotool mousemove $(($1 + $3 / 2)) $(($2 + $4 / 2)) click 1
}
# Runs the host with one tap; it ends by itself after SECONDS, with a screenshot.
host() {
    lan_in_scan "$RUN" "$BUILD/todayhost.exe" --tap "$1" --seconds "$2" --screenshot "$3" \
        >"$WORK/host.log" 2>&1 </dev/null &
    HOST=$!
}
wait_host() { wait "$HOST" || fail "the host exited with $?"; HOST=""; }

# --- The detector ---
START=$(date +%s)
host 190,10 36 "$WORK/intruder-done.png"
probe wait "Intruder Detector" 30 >/dev/null || fail "the detector did not open"
click "Intruder Detector" 1085
DETECTED=$(date +%s)
# The scan is over when the rows come sorted by address: while it runs each
# new row goes on top.
WANT="QVHOST1	198.51.100.1	02:11:00:00:00:01
QVHOST7	198.51.100.7	02:11:00:00:00:07
$LAN_NMBD_NAME	198.51.100.20	02:11:00:00:00:14
	198.51.100.33	02:11:00:00:00:21
QVHOST100	198.51.100.100	02:11:00:00:00:64
QVHOST200	198.51.100.200	02:11:00:00:00:C8
	198.51.100.254	02:11:00:00:00:FE"
ROWS=""
while [ $(( $(date +%s) - DETECTED )) -lt 25 ]; do
    ROWS=$(probe items "Intruder Detector" 1089)
    [ "$ROWS" = "$WANT" ] && break
    sleep 0.5
done
[ "$ROWS" = "$WANT" ] || fail "the list shows
$ROWS
instead of
$WANT"
echo "intruder_netns: scan finished in about $(( $(date +%s) - DETECTED )) s"

click "Intruder Detector" 1090
probe wait "Infomation" 10 >/dev/null || fail "no message after Export"
MESSAGE=$(probe list "Infomation" | awk -F '\t' '$2 == "Static" && $4 ~ /Data output/ { print $4 }')
click "Infomation" "$(probe list "Infomation" | awk -F '\t' '$4 == "OK" { print $1 }')"
REPORT=$(find "$HOME" "$WINEPREFIX/drive_c/users" -name 'QuorvaneRpt001.csv' 2>/dev/null | head -n 1)
[ -n "$REPORT" ] || fail "no report in the documents folder ($MESSAGE)"
case "$MESSAGE" in *QuorvaneRpt001.csv) ;; *) fail "the message says \"$MESSAGE\"" ;; esac
printf '"Host","Intruder","IP","Mac Addr"\n"QVHOST1","Yes","198.51.100.1","02:11:00:00:00:01"\n"QVHOST7","No","198.51.100.7","02:11:00:00:00:07"\n"%s","Yes","198.51.100.20","02:11:00:00:00:14"\n"","No","198.51.100.33","02:11:00:00:00:21"\n"QVHOST100","Yes","198.51.100.100","02:11:00:00:00:64"\n"QVHOST200","Yes","198.51.100.200","02:11:00:00:00:C8"\n"","Yes","198.51.100.254","02:11:00:00:00:FE"\n' \
    "$LAN_NMBD_NAME" > "$WORK/want.csv"
cmp -s "$WORK/want.csv" "$REPORT" || { diff "$WORK/want.csv" "$REPORT"; fail "the report differs"; }
wait_host
[ -s "$WORK/intruder-done.png" ] || fail "no screenshot of the finished scan"
# On the screen: the rows' badges from the top, as many as the list shows
# (.1 .7 .20 .33 .100 ...): only .7 (safe-listed) and .33 (the device) green.
python3 - "$HERE/../../resources/art" "$WORK/intruder-done.png" <<'PY' || fail "the rows' badges are not intruder, safe, intruder, safe, intruder"
import sys
sys.path.insert(0, sys.argv[1])
from artlib import load_png
img = load_png(sys.argv[2])
near = lambda c, ref: sum(abs(a - b) for a, b in zip(c, ref)) < 60
kinds = []
for y in range(75, img.height):
    row = [img.get(x, y)[:3] for x in range(img.width // 2)]
    kind = "intruder" if sum(near(c, (214, 48, 40)) for c in row) >= 4 else \
           "safe" if sum(near(c, (36, 160, 72)) for c in row) >= 4 else None
    if kind and (not kinds or kinds[-1][0] != kind or y - kinds[-1][1] > 3):
        kinds.append([kind, y])
    elif kind:
        kinds[-1][1] = y
shown = [k for k, _ in kinds]
print("intruder_netns: badges", " ".join(shown))
assert shown[:5] == ["intruder", "safe", "intruder", "safe", "intruder"], shown
PY

# --- Ping: a dead host, a name nobody knows, a live host by name ---
host 115,10 28 "$WORK/ping.png"
probe wait "Ping" 30 >/dev/null || fail "the ping dialog did not open"
ping_line() {
    click "Ping" 1007
    xdotool key End $(printf 'BackSpace %.0s' $(seq 1 30))
    xdotool type --delay 20 "$1"
    click "Ping" 1024
    t=0
    while [ $t -lt 30 ]; do
        sleep 0.5
        LINE=$(probe text "Ping" 1025)
        [ -n "$LINE" ] && [ "$LINE" != "Pinging..." ] && break
        t=$((t + 1))
    done
    TIME=$(probe text "Ping" 1026)
    MAC=$(probe text "Ping" 1038)
}
ping_line 198.51.100.99
case "$LINE" in "Request timed out." | "Destination host unreachable.") ;; *) fail "dead host: \"$LINE\"" ;; esac
[ -z "$TIME$MAC" ] || fail "dead host shows \"$TIME\" \"$MAC\""
ping_line nosuchhost.invalid
[ "$LINE" = "Unknown host: nosuchhost.invalid" ] || fail "unknown name: \"$LINE\""
ping_line qvlive
[ "$LINE" = "Host (198.51.100.7) is alive" ] || fail "live host: \"$LINE\""
echo "$TIME" | grep -Eq '^Round Trip Time: [0-9]+ ms$' || fail "live host: \"$TIME\""
[ "$MAC" = "MAC Address: 02:11:00:00:00:07" ] || fail "live host: \"$MAC\""
HOSTS=$(probe items "Ping" 1007 | tr '\n' ' ')
[ "$HOSTS" = "198.51.100.99 nosuchhost.invalid qvlive " ] || fail "the host list holds \"$HOSTS\""
wait_host

if [ -n "$SHOTS" ]; then
    mkdir -p "$SHOTS"
    cp "$WORK/intruder-done.png" "$SHOTS/intruder-done.png"
    cp "$WORK/ping.png" "$SHOTS/ping.png"
    # Mid-scan: the host ends a few seconds after Detect.
    host 190,10 7 "$SHOTS/intruder-scanning.png"
    probe wait "Intruder Detector" 30 >/dev/null && click "Intruder Detector" 1085
    wait_host
    # The host writes them uncompressed.
    python3 - "$HERE/../../resources/art" "$SHOTS" <<'PY'
import sys
sys.path.insert(0, sys.argv[1])
from artlib import load_png, save_png
for name in ("ping", "intruder-scanning", "intruder-done"):
    path = "%s/%s.png" % (sys.argv[2], name)
    save_png(load_png(path), path)
PY
fi
echo "intruder_netns: ok ($(( $(date +%s) - START )) s)"
