#!/bin/bash
# dev.sh: installs what is missing, builds, and runs the Today host or the tests.
#   ./dev.sh run [host options]   build and run the desktop Today host (a screenshot without a display)
#   ./dev.sh test                 build and run every test
#   ./dev.sh device               build quorvane.dll for the device (ARM Windows CE)
#   ./dev.sh build                build only
set -euo pipefail
cd "$(dirname "$0")"
BUILD=${QUORVANE_BUILD:-build}
PACKAGES="cmake make python3 xz-utils g++ g++-mingw-w64-x86-64-posix wine wine64 fonts-wine xvfb xauth googletest iproute2 samba xdotool clang-14 libfuzzer-14-dev libclang-rt-14-dev"
XVFB_SCREEN="-screen 0 1280x1024x24"

install_missing() {
    local missing=()
    for p in $PACKAGES; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "ok installed" || missing+=("$p")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local sudo=""
    [ "$(id -u)" -ne 0 ] && sudo="sudo"
    echo "dev.sh: installing ${missing[*]}"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

build() {
    install_missing
    cmake -S . -B "$BUILD" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
    cmake --build "$BUILD" -j "$(nproc)"
}

# The device DLL, with a CeGCC arm-mingw32ce on PATH or the one beside the
# checkout. Without either it is skipped, and said so; a compile or link
# error fails.
build_device() {
    if ! command -v arm-mingw32ce-g++ >/dev/null 2>&1 &&
       [ ! -f ../shared/toolchains/cegcc-arm-mingw32ce.tar.xz ] &&
       [ ! -x "$BUILD/device/cegcc/bin/arm-mingw32ce-g++" ]; then
        echo "dev.sh: device build skipped: no arm-mingw32ce-g++ on PATH and no ../shared/toolchains/cegcc-arm-mingw32ce.tar.xz beside the checkout"
        return 0
    fi
    cmake -S . -B "$BUILD/device" -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/arm-mingw32ce.cmake" >/dev/null
    cmake --build "$BUILD/device" -j "$(nproc)"
    echo "dev.sh: device DLL: $BUILD/device/quorvane.dll"
}

case "${1:-}" in
run)
    shift
    build
    # The stripped DLL (the debug build is build/quorvane.dll); a --dll given wins.
    set -- --dll "$BUILD/stripped/quorvane.dll" "$@"
    if [ -n "${DISPLAY:-}" ]; then
        "$BUILD/wine-run.sh" "$BUILD/todayhost.exe" "$@"
    else
        shot="$PWD/quorvane-today.png"
        # Headless, the host must end by itself.
        case " $* " in
        *" --seconds "* | *" --ticks "*) ;;
        *) set -- "$@" --seconds 7 ;;
        esac
        xvfb-run -a -s "$XVFB_SCREEN" "$BUILD/wine-run.sh" "$BUILD/todayhost.exe" "$@" --screenshot "$shot"
        echo "dev.sh: no display; the Today screen is in $shot"
    fi
    ;;
test)
    build
    build_device
    cd "$BUILD"
    # Tests always get a virtual display of their own, whatever screen is around.
    xvfb-run -a -s "$XVFB_SCREEN" ctest --output-on-failure --timeout 600
    ;;
build)
    build
    ;;
device)
    install_missing
    build_device
    ;;
*)
    sed -n '2,6p' "$0" | sed 's/^# \{0,1\}//'
    exit 2
    ;;
esac
