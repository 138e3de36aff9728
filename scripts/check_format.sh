#!/usr/bin/env bash
# Says which sources clang-format 14 would lay out otherwise. With --fix it lays them out.
set -euo pipefail
if [[ ${1:-} == --help || ${1:-} == -h ]]; then
  sed -n '2s/^# \{0,1\}//p' "$0"
  exit 0
fi
cd "$(dirname "${BASH_SOURCE[0]}")/.."
mapfile -t files < <(find contract include src siblings host mpi python tests bench examples -name '*.h' -o -name '*.cpp' | sort)
if [[ ${1:-} == --fix ]]; then
  clang-format-14 -i "${files[@]}"
else
  clang-format-14 --dry-run --Werror "${files[@]}" && echo "${#files[@]} files keep the layout"
fi
