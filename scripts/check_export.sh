#!/usr/bin/env bash
# Reads exports back with VTK: every number, the volume of every solid, and where its faces look. Takes about ten seconds
# beside the build of quilon; the first time it installs VTK (Debian package python3-vtk9, 200 MB).
#
# usage: scripts/check_export.sh [PRESET]     (default: dev; the preset's build is used as it is)
set -euo pipefail

if [[ ${1:-} == --help || ${1:-} == -h ]]; then
  sed -n '2,5s/^# \{0,1\}//p' "$0"
  exit 0
fi
cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=${1:-dev}

scripts/install_dependencies.sh export
cmake --build --preset "$preset" --target quilon
# VTK warns of files with several steps, which it reads the first of.
/usr/bin/python3 tests/host/export/check_export.py "build/$preset/host/quilon" tests/fixtures/calculix \
  "build/$preset/check-export" --vtk 2>"build/$preset/check-export.log" || {
  cat "build/$preset/check-export.log" >&2
  exit 1
}
