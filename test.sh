#!/bin/bash
# test.sh [PRESET] [CTEST ARGUMENT...]: installs what is missing, builds (a release, unless another
# preset is named) and runs every test without a display.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")"
preset="${1:-release}"
[ $# -eq 0 ] || shift

scripts/install-packages run build test
scripts/build "$preset" -DTARNWICK_TESTS=ON

# Tests neither need nor touch a home or a display.
unset DISPLAY WAYLAND_DISPLAY
export HOME="$PWD/build/$preset/test-home" LC_ALL=C.UTF-8
mkdir -p "$HOME"
ctest --preset "$preset" "$@"
