#!/bin/sh
# dhcp_detect_netns.sh: Detect in the DHCP dialog shows the address two echo servers of the test see, the second when the first is down.
# Usage: sh dhcp_detect_netns.sh BUILD_DIR [KEEP_DIR]  (KEEP_DIR receives the dialogs' screenshots)
#
# The device namespace holds one veth (198.51.100.2/24, a fixed MAC, DNS
# servers from its own resolv.conf) facing a server namespace where two HTTP
# echo servers (198.51.100.80 and .81, named echo1/echo2.qv10.test through
# the device namespace's own hosts file) answer "ip/ip.php" with the caller's
# address. The host runs the real DLL under Wine there, in a fresh prefix
# whose wineserver starts inside the namespace; the test taps the strip and
# presses the dialogs' buttons with xdotool and reads them with winprobe.
set -u
BUILD=${1:?usage: dhcp_detect_netns.sh BUILD_DIR [KEEP_DIR]}
BUILD=$(cd "$BUILD" && pwd)
KEEP=${2:-${ADAPTER_SHOTS:-}}
# Both servers down, Detect must give up within the internet library's own
# time-outs: refused connections at once; unanswered ones within its default
# connect time-out (60 s) per server.
REFUSED_LIMIT=30
UNREACHABLE_LIMIT=150

skip() { echo "dhcp_detect_netns: skipped: $*"; exit 77; }
fail() { echo "dhcp_detect_netns: $*"; exit 1; }

[ "$(id -u)" = 0 ] || skip "needs root for network namespaces"
for tool in ip python3 xdotool; do
    command -v $tool >/dev/null 2>&1 || skip "no $tool"
done
[ -f "$BUILD/winprobe.exe" ] || skip "no winprobe built"
if [ -z "${DISPLAY:-}" ]; then
    command -v xvfb-run >/dev/null 2>&1 || skip "no display and no xvfb-run"
    exec xvfb-run -a -s "-screen 0 1280x1024x24" sh "$0" "$@"
fi

TAG=qv10-$$
NS=$TAG-dev
SRV=$TAG-srv
WORK=$(mktemp -d /tmp/dhcp_detect_netns.XXXXXX)
export QUORVANE_WINEPREFIX="$WORK/prefix" WINEPREFIX="$WORK/prefix"
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
unset http_proxy HTTP_PROXY
HOSTPID=""

in_ns() { ip netns exec "$NS" "$@"; }
probe() { in_ns "$BUILD/wine-run.sh" "$BUILD/winprobe.exe" "$@" 2>/dev/null | tr -d '\r'; }

cleanup() {
    for pid in "$WORK"/server*.pid; do
        [ -f "$pid" ] && kill "$(cat "$pid")" 2>/dev/null
    done
    if ip netns list 2>/dev/null | grep -q "^$NS\b"; then
        in_ns wineserver -k >/dev/null 2>&1
        ip netns del "$NS" 2>/dev/null
    fi
    ip netns del "$SRV" 2>/dev/null
    rm -rf "/etc/netns/$NS" "$WORK"
}
trap cleanup EXIT
trap 'exit 1' INT TERM HUP

ip netns add "$NS" 2>/dev/null || skip "network namespaces unavailable"
ip netns add "$SRV" 2>/dev/null || skip "network namespaces unavailable"
ip link add "${TAG}a" type veth peer name "${TAG}b" 2>/dev/null || skip "no veth support"
ip link set "${TAG}a" netns "$NS" && ip link set "${TAG}b" netns "$SRV" || fail "cannot move the veth ends"
for n in "$NS" "$SRV"; do
    ip netns exec "$n" sysctl -qw net.ipv6.conf.all.disable_ipv6=1 net.ipv6.conf.default.disable_ipv6=1 2>/dev/null
    ip -n "$n" link set lo up
done
ip -n "$NS" link set "${TAG}a" address 02:00:5e:10:00:02
ip -n "$NS" addr add 198.51.100.2/24 dev "${TAG}a" && ip -n "$NS" link set "${TAG}a" up || fail "device end"
ip -n "$NS" route add default via 198.51.100.1 || fail "gateway"
ip -n "$SRV" addr add 198.51.100.80/24 dev "${TAG}b" && ip -n "$SRV" addr add 198.51.100.81/24 dev "${TAG}b" &&
    ip -n "$SRV" link set "${TAG}b" up || fail "server end"
