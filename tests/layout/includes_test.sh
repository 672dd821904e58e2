#!/usr/bin/env bash
# Compares the includes between folders with the table in includes.txt, and checks that the table has no circle:
#
#   includes_test.sh SOURCE_DIR
set -euo pipefail
export LC_ALL=C
cd "$1"
table=tests/layout/includes.txt

# Prints "FOLDER OTHER" for each entry of the table.
allowed() {
  awk -F': *' '!/^(#|$)/ { n = split($2, others, " "); for (i = 1; i <= n; i++) print $1, others[i] }' "$table"
}

folders() {
  sed -n 's/^\([^#:]*\):.*/\1/p' "$table"
}

# Prints "FOLDER OTHER" for each include in the sources, with folders relative to the root of the repository.
used() {
  find framework binding boot dbc util host contextctl -type f \( -name '*.h' -o -name '*.cpp' -o -name include_c \) \
    -exec awk '
      /^#include "/ {
        split($0, part, "\""); other = part[2]
        if (other == "include_c") other = "framework/inc/include_c"
        folder = FILENAME
        sub(/\/[^\/]*$/, "", folder)
        sub(/\/[^\/]*$/, "", other)
        if (folder != other) print folder, other
      }' {} + | sort -u
}

failed=0
fail() {
  echo "FAILED: $*"
  failed=1
}

# Each line of the input as a failure.
fail_each() {
  while IFS= read -r line; do fail "$1: ${line/ / includes }"; done
}

for folder in $(used | tr ' ' '\n' | sort -u); do
  folders | grep -qxF "$folder" || fail "$folder is not in $table"
done
fail_each "not allowed by $table" < <(comm -13 <(allowed | sort -u) <(used))
fail_each "in $table, but not in the sources" < <(comm -23 <(allowed | sort -u) <(used))
[[ $(used | wc -l) -gt 0 ]] || fail "no includes found"

# binding and boot are the one circle that the layout fixes.
circle=$(allowed | grep -vxF "binding boot" | tsort 2>&1 >/dev/null) || fail "$table has a circle: $circle"

exit "$failed"
