# lan_netns.sh: a test /24 of live hosts behind one bridge, in namespaces of the caller's own (sourced, not run).
#
#   LAN_TAG   short unique prefix (namespace and interface names)
#   LAN_WORK  a temporary folder of the caller's
#   LAN_NETBIOS_ALL=1  every host answers NetBIOS, the scanner too (the benchmark)
#
# 198.51.100.0/24, no route out: the scanner at .33 in "$LAN_TAG-s"; live
# hosts .1 .7 .20 .100 .200 .254, each in its own namespace, on a bridge in
# "$LAN_TAG-b". Host .N has MAC 02:11:00:00:00:NN (NN its number in hex).
# .20 runs Samba's nmbd as LAN_NMBD_NAME; .254 answers no NetBIOS (unless
# LAN_NETBIOS_ALL); the others answer with a small responder as QVHOST<N>.

LAN_HOSTS="1 7 20 100 200 254"
LAN_NMBD_HOST=20
LAN_NMBD_NAME=QVNMBD
LAN_SILENT_HOST=254
LAN_SCANNER=33

lan_mac() { printf '02:11:00:00:00:%02X' "$1"; }
lan_in_scan() { ip netns exec "$LAN_TAG-s" "$@"; }

lan_responder() {
    cat > "$LAN_WORK/nbstat.py" <<'PY'
# Answers NetBIOS node-status queries with one name, as a Windows host would.
import os, socket, struct, sys
address, name, pidfile = sys.argv[1], sys.argv[2].encode(), sys.argv[3]
open(pidfile, "w").write(str(os.getpid()))
s = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
s.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
s.bind((address, 137))
while True:
    query, peer = s.recvfrom(1024)
    if len(query) < 50:
        continue
    entry = name.ljust(15)[:15] + b"\x00" + b"\x04\x00"
    data = bytes([1]) + entry + bytes(46)
    reply = query[:2] + b"\x84\x00" + struct.pack(">HHHH", 0, 1, 0, 0) + query[12:46] \
        + struct.pack(">HHIH", 0x21, 1, 0, len(data)) + data
    s.sendto(reply, peer)
PY
}

lan_nmbd() {
    local d="$LAN_WORK/nmbd"
    mkdir -p "$d/lock" "$d/state" "$d/cache" "$d/private" "$d/pid" "$d/log"
    cat > "$d/smb.conf" <<CONF
[global]
    netbios name = $LAN_NMBD_NAME
    workgroup = QVTEST
    interfaces = 198.51.100.$LAN_NMBD_HOST/24
    bind interfaces only = yes
    disable netbios = no
    lock directory = $d/lock
    state directory = $d/state
    cache directory = $d/cache
    private dir = $d/private
    pid directory = $d/pid
    ncalrpc dir = $d/ncalrpc
    log file = $d/log/nmbd.log
    wins support = no
    local master = no
    domain master = no
    preferred master = no
CONF
    ip netns exec "$LAN_TAG-h$LAN_NMBD_HOST" sh -c 'echo $$ > "$1"; exec nmbd -F --no-process-group -s "$2"' \
        sh "$LAN_WORK/pid.nmbd" "$d/smb.conf" >"$d/stdout" 2>&1 </dev/null &
}

# Brings the network up; non-zero when namespaces or veths are unavailable.
# Wine for the scanner: its server first, inside the namespace, so that Wine
# sees only the test network; then a fresh prefix in $WINEPREFIX. Wine's own
# errors (its device host's among them) go to file $1, if given.
lan_wine_up() {
    mkdir -p "$WINEPREFIX"
    lan_in_scan wineserver -p >/dev/null 2>&1 </dev/null
    lan_in_scan wineboot -i >/dev/null 2>"${1:-/dev/null}" || return 1
    # Without a window manager every destroyed window costs 2 s unless unmanaged.
    lan_in_scan wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /t REG_SZ /d N /f >/dev/null 2>&1
    touch "$WINEPREFIX/.quorvane-ready"
}

lan_up() {
    ip netns add "$LAN_TAG-b" 2>/dev/null || return 1
    ip netns add "$LAN_TAG-s" || return 1
    ip -n "$LAN_TAG-b" link add br0 type bridge || return 1
    ip -n "$LAN_TAG-b" link set br0 up
    lan_responder
    local n ns
    for n in $LAN_SCANNER $LAN_HOSTS; do
        if [ "$n" = "$LAN_SCANNER" ]; then ns="$LAN_TAG-s"; else ns="$LAN_TAG-h$n"; ip netns add "$ns" || return 1; fi
        ip link add "${LAN_TAG}a$n" type veth peer name "${LAN_TAG}b$n" || return 1
        ip link set "${LAN_TAG}a$n" netns "$ns" && ip link set "${LAN_TAG}b$n" netns "$LAN_TAG-b" || return 1
        ip netns exec "$ns" sysctl -qw net.ipv6.conf.all.disable_ipv6=1 net.ipv6.conf.default.disable_ipv6=1 2>/dev/null
        ip -n "$ns" link set lo up
        ip -n "$ns" link set "${LAN_TAG}a$n" address "$(lan_mac "$n")"
        ip -n "$ns" addr add "198.51.100.$n/24" dev "${LAN_TAG}a$n"
        ip -n "$ns" link set "${LAN_TAG}a$n" up
        ip -n "$LAN_TAG-b" link set "${LAN_TAG}b$n" master br0
        ip -n "$LAN_TAG-b" link set "${LAN_TAG}b$n" up
        if [ "$n" = "$LAN_NMBD_HOST" ]; then
            lan_nmbd
        elif [ "$n" != "$LAN_SILENT_HOST" ] && [ "$n" != "$LAN_SCANNER" ] || [ "${LAN_NETBIOS_ALL:-0}" = 1 ]; then
            ip netns exec "$ns" python3 "$LAN_WORK/nbstat.py" "198.51.100.$n" "QVHOST$n" "$LAN_WORK/pid.$n" \
                >/dev/null 2>&1 </dev/null &
        fi
    done
    # nmbd registers its name before it answers: give it a moment.
    local i=0
    while [ $i -lt 50 ]; do
        ip netns exec "$LAN_TAG-h$LAN_NMBD_HOST" ss -lun 2>/dev/null | grep -q "198.51.100.$LAN_NMBD_HOST:137" && break
        sleep 0.2
        i=$((i + 1))
    done
    return 0
}

lan_down() {
    local f
    for f in "$LAN_WORK"/pid.*; do
        [ -f "$f" ] && kill "$(cat "$f")" 2>/dev/null
    done
    if ip netns list 2>/dev/null | grep -q "^$LAN_TAG-s\b"; then
        lan_in_scan wineserver -k >/dev/null 2>&1
    fi
    local n
    for n in $LAN_HOSTS; do ip netns del "$LAN_TAG-h$n" 2>/dev/null; done
    ip netns del "$LAN_TAG-s" 2>/dev/null
    ip netns del "$LAN_TAG-b" 2>/dev/null
}