mkdir -p "/etc/netns/$NS"
printf '127.0.0.1 localhost\n198.51.100.80 echo1.qv10.test\n198.51.100.81 echo2.qv10.test\n' >"/etc/netns/$NS/hosts"
printf 'nameserver 198.51.100.53\nnameserver 198.51.100.54\n' >"/etc/netns/$NS/resolv.conf"

cat >"$WORK/echo.py" <<'PY'
import http.server, os, sys
address, pidfile, log = sys.argv[1], sys.argv[2], sys.argv[3]
class Echo(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        open(log, "a").write(self.path + "\n")
        if self.path != "/ip/ip.php":
            self.send_error(404)
            return
        body = (self.client_address[0] + "\r\n").encode()
        self.send_response(200)
        self.send_header("Content-Type", "text/plain")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)
    def log_message(self, *args):
        pass
server = http.server.HTTPServer((address, 80), Echo)
open(pidfile, "w").write(str(os.getpid()))
server.serve_forever()
PY
start_server() {   # 1 or 2
    rm -f "$WORK/server$1.pid"
    ip netns exec "$SRV" python3 "$WORK/echo.py" "198.51.100.8$(($1 - 1))" "$WORK/server$1.pid" "$WORK/server$1.log" \
        >/dev/null 2>&1 </dev/null &
    i=0
    until [ -s "$WORK/server$1.pid" ]; do
        i=$((i + 1)); [ $i -lt 50 ] || fail "echo server $1 did not start"; sleep 0.1
    done
}
stop_server() {
    kill "$(cat "$WORK/server$1.pid")" 2>/dev/null
    rm -f "$WORK/server$1.pid"
    sleep 0.3
}
requests() { [ -f "$WORK/server$1.log" ] && wc -l <"$WORK/server$1.log" || echo 0; }
start_server 1
start_server 2

# Wine: its server first, inside the namespace, then a fresh prefix.
mkdir -p "$WINEPREFIX"
in_ns wineserver -p >/dev/null 2>&1 </dev/null
in_ns wineboot -i >/dev/null 2>&1 || fail "wineboot failed"
in_ns wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /t REG_SZ /d N /f >/dev/null 2>&1
KEY='HKLM\Software\Microsoft\Today\Items\Quorvane'
for v in EchoHost1=echo1.qv10.test EchoPath1=ip/ip.php EchoHost2=echo2.qv10.test EchoPath2=ip/ip.php; do
    in_ns wine reg add "$KEY" /v "${v%%=*}" /t REG_SZ /d "${v#*=}" /f >/dev/null 2>&1 || fail "cannot set ${v%%=*}"
done
touch "$WINEPREFIX/.quorvane-ready"

# The host on a screen, until closed; the item's place on the X screen.
start_host() {   # SCREEN SHOT
    in_ns "$BUILD/wine-run.sh" "$BUILD/todayhost.exe" --screen "$1" --seconds 200 --screenshot "$2" \
        >"$WORK/host.log" 2>&1 </dev/null &
    HOSTPID=$!
    probe wait "Quorvane - Today" 30 >/dev/null || fail "no host window: $(cat "$WORK/host.log")"
    i=0
    ITEM=""
    while [ -z "$ITEM" ]; do
        ITEM=$(probe list "Quorvane - Today" | awk -F'\t' '$2 == "QUORVANECLASS" { print $3 }')
        i=$((i + 1)); [ $i -lt 30 ] || fail "no item in the host"; sleep 0.5
    done
    set -- $ITEM
    ITEM_X=$1 ITEM_Y=$2
    # The strip is drawn once the host has asked twice.
    sleep 3
}
end_host() {
    probe close "Quorvane - Today" >/dev/null
    wait "$HOSTPID" || fail "the host exited with $?: $(cat "$WORK/host.log")"
}
tap() {   # item coordinates
    xdotool mousemove $((ITEM_X + $1)) $((ITEM_Y + $2)) click 1
}
# Clicks the centre of control ID of the open dialog.
press() {
    r=$(probe list "class:#32770" | awk -F'\t' -v id="$1" '$1 == id { print $3 }')
    [ -n "$r" ] || fail "no control $1 in the dialog"
    set -- $r
    xdotool mousemove $(($1 + $3 / 2)) $(($2 + $4 / 2)) click 1
}
open_dialog() {   # X Y of the icon
    tap "$1" "$2"
    probe wait "class:#32770" 20 >/dev/null || fail "no dialog after a tap at $1,$2"
}
text() { probe text "class:#32770" "$1"; }
# Waits for control ID to read TEXT.
await_text() {   # ID TEXT SECONDS
    i=0
    while [ "$(text "$1")" != "$2" ]; do
        i=$((i + 1)); [ $i -le $(($3 * 4)) ] || return 1; sleep 0.25
    done
}

