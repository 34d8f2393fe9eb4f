#!/bin/sh
# traffic_netns.sh: traffic sent across a veth in a namespace of the test's own lands in this month's log.
#
# The test namespace holds one veth (198.51.100.2/24), its only working
# Ethernet adapter, behind an idle one; the peer namespace holds the other
# end (198.51.100.1). Wine runs in a fresh prefix whose wineserver starts
# inside the test namespace, so the host's real DLL sees only those adapters.
# A known amount goes each way while the host ticks; the hour's record must
# hold at least that much.
set -u
BUILD=${1:?usage: traffic_netns.sh BUILD_DIR}
BUILD=$(cd "$BUILD" && pwd)
BYTES=1048576
HOST_SECONDS=24

skip() { echo "traffic_netns: skipped: $*"; exit 77; }
fail() { echo "traffic_netns: $*"; exit 1; }

[ "$(id -u)" = 0 ] || skip "needs root for network namespaces"
command -v ip >/dev/null 2>&1 || skip "no ip command"
command -v python3 >/dev/null 2>&1 || skip "no python3"
# Wine's desktop process keeps the display it started with: give the whole
# run one, if the caller has none.
if [ -z "${DISPLAY:-}" ]; then
    command -v xvfb-run >/dev/null 2>&1 || skip "no display and no xvfb-run"
    exec xvfb-run -a -s "-screen 0 1280x1024x24" sh "$0" "$@"
fi

TAG=qv$$
NS=$TAG-test
PEER=$TAG-peer
WORK=$(mktemp -d /tmp/traffic_netns.XXXXXX)
export QUORVANE_WINEPREFIX="$WORK/prefix" WINEPREFIX="$WORK/prefix"
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="

in_ns() { ip netns exec "$NS" "$@"; }

cleanup() {
    [ -f "$WORK/server.pid" ] && kill "$(cat "$WORK/server.pid")" 2>/dev/null
    if ip netns list 2>/dev/null | grep -q "^$NS\b"; then
        in_ns wineserver -k >/dev/null 2>&1
        ip netns del "$NS" 2>/dev/null
    fi
    ip netns del "$PEER" 2>/dev/null
    rm -rf "$WORK"
}
trap cleanup EXIT
trap 'exit 1' INT TERM HUP

ip netns add "$NS" 2>/dev/null || skip "network namespaces unavailable"
ip netns add "$PEER" 2>/dev/null || skip "network namespaces unavailable"
# An idle, down Ethernet-type adapter listed before the veth, as this
# machine lists ifb0 before eth0: the desktop list must pass it over.
ip -n "$NS" link add "${TAG}i" type ifb 2>/dev/null || echo "traffic_netns: no ifb here, no idle adapter in the way"
ip link add "${TAG}a" type veth peer name "${TAG}b" 2>/dev/null || skip "no veth support"
ip link set "${TAG}a" netns "$NS" && ip link set "${TAG}b" netns "$PEER" || fail "cannot move the veth ends"
for n in "$NS" "$PEER"; do
    # No IPv6: its neighbour chatter would be counted before the test sends anything.
    ip netns exec "$n" sysctl -qw net.ipv6.conf.all.disable_ipv6=1 net.ipv6.conf.default.disable_ipv6=1 2>/dev/null
    ip -n "$n" link set lo up
done
ip -n "$NS" addr add 198.51.100.2/24 dev "${TAG}a" && ip -n "$NS" link set "${TAG}a" up || fail "test end"
ip -n "$PEER" addr add 198.51.100.1/24 dev "${TAG}b" && ip -n "$PEER" link set "${TAG}b" up || fail "peer end"

cat > "$WORK/traffic.py" <<'PY'
import os, socket, sys, time
mode, count = sys.argv[1], int(sys.argv[2])
def pump(sock, n):
    sock.sendall(b"q" * n)
def drain(sock, n):
    while n > 0:
        data = sock.recv(min(n, 65536))
        if not data:
            raise SystemExit("peer closed early")
        n -= len(data)
if mode == "serve":
    open(sys.argv[3], "w").write(str(os.getpid()))
    listener = socket.socket()
    listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
    listener.bind(("198.51.100.1", 5001))
    listener.listen(4)
    while True:
        conn, _ = listener.accept()
        n = int(conn.recv(16).decode().strip())
        drain(conn, n)
        pump(conn, n)
        conn.close()
else:
    deadline = time.time() + 10
    while True:
        try:
            sock = socket.create_connection(("198.51.100.1", 5001), timeout=10)
            break
        except OSError:
            if time.time() > deadline:
                raise
            time.sleep(0.2)
    sock.sendall(b"%-16d" % count)
    pump(sock, count)
    drain(sock, count)
    sock.close()
