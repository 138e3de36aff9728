#!/usr/bin/env bash
# Takes a real solver's results down the whole road: reads them, averages at the nodes, derives, writes text that anyone
# can read, and says how far our nodal averages are from the solver's own. Works in a fresh clone, dependencies included.
#
# usage: scripts/demo.sh [OUTPUT FOLDER]     (default: build/demo)
set -euo pipefail

if [[ ${1:-} == --help || ${1:-} == -h ]]; then
  sed -n '2,5s/^# \{0,1\}//p' "$0"
  exit 0
fi

cd "$(dirname "${BASH_SOURCE[0]}")/.."
out=${1:-build/demo}
scripts/install_dependencies.sh build

# A first look should not wait for the optimiser: the preset `release` makes the fast program.
cmake --preset release -DCMAKE_CXX_FLAGS_RELEASE="-O1 -DNDEBUG" -DQUILON_WERROR=OFF -DQUILON_PRECOMPILE=ON -DQUILON_UNITY=ON -DQUILON_BUILD_TESTS=OFF \
  -DQUILON_BUILD_BENCH=OFF -B build/demo-build >/dev/null
cmake --build build/demo-build --target quilon
quilon=build/demo-build/host/quilon
results=tests/fixtures/calculix/a_tet

mkdir -p "$out"
"$quilon" import "$results/a_tet.frd" "$results/a_tet.dat" -o "$out/a_tet" >"$out/import.txt" 2>"$out/import.log" ||
  { cat "$out/import.log" >&2; exit 1; }
echo
echo "\$ quilon import a_tet.frd a_tet.dat -o a_tet && quilon ls a_tet '@quantity=none' --table"
"$quilon" ls "$out/a_tet" '@quantity=none' --table
echo
grep 'nodal averages' "$out/import.txt"
tail -n 1 "$out/import.txt"
