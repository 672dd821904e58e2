#!/bin/sh
# Builds the Debian packages, checks their contents and dependencies, and installs and uses them in an overlay of
# this machine's root file system.
#
#   packages_test.sh SOURCES BUILD
#
# Exit status: 0 passed, 1 failed, 77 the packages cannot be installed on this machine.
set -eu
sources=$1
build=$2
top=$(mktemp -d)
trap 'rm -rf "$top"' EXIT
prefix=/usr

. "$sources/tests/install/outside.sh"

(cd "$build" && cpack -G DEB -B "$top/packages" >/dev/null)
cd "$top/packages"

package() {
  echo "$1"_*.deb
}

expect_file() {
  dpkg-deb --contents "$(package "$1")" | grep -E " \./usr/$2( -> .*)?\$" >/dev/null || fail "$1 lacks $2"
}

expect_dependency() {
  dpkg-deb --field "$(package "$1")" Depends | grep -Fq "$2" || fail "$1 does not depend on $2"
}

expect_file libcpp2c1 'lib/libcpp2c\.so\.1'
expect_file libcpp2c-dev include/cpp2c/include_c
expect_file libcpp2c-dev include/cpp2c/binding/context.h
expect_file libcpp2c-dev 'lib/libcpp2c\.so'
expect_file libcpp2c-dev 'lib/pkgconfig/cpp2c\.pc'
expect_file libcpp2c-dev 'lib/cmake/cpp2c/cpp2cConfig\.cmake'
expect_file cpp2c-host bin/cpp2c-host
expect_file cpp2c-host 'lib/cpp2c/libcontext_proxy\.so'
expect_file cpp2c-host bin/contextctl
expect_file cpp2c-host 'share/man/man1/contextctl\.1\.gz'
expect_file cpp2c-host 'share/man/man1/cpp2c-host\.1\.gz'
expect_file cpp2c-host share/bash-completion/completions/contextctl
expect_file cpp2c-host share/zsh/vendor-completions/_contextctl
expect_file cpp2c-host 'share/fish/vendor_completions\.d/contextctl\.fish'
expect_file cpp2c-host lib/cpp2c/examples/gateway
expect_file cpp2c-host lib/cpp2c/examples/libtraffic.so
expect_file cpp2c-host share/doc/cpp2c/examples/hello/hello.c
for name in libcpp2c1 libcpp2c-dev cpp2c-host; do
  expect_file $name share/doc/$name/copyright
  expect_file $name "share/doc/$name/changelog\.gz"
done
[ "$(dpkg-deb --field "$(package libcpp2c1)" Version)" = \
  "$(dpkg-parsechangelog -l "$sources/packaging/changelog" -S Version)" ] || fail "the changelog and the package have different versions"
dpkg-deb --info "$(package libcpp2c1)" triggers | grep -q ldconfig || fail "libcpp2c1 does not trigger ldconfig"
dpkg-deb --info "$(package libcpp2c1)" shlibs | grep -q '^libcpp2c 1 libcpp2c1 ' || fail "libcpp2c1 lacks its shlibs"
expect_dependency libcpp2c1 libstdc++6
expect_dependency libcpp2c-dev "libcpp2c1 (= "
expect_dependency cpp2c-host "libcpp2c1 (= "
expect_dependency cpp2c-host libevent-
expect_dependency cpp2c-host libcurl4

# The mounts are private and disappear when the shell exits.
if ! unshare --mount true 2>/dev/null; then
  echo "skipped: mount namespaces are not available, so the packages were checked but not installed"
  exit 77
fi
unshare --mount sh -eu "$sources/tests/install/use_packages.sh" "$sources" "$top"