# Presses Detect with the line showing an address and both servers down:
# the line must clear within the limit. A dialog busy with the requests
# answers no reader, its title then reads empty: the title read back proves
# that the empty line is the result.
detect_nothing() {   # HOW LIMIT
    [ -n "$(text 1083)" ] || fail "detect_nothing needs an address on the line"
    start=$(date +%s.%N)
    press 1084
    until [ "$(text 1083)" = "" ] && [ "$(text 1001)" = "DHCP Information" ]; do
        [ $(($(date +%s) - ${start%.*})) -le "$2" ] || fail "Real IP still '$(text 1083)' $2 s after Detect, both servers $1"
        sleep 0.25
    done
    echo "dhcp_detect_netns: Detect, both servers $1: $(python3 -c "print('%.1f' % ($(date +%s.%N) - $start))") s from the click to the cleared line"
}

# Adapter details, portrait and landscape.
for screen in 240x320 320x240; do
    start_host $screen "$WORK/adapter-$screen.png"
    open_dialog 134 10
    await_text 1014 "Adapter - ${TAG}a" 10 || fail "$screen: adapter title is '$(text 1014)'"
    got=$(for id in 1015 1016 1018 1019 1020 1021 1036 1022 1035; do printf '%s|' "$(text $id)"; done)
    if [ $screen = 240x320 ]; then
        want="02:00:5E:10:00:02|ethernet|198.51.100.2|255.255.255.0|198.51.100.1|198.51.100.53|198.51.100.54|N/A||"
    else
        want="02:00:5E:10:00:02|ethernet|198.51.100.2|255.255.255.0|198.51.100.1|198.51.100.53, 198.51.100.54||N/A||"
    fi
    [ "$got" = "$want" ] || fail "$screen: the adapter dialog shows $got, not $want"
    echo "dhcp_detect_netns: $screen adapter dialog: $(text 1014) | speed $(text 1017) | $got"
    end_host
done

# DHCP, portrait: the first server answers; then, down, the second does; then both down.
start_host 240x320 "$WORK/dhcp-240x320.png"
open_dialog 96 10
await_text 1001 "DHCP Information" 10 || fail "DHCP title is '$(text 1001)'"
[ "$(text 1023)" = 198.51.100.2 ] || fail "DHCP address is '$(text 1023)'"
[ -z "$(text 1083)" ] || fail "Real IP filled before Detect"
press 1084
await_text 1083 198.51.100.2 20 || fail "Real IP is '$(text 1083)' with both servers up"
[ "$(requests 1)/$(requests 2)" = 1/0 ] || fail "requests $(requests 1)/$(requests 2) with the first server up"

press 1
sleep 1
stop_server 1
open_dialog 96 10
await_text 1001 "DHCP Information" 10 || fail "DHCP dialog did not reopen"
[ -z "$(text 1083)" ] || fail "Real IP kept across dialogs"
press 1084
await_text 1083 198.51.100.2 20 || fail "Real IP is '$(text 1083)' from the second server"
[ "$(requests 2)" = 1 ] || fail "the second server had $(requests 2) requests"

stop_server 2
detect_nothing "stopped (connection refused)" $REFUSED_LIMIT

start_server 1
press 1084
await_text 1083 198.51.100.2 20 || fail "Real IP is '$(text 1083)' once the first server is back"
end_host

# DHCP, landscape: the same template, placed below the taskbar. With the
# servers' addresses gone nothing answers at all.
start_host 320x240 "$WORK/dhcp-320x240.png"
open_dialog 96 10
press 1084
await_text 1083 198.51.100.2 20 || fail "landscape: Real IP is '$(text 1083)'"
ip -n "$SRV" addr flush dev "${TAG}b" || fail "cannot take the servers' addresses away"
detect_nothing "unreachable (no host at their addresses)" $UNREACHABLE_LIMIT
ip -n "$SRV" addr add 198.51.100.80/24 dev "${TAG}b" || fail "cannot give the first server its address back"
stop_server 1
start_server 1
press 1084
await_text 1083 198.51.100.2 20 || fail "landscape: Real IP is '$(text 1083)' once the first server is back"
end_host

if [ -n "$KEEP" ]; then
    mkdir -p "$KEEP" && cp "$WORK"/*.png "$KEEP"/
fi
echo "dhcp_detect_netns: ok"
