#!/bin/sh
# bench_intruder.sh: wall time of one /24 sweep on a test network: Quorvane's scan beside fping and nmap -sn.
# Usage (as root): sh tools/bench_intruder.sh BUILD_DIR
#
# Needs, beyond what ./dev.sh installs: apt-get install --no-install-recommends fping nmap
# (samba comes with ./dev.sh). The network is the end-to-end test's
# (tests/lan_netns.sh): six live hosts on 198.51.100.0/24 behind a bridge, here
# every one of them, the scanner too, answering NetBIOS. Our scan is the real
# DLL code under Wine (bench_intruder.exe: echo, ARP and node status, 254
# threads, 5 s time-outs) timed until no slot is pending; fping gets the same
# 5000 ms time-out and no retries; nmap -sn its defaults (ARP on a local
# segment). Traffic goes only to the test hosts.
set -u
BUILD=$(cd "${1:?usage: bench_intruder.sh BUILD_DIR}" && pwd)
HERE=$(cd "$(dirname "$0")" && pwd)
[ "$(id -u)" = 0 ] || { echo "bench_intruder: run as root (network namespaces)"; exit 2; }
for tool in fping nmap; do
    command -v $tool >/dev/null 2>&1 || { echo "bench_intruder: apt-get install --no-install-recommends fping nmap"; exit 2; }
done
PATH=$PATH:/usr/sbin
[ -f "$BUILD/bench_intruder.exe" ] || { echo "bench_intruder: build first (cmake --build $BUILD)"; exit 2; }

WORK=$(mktemp -d /tmp/bench_intruder.XXXXXX)
LAN_TAG=q11b$$
LAN_WORK=$WORK
LAN_NETBIOS_ALL=1
. "$HERE/../tests/lan_netns.sh"
export WINEPREFIX="$WORK/prefix" QUORVANE_WINEPREFIX="$WORK/prefix" HOME="$WORK/home"
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
trap 'lan_down; rm -rf "$WORK"' EXIT
trap 'exit 1' INT TERM HUP
mkdir -p "$HOME" "$WINEPREFIX"
lan_up || { echo "bench_intruder: cannot make the test network"; exit 1; }
lan_wine_up
# Wine warm, neighbours forgotten: each tool starts from an empty ARP cache.
lan_in_scan "$BUILD/wine-run.sh" "$BUILD/bench_intruder.exe" >/dev/null 2>&1

elapsed() {
    lan_in_scan ip neigh flush all >/dev/null 2>&1
    t0=$(date +%s.%N)
    "$@" >"$WORK/out" 2>&1
    t1=$(date +%s.%N)
    echo "$t0 $t1" | awk '{ printf "%.2f", $2 - $1 }'
}
OURS=$(lan_in_scan ip neigh flush all; lan_in_scan "$BUILD/wine-run.sh" "$BUILD/bench_intruder.exe" 2>/dev/null | tr -d '\r')
FPING=$(elapsed lan_in_scan fping -a -q -r 0 -t 5000 -g 198.51.100.0/24)
FPING_FOUND=$(wc -l < "$WORK/out")
NMAP=$(elapsed lan_in_scan nmap -sn -n 198.51.100.0/24)
NMAP_FOUND=$(grep -c "Host is up" "$WORK/out")
set -- $OURS
printf '%-28s %8s  %s\n' "sweep of 198.51.100.0/24" "seconds" "hosts found"
printf '%-28s %8s  %s (%s with MAC, %s named)\n' "Quorvane (254 threads)" "$1" "$2" "$3" "$4"
printf '%-28s %8s  %s\n' "fping -t 5000 -r 0" "$FPING" "$FPING_FOUND"
printf '%-28s %8s  %s\n' "nmap -sn" "$NMAP" "$NMAP_FOUND"
