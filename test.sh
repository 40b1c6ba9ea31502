#!/usr/bin/env bash
# Installs what is missing, builds and runs every test: ./test.sh [PRESET]   (ci when none is named, or sanitize)
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")"
preset=${1:-ci}

scripts/install-dependencies.sh test
command -v ccache >/dev/null 2>&1 && export CMAKE_CXX_COMPILER_LAUNCHER=ccache
[ -f "build/$preset/build.ninja" ] || cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"

# The desktop tests get a screen of their own.
screen=()
command -v xvfb-run >/dev/null 2>&1 && screen=(xvfb-run -a -s "-screen 0 1920x1080x24")
"${screen[@]}" ctest --test-dir "build/$preset" --output-on-failure -j "$(nproc)"
