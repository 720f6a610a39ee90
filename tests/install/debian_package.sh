#!/usr/bin/env bash
# The Debian package: built with cpack, its file list and its dependencies checked, and, where
# this runs as root, installed into the system, used, and removed again.
# Usage: debian_package.sh BUILD_DIR SOURCE_DIR VERSION PYTHON_MODULE(0|1)
set -uo pipefail
build="$1" source="$2" version="$3" python_module="$4"
. "$source/tests/install/checks.sh"
tmp="$(mktemp -d)"
installed=0
cleanup() {
  if [ "$installed" = 1 ]; then
    apt-get -o DPkg::Lock::Timeout=300 remove -y -qq velmoria >/dev/null 2>&1 || dpkg -r velmoria
  fi
  rm -rf "$tmp"
}
trap cleanup EXIT

cpack -G DEB --config "$build/CPackConfig.cmake" -B "$tmp/deb" >"$tmp/cpack.txt" 2>&1
status=$?
[ $status -eq 0 ] || cat "$tmp/cpack.txt"
check "cpack -G DEB" test $status -eq 0
deb="$tmp/deb/velmoria_${version}_$(dpkg --print-architecture).deb"
check "the package is named $(basename "$deb")" test -f "$deb"
if [ ! -f "$deb" ]; then
  summary
  exit 1
fi

dpkg-deb -c "$deb" | awk '{print $6}' >"$tmp/files.txt"
for f in usr/bin/velmoria usr/lib/libvelmoria.a usr/include/velmoria/velmoria.hpp \
  usr/include/velmoria/version.hpp usr/lib/cmake/Velmoria/VelmoriaConfig.cmake \
  usr/lib/cmake/Velmoria/VelmoriaConfigVersion.cmake usr/lib/cmake/Velmoria/VelmoriaTargets.cmake \
  usr/lib/pkgconfig/velmoria.pc usr/share/man/man1/velmoria.1.gz \
  usr/share/doc/velmoria/examples/mnf2.vrn; do
  check "the package holds /$f" grep -qx "./$f" "$tmp/files.txt"
done
if [ "$python_module" = 1 ]; then
  check "the package holds the Python package" \
    grep -qx "./usr/lib/python3/dist-packages/velmoria/__init__.py" "$tmp/files.txt"
  check "the package recommends numpy" grep -q python3-numpy <<<"$(dpkg-deb -f "$deb" Recommends)"
fi
check "Package: velmoria" test "$(dpkg-deb -f "$deb" Package)" = velmoria
check "Version: $version" test "$(dpkg-deb -f "$deb" Version)" = "$version"
check "a maintainer" test -n "$(dpkg-deb -f "$deb" Maintainer)"
check "a description" test -n "$(dpkg-deb -f "$deb" Description)"

# Every shared library that the program needs comes from a package that it depends on.
depends="$(dpkg-deb -f "$deb" Depends)"
echo "Depends: $depends"
depended="$(tr ',|' '\n\n' <<<"$depends" | awk '{print $1}')"  # the package names alone
dpkg-deb -x "$deb" "$tmp/root"
for lib in $(readelf -d "$tmp/root/usr/bin/velmoria" | sed -n 's/.*NEEDED.*\[\(.*\)\]/\1/p'); do
  path="$(ldconfig -p | awk -v l="$lib" '$1 == l && /x86-64|64bit/ {print $NF; exit}')"
  owner=""
  for candidate in "$path" "$(readlink -f "$path")" "${path#/usr}"; do
    [ -n "$owner" ] || owner="$(dpkg -S "$candidate" 2>/dev/null | head -1 | cut -d: -f1)"
  done
  check "$lib comes from ${owner:-?}, a dependency" grep -qxF "${owner:-?}" <<<"$depended"
done

if [ "$(id -u)" -ne 0 ]; then
  echo "not root: the package is not installed into the system here (CI runs as root)"
elif dpkg -s velmoria >/dev/null 2>&1; then
  echo "a velmoria package is installed already: left as it is, the install is not tried"
else
  apt-get -o DPkg::Lock::Timeout=300 install -y -qq "$deb" >"$tmp/apt.txt" 2>&1
  status=$?
  [ $status -eq 0 ] || cat "$tmp/apt.txt"
  [ $status -eq 0 ] && installed=1
  check "apt-get install ./$(basename "$deb")" test $status -eq 0
  check "velmoria --version on the PATH" test "$(cd / && velmoria --version)" = "Velmoria $version"
  if grep -qs '^path-exclude.*/usr/share/man' /etc/dpkg/dpkg.cfg.d/*; then
    echo "dpkg is set here to leave manual pages out: man -w is not tried"
  else
    check "man -w velmoria" test "$(man -w velmoria)" = /usr/share/man/man1/velmoria.1.gz
  fi
  if [ "$python_module" = 1 ]; then
    check "the system's Python imports velmoria" bash -c 'cd / && /usr/bin/python3 -c "import velmoria"'
  fi
  cmake -S "$source/tests/install/consumer" -B "$tmp/consumer" >"$tmp/consumer.txt" 2>&1 &&
    cmake --build "$tmp/consumer" >>"$tmp/consumer.txt" 2>&1
  status=$?
  [ $status -eq 0 ] || cat "$tmp/consumer.txt"
  check "a consumer builds against the system's Velmoria" test $status -eq 0
  check "it runs MnF2" "$tmp/consumer/consumer" /usr/share/doc/velmoria/examples/mnf2.vrn
  apt-get -o DPkg::Lock::Timeout=300 remove -y -qq velmoria >"$tmp/apt.txt" 2>&1
  status=$?
  [ $status -eq 0 ] && installed=0
  check "the package is removed again" test $status -eq 0
  check "velmoria is gone from the PATH" test -z "$(command -v velmoria)"
fi

summary
