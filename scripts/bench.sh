#!/usr/bin/env bash
# Measures how fast the library, the database and the program are beside their peers, and writes docs/performance.md and
# docs/performance.json. A family that is measured anew replaces its part of both.
#
# usage: scripts/bench.sh [--quick] [--build FOLDER] [--out FOLDER] [FAMILY]...     (default: every file in bench/families)
#
#   --quick         small sizes and one round: shows that everything runs, its figures say nothing
#   --build FOLDER  a release build that has the programs (default: build/release, brought up to date)
#   --out FOLDER    where the report goes (default: docs; with --quick the build folder)
#
# Peers that are not installed are left out and named. Boost's headers, which cannot be installed beside other packages,
# are unpacked into the build folder where apt-get can fetch them.
set -euo pipefail

usage() { sed -n '2,13s/^# \{0,1\}//p' "${BASH_SOURCE[0]}"; }

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build='' out='' quick=0 families=()
while (($#)); do
  case $1 in
    -h | --help)
      usage
      exit 0
      ;;
    --quick) quick=1 ;;
    --build | --out)
      declare "${1#--}=$(realpath -m -- "${2:?$1 needs a folder}")"
      shift
      ;;
    -*)
      echo "bench.sh: unknown option '$1', see --help" >&2
      exit 2
      ;;
    *) families+=("$1") ;;
  esac
  shift
done
if ((${#families[@]} == 0)); then
  for file in "$root"/bench/families/*.sh; do families+=("$(basename -- "$file" .sh)"); done
fi
for family in "${families[@]}"; do
  [[ -f $root/bench/families/$family.sh ]] && continue
  echo "bench.sh: no family '$family', expected one of: $(cd "$root/bench/families" && echo *.sh | sed 's/\.sh//g')" >&2
  exit 2
done

# peers FOLDER: what find_path() looks for there.
unpack_boost() {
  [[ -d $1/usr/include/boost ]] && return
  mkdir -p "$1"
  (cd "$1" && apt-get download -qq libboost1.81-dev && dpkg -x libboost1.81-dev_*.deb . && rm -f -- *.deb) >/dev/null 2>&1 ||
    echo "bench.sh: Boost 1.81 cannot be fetched, its maps are left out" >&2
}

given=$build
build=${build:-$root/build/release}
out=${out:-$( ((quick)) && echo "$build" || echo "$root/docs")}
if [[ -z $given ]]; then
  unpack_boost "$build/peers"
  cmake -S "$root" -B "$build" -G Ninja -D CMAKE_BUILD_TYPE=Release >/dev/null
fi

scratch=$(mktemp -d)
trap 'rm -rf -- "$scratch"' EXIT

# What a family's file calls. Each line of $rows is a JSON object: a case, one contestant, nanoseconds per item.

# rows PROGRAM ARGUMENT...: a program of bench/ that writes rows. Rounds of all contestants are taken in turn.
rows() {
  local program=$1 rounds=(--benchmark_repetitions=5 --benchmark_min_time=0.05)
  shift
  ((quick)) && rounds=(--benchmark_min_time=0.0001)
  echo "\$ $program $*" >&2
  echo "$program $*" >>"$scratch/commands"
  "$build/bench/$program" "$@" "${rounds[@]}" --benchmark_enable_random_interleaving=true --rows="$scratch/rows" >"$scratch/log" 2>&1 ||
    { cat "$scratch/log" >&2; return 1; }
}

# text COMMAND...: anything that prints its own table.
text() {
  local shown="${*/#$build\/bench\//}"
  shown=${shown//$root\/bench\//}
  shown=${shown//$build/build/release}
  echo "\$ $shown" >&2
  echo "$shown" >>"$scratch/commands"
  echo "\$ $shown" >>"$scratch/text"
  "$@" | sed "s|$build|build/release|g" >>"$scratch/text"
}

# size FULL QUICK: one of the two.
size() { if ((quick)); then echo "$2"; else echo "$1"; fi; }

# python COMMAND...: bench/python_peers.py, which names the modules that are missing.
python() {
  local shown="python_peers.py ${*//$build/build/release}"
  echo "\$ $shown" >&2
  echo "$shown" >>"$scratch/commands"
  python3 "$root/bench/python_peers.py" "$@" --rounds "$(size 5 1)" --rows "$scratch/rows"
}

for family in "${families[@]}"; do
  rm -f -- "$scratch"/{rows,text,commands}
  touch "$scratch"/{rows,text,commands}
  title='' note='' targets=() peers=()
  # shellcheck source=/dev/null
  source "$root/bench/families/$family.sh"
  [[ -n $given ]] || cmake --build "$build" --target "${targets[@]}" >"$scratch/log" || { tail -n 40 "$scratch/log" >&2; exit 1; }
  measure
  compiler=$(sed -n 's/^CMAKE_CXX_COMPILER:[A-Z]*=//p' "$build/CMakeCache.txt")
  python3 "$root/bench/report.py" --out "$out" --family "$family" --title "$title" --note "$note" --peers "${peers[*]}" \
    --compiler "$("$compiler" --version | head -n 1)" --commands "$scratch/commands" --rows "$scratch/rows" --text "$scratch/text"
done
echo "$out/performance.md"
