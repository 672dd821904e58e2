#!/bin/sh
# Installs the build into a folder and uses it from another project, with pkg-config and with CMake.
#
#   install_test.sh SOURCES BUILD
set -eu
sources=$1
build=$2
top=$(mktemp -d)
trap 'rm -rf "$top"' EXIT
prefix=$top/usr

. "$sources/tests/install/outside.sh"
. "$sources/tests/install/hardening.sh"

cmake --install "$build" --prefix "$prefix" >/dev/null
expect_hardened "$prefix"
libdir=$(dirname "$(find "$prefix" -name libcpp2c.so)")
[ -e "$libdir/cpp2c/libcontext_proxy.so" ] || fail "the host context is not in its private folder"
[ ! -e "$libdir/libcontext_proxy.so" ] || fail "the host context is on the loader's default path"

# The loader and pkg-config do not search this folder by default.
export LD_LIBRARY_PATH="$libdir"
export PKG_CONFIG_PATH="$libdir/pkgconfig"
expect_client "$libdir/cpp2c/libcontext_proxy.so"
with_pkg_config "$top/pkg-config"
with_cmake "$top/cmake"
