#!/bin/sh
# The service that README.md shows is the one that is built.
#
#   readme_test.sh SOURCES
set -eu
sed -n '/^```c$/,/^```$/{//!p}' "$1/README.md" | diff -u "$1/examples/hello/hello.c" -
