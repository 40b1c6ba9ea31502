#!/usr/bin/env bash
# Installs the packages that building (run), building and testing (test) or measuring corpora (corpus) needs, when they
# are missing.
# Usage: scripts/install-dependencies.sh run|test|corpus
set -euo pipefail

build=(g++ cmake ninja-build pkg-config qt6-base-dev qt6-multimedia-dev libgl-dev qt6-qpa-plugins fonts-noto-cjk fonts-dejavu-core)
checks=(qt6-svg-dev libgtest-dev libbenchmark-dev xvfb xauth ccache util-linux clang-format python3 pulseaudio pulseaudio-utils praat)
corpus=(snakemake python3 util-linux)
statistics=(python3-pandas r-base-core r-cran-nlme) # what docs/corpora.md shows is run by a test

case "${1:-}" in
  run) packages=("${build[@]}") ;;
  test) packages=("${build[@]}" "${checks[@]}" "${corpus[@]}" "${statistics[@]}") ;;
  corpus) packages=("${corpus[@]}") ;;
  *) echo "usage: $0 run|test|corpus" >&2; exit 2 ;;
esac

if ! command -v apt-get >/dev/null 2>&1; then
  cat >&2 <<TEXT
This system has no apt-get. Please install what these Debian 12 packages hold, then start again:
  ${packages[*]}
(a C++20 compiler, CMake 3.22, Ninja, Qt 6 Widgets and Multimedia, a CJK font; for the tests also Qt 6 Svg, GoogleTest,
Google Benchmark, Xvfb, PulseAudio, Praat, Snakemake 7, pandas and R with nlme.)
TEXT
  # What is there may be enough: the build says what is not.
  exit 0
fi

missing=()
for package in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)
  [ "$status" = "install ok installed" ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo=()
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null 2>&1; then
    echo "Not root, and there is no sudo. Please install: ${missing[*]}" >&2
    exit 1
  fi
  sudo=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -q
"${sudo[@]}" apt-get install -q -y --no-install-recommends "${missing[@]}"
