#!/usr/bin/env bash
# Measures how long the comparison of two large results takes, beside h5diff on the same data.
set -euo pipefail

usage() {
  cat <<'TEXT'
Usage: diff_bench.sh BUILD [--nodes N] [--steps N] [--repeats N]

Writes two working databases (make_diff_databases: 230 MB each unless told otherwise) that are equal, that differ by
rounding, and that differ in one value of a hundred, and compares them with `quilon diff`, by its default rule and by
--rel 1e-6, the same inside one process (compare_databases), and, where it is installed, with `h5diff` on their segments,
which are HDF5 files with the same values. All read their files from memory: each is run once before it is measured.
Prints the best and the median of the repeats (5) in seconds, and the most memory that the process took. BUILD is the
folder of a release build.

Example: diff_bench.sh build/release
TEXT
}

build=''
nodes=400000
steps=8
repeats=5
while (($#)); do
  case $1 in
    -h | --help)
      usage
      exit 0
      ;;
    --nodes | --steps | --repeats)
      declare "${1#--}=${2:?$1 needs a number}"
      shift
      ;;
    *) build=$1 ;;
  esac
  shift
done
[[ -x $build/host/quilon ]] || { echo "diff_bench.sh: no $build/host/quilon, expected a build folder" >&2; exit 2; }

scratch=$(mktemp -d)
trap 'rm -rf -- "$scratch"' EXIT
# measure NAME COMMAND...: the tool's own exit code is part of what is printed.
measure() {
  local name=$1 code=0 start end times=()
  shift
  "$@" >"$scratch/out" 2>&1 || code=$?
  for ((i = 0; i < repeats; ++i)); do
    start=${EPOCHREALTIME/[.,]/}
    "$@" >"$scratch/out" 2>&1 || true
    end=${EPOCHREALTIME/[.,]/}
    times+=($((end - start)))
  done
  mapfile -t times < <(printf '%s\n' "${times[@]}" | sort -n)
  awk -v name="$name" -v best="${times[0]}" -v median="${times[repeats / 2]}" -v code="$code" \
    'BEGIN { printf "%-32s best %.2f s, median %.2f s, exit code %d\n", name, best / 1e6, median / 1e6, code }'
  tail -1 "$scratch/out"
}

for mode in equal noise different; do
  rm -rf -- "$scratch/a.fed" "$scratch/b.fed"
  "$build/bench/make_diff_databases" "$scratch/a.fed" "$scratch/b.fed" "$nodes" "$steps" "$mode"
  segment=$(basename -- "$(find "$scratch/a.fed" -name 'segment-*.h5' | LC_ALL=C sort | tail -1)")
  other=$(basename -- "$(find "$scratch/b.fed" -name 'segment-*.h5' | LC_ALL=C sort | tail -1)")
  echo "$mode, each $(du -sb "$scratch/a.fed" | cut -f1) bytes"
  measure "quilon diff" "$build/host/quilon" diff "$scratch/a.fed" "$scratch/b.fed" --brief
  measure "quilon diff --rel 1e-6" "$build/host/quilon" diff "$scratch/a.fed" "$scratch/b.fed" --rel 1e-6 --brief
  echo "in process, default     $("$build/bench/compare_databases" "$scratch/a.fed" "$scratch/b.fed" default "$repeats")"
  echo "in process, rel=1e-6    $("$build/bench/compare_databases" "$scratch/a.fed" "$scratch/b.fed" rel=1e-6 "$repeats")"
  if command -v h5diff >/dev/null; then
    # A segment's own index has checksums and differs; the values are all else.
    measure "h5diff -p 1e-6" h5diff -p 1e-6 --exclude-path /index "$scratch/a.fed/$segment" "$scratch/b.fed/$other"
  else
    echo "h5diff: not installed (Debian package hdf5-tools)"
  fi
done
