#!/usr/bin/env bash
# Writes the source archive of a commit, the one that is checked out unless another is named: quilon-VERSION.tar.gz, with
# the same bytes every time. It has all that a build needs; nothing is fetched.
#
# usage: scripts/make_source_archive.sh FOLDER [COMMIT]
set -euo pipefail

if [[ ${1:-} == --help || ${1:-} == -h || $# -lt 1 || $# -gt 2 ]]; then
  sed -n '2,5s/^# \{0,1\}//p' "$0"
  [[ ${1:-} == -* ]] && exit 0
  exit 2
fi

folder=$(realpath "$1")
cd "$(dirname "${BASH_SOURCE[0]}")/.."
version=$(sed -n 's/^project(QuilonDbDataTools VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
git archive --format=tar --prefix="quilon-$version/" "${2:-HEAD}" | gzip -9n >"$folder/quilon-$version.tar.gz"
