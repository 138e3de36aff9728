#!/usr/bin/env bash
# Runs clang-tidy, with the checks of .clang-tidy, over the sources of the library, the siblings and the host.
#
# usage: scripts/check_tidy.sh [FOLDER...]     (default: src, siblings and the rooms of the host but commands, whose
#                                               sources are options and printing and take half as long as all others)
set -euo pipefail

if [[ ${1:-} == --help || ${1:-} == -h ]]; then
  sed -n '2,5s/^# \{0,1\}//p' "$0"
  exit 0
fi

cd "$(dirname "${BASH_SOURCE[0]}")/.."
((${#@})) || set -- src siblings $(find host -mindepth 1 -maxdepth 1 -type d ! -name commands | sort)
# Without precompiled headers: those of another compiler cannot be read.
cmake -S . -B build/tidy -G Ninja -D CMAKE_CXX_COMPILER=clang++-14 -D CMAKE_EXPORT_COMPILE_COMMANDS=ON >/dev/null
log=build/tidy/tidy.log
git ls-files -- "${@/%//*.cpp}" | xargs -P "$(nproc)" -n 4 clang-tidy-14 -p build/tidy --quiet >"$log" 2>/dev/null || {
  grep -E ': (warning|error):' "$log" | sort -u
  exit 1
}
echo "clang-tidy finds nothing in: $*"
