#!/usr/bin/env bash
# Makes the Debian packages of a build and the source archive, and checks them: lintian without errors, nothing of other
# projects exported, installation and removal, consumers by find_package and by pkg-config, with our siblings and with
# somebody else's, program, man pages, completions and Python package as they are installed.
#
# usage: scripts/check_packages.sh [--bare] [PRESET]     (default: dev; its build folder is used)
#
#   --bare   also installs them by apt in a bare Debian 12, made by mmdebstrap (root, a network, 2 minutes), builds the
#            consumers there and removes all
#
# About 90 s where the preset is built. The packages stay in build/PRESET/deb, the archive in build/PRESET/source.
set -euo pipefail

if [[ ${1:-} == --help || ${1:-} == -h ]]; then
  sed -n '2,13s/^# \{0,1\}//p' "$0"
  exit 0
fi
bare=
[[ ${1:-} == --bare ]] && { bare=yes; shift; }

cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=${1:-dev}
build=$PWD/build/$preset
python=/usr/bin/python3
step() { printf -- '-- %s (%ss)\n' "$1" "$SECONDS"; }
fail() { echo "check_packages: $1" >&2; exit 1; }

scripts/install_dependencies.sh build python packages

step "packages"
# The build is used as it is: what differs is where things are installed.
as_it_was=(cmake --preset "$preset" -D QUILON_PACKAGES=OFF -D QUILON_PYTHON_DIR=lib/python3/dist-packages -U CMAKE_INSTALL_LIBDIR)
trap '"${as_it_was[@]}" >/dev/null' EXIT
cmake --preset "$preset" -D QUILON_PACKAGES=ON -D QUILON_BUILD_PYTHON=ON -D Python_EXECUTABLE="$python" >/dev/null
targets=(quilon quilon_python)
grep -q '^build quilon-mpi: phony' "$build/build.ninja" && targets+=(quilon-mpi)
cmake --build --preset "$preset" --target "${targets[@]}" >/dev/null
rm -rf "$build/deb" "$build/source" "$build/root" "$build/packaged"
(cd "$build" && cpack -G DEB -B "$build/deb" >"$build/cpack.log" 2>&1) || { cat "$build/cpack.log" >&2; fail "cpack failed"; }
debs=("$build"/deb/*.deb)
((${#debs[@]} == 3 + ${#targets[@]})) || fail "${#debs[@]} packages, expected $((3 + ${#targets[@]}))"

step "lintian"
lintian --allow-root --fail-on error --tag-display-limit 0 "${debs[@]}"

step "installation"
root=$build/root
libraries=usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)
mkdir -p "$root/var/lib/dpkg/info" "$root/var/lib/dpkg/updates"
touch "$root/var/lib/dpkg/status" "$root/var/lib/dpkg/available"
# What ours depend on is this machine's.
in_root=(dpkg --root="$root" --log=/dev/null --force-depends --force-not-root --force-script-chrootless)
"${in_root[@]}" -i "${debs[@]}" >"$build/dpkg.log" 2>&1 || { cat "$build/dpkg.log" >&2; fail "dpkg installs nothing"; }
scripts/check_exports.py --foreign "$root/$libraries"/*.so.*.*.* "$root"/usr/lib/python3/dist-packages/quilon/*.so
export LD_LIBRARY_PATH=$root/$libraries
[[ $("$root/usr/bin/quilon" --version) == "quilon "* ]]
(cd / && PYTHONDONTWRITEBYTECODE=1 PYTHONPATH=$root/usr/lib/python3/dist-packages "$python" -c '
import quilon
assert quilon.principal_values([[1, 2, 3, 0, 0, 0]]).tolist() == [[3, 2, 1]]')
# What the packages have as completions, under the names that the check knows.
mkdir -p "$build/packaged"
cp "$root/usr/share/bash-completion/completions/quilon" "$build/packaged/quilon.bash"
cp "$root/usr/share/zsh/vendor-completions/_quilon" "$root/usr/share/fish/vendor_completions.d/quilon.fish" "$build/packaged"
scripts/check_completions.sh "$root/usr/bin/quilon" "$build/packaged" "$root/usr/share/man/man1"

step "consumers"
cmake -S tests/house/consumer -B "$build/packaged/consumer" -G Ninja -D CMAKE_PREFIX_PATH="$root/usr" >/dev/null
cmake --build "$build/packaged/consumer" >/dev/null
"$build/packaged/consumer/consumer"
export PKG_CONFIG_LIBDIR=$root/$libraries/pkgconfig PKG_CONFIG_SYSROOT_DIR=$root
read -ra flags <<<"$(pkg-config --cflags --libs quilon)"
g++ -std=c++20 tests/house/consumer/main.cpp -I"$root/usr/include" -L"$root/$libraries" "${flags[@]}" -o "$build/packaged/by_pkg_config"
"$build/packaged/by_pkg_config"
old=$(! g++ -std=c++17 -fsyntax-only tests/house/consumer/main.cpp -I"$root/usr/include" "${flags[@]}" 2>&1) || fail "a consumer compiles as C++17"
[[ $(grep -m 1 'error' <<<"$old") == *"#error QuilonDbDataTools needs C++20"* ]] || fail "a consumer in C++17 is not told so: $old"

step "consumers with siblings of somebody else"
# Ours stand in for them, in one library under a name of its own, so that it shows which ones are loaded.
theirs=$build/packaged/libTheirs.so
headers=
for sibling in OnfEngine DbConnector OnfSpecification Utilities; do headers+="$PWD/siblings/Quilon$sibling/include;"; done
g++ -shared -Wl,-soname,libTheirs.so "$build"/siblings/Quilon*/CMakeFiles/Quilon*.dir/src/*.o -o "$theirs"
cmake -S tests/house/consumer -B "$build/packaged/consumer_of_theirs" -G Ninja -D CMAKE_PREFIX_PATH="$root/usr" \
  -D SIBLINGS="$theirs" -D SIBLING_INCLUDES="$headers" >/dev/null
cmake --build "$build/packaged/consumer_of_theirs" >/dev/null
read -ra flags <<<"$(pkg-config --cflags --libs QuilonDbDataTools)"
IFS=';' read -ra folders <<<"$headers"
g++ -std=c++20 tests/house/consumer/main.cpp -I"$root/usr/include" "${folders[@]/#/-I}" -L"$root/$libraries" "${flags[@]}" "$theirs" \
  -Wl,-rpath,"$build/packaged" -o "$build/packaged/theirs_by_pkg_config"
for program in "$build/packaged/consumer_of_theirs/consumer" "$build/packaged/theirs_by_pkg_config"; do
  "$program"
  loaded=$(ldd "$program" | grep -oE 'lib(Quilon|Theirs)[A-Za-z]*' | sort -u | tr '\n' ' ')
  [[ $loaded == "libQuilonDbDataTools libTheirs " ]] || fail "$program loads $loaded, expected the library and libTheirs alone"
done

step "removal"
mapfile -t names < <(for deb in "${debs[@]}"; do dpkg-deb -f "$deb" Package; done)
"${in_root[@]}" -P "${names[@]}" >"$build/dpkg.log" 2>&1 || { cat "$build/dpkg.log" >&2; fail "dpkg removes nothing"; }
if [[ -d $root/usr ]] && find "$root/usr" ! -type d | grep .; then
  fail "files are left behind the removal"
fi
unset LD_LIBRARY_PATH PKG_CONFIG_LIBDIR PKG_CONFIG_SYSROOT_DIR
"${as_it_was[@]}" >/dev/null

step "pip"
# A wheel by Debian's packages alone, in an environment that sees them; the build is taken as it is.
"$python" -m venv --system-site-packages "$build/packaged/venv"
QUILON_BUILD_DIR=$build "$build/packaged/venv/bin/pip" install --quiet --no-index --no-build-isolation . \
  >"$build/pip.log" 2>&1 || { cat "$build/pip.log" >&2; fail "pip installs nothing"; }
(cd / && "$build/packaged/venv/bin/python" -c '
import pathlib, quilon
folder = pathlib.Path(quilon.__file__).parent
assert "packaged/venv" in str(folder), folder
used = {line.split()[-1] for line in open("/proc/self/maps") if "libQuilon" in line}
assert len(used) == 5 and all(pathlib.Path(name).parent == folder for name in used), used
print("a wheel with", len(list(folder.iterdir())), "files")')

step "source archive"
mkdir -p "$build/source"
scripts/make_source_archive.sh "$build/source"
tar -xzf "$build"/source/*.tar.gz -C "$build/source"
cmake -S "$build"/source/quilon-*/ -B "$build/source/build" -G Ninja -D CMAKE_BUILD_TYPE=Debug >/dev/null
[[ $bare ]] || exit 0

step "bare Debian 12"
command -v mmdebstrap >/dev/null || fail "--bare needs mmdebstrap"
system=$(mktemp -d)
trap 'rm -rf "$system"; "${as_it_was[@]}" >/dev/null' EXIT
chmod 755 "$system"
mmdebstrap --quiet --variant=apt bookworm "$system" "${QUILON_MIRROR:-http://deb.debian.org/debian}"
mkdir "$system/packages"
cp "${debs[@]}" tests/house/consumer/* "$system/packages"
cp tests/fixtures/calculix/b_hex/b_hex.{inp,frd,dat} "$system/packages"
cat >"$system/packages/run" <<'EOF'
set -eu
cd /packages
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
apt-get install -qq -y --no-install-recommends ./quilon_*.deb ./libquilondbdatatools0.1_*.deb >/dev/null
quilon --version
quilon import b_hex.inp b_hex.frd b_hex.dat -o b.fed >/dev/null
quilon check b.fed
apt-get install -qq -y --no-install-recommends ./python3-quilon_*.deb >/dev/null
python3 -c 'import quilon; print(quilon.open("b.fed").block("displacement").values.shape)'
apt-get install -qq -y --no-install-recommends ./*.deb g++ cmake make pkg-config >/dev/null
g++ -std=c++20 main.cpp $(pkg-config --cflags --libs quilon) -o by_pkg_config
./by_pkg_config
cmake -S . -B by_cmake >/dev/null
cmake --build by_cmake >/dev/null
./by_cmake/consumer
apt-get purge -qq -y quilon python3-quilon 'libquilondbdatatools*' >/dev/null
if find / -xdev -path /proc -prune -o -path /packages -prune -o -path /var/log -prune -o -iname '*quilon*' -print | grep .; then
  echo "files are left behind the removal"
  exit 1
fi
EOF
chroot "$system" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin sh /packages/run 2>&1 | grep -v '^debconf:'
echo "installed, used and removed in a bare Debian 12"
