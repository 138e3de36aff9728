#!/usr/bin/env bash
# Tries what the project promises harder than tests that run with every change can: long tests, fuzzing, breaks of the
# code, coverage, other file systems, and a soak of writers, readers and kills. docs/reliability.md says what each part proves.
#
# usage: scripts/prove.sh [--minutes N] [--only NAME]... [--again] [--quick PRESET] [--list]
#
#   --minutes N     for all of it (default 60); fuzzing takes half, breaks a quarter, the soak a tenth, tests what they need
#   --only NAME     one part; may be given more than once
#   --again         forget what was done before
#   --quick PRESET  for machines that try every change: a minute or two of soak, models and fuzz seeds, out of the build
#                   of that preset
#   --list          print the parts and which of them this commit has passed
#
# What has passed is kept in build/prove and not done again for the same commit: after an interrupt or at the end of its
# minutes the next call goes on. Builds are not counted. Exit code 1 when a part fails.
set -euo pipefail
usage() { sed -n '2,16s/^# \{0,1\}//p' "$0"; }
cd "$(dirname "${BASH_SOURCE[0]}")/.."

minutes=60
only=()
again=false
quick=
list=false
while (($#)); do
  case $1 in
    --minutes) minutes=$2; shift ;;
    --only) only+=("$2"); shift ;;
    --again) again=true ;;
    --quick) quick=$2; shift ;;
    --list) list=true ;;
    --help | -h) usage; exit 0 ;;
    *) usage >&2; exit 2 ;;
  esac
  shift
done

parts=(faults memory models long soak systems large source fuzz mutants coverage)
state=build/prove
commit=$(git rev-parse HEAD)$(git diff HEAD | sha256sum | cut -c1-8)
if $again; then rm -rf "$state"; fi
mkdir -p "$state"

passed() { [[ -f $state/$1.passed && $(< "$state/$1.passed") == "$commit" ]]; }
pass() { echo "$commit" > "$state/$1.passed"; }

if $list; then
  for part in "${parts[@]}"; do echo "$part$(passed "$part" && echo ': passed')"; done
  exit 0
fi
for part in ${only[@]+"${only[@]}"}; do
  [[ " ${parts[*]} " == *" $part "* ]] || { echo "prove.sh: no part '$part', expected one of: ${parts[*]}" >&2; exit 2; }
done

# Tests of a preset whose names match, with what the environment asks for.
tests() { ctest --preset "$1" --parallel "$(nproc)" -R "$2" --quiet --output-log "$state/tests.log" || { tail -n 60 "$state/tests.log"; return 1; }; }
soak() { scripts/soak.py "build/$1/host/quilon" tests/fixtures "$state/soak" --seconds "$2" --seed "$(date +%s)"; }

if [[ -n $quick ]]; then
  soak "$quick" 30
  QUILON_MODEL_SEEDS=60 tests "$quick" 'DatabaseOnDiskModel'
  tests "$quick" '_fuzz\.seeds$|AllocationsOfTheHost'
  echo "prove.sh: quick form passed"
  exit 0
fi

# All of a preset, or the targets that are named.
build() { [[ -f build/$1/CMakeCache.txt ]] || cmake --preset "$1"; cmake --build --preset "$1" ${2:+--target "${@:2}"}; }
seconds() { echo $((minutes * 60 * $1 / 100)); }

