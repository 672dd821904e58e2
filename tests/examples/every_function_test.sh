#!/usr/bin/env bash
# Requires that the product uses every function of the C interface and that its README lists the files:
# every_function_test.sh SOURCE_DIR
set -euo pipefail
cd "$1/examples/gateway"

functions=$(sed -nE 's/^(CPP2C_API|static inline) .*[ *]([a-z0-9_]+)\(.*/\2/p' ../../framework/inc/include_c)
[[ $(wc -w <<<"$functions") -gt 40 ]] || { echo "FAILED: too few functions found in include_c" >&2; exit 1; }

status=0
require() {
  "${@:2}" && return
  echo "FAILED: $1" >&2
  status=1
}

# Ignores comments.
calls() {
  sed 's|//.*||' "$2" | grep "\<$1(" >/dev/null
}

for function in $functions; do
  # A row is: | `function()` | `file`, ... | what for |
  files=$(sed -nE "s/^\| \`$function\(\)\` \| ([^|]*) \|.*/\1/p" README.md | tr -d ',`')
  require "README.md does not name $function()" test -n "$files"
  for file in $files; do
    require "$file does not call $function()" calls "$function" "$file"
  done
done
exit $status
