#!/bin/sh
# Requires that the service in README.md is examples/hello/hello.c.
#
#   readme_test.sh SOURCE_DIR
set -eu
sed -n '/^```c$/,/^```$/{//!p}' "$1/README.md" | diff -u "$1/examples/hello/hello.c" -
