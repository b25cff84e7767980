#!/bin/bash
# compare.sh [OPTION...] [PART...]: measures Tarnwick beside its peers, on files that it makes.
#
# Parts (all, when none is named):
#   scan      the scan of bytes in memory, beside `wc -l` on the same file
#   hostile   the same over hostile shapes, at one size and twice that: the times should double
#   find      an object by number, offset and line, and who refers to one, beside the scan
#   programs  tarnwick-inspect from start to end, beside `wc -l`
#   pages     a window with its first page drawn, text and flattening of whole documents, beside
#             mutool; the window's start alone, to be taken off; what scrolling costs an event
#   bytes     the window of bytes on a gigabyte: first paint, jump to the end, search, beside grep
#   search    a search over a million characters of text
# Options:
#   --folder F   where the files are made (${TMPDIR:-/tmp}/tarnwick-bench); they stay for the next time
#   --small      files of a thirty-second of the size, for a quick look
#   --runs N     measured runs of each command (5)
#   --remove     removes the made files in the end
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
folder="${TMPDIR:-/tmp}/tarnwick-bench"
runs=5
divisor=1
removes=false
parts=()
while [ $# -gt 0 ]; do
    case "$1" in
    --folder) folder="$2"; shift ;;
    --runs) runs="$2"; shift ;;
    --small) divisor=32 ;;
    --remove) removes=true ;;
    scan | hostile | find | programs | pages | bytes | search) parts+=("$1") ;;
    -h | --help) sed -n '2,/^set /s/^# \{0,1\}//p' "${BASH_SOURCE[0]}"; exit 0 ;;
    *) echo "compare.sh: no option or part $1; see --help" >&2; exit 2 ;;
    esac
    shift
done
[ ${#parts[@]} -gt 0 ] || parts=(scan hostile find programs pages bytes search)

"$root/scripts/install-packages" run build bench
"$root/scripts/build" bench
programs="$root/build/bench/bin"
mkdir -p "$folder"
made=()

# file SHAPE SIZE: makes the file unless it is there, and names it in $file.
file() {
    file="$folder/$1-$2.pdf"
    made+=("$file")
    [ ! -e "$file" ] || return 0
    local free
    free="$(df --output=avail -B 1 "$folder" | tail -n 1)"
    if [ "$free" -lt 3000000000 ]; then
        echo "compare.sh: less than 3 GB free in $folder; name another with --folder" >&2
        exit 1
    fi
    "$programs/make_file" "$1" "$2" "$file.new"
    mv "$file.new" "$file"
}

# usualSize SHAPE
usualSize() { "$programs/make_file" | awk -v name="$1" '$2 == name { print $3 }'; }

scanPart() {
    echo "== Scan of bytes in memory, beside wc -l"
    for shape in streams objects updates; do
        file "$shape" $(($(usualSize "$shape") / divisor))
        printf '%-20s' "$shape"
        "$programs/scan_file" "$file" "$runs"
    done
}

hostilePart() {
    echo "== Hostile shapes, at a size and at twice that"
    "$programs/make_file" | awk '$1 == "hostile" { print $2, $3 }' | while read -r shape size; do
        size=$((size / divisor / 2))
        for size in $size $((2 * size)); do
            file "$shape" "$size"
            printf '%-20s' "$shape"
            "$programs/scan_file" "$file" "$runs"
            rm "$file"
        done
    done
}

findPart() {
    echo "== Finding objects and who refers to them (processor's time)"
    for shape in objects updates; do
        file "$shape" $(($(usualSize "$shape") / divisor))
        echo "$shape"
        "$programs/find_objects" "$file" "$runs"
    done
}

programsPart() {
    echo "== tarnwick-inspect, beside wc -l"
    for shape in streams objects updates; do
        file "$shape" $(($(usualSize "$shape") / divisor))
        for command in summary objects listing; do
            "$root/bench/pair.py" "$command of $shape" "$runs" \
                -- "$programs/tarnwick-inspect" "$command" "$file" -- wc -l "$file"
        done
    done
}

pagesPart() {
    echo "== Pages and text, beside mutool"
    for shape in manual book; do
        file "$shape" $(($(usualSize "$shape") / divisor))
        "$root/bench/pair.py" "empty window" "$runs" \
            -- "$programs/show_page" -- mutool draw -q -r 110 -o /dev/null "$file" 1
        "$root/bench/pair.py" "first page of the $shape" "$runs" \
            -- "$programs/show_page" "$file" -- mutool draw -q -r 110 -o /dev/null "$file" 1
        "$root/bench/pair.py" "text of the $shape" "$runs" \
            -- "$programs/tarnwick-inspect" text "$file" -o "$folder/out.txt" \
            -- mutool draw -q -F txt -o /dev/null "$file"
        "$root/bench/pair.py" "flat PDF of the $shape" "$runs" \
            -- "$programs/tarnwick-inspect" flat "$file" -o "$folder/out.pdf" \
            -- mutool clean "$file" "$folder/out-peer.pdf"
        rm -f "$folder"/out*
        echo "scrolling through 100 pages of the $shape"
        "$programs/scroll_pages" "$file"
    done
}

bytesPart() {
    echo "== Bytes of a gigabyte, beside grep"
    file streams $(($(usualSize streams) / divisor))
    "$programs/show_bytes" "$file" "$runs"
}

searchPart() {
    echo "== Search in a million characters (0 respects case, 1 ignores it, 2 compares literally)"
    "$programs/bench_search" --benchmark_repetitions="$runs" \
        --benchmark_report_aggregates_only=true 2>/dev/null | grep -E '^Benchmark|median'
}

for part in "${parts[@]}"; do
    "${part}Part"
done
if $removes; then
    rm -f "${made[@]}"
    rmdir --ignore-fail-on-non-empty "$folder"
fi
