#!/usr/bin/env bash
# Takes the source archive into another build, as FetchContent does, builds the libraries and a program that uses them, and
# runs it. Where the machine allows it, the build has no network.
#
# The archive is that of the tree as it is, changes that are not committed included. `scripts/prove.sh --only source` builds
# all of it.
#
# usage: scripts/check_subproject.sh
set -euo pipefail

if [[ ${1:-} == --help || ${1:-} == -h ]]; then
  sed -n '2,8s/^# \{0,1\}//p' "$0"
  exit 0
fi

cd "$(dirname "${BASH_SOURCE[0]}")/.."
build=build/subproject
rm -rf "$build-source"
mkdir -p "$build-source"
commit=$(git stash create)
scripts/make_source_archive.sh "$build-source" "${commit:-HEAD}"
tar -xzf "$build-source"/quilon-*.tar.gz -C "$build-source"
offline=()
if unshare --net true 2>/dev/null; then
  offline=(unshare --net)
else
  echo "check_subproject.sh: this machine allows no build without its network" >&2
fi
"${offline[@]}" cmake -S tests/house/subproject -B "$build" -G Ninja -D QUILON_TREE="$(echo "$PWD/$build-source"/quilon-*/)" \
  -D CMAKE_BUILD_TYPE=Debug -D CMAKE_CXX_FLAGS_DEBUG=-g >/dev/null
"${offline[@]}" cmake --build "$build" --target consumer >/dev/null
"$build/consumer"
if cmake --build "$build" --target help | grep -qE '^(quilon|.*_test|.*_bench)(:|$)'; then
  echo "check_subproject.sh: a part of another build makes our program, tests or benchmarks, expected the libraries" >&2
  exit 1
fi
