#!/usr/bin/env bash
# An installed Velmoria as another project meets it: `cmake --install` into a temporary
# prefix, a consumer program built with find_package(Velmoria) and with pkg-config, the
# installed program, and the manual page.
# Usage: install_tree.sh BUILD_DIR SOURCE_DIR VERSION PYTHON_MODULE(0|1)
set -uo pipefail
build="$1" source="$2" version="$3" python_module="$4"
. "$source/tests/install/checks.sh"
tmp="$(mktemp -d)"
trap 'rm -rf "$tmp"' EXIT
prefix="$tmp/prefix"

# The manual page renders without a warning, and names every option of --help.
groff -man -ww -z "$source/doc/velmoria.1" 2>"$tmp/groff.txt"
check "groff renders the manual page without warnings" test ! -s "$tmp/groff.txt"
"$build/velmoria" --help >"$tmp/help.txt"
options="$(grep -oE -- '(^|[ |])--?[a-z]+' "$tmp/help.txt" | grep -oE -- '--?[a-z]+' | sort -u)"
check "--help names options" test -n "$options"
for option in $options; do
  check "the manual page has $option" grep -qF -- "$(echo "$option" | sed 's/-/\\-/g')" \
    "$source/doc/velmoria.1"
done

# The tree.
cmake --install "$build" --prefix "$prefix" >"$tmp/install.txt" 2>&1
check "cmake --install" test $? -eq 0
for f in bin/velmoria lib/libvelmoria.a include/velmoria/velmoria.hpp include/velmoria/version.hpp \
  lib/cmake/Velmoria/VelmoriaConfig.cmake lib/cmake/Velmoria/VelmoriaConfigVersion.cmake \
  lib/cmake/Velmoria/VelmoriaTargets.cmake lib/pkgconfig/velmoria.pc \
  share/man/man1/velmoria.1.gz share/doc/velmoria/examples/mnf2.vrn; do
  check "installed $f" test -f "$prefix/$f"
done
check "no inner header is installed" test "$(ls "$prefix/include/velmoria")" = "$(printf 'velmoria.hpp\nversion.hpp')"
if [ "$python_module" = 1 ]; then
  check "installed the Python package" test -f "$prefix/lib/python3/dist-packages/velmoria/__init__.py"
  check "installed the extension" \
    bash -c 'compgen -G "$1/lib/python3/dist-packages/velmoria/_velmoria*.so" >/dev/null' _ "$prefix"
  check "the installed Python package imports" \
    bash -c 'cd / && PYTHONPATH="$1" /usr/bin/python3 -c "import sys, velmoria
sys.exit(not velmoria.__file__.startswith(sys.argv[1]))" "$1"' _ "$prefix/lib/python3/dist-packages"
fi

# The installed program: its version is the project's, and it runs an installed example.
check "velmoria --version" test "$("$prefix/bin/velmoria" --version)" = "Velmoria $version"
mkdir "$tmp/run" && cp "$prefix/share/doc/velmoria/examples/mnf2.vrn" "$tmp/run/"
(cd "$tmp/run" && "$prefix/bin/velmoria" mnf2 >/dev/null)
gamma_line="$(grep -F ' -> GAMMA(Magnetic):' "$tmp/run/mnf2.vmr")"
check "the installed program decomposes MnF2" test -n "$gamma_line"
program_gamma="$(echo "${gamma_line#*:}" | sed 's/^ *//')"

# The consumer, built with find_package(Velmoria) against the prefix.
expected="version $version
group 136
site 2 atoms, 6 functions: $program_gamma"
cmake -S "$source/tests/install/consumer" -B "$tmp/consumer" -DCMAKE_PREFIX_PATH="$prefix" \
  >"$tmp/consumer.txt" 2>&1 && cmake --build "$tmp/consumer" >>"$tmp/consumer.txt" 2>&1
status=$?
[ $status -eq 0 ] || cat "$tmp/consumer.txt"
check "the consumer builds with find_package(Velmoria)" test $status -eq 0
out="$("$tmp/consumer/consumer" "$source/examples/mnf2.vrn")"
check "the consumer runs MnF2 to its end" test $? -eq 0
echo "$out"
# P 42/m n m is number 136; two Mn atoms carry 6 components, and the decomposition is the
# one the program writes in its result file.
check "the consumer finds what the program finds" test "$out" = "$expected"
check "MnF2: 1 Irep_k( 3) + 1 Irep_k( 7) + 2 Irep_k(10)" \
  test "$program_gamma" = "1 Irep_k( 3) + 1 Irep_k( 7) + 2 Irep_k(10)"

# The same with pkg-config.
export PKG_CONFIG_PATH="$prefix/lib/pkgconfig"
check "pkg-config --modversion" test "$(pkg-config --modversion velmoria)" = "$version"
flags="$(pkg-config --cflags --libs velmoria)"
echo "pkg-config --cflags --libs velmoria: $flags"
check "pkg-config names the prefix's headers" test -f "$(echo "$flags" | grep -oE -- '-I[^ ]+' | cut -c3-)/velmoria/velmoria.hpp"
# shellcheck disable=SC2086
g++ -std=c++17 -Wall -Wextra -Wpedantic -Werror -o "$tmp/consumer-pc" \
  "$source/tests/install/consumer/main.cpp" $flags
check "the consumer builds with pkg-config" test $? -eq 0
check "the consumer built with pkg-config agrees" \
  test "$("$tmp/consumer-pc" "$source/examples/mnf2.vrn")" = "$expected"

summary
