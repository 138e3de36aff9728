#!/usr/bin/env bash
# Draws the pictures of the README from bundled solver results, or checks that they are what the program draws.
#
# usage: scripts/draw_pictures.sh QUILON [--check]
set -euo pipefail

if [[ ${1:-} == --help || ${1:-} == -h || $# -lt 1 ]]; then
  sed -n '2,4s/^# \{0,1\}//p' "$0"
  exit 0
fi

quilon=$(realpath "$1")
cd "$(dirname "${BASH_SOURCE[0]}")/.."
out=docs/pictures
if [[ ${2:-} == --check ]]; then
  out=$(mktemp -d)
  trap 'rm -rf "$out"' EXIT
fi
mkdir -p "$out"

results=tests/fixtures/calculix
"$quilon" -q plot $results/a_tet/a_tet.frd nodal-stress -o "$out/stress.png" --size 640x420 --deform auto --undeformed \
  --unit MPa
"$quilon" -q plot $results/mixed_quadratic/mixed_quadratic.frd nodal-stress.xx -o "$out/cut.png" --size 640x420 \
  --cut 5,5,5,0,1,0 --unit MPa

[[ ${2:-} == --check ]] || exit 0
for picture in "$out"/*.png; do
  cmp "$picture" "docs/pictures/$(basename "$picture")" || { echo "draw_pictures: docs/pictures is not what quilon draws" >&2; exit 1; }
done
