#!/usr/bin/env bash
# Installs the library and ovxml into a scratch folder, runs ovxml there, compiles each installed header on its own, builds
# tests/consumer against the library by find_package and by pkg-config, and runs both programs.
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

scratch=$root/build/install
prefix=$scratch/prefix
expected=Oslo

fail() { echo "check_install: $*" >&2; exit 1; }

check_output() {
  local printed
  printed=$(LD_LIBRARY_PATH=$libdir "$2") || fail "the program built by $1 fails"
  [ "$printed" = "$expected" ] || fail "the program built by $1 prints '$printed', not '$expected'"
  echo "check_install: built by $1, runs"
}

rm -rf "$scratch"
configure_test_build
quietly build_targets "$root/build/test" ovxmllib ovxml
quietly cmake --install "$root/build/test" --prefix "$prefix"
pc=$(find "$prefix" -name ovxmllib.pc)
libdir=$(dirname "$(dirname "$pc")")
readelf -d "$libdir/libovxmllib.so" | grep -q 'SONAME.*\[libovxmllib\.so\.16\]' || fail "the SONAME is not libovxmllib.so.16"

[ "$(echo '<a/>' | "$prefix/bin/ovxml" convert - --no-header)" = '<a/>' ] || fail "the installed ovxml does not run"
for file in share/man/man1/ovxml.1 share/bash-completion/completions/ovxml; do
  [ -s "$prefix/$file" ] || fail "$file is missing"
done
echo "check_install: ovxml runs"

compile=("${CXX:-c++}" -std=c++20)
find "$prefix/include" -name '*.h' -print0 |
  xargs -0 -P "$jobs" -I{} "${compile[@]}" -I "$prefix/include" -fsyntax-only -include {} -x c++ /dev/null ||
  fail "a header needs what is not installed or not included"
echo "check_install: each header compiles on its own"

quietly cmake -S "$root/tests/consumer" -B "$scratch/consumer" -G Ninja -DCMAKE_PREFIX_PATH="$prefix"
quietly build_targets "$scratch/consumer"
check_output find_package "$scratch/consumer/consumer"

export PKG_CONFIG_PATH=$libdir/pkgconfig
# shellcheck disable=SC2046  # flags are words
"${compile[@]}" "$root/tests/consumer/main.cpp" $(pkg-config --cflags --libs ovxmllib) -o "$scratch/by_pkg_config"
check_output pkg-config "$scratch/by_pkg_config"
