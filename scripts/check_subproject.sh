#!/usr/bin/env bash
# Builds a program that takes the tree in as a part of its own build, as FetchContent does, and runs it.
#
# usage: scripts/check_subproject.sh
set -euo pipefail

if [[ ${1:-} == --help || ${1:-} == -h ]]; then
  sed -n '2,4s/^# \{0,1\}//p' "$0"
  exit 0
fi

cd "$(dirname "${BASH_SOURCE[0]}")/.."
build=build/subproject
cmake -S tests/house/subproject -B "$build" -G Ninja -D QUILON_TREE="$PWD" -D CMAKE_BUILD_TYPE=Debug \
  -D CMAKE_CXX_FLAGS_DEBUG=-g >/dev/null
cmake --build "$build" --target consumer >/dev/null
"$build/consumer"
if cmake --build "$build" --target help | grep -qE '^(quilon|.*_test|.*_bench)(:|$)'; then
  echo "check_subproject.sh: a part of another build makes our program, tests or benchmarks, expected the libraries" >&2
  exit 1
fi
