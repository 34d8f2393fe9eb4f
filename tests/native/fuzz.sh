#!/bin/bash
# fuzz.sh: builds the parsers' libFuzzer targets natively with clang and runs each over its corpus.
#   tests/native/fuzz.sh [--time SECONDS | --runs N] [--out DIR] [TARGET...]   build, then fuzz each target
#   tests/native/fuzz.sh --ci [--out DIR]       every corpus file once, then 2 s of fuzzing a target (CTest)
#   tests/native/fuzz.sh --build-only [--out DIR]
# TARGET is a name such as fuzz_logsearch (default: every tests/native/fuzz_*.cpp). A target's sources
# are named on its "// fuzz sources:" line, extra libFuzzer flags on "// fuzz options:". Binaries, the
# growing corpus and crash inputs go to DIR (default build/fuzz); the seeds, and every input that once
# broke a parser, stay in tests/native/corpus/TARGET. Exit status: 0 all held, 1 a target failed,
# 77 no clang or no sanitizer/libFuzzer runtime here (Debian: clang-14 libfuzzer-14-dev libclang-rt-14-dev).
# Started as `sh fuzz.sh`, it starts again under bash.
[ -n "${BASH_VERSION:-}" ] || exec bash "$0" "$@"
set -uo pipefail
HERE=$(cd "$(dirname "$0")" && pwd)
SRC=$(cd "$HERE/../.." && pwd)
OUT="$SRC/build/fuzz"
MODE=fuzz
LIMIT="-max_total_time=10"
TARGETS=()
while [ $# -gt 0 ]; do
    case "$1" in
    --time) LIMIT="-max_total_time=$2"; shift ;;
    --runs) LIMIT="-runs=$2"; shift ;;
    --out) OUT=$2; shift ;;
    --ci) MODE=ci; LIMIT="-max_total_time=2" ;;
    --build-only) MODE=build ;;
    -h | --help) sed -n '2,10p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
    -*) echo "fuzz.sh: unknown option $1" >&2; exit 2 ;;
    *) TARGETS+=("$1") ;;
    esac
    shift
done
if [ ${#TARGETS[@]} -eq 0 ]; then
    for f in "$HERE"/fuzz_*.cpp; do TARGETS+=("$(basename "$f" .cpp)"); done
fi

# Absent tools skip (77); present ones that fail to build fail.
CXX=${FUZZ_CXX:-$(command -v clang++-14 || command -v clang++ || true)}
absent() {
    echo "fuzz.sh: skipped: $1" >&2
    [ "$MODE" = build ] && exit 0
    exit 77
}
[ -n "$CXX" ] || absent "no clang++"
RUNTIME=$("$CXX" -print-runtime-dir 2>/dev/null)
for lib in fuzzer asan ubsan_standalone; do
    [ -f "$RUNTIME/libclang_rt.$lib-x86_64.a" ] || absent "no libclang_rt.$lib-x86_64.a in ${RUNTIME:-the runtime folder of $CXX}"
done
FLAGS=(-std=c++17 -g -O1 -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=all -I"$SRC")

mkdir -p "$OUT"
# Rebuilt when the binary is older than anything its last build read.
stale() {
    local bin="$OUT/$1" dep
    [ -x "$bin" ] && ls "$OUT/obj/$1"/*.d >/dev/null 2>&1 || return 0
    for dep in $(sed -e 's/^[^:]*://' -e 's/\\$//' "$OUT/obj/$1"/*.d); do
        [ "$dep" -nt "$bin" ] && return 0
    done
    return 1
}
build() {
    local name=$1 file="$HERE/$1.cpp" objects=() s o
    [ -f "$file" ] || { echo "fuzz.sh: no target $name" >&2; return 1; }
    stale "$name" || return 0
    echo "fuzz.sh: building $name"
    rm -rf "$OUT/obj/$name"
    mkdir -p "$OUT/obj/$name"
    for s in "$file" $(sed -n 's#^// fuzz sources: ##p' "$file" | sed "s#[^ ][^ ]*#$SRC/&#g"); do
        o="$OUT/obj/$name/$(basename "$s" .cpp).o"
        "$CXX" "${FLAGS[@]}" -MMD -c "$s" -o "$o" || return 1
        objects+=("$o")
    done
    "$CXX" "${FLAGS[@]}" "${objects[@]}" -o "$OUT/$name"
}

failed=0
for t in "${TARGETS[@]}"; do
    build "$t" || { echo "fuzz.sh: $t: build failed" >&2; failed=1; }
done
[ "$MODE" = build ] && exit $failed
[ $failed = 0 ] || exit 1

WORK="$OUT/corpus"
if [ "$MODE" = ci ]; then
    WORK=$(mktemp -d)
    trap 'rm -rf "$WORK"' EXIT
fi
printf '%-18s %12s %8s %6s %6s %6s  %s\n' target executions seconds cov ft corpus result
for t in "${TARGETS[@]}"; do
    seeds="$HERE/corpus/$t" log="$OUT/$t.log"
    mkdir -p "$WORK/$t" "$OUT/artifacts" "$seeds"
    options=$(sed -n 's#^// fuzz options: ##p' "$HERE/$t.cpp")
    result=ok
    # Every kept input once, crash regressions included, then fuzzing from them.
    files=("$seeds"/*)
    if [ -e "${files[0]}" ] && ! "$OUT/$t" -timeout=5 "${files[@]}" >"$log" 2>&1; then
        result="FAILED on a corpus file (see $log)"
    elif ! "$OUT/$t" -timeout=5 -print_final_stats=1 -artifact_prefix="$OUT/artifacts/$t-" $options $LIMIT \
            "$WORK/$t" "$seeds" >"$log" 2>&1; then
        result="FAILED: $(grep -o "$OUT/artifacts/$t-[^ ]*" "$log" | tail -1) (see $log)"
    fi
    [ "$result" = ok ] || failed=1
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
    secs=$(sed -n 's/^Done [0-9]* runs in \([0-9]*\) second.*/\1/p' "$log" | tail -1)
    last=$(grep -E '^#[0-9]+' "$log" | grep 'cov:' | tail -1)
    cov=$(sed -n 's/.* cov: \([0-9]*\).*/\1/p' <<<"$last")
    ft=$(sed -n 's/.* ft: \([0-9]*\).*/\1/p' <<<"$last")
    corp=$(sed -n 's/.* corp: \([0-9]*\).*/\1/p' <<<"$last")
    printf '%-18s %12s %8s %6s %6s %6s  %s\n' "$t" "${runs:--}" "${secs:--}" "${cov:--}" "${ft:--}" "${corp:--}" "$result"
    if [ "$result" != ok ]; then
        grep -E 'ERROR|broken promise|SUMMARY|runtime error' "$log" | head -5 >&2
        # A CI log may be all that is left of the run: the input itself, to keep in the corpus.
        unit=$(grep -o "$OUT/artifacts/$t-[^ ]*" "$log" | tail -1)
        [ -n "$unit" ] && [ "$(stat -c %s "$unit")" -le 4096 ] && echo "input (base64): $(base64 -w0 "$unit")" >&2
    fi
done
exit $failed