prove_faults() { build release; tests release 'Faults|Damage|Crash|Salvage|Forged|TextFolder|Writers'; }
prove_memory() { build release; tests release 'llocation|memory_exhaustion\.short|memory_limit\.short'; }
prove_models() { build release; tests release 'Model|Random|Plain'; }
# Each long test by itself, so that those that passed are not done again.
prove_long() {
  build release
  local name
  while read -r name; do
    passed "long-$name" && continue
    echo "-- $name"
    ctest --preset long -R "^${name//./\\.}\$" --quiet --output-log "$state/long.log" || { tail -n 60 "$state/long.log"; return 1; }
    pass "long-$name"
  done < <(ctest --preset long -N | sed -n 's/^ *Test *#[0-9]*: //p')
}
prove_soak() { build release quilon; soak release "$(seconds 10)"; }
# Other file systems, and full ones; only root can mount them.
prove_systems() {
  ((EUID == 0)) || { echo "prove.sh: file systems are not tried: that wants root" >&2; return 0; }
  build release
  scripts/check_file_systems.py
}
# A database of 100 GB and what is asked of it, in 512 MiB. Nearly all of it is zeros, which take no room on a file system
# that compresses; only root can mount one, others try 5 GB.
prove_large() {
  build release quilon make_large_database
  local disk=$state/large.img folder=$state/large size=(--steps 100 --index 50) mounted=false status=0
  mkdir -p "$folder"
  if ((EUID == 0)) && command -v mkfs.btrfs >/dev/null && truncate -s 400G "$disk" && mkfs.btrfs -q "$disk" &&
    mount -o loop,compress=zstd:1 "$disk" "$folder"; then
    mounted=true
    size=(--prune 20 --among 320 --index 200)
  fi
  bench/large_database.py build/release "$folder/trial" "${size[@]}" --json "$state/large.json" || status=$?
  if $mounted; then umount "$folder"; fi
  rm -rf "$disk" "$folder"
  return $status
}
# The source archive of the commit, built whole, installed and used; without a network where the machine allows that.
prove_source() {
  local folder=$PWD/build/source offline=()
  unshare --net true 2>/dev/null && offline=(unshare --net)
  rm -rf "$folder"
  mkdir -p "$folder"
  scripts/make_source_archive.sh "$folder"
  tar -xzf "$folder"/quilon-*.tar.gz -C "$folder"
  "${offline[@]}" cmake -S "$folder"/quilon-*/ -B "$folder/build" -G Ninja -D CMAKE_BUILD_TYPE=Release -D QUILON_BUILD_TESTS=OFF \
    -D QUILON_BUILD_BENCH=OFF >/dev/null
  "${offline[@]}" cmake --build "$folder/build" --target all >"$state/source.log" || { tail -n 30 "$state/source.log"; return 1; }
  cmake --install "$folder/build" --prefix "$folder/prefix" >/dev/null
  (cd "$folder" && prefix/bin/quilon import quilon-*/tests/fixtures/calculix/b_hex/b_hex.{inp,frd,dat} -o b.fed -q && prefix/bin/quilon check b.fed)
  cmake -S tests/house/consumer -B "$folder/consumer" -G Ninja -D CMAKE_PREFIX_PATH="$folder/prefix" >/dev/null
  cmake --build "$folder/consumer" >"$state/source.log" || { tail -n 30 "$state/source.log"; return 1; }
  "$folder/consumer/consumer"
}
prove_fuzz() {
  local count
  count=$(tr '\n' ' ' < tests/fuzz/CMakeLists.txt | grep -o 'quilon_add_fuzz(' | wc -l)
  scripts/fuzz.sh "$(($(seconds 50) / count + 1))"
  [[ -z $(ls build/fuzz/artifacts) ]] || { echo "prove.sh: findings in build/fuzz/artifacts" >&2; return 1; }
}
prove_mutants() { scripts/mutants.py --sample 1000 --minutes "$((minutes / 4 + 1))"; }
prove_coverage() {
  build coverage
  rm -rf build/coverage/profiles
  tests coverage '_fuzz\.seeds$'
  scripts/coverage.py --parsers
  tests coverage .
  scripts/coverage.py
}

for part in "${parts[@]}"; do
  if ((${#only[@]})) && [[ " ${only[*]} " != *" $part "* ]]; then continue; fi
  if passed "$part"; then echo "== $part: passed before"; continue; fi
  echo "== $part"
  "prove_$part"
  pass "$part"
done
echo "prove.sh: all passed"
