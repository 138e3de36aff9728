#!/usr/bin/env bash
# Runs the solver on every fixture deck and compares what it writes with what is committed.
set -euo pipefail

usage() {
  cat <<'TEXT'
Usage: check_fixtures.sh [--solver PROGRAM] [DECK...]

Runs the solver (ccx) in a scratch folder on the decks under tests/fixtures/calculix, all or the named ones, and compares
every output that is committed beside a deck byte by byte. Of a .frd the lines 1UDATE and 1UTIME are left out: they alone
differ between two runs.

Exit code: 0 all the same, 1 something differs, 2 trouble.

Example: check_fixtures.sh tests/fixtures/calculix/hex8/hex8.inp
TEXT
}

solver=ccx
decks=()
while (($#)); do
  case $1 in
    -h | --help)
      usage
      exit 0
      ;;
    --solver)
      solver=${2:?--solver needs a program}
      shift
      ;;
    -*)
      echo "check_fixtures.sh: unknown option $1" >&2
      exit 2
      ;;
    *) decks+=("$(realpath -- "$1")") ;;
  esac
  shift
done

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
command -v "$solver" >/dev/null || { echo "check_fixtures.sh: no solver '$solver' (Debian package calculix-ccx)" >&2; exit 2; }
if ((${#decks[@]} == 0)); then
  mapfile -t decks < <(find "$root/tests/fixtures/calculix" -name '*.inp' | LC_ALL=C sort)
fi

scratch=$(mktemp -d)
trap 'rm -rf -- "$scratch"' EXIT

# One thread: the order of additions is part of the result.
export OMP_NUM_THREADS=1 LC_ALL=C

comparable() {
  case $1 in
    *.frd) sed '/^    1U\(DATE\|TIME\)/d' -- "$1" ;;
    *) cat -- "$1" ;;
  esac
}

different=0
for deck in "${decks[@]}"; do
  folder=$(dirname -- "$deck")
  name=$(basename -- "$deck" .inp)
  rm -rf -- "$scratch/run"
  mkdir -- "$scratch/run"
  # Includes are found from the folder that the solver runs in.
  (cd -- "$folder" && find . \( -name '*.inp' -o -name '*.inc' \) -exec cp --parents -- {} "$scratch/run/" \;)
  # The exit code says nothing here: the solver ends with 0 after some errors and with others after none.
  (cd -- "$scratch/run" && "$solver" "$name" >"$scratch/log" 2>&1) || true

  for extension in dat frd sta sti mas dof; do
    committed=$folder/$name.$extension
    fresh=$scratch/run/$name.$extension
    [[ -e $committed ]] || continue
    if [[ ! -e $fresh ]]; then
      echo "not written: ${committed#"$root"/}"
      different=1
    elif ! cmp -s -- <(comparable "$committed") <(comparable "$fresh"); then
      echo "different: ${committed#"$root"/}"
      different=1
    fi
  done
done

if ((different)); then
  exit 1
fi
echo "${#decks[@]} decks: every committed output is as the solver writes it"
