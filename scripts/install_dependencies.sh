#!/usr/bin/env bash
# Installs what the project needs on Debian 12. Packages that are there already are left alone, so that a machine that
# has them all needs neither root nor a network.
#
# usage: scripts/install_dependencies.sh [build] [test] [export] [python] [page] [node] [packages] [mpi] [ci] [coverage]     (default: build)
set -euo pipefail

if [[ ${1:-} == --help || ${1:-} == -h ]]; then
  sed -n '2,6s/^# \{0,1\}//p' "$0"
  exit 0
fi

declare -A group=(
  [build]="g++ cmake ninja-build libcli11-dev libnanoflann-dev nlohmann-json3-dev libxxhash-dev libhdf5-dev libcairo2-dev zlib1g-dev libcpp-httplib-dev fonts-dejavu-core pkg-config"
  [test]="libgtest-dev libgmock-dev libeigen3-dev libbenchmark-dev libabsl-dev python3 python3-h5py python3-numpy python3-xxhash binutils"
  [export]="python3 python3-h5py python3-vtk9"
  [python]="python3-dev python3-pybind11 pybind11-dev python3-numpy python3-pandas python3-xarray python3-matplotlib python3-pytest python3-setuptools python3-pip python3-wheel mypy"
  [page]="chromium"
  [node]="nodejs npm"
  [packages]="python3-venv lintian dpkg-dev file abigail-tools xz-utils bash zsh fish man-db groff-base"
  [mpi]="libopenmpi-dev openmpi-bin"
  [coverage]="clang-14 libclang-rt-14-dev llvm-14"
  [ci]="doxygen clang-14 libclang-rt-14-dev clang-format-14 clang-tidy-14 calculix-ccx calculix-ccx-test"
)

missing=()
for name in "${@:-build}"; do
  [[ -n ${group[$name]:-} ]] || { echo "install_dependencies: unknown group '$name', expected build, test, export, python, page, node, packages, mpi, ci or coverage" >&2; exit 2; }
  for package in ${group[$name]}; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
  done
done
((${#missing[@]})) || exit 0

run=()
if ((EUID != 0)); then
  command -v sudo >/dev/null || { echo "install_dependencies: needs root for: ${missing[*]}" >&2; exit 2; }
  run=(sudo)
fi
echo "installing: ${missing[*]}"
"${run[@]}" apt-get update -qq
"${run[@]}" env DEBIAN_FRONTEND=noninteractive DEBCONF_NOWARNINGS=yes \
  apt-get install -y -qq -o Dpkg::Use-Pty=0 --no-install-recommends "${missing[@]}" </dev/null >/dev/null
