#!/bin/sh
# storage_faults.sh: with its folder full, read-only or holding damaged logs, the item keeps ticking, drawing, reading and exporting.
#
# Five install folders, one per fault: a full 64 KB tmpfs, a read-only one, a
# directory where this month's file belongs, a month file with a cut tail,
# and 10 MB of random bytes named as this month's file. For each, the real
# DLL runs in the host for 21 ticks while real traffic crosses the test's
# own namespace; then the host must answer at once and exit 0 when asked
# to close, the strip must show the traffic, the usage dialog must open on
# what can be read, its export must write the CSV, and every record that
# was in a good file must still be there.
set -u
BUILD=${1:?usage: storage_faults.sh BUILD_DIR}
BUILD=$(cd "$BUILD" && pwd)
HERE=$(cd "$(dirname "$0")" && pwd)
ART="$HERE/../../resources/art"
TICK_SECONDS=42

skip() { echo "storage_faults: skipped: $*"; exit 77; }
fail() { echo "storage_faults: $*"; exit 1; }

[ "$(id -u)" = 0 ] || skip "needs root for network namespaces and mounts"
command -v ip >/dev/null 2>&1 || skip "no ip command"
command -v xdotool >/dev/null 2>&1 || skip "no xdotool"
if [ -z "${DISPLAY:-}" ]; then
    command -v xvfb-run >/dev/null 2>&1 || skip "no display and no xvfb-run"
    exec xvfb-run -a -s "-screen 0 1280x1024x24" sh "$0" "$@"
fi

TAG=qs$$
NS=$TAG-test
PEER=$TAG-peer
WORK=$(mktemp -d /tmp/storage_faults.XXXXXX)
# Wine's documents folder is a link to HOME: the export lands in the test's own.
export HOME="$WORK/home"
export QUORVANE_WINEPREFIX="$WORK/prefix" WINEPREFIX="$WORK/prefix"
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
mkdir -p "$HOME"
CASES="full readonly directory cuttail random"
DRIVE="$WINEPREFIX/drive_c"
KEY='HKLM\Software\Microsoft\Today\Items\Quorvane'
YM=$(date +%Y%m)

in_ns() { ip netns exec "$NS" "$@"; }
probe() { in_ns "$BUILD/wine-run.sh" "$BUILD/winprobe.exe" "$@"; }

cleanup() {
    [ -f "$WORK/pump.pid" ] && kill "$(cat "$WORK/pump.pid")" 2>/dev/null
    [ -f "$WORK/server.pid" ] && kill "$(cat "$WORK/server.pid")" 2>/dev/null
    if ip netns list 2>/dev/null | grep -q "^$NS\b"; then
        in_ns wineserver -k >/dev/null 2>&1
        ip netns del "$NS" 2>/dev/null
    fi
    ip netns del "$PEER" 2>/dev/null
    for c in full readonly; do
        mountpoint -q "$DRIVE/qv-$c" 2>/dev/null && umount "$DRIVE/qv-$c"
    done
    rm -rf "$WORK"
}
trap cleanup EXIT
trap 'exit 1' INT TERM HUP

# The network: one veth to a peer that echoes what it is sent.
ip netns add "$NS" 2>/dev/null || skip "network namespaces unavailable"
ip netns add "$PEER" 2>/dev/null || skip "network namespaces unavailable"
ip link add "${TAG}a" type veth peer name "${TAG}b" 2>/dev/null || skip "no veth support"
ip link set "${TAG}a" netns "$NS" && ip link set "${TAG}b" netns "$PEER" || fail "cannot move the veth ends"
for n in "$NS" "$PEER"; do
    ip netns exec "$n" sysctl -qw net.ipv6.conf.all.disable_ipv6=1 net.ipv6.conf.default.disable_ipv6=1 2>/dev/null
    ip -n "$n" link set lo up
