#!/usr/bin/env bash
# Compares what callers of the library and of the bundled siblings are compiled against with packaging/abi/, by abidiff:
# functions, members, virtual tables, enumerators. A change that breaks compiled callers needs another SOVERSION
# (docs/packages.md).
#
# usage: scripts/check_abi.sh [--update]
#
#   --update  writes packaging/abi/ anew
#
# The libraries are those of scripts/check_subproject.sh, which have types in their debug information.
set -euo pipefail

if [[ ${1:-} == --help || ${1:-} == -h ]]; then
  sed -n '2,11s/^# \{0,1\}//p' "$0"
  exit 0
fi

cd "$(dirname "${BASH_SOURCE[0]}")/.."
suppressions=packaging/abi/suppressions
code=0
for name in DbDataTools Utilities OnfSpecification DbConnector OnfEngine; do
  library=$(find build/subproject -name "libQuilon$name.so.*.*.*" | head -n 1)
  [[ -n $library ]] || { echo "check_abi: no libQuilon$name in build/subproject, expected those of scripts/check_subproject.sh" >&2; exit 2; }
  kept=packaging/abi/Quilon$name.abi.xz
  found=build/subproject/Quilon$name.abi
  headers=(--headers-dir contract)
  if [[ $name == DbDataTools ]]; then
    headers+=(--headers-dir include)
  else
    headers+=(--headers-dir "siblings/Quilon$name/include")
  fi
  abidw --no-corpus-path --no-comp-dir-path --no-show-locs --drop-private-types --drop-undefined-syms \
    --suppressions "$suppressions" "${headers[@]}" --out-file "$found" "$library"
  sed -i "s#path='[^']*/subproject-source/[^/']*/#path='#" "$found"  # sources by their place in the project, wherever it was built
  if [[ ${1:-} == --update ]]; then
    xz -9e -c "$found" >"$kept"
    continue
  fi
  xz -d -c "$kept" >"$found.kept"
  different=0
  abidiff --suppressions "$suppressions" "$found.kept" "$found" || different=$?
  ((different == 0)) || echo "check_abi: Quilon$name differs" >&2
  code=$((code | different))
done
if ((code & 8)); then
  echo "check_abi: compiled callers break, expected another SOVERSION and 'scripts/check_abi.sh --update'" >&2
elif ((code)); then
  echo "check_abi: what callers see has changed, expected 'scripts/check_abi.sh --update'" >&2
elif [[ ${1:-} != --update ]]; then
  echo "what callers are compiled against is as it was"
fi
exit $((code ? 1 : 0))
