#!/usr/bin/env bash
# Runs scripts/setup with stubs in place of dpkg-query, apt-get, id and sudo.
#
#   setup_test.sh SOURCE_DIR TEST
set -euo pipefail
setup=$1/scripts/setup
top=$(mktemp -d)
trap 'rm -rf "$top"' EXIT
mkdir "$top/bin" "$top/tmp"
for tool in bash cat dirname env mktemp rm; do ln -s "$(command -v "$tool")" "$top/bin/$tool"; done

fail() {
  echo "FAILED: $*; standard output and error:" >&2
  cat "$top/out" "$top/err" >&2
  exit 1
}

# Creates the command $1, which runs the shell command $2.
stub() {
  printf '#!/bin/sh\n%s\n' "$2" >"$top/bin/$1"
  chmod +x "$top/bin/$1"
}

# Runs the script and sets `status`.
run_setup() {
  status=0
  PATH=$top/bin TMPDIR=$top/tmp "$setup" "$@" >"$top/out" 2>"$top/err" || status=$?
  [[ -z "$(ls "$top/tmp")" ]] || fail "temporary files remain"
}

expect_status() {
  [[ $status -eq $1 ]] || fail "the exit status is $status instead of $1"
}

expect_line() {
  grep -qxE "$2" "$top/$1" || fail "no line of $1 matches '$2'"
}

expect_empty() {
  [[ ! -s "$top/$1" ]] || fail "$1 is not empty"
}

nothing_installed() {
  stub dpkg-query 'exit 1'
}

all_installed() {
  stub dpkg-query 'printf "install ok installed"'
}

# Records each call of apt-get in the file `calls`.
record_apt_get() {
  stub apt-get "echo \"apt-get \$*\" >>'$top/calls'"
}

InstallsNothingIfNothingIsMissing() {
  all_installed
  record_apt_get
  run_setup check mips
  expect_status 0
  expect_empty out
  expect_empty err
  [[ ! -e "$top/calls" ]] || fail "apt-get was called"
}

InstallsMissingPackages() {
  nothing_installed
  record_apt_get
  stub id 'echo 0'
  run_setup package
  expect_status 0
  expect_line calls 'apt-get .* update'
  expect_line calls 'apt-get .* install .* ninja-build .* lintian'
  expect_empty err
}

UsesSudoWithoutRoot() {
  nothing_installed
  record_apt_get
  stub id 'echo 1000'
  stub sudo "echo sudo >>'$top/calls'; exec \"\$@\""
  run_setup
  expect_status 0
  [[ "$(cut -d ' ' -f 1 "$top/calls")" == $'sudo\napt-get\nsudo\napt-get' ]] || fail "apt-get was not run by sudo"
}

ReportsThatRootAndSudoAreMissing() {
  nothing_installed
  record_apt_get
  stub id 'echo 1000'
  run_setup package
  expect_status 1
  expect_line err 'scripts/setup: cannot install .* lintian: this needs root or sudo\.'
  [[ ! -e "$top/calls" ]] || fail "apt-get was called"
}

ShowsTheOutputOfAFailedInstallation() {
  nothing_installed
  stub id 'echo 0'
  stub apt-get 'echo "E: no such host" >&2; exit 100'
  run_setup
  expect_status 1
  expect_line err 'E: no such host'
  expect_line err 'scripts/setup: apt-get .* update failed\.'
}

RefusesAnUnknownGroup() {
  all_installed
  run_setup nonsense
  expect_status 2
  expect_line err "scripts/setup: unknown group 'nonsense'; see scripts/setup --help\\."
}

"$2"
