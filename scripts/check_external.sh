#!/usr/bin/env bash
# Builds with QUILON_SIBLINGS=external and runs what comes of it. The bundled siblings stand in for somebody else's:
# libraries, a folder of headers and a factory, as docs/own-siblings.md has it.
#
# usage: scripts/check_external.sh [PRESET]     (default: dev; the build whose sibling libraries are taken)
set -euo pipefail

if [[ ${1:-} == --help || ${1:-} == -h ]]; then
  sed -n '2,5s/^# \{0,1\}//p' "$0"
  exit 0
fi

cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=${1:-dev}
root=$PWD

[[ -f build/$preset/CMakeCache.txt ]] || cmake --preset "$preset"
cmake --build --preset "$preset" --target QuilonOnfEngine

libraries=
includes=
for sibling in OnfEngine DbConnector OnfSpecification Utilities; do
  libraries+="$root/build/$preset/siblings/Quilon$sibling/libQuilon$sibling.so;"
  includes+="$root/siblings/Quilon$sibling/include;"
done

build=build/external
cmake -S . -B "$build" -G Ninja -D QUILON_WERROR=ON -D QUILON_BUILD_BENCH=OFF -D QUILON_SIBLINGS=external \
      -D "QUILON_EXTERNAL_LIBRARIES=$libraries" -D "QUILON_EXTERNAL_INCLUDES=$includes" \
      -D "QUILON_CONFORMANCE_FACTORY=$root/tests/conformance/factories/result_database_factory.cpp"
cmake --build "$build"
rm -rf "$build/averages"
"$build/examples/average_at_nodes" "$build/averages" >/dev/null
ctest --test-dir "$build" --parallel "$(nproc)" --output-on-failure --no-tests=error --quiet
echo "check_external.sh: $(ctest --test-dir "$build" -N | tail -n 1), all passed"
