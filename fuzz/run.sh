#!/bin/bash
# run.sh [SECONDS] [TARGET...]: fuzzes each target, all unless some are named, for so many seconds
# (60), and fails if one finds anything. A find is made small and kept for good: in found/TARGET/,
# with a line in found/cases.txt that says what it was, to be put into better words.
#
# FUZZ_JOBS (1): targets at a time. FUZZ_SEED (0): what the chances begin with; 0 is another each
# time. The corpus grows from run to run, in build/fuzz/corpus.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
seconds="${1:-60}"
[ $# -eq 0 ] || shift

scripts/install-packages run build fuzz
scripts/build fuzz
targets=("$@")
[ $# -gt 0 ] || mapfile -t targets < <(ls fuzz/fuzz_*.cpp | sed 's,.*/fuzz_\(.*\)\.cpp,\1,')

# Limits that differ from target to target: what a longer, slower or larger input would show.
limits() {
    case "$1" in
        engine_*) echo -timeout=60 -rss_limit_mb=4096 ;;
        *) echo -timeout=60 -rss_limit_mb=1024 -malloc_limit_mb=64 ;;
    esac
}

# What a log says of the fault, in a line.
fault() {
    grep -m1 -E 'runtime error:|ERROR: AddressSanitizer' "$1" ||
        grep -m1 -B1 'ERROR: libFuzzer' "$1" | tr '\n' ' '
}

# keep TARGET INPUT LOG: puts a find into the table.
keep() {
    local name program="build/fuzz/bin/fuzz_$1"
    local small="$2.small"
    cp "$2" "$small"
    case "$2" in */crash-*)
        timeout 60 "$program" -minimize_crash=1 -max_total_time=20 -exact_artifact_path="$small" "$2" \
            >/dev/null 2>&1 || true ;;
    esac
    name="$(sha1sum "$small" | cut -c1-8)"
    mkdir -p "fuzz/found/$1"
    cp "$small" "fuzz/found/$1/$name"
    echo "$1 $name $(fault "$3" | sed 's/==[0-9]*==* *ERROR: //')" >>fuzz/found/cases.txt
    echo "$1: found/$1/$name: $(tail -n1 fuzz/found/cases.txt)"
    base64 -w0 "$small"
    echo
}

# fuzz TARGET: fuzzes it once and keeps the find. Ends with 1 when there is one.
fuzz() {
    local program="build/fuzz/bin/fuzz_$1" log="build/fuzz/$1.log"
    local corpus="build/fuzz/corpus/$1" artifacts="build/fuzz/artifacts/$1/"
    rm -rf "$artifacts"
    mkdir -p "$corpus" "$artifacts"
    local folders=("$corpus" "build/fuzz/fuzz/seeds/$1") options=()
    [ ! -d "fuzz/found/$1" ] || folders+=("fuzz/found/$1")
    [ ! -f "fuzz/$1.dict" ] || options+=("-dict=fuzz/$1.dict")
    read -ra limits < <(limits "$1")
    if "$program" "${folders[@]}" "${options[@]}" "${limits[@]}" -seed="${FUZZ_SEED:-0}" \
        -max_total_time="$seconds" -artifact_prefix="$artifacts" -print_final_stats=1 \
        >"$log" 2>&1 </dev/null; then
        echo "$1: $(sed -n 's/.*average_exec_per_sec: *//p' "$log") a second," \
            "$(sed -n 's/.*number_of_executed_units: *//p' "$log") in all, nothing found"
        return 0
    fi
    grep -vE '^#|^ *#1?[0-9] .*(fuzzer::|libc)' "$log" | tail -n 40
    for input in "$artifacts"*; do
        [ ! -f "$input" ] || keep "$1" "$input" "$log"
    done
    return 1
}

export -f fuzz keep fault limits
export seconds ASAN_OPTIONS=detect_leaks=0 LC_ALL=C.UTF-8
printf '%s\n' "${targets[@]}" | xargs -P "${FUZZ_JOBS:-1}" -I{} bash -euo pipefail -c 'fuzz {}'
