#!/usr/bin/env bash
# Builds the page of quilon report anew, compares it with web/dist, and looks at pages in a headless Chromium. Takes about
# two to three minutes beside the build of quilon; the first time it installs Chromium, and npm where there is none.
#
# usage: scripts/check_page.sh [PRESET]     (default: dev; the preset's build is used as it is)
set -euo pipefail

if [[ ${1:-} == --help || ${1:-} == -h ]]; then
  sed -n '2,5s/^# \{0,1\}//p' "$0"
  exit 0
fi
cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=${1:-dev}
out=$PWD/build/$preset/check-page

scripts/install_dependencies.sh page
command -v npm >/dev/null || scripts/install_dependencies.sh node
cmake --build --preset "$preset" --target quilon
mkdir -p "$out"
(cd web && npm ci --prefer-offline --ignore-scripts --no-audit --no-fund --loglevel=error >/dev/null)
node web/build.js "$out/dist"
diff -r web/dist "$out/dist" >/dev/null || {
  echo "check_page: web/dist is not what web/src builds; run 'npm run build' in web/" >&2
  exit 1
}
node --test-reporter=spec web/test/run.js "build/$preset/host/quilon" tests/fixtures/calculix "$out/pages"
