#!/usr/bin/env bash
# Compares the exported symbols of a library with a list. Prints the differences; fails if there are any.
#
# Usage: exported_symbols.sh NM LIBRARY LIST
set -euo pipefail
nm=$1 library=$2 list=$3

# Prints one line for each name, although constructors and destructors have several symbols. Both ABI variants of
# the standard library's string appear as std::string.
exported() {
  "$nm" --dynamic --demangle --defined-only --format=posix "$library" |
    sed -E -e 's/ [A-Za-z] [0-9a-f]+( [0-9a-f]+)?$//' \
      -e 's/std::(__cxx11::)?basic_string<char, std::char_traits<char>, std::allocator<char> ?>/std::string/g' |
    LC_ALL=C sort -u
}

diff -u --label "$list" --label "exported by $library" "$list" <(exported)