done
ip -n "$NS" addr add 198.51.100.2/24 dev "${TAG}a" && ip -n "$NS" link set "${TAG}a" up || fail "test end"
ip -n "$PEER" addr add 198.51.100.1/24 dev "${TAG}b" && ip -n "$PEER" link set "${TAG}b" up || fail "peer end"
cat > "$WORK/echo.py" <<'PY'
import os, socket, sys, time
if sys.argv[1] == "serve":
    open(sys.argv[2], "w").write(str(os.getpid()))
    s = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    s.bind(("198.51.100.1", 5002))
    while True:
        # Three times as much back, so the received line stands clear of the transmitted one.
        data, peer = s.recvfrom(65536)
        for _ in range(3):
            s.sendto(data, peer)
else:
    # Some traffic each way every half second, for as long as the test runs.
    open(sys.argv[2], "w").write(str(os.getpid()))
    s = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    while True:
        for _ in range(4):
            s.sendto(b"q" * 1400, ("198.51.100.1", 5002))
        time.sleep(0.5)
PY
ip netns exec "$PEER" python3 "$WORK/echo.py" serve "$WORK/server.pid" >/dev/null 2>&1 &

# The folders, made before Wine's server starts: it opens the files, and
# sees the mounts its namespace had when it began.
mkdir -p "$DRIVE"
python3 - "$WORK" "$(date +%Y)" "$(date +%m)" "$(date +%d)" <<'PY' || fail "cannot write the logs"
import calendar, struct, sys
work, year, month, today = sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), int(sys.argv[4])
def month_log(records):
    out = bytearray()
    days = [d for d in range(1, calendar.monthrange(year, month)[1] + 1) if d != today]
    n = 0
    for d in days:
        for h in range(24):
            if n == records:
                return bytes(out)
            out += struct.pack("<bbHII", d, h, 0, 1000 * d + h, 100 * d + h)
            n += 1
    return bytes(out)
# 341 records fill a 4 KB page to its last 4 bytes: on the full disk an
# appended record needs a page that is not there.
open(work + "/good-full.log", "wb").write(month_log(341))
open(work + "/good.log", "wb").write(month_log(40))
open(work + "/good-cut.log", "wb").write(month_log(40) + b"\x05\x06\x00\x00\x09")
PY
for c in $CASES; do mkdir -p "$DRIVE/qv-$c"; done
mount -t tmpfs -o size=64k "$TAG-full" "$DRIVE/qv-full" || skip "cannot mount a tmpfs"
cp "$WORK/good-full.log" "$DRIVE/qv-full/$YM.log"
dd if=/dev/zero of="$DRIVE/qv-full/filler" bs=4096 2>/dev/null
mount -t tmpfs -o size=64k "$TAG-ro" "$DRIVE/qv-readonly" || skip "cannot mount a tmpfs"
cp "$WORK/good.log" "$DRIVE/qv-readonly/$YM.log"
mount -o remount,ro "$DRIVE/qv-readonly" || fail "cannot make the folder read-only"
mkdir -p "$DRIVE/qv-directory/$YM.log"
cp "$WORK/good-cut.log" "$DRIVE/qv-cuttail/$YM.log"
head -c 10485760 /dev/urandom > "$DRIVE/qv-random/$YM.log"
for c in $CASES; do cp -r "$DRIVE/qv-$c" "$WORK/before-$c" 2>/dev/null || true; done

# Wine: its server first, inside the namespace, then a fresh prefix.
in_ns wineserver -p >/dev/null 2>&1 </dev/null
in_ns wineboot -i >/dev/null 2>&1 || fail "wineboot failed"
in_ns wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /t REG_SZ /d N /f >/dev/null 2>&1
touch "$WINEPREFIX/.quorvane-ready"

host_exits() {   # PID LOG: the host must be gone within 15 s, with status 0
    i=0
    while kill -0 "$1" 2>/dev/null; do
        i=$((i + 1))
        [ $i -le 30 ] || { kill "$1"; fail "$CASE: the host did not exit when asked"; }
        sleep 0.5
    done
    wait "$1" || fail "$CASE: the host exited with $?: $(cat "$2")"
}

