#!/bin/bash
# run.sh [FILE.pdf...]: installs what is missing, builds a release and starts Tarnwick on the files,
# or on its start window. Where there is no display, prints each file's objects and their summary.
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
case "${1:-}" in
-h | --help)
    sed -n '2,3s/^# //p' "${BASH_SOURCE[0]}"
    exit 0
    ;;
esac

# A display that is named but gone would abort the program: a local one must have its socket.
hasDisplay() {
    [ -z "${WAYLAND_DISPLAY:-}" ] || return 0
    local number="${DISPLAY:-}"
    [ -n "$number" ] || return 1
    case "$number" in
    :* | unix:*)
        number="${number##*:}"
        number="${number%%.*}"
        [ -S "/tmp/.X11-unix/X$number" ] || grep -q "@/tmp/.X11-unix/X$number\$" /proc/net/unix
        ;;
    esac
}

"$root/scripts/install-packages" run build
"$root/scripts/build" release -DTARNWICK_TESTS=OFF
programs="$root/build/release/bin"

if hasDisplay; then
    exec "$programs/tarnwick" "$@"
fi
echo "There is no display to open a window on."
if [ $# -eq 0 ]; then
    echo "Name a PDF file, and its objects are printed here: $0 FILE.pdf"
    exit 0
fi
status=0
for file in "$@"; do
    printf '\nObjects of %s:\n' "$file"
    "$programs/tarnwick-inspect" objects "$file" || { status=$?; continue; }
    printf '\nSummary of %s:\n' "$file"
    "$programs/tarnwick-inspect" summary "$file" || status=$?
done
exit $status
