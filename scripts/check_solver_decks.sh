#!/usr/bin/env bash
# Runs `quilon deck check` over the decks of the solver's own test package (Debian calculix-ccx-test), which are read
# where they are installed, or out of the package on machines that install no documents. Fails when a deck in which the
# solver finds no error is said to have one.
#
# usage: scripts/check_solver_decks.sh [PRESET]     (default: dev; the build whose program is run)
set -euo pipefail

if [[ ${1:-} == --help || ${1:-} == -h ]]; then
  sed -n '2,7s/^# \{0,1\}//p' "$0"
  exit 0
fi

quilon=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/build/${1:-dev}/host/quilon
decks=/usr/share/doc/calculix-ccx-test/examples/test
[[ -x $quilon ]] || { echo "check_solver_decks: expected a program $quilon" >&2; exit 2; }

# uprofile.inp ends a third step that it does not begin: the solver stops there with an error of its own.
broken="uprofile.inp"

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
if [[ ! -d $decks ]]; then
  mkdir "$scratch/package"
  (cd "$scratch/package" && apt-get download -qq calculix-ccx-test && dpkg-deb -x ./*.deb .)
  decks=$scratch/package$decks
fi
number=0
wrong=0
for file in "$decks"/*.inp "$decks"/*.inp.gz; do
  name=$(basename "${file%.gz}")
  if [[ $file == *.gz ]]; then zcat "$file" > "$scratch/$name"; else ln -s "$file" "$scratch/$name"; fi
  number=$((number + 1))
  expected=0
  [[ " $broken " == *" $name "* ]] && expected=1
  status=0
  "$quilon" deck check --allow-outside -q "$scratch/$name" > "$scratch/output" 2>&1 || status=$?
  if ((status != expected)); then
    wrong=$((wrong + 1))
    echo "$name: exit code $status, expected $expected"
    cat "$scratch/output"
  fi
done
echo "$number decks, $wrong of them judged wrong"
((number > 0 && wrong == 0))
