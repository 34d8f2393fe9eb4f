#!/bin/sh
# wireless_tools.sh: the signal view, the 802.11 scanner and the card details open from their icons under Wine (no wireless adapter there) and close again.
set -u
BUILD=${1:?usage: wireless_tools.sh BUILD_DIR}
RUN="$BUILD/wine-run.sh"
PROBE="$BUILD/winprobe.exe"
OUT=$(mktemp -d)
HOST_PID=
trap '[ -n "$HOST_PID" ] && kill "$HOST_PID" 2>/dev/null; rm -rf "$OUT"' EXIT
fail() { echo "wireless_tools: $*"; exit 1; }

[ -x "$RUN" ] && [ -f "$BUILD/todayhost.exe" ] && [ -f "$PROBE" ] || { echo "wireless_tools: no host or winprobe built"; exit 77; }
command -v xdotool >/dev/null || { echo "wireless_tools: no xdotool"; exit 77; }
[ -n "${DISPLAY:-}" ] || { echo "wireless_tools: no display"; exit 77; }

# winprobe's output without carriage returns, and its exit status.
probe() {
    "$RUN" "$PROBE" "$@" > "$OUT/probe"
    rc=$?
    tr -d '\r' < "$OUT/probe"
    return $rc
}
# A click as a user's: Wine's unmanaged windows take the pointer once they have the focus.
click() {
    [ -n "${3:-}" ] && xdotool search --name "$3" | head -1 | xargs -r xdotool windowfocus --sync
    xdotool mousemove "$1" "$2" click 1
}

"$RUN" "$BUILD/todayhost.exe" --seconds 60 &
HOST_PID=$!
probe wait "Quorvane - Today" 20 >/dev/null || fail "the host did not come up"
set -- $(probe client "Quorvane - Today")
SX=$1 SY=$2
# The item lies under the taskbar (26) and the date line (22); its icon row
# starts 4 lower. Icon centres at x 58, 153 and 172 on a normal screen.
ROW_Y=$((SY + 26 + 22 + 12))

# Waits up to 5 s for a dialog to go.
gone() {
    for i in 1 2 3 4 5 6 7 8 9 10; do
        probe wait "$1" 0 >/dev/null || return 0
        sleep 0.5
    done
    return 1
}
HOST="Quorvane - Today"

# One tool: tap its icon, wait for its dialog, read a control, press OK.
# Arguments: icon x, title, control id, the text it must show.
tool() {
    click $((SX + $1)) "$ROW_Y" "$HOST"
    probe wait "$2" 10 > "$OUT/wait" || fail "$2: no dialog after a tap at x $1"
    shown=$(probe text "$2" "$3") || fail "$2: control $3 unreadable (hung?)"
    [ "$shown" = "$4" ] || fail "$2: control $3 shows '$shown', not '$4'"
    probe list "$2" > "$OUT/controls" || fail "$2: controls unreadable"
    ok=$(awk -F'\t' '$1 == 1 { print $3 }' "$OUT/controls")
    [ -n "$ok" ] || fail "$2: no OK button"
    set -- $ok "$2"
    click $(($1 + $3 / 2)) $(($2 + $4 / 2)) "$5"
    gone "$5" || fail "$5: still open after OK"
}

# No wireless adapter under Wine: no signal, nothing to list, nothing known.
tool 58 "Signal" 1068 "No Signal"
tool 172 "Wireless Card Details" 1051 ""
click $((SX + 153)) "$ROW_Y" "$HOST"
probe wait "802.11 Scanner" 10 >/dev/null || fail "802.11 Scanner: no dialog"
# Past the first scan period: the timer never started, the dialog still answers.
sleep 6
[ -z "$(probe items "802.11 Scanner" 1059)" ] || fail "802.11 Scanner: rows without an adapter"
[ "$(probe text "802.11 Scanner" 1039)" = "" ] || fail "802.11 Scanner: an associated SSID without an adapter"
probe close "802.11 Scanner" >/dev/null
gone "802.11 Scanner" || fail "802.11 Scanner: still open after closing"
tool 153 "802.11 Scanner" 1040 ""
tool 58 "Signal" 1067 "-200dBm"

kill "$HOST_PID" 2>/dev/null
wait "$HOST_PID" 2>/dev/null
HOST_PID=

# Landscape: the scanner comes from its wide template.
"$RUN" "$BUILD/todayhost.exe" --screen 320x240 --seconds 60 &
HOST_PID=$!
probe wait "Quorvane - Today" 20 >/dev/null || fail "the landscape host did not come up"
set -- $(probe client "Quorvane - Today")
SX=$1 SY=$2
click $((SX + 153)) $((SY + 26 + 22 + 12)) "$HOST"
set -- $(probe wait "802.11 Scanner" 10) || fail "802.11 Scanner: no dialog in landscape"
[ "$4" -gt "$5" ] || fail "802.11 Scanner: $4 x $5 in landscape is not the wide template"
probe close "802.11 Scanner" >/dev/null
kill "$HOST_PID" 2>/dev/null
wait "$HOST_PID" 2>/dev/null
HOST_PID=
echo "wireless_tools: ok"
