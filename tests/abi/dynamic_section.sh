#!/usr/bin/env bash
# Checks the dynamic section of a library: name, dependencies, flags.
#
# Usage: dynamic_section.sh READELF LIBRARY SONAME
set -euo pipefail
readelf=$1 library=$2 soname=$3
failed=0

complain() {
  echo "$library: $*" >&2
  failed=1
}

dynamic=$("$readelf" --dynamic --wide "$library")

# Prints the bracketed values of the entries named $1.
entries() {
  sed -nE "s/.*\($1\).*\[(.*)\]/\1/p" <<<"$dynamic"
}

[[ "$(entries SONAME)" == "$soname" ]] || complain "SONAME is '$(entries SONAME)', not '$soname'"

for needed in $(entries NEEDED); do
  case "$needed" in
    libstdc++.so.6 | libgcc_s.so.1 | libm.so.6 | libc.so.6) ;;
    ld.so.1 | ld-linux*.so.*) ;; # the dynamic loader itself
    *) complain "needs $needed" ;;
  esac
done

[[ -z "$(entries RPATH)$(entries RUNPATH)" ]] || complain "has a search path: $(entries RPATH) $(entries RUNPATH)"

# A unique symbol would prevent the library from being unloaded.
unique=$("$readelf" --dyn-syms --wide "$library" | grep -w UNIQUE || true)
[[ -z "$unique" ]] || complain "has unique symbols:"$'\n'"$unique"

if "$readelf" --segments --wide "$library" | grep -E 'GNU_STACK.*E' >/dev/null; then
  complain "has an executable stack"
fi

exit "$failed"
