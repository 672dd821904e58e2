#!/usr/bin/env bash
# Compares what a library exports with a list; prints the difference and fails if there is one.
#
# Usage: exported_symbols.sh NM LIBRARY LIST
set -euo pipefail
nm=$1 library=$2 list=$3

# One line a name: constructors and destructors come in several variants. The string of either binary
# interface of the standard library shows as std::string.
exported() {
  "$nm" --dynamic --demangle --defined-only --format=posix "$library" |
    sed -E -e 's/ [A-Za-z] [0-9a-f]+( [0-9a-f]+)?$//' \
      -e 's/std::(__cxx11::)?basic_string<char, std::char_traits<char>, std::allocator<char> ?>/std::string/g' |
    LC_ALL=C sort -u
}

diff -u --label "$list" --label "exported by $library" "$list" <(exported)
