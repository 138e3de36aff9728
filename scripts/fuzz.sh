#!/usr/bin/env bash
# Builds the fuzz targets with Clang and runs each from its seeds for some seconds. What a target finds is left in
# build/PRESET/artifacts; keep it as a seed together with the cure. With a seed of its random numbers a run begins as the
# last one did, where the corpus is the same.
#
# usage: scripts/fuzz.sh [--seed N] [--grow] [--preset PRESET] [SECONDS EACH] [TARGET...]
#        (default: another seed each time, fuzz, 60, all)
#
#   --grow    takes over into the seeds what reached new edges of the code, and as little of it as reaches all of them
#   --preset  fuzz, which is the fastest, or asan, whose build has the targets beside the tests
set -euo pipefail
if [[ ${1:-} == --help || ${1:-} == -h ]]; then
  sed -n '2,11s/^# \{0,1\}//p' "$0"
  exit 0
fi
cd "$(dirname "${BASH_SOURCE[0]}")/.."
seed=0
grow=false
preset=fuzz
while [[ ${1:-} == --* ]]; do
  case $1 in
    --seed) seed=${2:?fuzz.sh: --seed wants a number}; shift ;;
    --grow) grow=true ;;
    --preset) preset=${2:?fuzz.sh: --preset wants a name}; shift ;;
    *) echo "fuzz.sh: unknown option $1" >&2; exit 2 ;;
  esac
  shift
done
seconds=${1:-60}
shift || true
cmake --preset "$preset"
if (($#)); then targets=("$@"); else mapfile -t targets < <(tr '\n' ' ' < tests/fuzz/CMakeLists.txt | grep -o 'quilon_add_fuzz( *\w\+' | sed 's/.*( *//'); fi
((${#targets[@]})) || { echo "fuzz.sh: no fuzz targets" >&2; exit 1; }
cmake --build --preset "$preset" --target "${targets[@]}"
mkdir -p "build/$preset/artifacts"
for target in "${targets[@]}"; do
  name=${target%_fuzz}
  corpus=build/$preset/corpus/$name
  mkdir -p "$corpus"
  words=()
  dictionary=tests/fuzz/dictionaries/${name%_convert}.dict
  if [[ -f $dictionary ]]; then words=("-dict=$dictionary"); fi
  echo "-- $target"
  "build/$preset/tests/fuzz/$target" -seed="$seed" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 -verbosity=0 \
    -artifact_prefix="build/$preset/artifacts/$target-" ${words[@]+"${words[@]}"} "$corpus" tests/fuzz/seeds/"$name" 2>&1 |
    grep -vE '^(INFO|#|Dictionary)' | tail -n 40
  if $grow; then
    # By edges alone: how often one is passed makes a hundred times as many inputs different.
    "build/$preset/tests/fuzz/$target" -merge=1 -use_counters=0 -timeout=10 -rss_limit_mb=2048 -verbosity=0 tests/fuzz/seeds/"$name" "$corpus"
    echo "   $(find tests/fuzz/seeds/"$name" -type f | wc -l) seeds"
  fi
done