PY
ip netns exec "$PEER" python3 "$WORK/traffic.py" serve 0 "$WORK/server.pid" >/dev/null 2>&1 &
send() { in_ns python3 "$WORK/traffic.py" send "$1" || fail "could not send $1 bytes to the peer"; }

# Wine: its server first, inside the namespace, then a fresh prefix.
mkdir -p "$WINEPREFIX"
in_ns wineserver -p >/dev/null 2>&1 </dev/null
in_ns wineboot -i >/dev/null 2>&1 || fail "wineboot failed"
in_ns wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /t REG_SZ /d N /f >/dev/null 2>&1
touch "$WINEPREFIX/.quorvane-ready"
LOGDIR="$WINEPREFIX/drive_c/Program Files/Ostrik/Quorvane"

START=$(date +%s)
in_ns "$BUILD/wine-run.sh" "$BUILD/todayhost.exe" --seconds "$HOST_SECONDS" >"$WORK/host.log" 2>&1 </dev/null &
HOST=$!

# The first tick only primes the counters: small sends until a tick has
# logged one, then the measured amount.
until ls "$LOGDIR"/*.log >/dev/null 2>&1; do
    [ $(( $(date +%s) - START )) -lt $((HOST_SECONDS - 8)) ] || { cat "$WORK/host.log"; fail "no log file while the host ran"; }
    kill -0 "$HOST" 2>/dev/null || { wait "$HOST"; fail "the host ended early with status $?: $(cat "$WORK/host.log")"; }
    send 4096
    sleep 1
done
BEFORE=$(date +%s)
send "$BYTES"
AFTER=$(date +%s)
[ $((AFTER - START)) -lt $((HOST_SECONDS - 5)) ] || fail "the traffic took too long to leave two ticks after it"
wait "$HOST" || { cat "$WORK/host.log"; fail "the host exited with $?"; }

# The hours the traffic may have been booked to: its own, and the next one if
# the hour turned while it went or before the next tick.
python3 - "$LOGDIR" "$BYTES" "$BEFORE" "$(date +%s)" <<'PY' || fail "the log does not hold the traffic"
import os, struct, sys, time
folder, want, t0, t1 = sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), int(sys.argv[4])
hours = {}
for t in range(t0, t1 + 1, 60):
    lt = time.localtime(t)
    hours[(lt.tm_year, lt.tm_mon, lt.tm_mday, lt.tm_hour)] = True
lt = time.localtime(t1)
hours[(lt.tm_year, lt.tm_mon, lt.tm_mday, lt.tm_hour)] = True
received = transmitted = 0
for (year, month, day, hour) in hours:
    path = os.path.join(folder, "%04d%02d.log" % (year, month))
    data = open(path, "rb").read() if os.path.exists(path) else b""
    assert len(data) % 12 == 0, "%s is %d bytes" % (path, len(data))
    for i in range(0, len(data), 12):
        d, h, _, rx, tx = struct.unpack("<bbHII", data[i:i + 12])
        if (d, h) == (day, hour):
            received += rx
            transmitted += tx
print("traffic_netns: hour record(s) hold %d received, %d transmitted; %d sent each way" % (received, transmitted, want))
assert received >= want and transmitted >= want
PY

# qvlog on the same logs: its Windows build finds the folder as the item does
# (no InstallDir here: Program Files), its native build is told it, and both
# agree with the usage dialog's daily table, as its reader and texts give it.
if [ -f "$BUILD/qvlog.exe" ] && [ -x "$BUILD/native/qvlog" ]; then
    in_ns "$BUILD/wine-run.sh" "$BUILD/qvlog.exe" days --csv >"$WORK/qvlog-win.csv" 2>"$WORK/qvlog.err" ||
        fail "qvlog.exe days: $(cat "$WORK/qvlog.err")"
    "$BUILD/native/qvlog" days --csv --dir "$LOGDIR" >"$WORK/qvlog-native.csv" || fail "native qvlog days failed"
    cmp -s "$WORK/qvlog-win.csv" "$WORK/qvlog-native.csv" || fail "the two qvlog builds disagree"
    grep -q '^"'"$(date +%Y-%m-%d)"'","[1-9]' "$WORK/qvlog-native.csv" || fail "qvlog shows no traffic today"
    QVLOG_LOG_DIR='C:\Program Files\Ostrik\Quorvane' in_ns "$BUILD/wine-run.sh" "$BUILD/unit_tests.exe" \
        --gtest_filter=QvlogAgrees.OnTheLogsInQvlogLogDir >"$WORK/agree.log" 2>&1 ||
        { cat "$WORK/agree.log"; fail "qvlog days and the usage dialog's daily table disagree"; }
    grep -q "days with traffic agree" "$WORK/agree.log" || { cat "$WORK/agree.log"; fail "the agreement was not checked"; }
    grep "days with traffic agree" "$WORK/agree.log"
fi
echo "traffic_netns: ok"
