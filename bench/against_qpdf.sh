#!/bin/bash
# against_qpdf.sh FOLDER: holds the objects that the inspector's table has against `qpdf --show-xref`,
# for every PDF file below FOLDER that both open without repairing it. Prints each difference and, in
# the end, how many files and objects were compared. Needs `scripts/build bench`.
set -uo pipefail

programs="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/build/bench/bin"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
files=0 streams=0 objects=0 members=0 missing=0 differing=0 skipped=0

while IFS= read -r -d '' file; do
    # A file that it repairs has no table of its own to compare with.
    if ! qpdf --show-xref "$file" >"$work/qpdf.out" 2>"$work/qpdf.err" || [ -s "$work/qpdf.err" ]; then
        skipped=$((skipped + 1))
        continue
    fi
    sed -nE -e 's|^([0-9]+)/([0-9]+): uncompressed; offset = [0-9]+|\1/\2|p' \
        -e 's|^([0-9]+)/[0-9]+: compressed; stream = ([0-9]+), index = ([0-9]+)|\1/0 in \2 at \3|p' \
        "$work/qpdf.out" | LC_ALL=C sort >"$work/theirs"
    if ! "$programs/list_objects" "$file" >"$work/ours.raw" 2>/dev/null; then
        skipped=$((skipped + 1))
        continue
    fi
    LC_ALL=C sort "$work/ours.raw" >"$work/ours"
    lost="$(LC_ALL=C comm -13 "$work/ours" "$work/theirs" | wc -l)"
    files=$((files + 1))
    inStreams="$(grep -c ' in ' "$work/theirs")"
    [ "$inStreams" -eq 0 ] || streams=$((streams + 1))
    members=$((members + inStreams))
    objects=$((objects + $(wc -l <"$work/theirs")))
    missing=$((missing + lost))
    if [ "$lost" -gt 0 ]; then
        differing=$((differing + 1))
        echo "$file: $lost missing, such as $(LC_ALL=C comm -13 "$work/ours" "$work/theirs" | head -n 1)"
    fi
done < <(find "$1" -name '*.pdf' -print0 | sort -z)
echo "$files files ($streams with object streams, $skipped left out), $objects objects ($members in" \
    "object streams), $missing of them missing in $differing files"