click() { xdotool mousemove "$1" "$2" click 1; }

for CASE in $CASES; do
    in_ns wine reg add "$KEY" /v InstallDir /t REG_SZ /d "C:\\qv-$CASE" /f >/dev/null 2>&1 || fail "cannot set InstallDir"

    # 21 ticks with traffic; then the host must answer at once and close when asked.
    in_ns python3 "$WORK/echo.py" pump "$WORK/pump.pid" >/dev/null 2>&1 &
    in_ns "$BUILD/wine-run.sh" "$BUILD/todayhost.exe" --screenshot "$WORK/$CASE-strip.png" \
        >"$WORK/$CASE-host.log" 2>&1 </dev/null &
    HOST=$!
    probe wait "Quorvane - Today" 20 >/dev/null || fail "$CASE: no host window"
    sleep "$TICK_SECONDS"
    probe wait "Quorvane - Today" 2 >/dev/null || fail "$CASE: the host does not answer after 21 ticks"
    probe close "Quorvane - Today" >/dev/null
    host_exits "$HOST" "$WORK/$CASE-host.log"
    kill "$(cat "$WORK/pump.pid")"
    rm -f "$WORK/pump.pid"

    # The usage dialog on what can be read, and its export. The link is quiet
    # now, so the log it reads is the one copied here, or at most a tick on.
    rm -f "$HOME/export.csv"
    cp "$DRIVE/qv-$CASE/$YM.log" "$WORK/read-$CASE.log" 2>/dev/null || : > "$WORK/read-$CASE.log"
    in_ns "$BUILD/wine-run.sh" "$BUILD/todayhost.exe" --tap 75,10 >"$WORK/$CASE-usage.log" 2>&1 </dev/null &
    HOST=$!
    probe wait "class:#32770" 20 >/dev/null || fail "$CASE: the usage dialog did not open"
    TITLE=$(probe text "class:#32770" 1065 | tr -d '\r')
    case "$TITLE" in
    "Daily Traffic for "*) ;;
    *) fail "$CASE: the usage dialog's title reads \"$TITLE\"" ;;
    esac
    set -- $(probe client "class:#32770" | tr -d '\r')
    click $(($1 + 169)) $(($2 + 55))          # the export icon of the header
    i=0
    until probe text "class:#32770" 1073 2>/dev/null | grep -q 'export\.csv'; do
        i=$((i + 1))
        [ $i -le 20 ] || fail "$CASE: the export dialog did not open"
        sleep 0.5
    done
    set -- $(probe list "class:#32770" | tr -d '\r' | awk -F '\t' '$1 == "1" { print $3 }')
    [ $# -eq 4 ] || fail "$CASE: no OK button in the export dialog"
    click $(($1 + $3 / 2)) $(($2 + $4 / 2))
    i=0
    until [ -s "$HOME/export.csv" ] && probe text "class:#32770" 1065 >/dev/null 2>&1; do
        i=$((i + 1))
        [ $i -le 40 ] || fail "$CASE: no export written, or the usage dialog did not come back"
        sleep 0.5
    done
    cp "$HOME/export.csv" "$WORK/$CASE-export.csv"
    probe close "Quorvane - Today" >/dev/null
    host_exits "$HOST" "$WORK/$CASE-usage.log"
done

python3 - "$ART" "$WORK" "$DRIVE" "$YM" "$(date +%d)" "$CASES" <<'PY' || fail "see above"
import os, struct, sys
sys.path.insert(0, sys.argv[1])
from artlib import load_png
work, drive, ym, today, cases = sys.argv[2], sys.argv[3], sys.argv[4], int(sys.argv[5]), sys.argv[6].split()
year, month = int(ym[:4]), int(ym[4:])
months = ["Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"]
problems = []

def size_matches(text, v):
    # "%.2f" of a binary fraction may meet an exact tie, which C runtimes
    # round either way: a hundredth either side is the same text.
    if v == 0:
        return text == "0"
    for unit, div in (("KB", 1024.0), ("MB", 1048576.0), ("GB", 1073741824.0)):
        if v < div * 1024 or unit == "GB":
            return text.endswith(unit) and abs(float(text[:-2]) - v / div) <= 0.0051

def export_mismatch(lines, data):
    """What is wrong with the CSV lines for a one-day export of today from these log bytes, or None."""
    buf, first = bytearray(12), True
    tx, rx, total_t, total_r = [0] * 32, [0] * 32, 0, 0
    for i in range(0, len(data), 12):
        chunk = data[i:i + 12]
        buf[:len(chunk)] = chunk          # a cut tail keeps the previous record's bytes behind it
        d, _, _, r, t = struct.unpack("<bbHII", bytes(buf))
        if first:
            first, passes = False, d == today
        else:
            passes = d <= today
        if not passes:
            continue
        total_t, total_r = total_t + t, total_r + r
        if 0 <= d < 32:
            tx[d], rx[d] = tx[d] + t, rx[d] + r
    want = [("%s %02d, %04d" % (months[month - 1], d, year), tx[d], rx[d]) for d in range(1, 32) if tx[d] or rx[d]]
    want.append(("Total for %s %04d" % (months[month - 1], year), total_t, total_r))
    if lines[0] != '"Date","Xmit","Rcv","Total"' or lines[-1] != "":
        return "header or line ends: %r" % lines[:1]
    if len(lines) - 2 != len(want):
        return "%d rows, not %d" % (len(lines) - 2, len(want))
    for line, (date, t, r) in zip(lines[1:-1], want):
        f = line.split('","')
        if len(f) != 4 or f[0] != '"' + date or not (size_matches(f[1], t) and size_matches(f[2], r)
                                                      and size_matches(f[3].rstrip('"'), t + r)):
            return "%r where %s, %d, %d belong" % (line, date, t, r)
    return None

for case in cases:
    # The strip kept drawing the traffic.
    img = load_png("%s/%s-strip.png" % (work, case))
    px = [img.get(x, 48 + y)[:3] for y in range(1, 23) for x in range(3, 47)]
    red, blue = px.count((255, 0, 0)), px.count((0, 0, 255))
    if red < 10 or blue < 10:
        problems.append("%s: the strip shows %d red and %d blue pixels of traffic" % (case, red, blue))

    # Nothing that was in a good file is lost: it is still there byte for
    # byte, at its place (records of other days than today are never touched).
    before = os.path.join(work, "before-" + case, ym + ".log")
    after = os.path.join(drive, "qv-" + case, ym + ".log")
    if os.path.isfile(before) and case != "random":
        old, new = open(before, "rb").read(), open(after, "rb").read()
        if new[:len(old)] != old:
            problems.append("%s: the log's first %d bytes changed" % (case, len(old)))
        if case in ("full", "readonly") and len(new) > len(old) and (len(new) - len(old)) % 12:
            problems.append("%s: a partial record was left at the end (%d bytes)" % (case, len(new)))

    # The export of today (the dialog's range) from what the log held when it
    # was read: every row as the export's rules make it.
    got = open("%s/%s-export.csv" % (work, case), "rb").read().decode("ascii", "replace").split("\n")
    candidates = [b""] if case == "directory" else [open("%s/read-%s.log" % (work, case), "rb").read()]
    if case != "directory" and os.path.isfile(after):
        candidates.append(open(after, "rb").read())
    misses = [export_mismatch(got, data) for data in candidates]
    if all(misses):
        problems.append("%s: the export differs from what the log held: %s" % (case, misses[0]))
for p in problems:
    print(p)
sys.exit(1 if problems else 0)
PY
echo "storage_faults: ok"
