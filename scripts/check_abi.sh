#!/usr/bin/env bash
# Compares what callers of the library are compiled against with packaging/abi/, by abidiff: functions, members, virtual
# tables, enumerators. A change that breaks compiled callers needs another SOVERSION (docs/packages.md).
#
# usage: scripts/check_abi.sh [--update]
#
#   --update  writes packaging/abi/ anew
#
# The library is that of scripts/check_subproject.sh, which has types in its debug information.
set -euo pipefail

if [[ ${1:-} == --help || ${1:-} == -h ]]; then
  sed -n '2,10s/^# \{0,1\}//p' "$0"
  exit 0
fi

cd "$(dirname "${BASH_SOURCE[0]}")/.."
library=$(find build/subproject -name 'libQuilonDbDataTools.so.*.*.*' | head -n 1)
[[ -n $library ]] || { echo "check_abi: no library in build/subproject, expected that of scripts/check_subproject.sh" >&2; exit 2; }
kept=packaging/abi/QuilonDbDataTools.abi.xz
found=build/subproject/QuilonDbDataTools.abi
suppressions=packaging/abi/suppressions
abidw --no-corpus-path --no-comp-dir-path --no-show-locs --drop-private-types --drop-undefined-syms --suppressions "$suppressions" \
  --headers-dir include --headers-dir contract --out-file "$found" "$library"
if [[ ${1:-} == --update ]]; then
  xz -9e -c "$found" >"$kept"
  exit 0
fi
code=0
xz -d -c "$kept" >"$found.kept"
abidiff --suppressions "$suppressions" "$found.kept" "$found" || code=$?
if ((code & 8)); then
  echo "check_abi: compiled callers break, expected another SOVERSION and 'scripts/check_abi.sh --update'" >&2
elif ((code)); then
  echo "check_abi: what callers see has changed, expected 'scripts/check_abi.sh --update'" >&2
else
  echo "what callers are compiled against is as it was"
fi
exit $((code ? 1 : 0))
