#!/usr/bin/env bash
# Builds the fuzz targets with Clang and runs each from its seeds for some seconds. What a target finds is left in
# build/fuzz/artifacts; keep it as a seed together with the cure. With a seed of its random numbers a run begins as the
# last one did, where the corpus is the same.
#
# usage: scripts/fuzz.sh [--seed N] [SECONDS EACH] [TARGET...]     (default: another seed each time, 60, all)
set -euo pipefail
if [[ ${1:-} == --help || ${1:-} == -h ]]; then
  sed -n '2,6s/^# \{0,1\}//p' "$0"
  exit 0
fi
cd "$(dirname "${BASH_SOURCE[0]}")/.."
seed=0
if [[ ${1:-} == --seed ]]; then
  seed=${2:?fuzz.sh: --seed wants a number}
  shift 2
fi
seconds=${1:-60}
shift || true
cmake --preset fuzz
if (($#)); then targets=("$@"); else mapfile -t targets < <(tr '\n' ' ' < tests/fuzz/CMakeLists.txt | grep -o 'quilon_add_fuzz( *\w\+' | sed 's/.*( *//'); fi
((${#targets[@]})) || { echo "fuzz.sh: no fuzz targets" >&2; exit 1; }
cmake --build --preset fuzz --target "${targets[@]}"
mkdir -p build/fuzz/artifacts
for target in "${targets[@]}"; do
  name=${target%_fuzz}
  corpus=build/fuzz/corpus/$name
  mkdir -p "$corpus"
  echo "-- $target"
  build/fuzz/tests/fuzz/"$target" -seed="$seed" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 -verbosity=0 \
    -artifact_prefix=build/fuzz/artifacts/"$target"- "$corpus" tests/fuzz/seeds/"$name" 2>&1 | grep -vE '^(INFO|#)' | tail -n 40
done
