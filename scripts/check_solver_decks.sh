#!/usr/bin/env bash
# Runs `quilon deck check` over the decks of the solver's own test package (Debian calculix-ccx-test), which are read
# where they are installed, or out of the package on machines that install no documents. Fails when a deck in which the
# solver finds no error is said to have one.
#
# With --broken it then breaks a hundred of them, one thing in each (scripts/break_decks.py), and runs the solver, ccx, on
# every one: fails when the solver stops at a break that is not said to be an error.
#
# usage: scripts/check_solver_decks.sh [--broken] [PRESET]     (default: dev; the build whose program is run)
set -euo pipefail

if [[ ${1:-} == --help || ${1:-} == -h ]]; then
  sed -n '2,10s/^# \{0,1\}//p' "$0"
  exit 0
fi

broken_too=0
if [[ ${1:-} == --broken ]]; then
  broken_too=1
  shift
fi
scripts=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
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
((broken_too)) || exit 0

# usage: stops DECK: whether the solver ends with an error, or by itself
stops() {
  local run status=0
  run=$(mktemp -d "$scratch/run.XXXXXX")
  cp "$1" "$run/a.inp"
  (cd "$run" && OMP_NUM_THREADS=1 timeout 5 ccx -i a > output 2>&1) 2> /dev/null || status=$?
  grep -q '\*ERROR' "$run/output" || ((status != 0 && status != 124))
}

command -v ccx > /dev/null || { echo "check_solver_decks: expected the solver ccx" >&2; exit 2; }
mkdir "$scratch/decks" "$scratch/cut"
for file in "$scratch"/*.inp; do
  size=$(stat -L -c %s "$file")
  ((size > 20000)) || ln -s "$file" "$scratch/decks/"
done
python3 "$scripts/break_decks.py" "$scratch/decks" "$scratch/cut" --count 130
declare -A runs
number=0
wrong=0
while IFS=$'\t' read -r name kind line; do
  ((number < 100)) || break
  base=${name%-*}
  if [[ -z ${runs[$base]:-} ]]; then
    runs[$base]=yes
    if stops "$scratch/decks/$base.inp"; then runs[$base]=no; fi
  fi
  [[ ${runs[$base]} == yes ]] || continue
  stops "$scratch/cut/$name" || continue
  number=$((number + 1))
  "$quilon" deck check -q "$scratch/cut/$name" > "$scratch/output" 2>&1 || true  # what it says is looked at
  if ! grep -q ': error: ' "$scratch/output"; then
    wrong=$((wrong + 1))
    echo "$name: the solver stops at $kind, line $line, and no error is found"
  fi
done < "$scratch/cut/breaks.tsv"
echo "$number broken decks at which the solver stops, $wrong of them not found"
((number == 100 && wrong == 0))
