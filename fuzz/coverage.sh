#!/bin/bash
# coverage.sh [TARGET...]: how much of our own code the inputs at hand (seeds, finds, the corpus that
# fuzz/run.sh has grown) bring each target through, file by file, and all targets together.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
export ASAN_OPTIONS=detect_leaks=0 LC_ALL=C.UTF-8
build=build/fuzz-coverage
cmake --preset fuzz -B "$build" -DCMAKE_CXX_COMPILER_LAUNCHER=ccache \
    -DCMAKE_CXX_FLAGS="-fprofile-instr-generate -fcoverage-mapping" >"$build.configure.log" 2>&1
cmake --build "$build" --target tarnwick_fuzz
targets=("$@")
[ $# -gt 0 ] || mapfile -t targets < <(ls fuzz/fuzz_*.cpp | sed 's,.*/fuzz_\(.*\)\.cpp,\1,')

# Lines and functions covered of each file of ours.
report() {
    llvm-cov-14 report "$@" -ignore-filename-regex='^(/usr/|.*/(tests|fuzz)/)' -show-region-summary=0 \
        -show-branch-summary=0
}

profiles=()
objects=()
for target in "${targets[@]}"; do
    program="$build/bin/fuzz_$target"
    folders=("$build/fuzz/seeds/$target")
    for folder in "build/fuzz/corpus/$target" "fuzz/found/$target"; do
        [ ! -d "$folder" ] || folders+=("$folder")
    done
    LLVM_PROFILE_FILE="$build/$target.profraw" "$program" -runs=0 "${folders[@]}" >/dev/null 2>&1 </dev/null
    llvm-profdata-14 merge -o "$build/$target.profdata" "$build/$target.profraw"
    echo "== $target"
    report "$program" -instr-profile="$build/$target.profdata"
    profiles+=("$build/$target.profdata")
    objects+=(-object "$program")
done
echo "== all"
llvm-profdata-14 merge -o "$build/all.profdata" "${profiles[@]}"
report "${objects[@]:1}" -instr-profile="$build/all.profdata"
