#!/usr/bin/env bash
# Builds the Python package and checks it: types, stubs, tests, examples, and the examples of docs/python.md.
#
# usage: scripts/check_python.sh [PRESET]     (default: dev; its build folder is used)
#
# About 60 s where the preset is built.
set -euo pipefail

if [[ ${1:-} == --help || ${1:-} == -h ]]; then
  sed -n '2,6s/^# \{0,1\}//p' "$0"
  exit 0
fi

cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=${1:-dev}
build=$PWD/build/$preset
python=/usr/bin/python3  # whose packages the script below installs

scripts/install_dependencies.sh build test python
cmake --preset "$preset" -D QUILON_BUILD_PYTHON=ON -D Python_EXECUTABLE="$python" >/dev/null
cmake --build --preset "$preset" --target quilon quilon_python >/dev/null

export PYTHONPATH=$build/python PYTHONDONTWRITEBYTECODE=1 QUILON_PROGRAM=$build/host/quilon MPLBACKEND=Agg
(cd "$build/python" && "$python" -m mypy --strict --cache-dir "$build/python/.mypy" -p quilon)
(cd "$build/python" && MYPYPATH=. "$python" -m mypy.stubtest quilon)
"$python" -m pytest -q -p no:cacheprovider python/tests
