#!/usr/bin/env bash
# Builds Parlowen and opens it: ./run.sh [FILE.wav]
# Without a display it runs the headless tour instead and leaves its pictures in out/.
set -euo pipefail
start=$PWD
cd "$(dirname "$(readlink -f "$0")")"

sound=${1:-sounds/mandarin_mao_four_tones_male_16000.wav}
case "$sound" in
  /*) ;;
  *) [ $# -gt 0 ] && sound=$start/$sound || sound=$PWD/$sound ;;
esac

scripts/install-dependencies.sh run
command -v ccache >/dev/null 2>&1 && export CMAKE_CXX_COMPILER_LAUNCHER=ccache
# What the tests have built needs no second build.
preset=release
if [ ! -f build/release/build.ninja ] && [ -x build/ci/bin/parlowen ]; then
  preset=ci
else
  [ -f build/release/build.ninja ] || cmake --preset release >/dev/null
fi
cmake --build --preset "$preset" --target parlowen parlowen-headless

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec build/$preset/bin/parlowen "$sound"
fi

echo "No display: running the headless tour instead."
mkdir -p out
quoted=${sound//\\/\\\\}
quoted=${quoted//\"/\\\"}
tour=$(mktemp)
trap 'rm -f "$tour"' EXIT
cat > "$tour" <<STEPS
answer file "$quoted"
command 110
picture amplitude amplitude.svg
picture pitch pitch.svg
picture waveform waveform.svg
command 170
picture analysis wide-band.svg
command 180
picture analysis narrow-band.svg
print state
STEPS
(cd out && "../build/$preset/bin/parlowen-headless" "$tour")
echo "Pictures: $PWD/out/*.svg"
