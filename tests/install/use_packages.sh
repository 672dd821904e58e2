# Installs the packages in $2/packages in an overlay of this machine's root file system, uses them and purges them.
# Runs in its own mount namespace.
#
#   use_packages.sh SOURCES TOP
sources=$1
top=$2
root=$top/root

mkdir "$top/over" "$root"
mount -t tmpfs none "$top/over"
mkdir "$top/over/changes" "$top/over/work"
mount -t overlay overlay -o "lowerdir=/,upperdir=$top/over/changes,workdir=$top/over/work" "$root"
mount --rbind /dev "$root/dev"
mount -t proc proc "$root/proc"

mkdir -p "$root/outside/tests/install" "$root/outside/examples/hello"
cp -r "$top/packages" "$root/outside"
cp -r "$sources/tests/install" "$root/outside/tests"
cp "$sources/examples/hello/hello.c" "$root/outside/examples/hello"
chroot "$root" sh -eu -c '
  sources=/outside
  prefix=/usr
  . /outside/tests/install/outside.sh
  unset LD_LIBRARY_PATH PKG_CONFIG_PATH
  dpkg -i /outside/packages/*.deb >/dev/null
  expect_client /usr/lib/cpp2c/libcontext_proxy.so
  with_pkg_config /outside/pkg-config
  with_cmake /outside/cmake
  dpkg --purge cpp2c-host libcpp2c-dev libcpp2c1 >/dev/null
  [ -z "$(find /usr/lib /usr/bin /usr/include /usr/share -name "*cpp2c*" -o -name "*contextctl*")" ] || fail "files remain after the purge"'
