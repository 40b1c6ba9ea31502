#!/usr/bin/env bash
# Measures every recording of a folder into one table:
#   corpus/run.sh FOLDER [--cores N] [--profile local|slurm|DIR] [--results DIR] [--config FILE]
# Installs and builds what is missing. The results stand beside the folder, in FOLDER-measured, unless --results says
# otherwise; nothing is written into FOLDER.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")

usage() { sed -n '2,5s/^# \{0,1\}//p' "$0" >&2; exit 2; }
folders=() cores=all profile=local results= config=
while [ $# -gt 0 ]; do
  case "$1" in
    --cores | --profile | --results | --config)
      [ $# -ge 2 ] && [ -n "$2" ] || usage
      printf -v "${1#--}" %s "$2"
      shift 2 ;;
    --help) usage ;;
    -*) echo "unknown option $1" >&2; usage ;;
    *) folders+=("$1"); shift ;;
  esac
done
[ ${#folders[@]} -gt 0 ] || [ -n "$config" ] || usage
[[ $cores = all || $cores =~ ^[1-9][0-9]*$ ]] || usage
for i in "${!folders[@]}"; do
  [ -d "${folders[i]}" ] || { echo "no folder ${folders[i]}" >&2; exit 2; }
  folders[i]=$(cd -- "${folders[i]}" && pwd)
done
if [ -n "$config" ]; then
  [ -f "$config" ] || { echo "no file $config" >&2; exit 2; }
  config=$(realpath -- "$config")
fi
if [ -z "$results" ]; then
  [ ${#folders[@]} -gt 0 ] || { echo "--results is needed when the config names the folders" >&2; exit 2; }
  results=${folders[0]}-measured
fi
[ -d "$here/profiles/$profile" ] && profile=$here/profiles/$profile || profile=$(realpath -- "$profile")

command -v snakemake >/dev/null 2>&1 || "$here/../scripts/install-dependencies.sh" corpus
built() {
  for preset in release ci dev; do [ -x "$here/../build/$preset/bin/$1" ] && return; done
  command -v "$1" >/dev/null 2>&1
}
named() { [ -n "$config" ] && grep -qE "(^|[\"{,[:space:]])$1\"?:[[:space:]]*[^#[:space:]]" "$config"; }
if ! { { named program || built parlowen-measure; } && { named report_program || built parlowen-report; }; }; then
  "$here/../scripts/install-dependencies.sh" run
  (cd "$here/.." && { [ -f build/release/build.ninja ] || cmake --preset release >/dev/null; } &&
    cmake --build --preset release --target parlowen-measure parlowen-report)
fi

mkdir -p -- "$results"
cd -- "$results"
# The engine hands this folder to a cluster's shells within quotes of its own.
if [ "$(basename "$profile")" != local ] && [[ $PWD = *[\'\"\$\`\\]* ]]; then
  echo "the path of the results must be without quotes, \$, \` and \\ here: --results" >&2
  exit 2
fi

# One run at a time. This lock ends with the engine, also with one that was killed; the engine's own would stay. Jobs that a
# killed engine left behind do no harm: they write the same tables, whole or not at all.
exec 9>.lock
flock -n 9 || { echo "waiting for another run in $PWD" >&2; flock 9; }
python3 - "$config" "${folders[@]}" <<'PYTHON'
import json, sys
with open("asked.json", "w") as file:
    json.dump({"config": sys.argv[1] or None, "folders": sys.argv[2:]}, file)
PYTHON
amount=(--cores "$cores")
[ "$(basename "$profile")" = local ] || { [ "$cores" = all ] && amount=() || amount=(--jobs "$cores"); }
snakemake --snakefile "$here/Snakefile" --profile "$profile" --nolock "${amount[@]}"
echo "$PWD: corpus.csv, corpus.db, report/index.html"
