#!/usr/bin/env bash
# Runs the commands of a page in one shell and compares their output with the page:
#
#   commands_test.sh PAGE SOURCE_DIR BUILD_DIR
#
# Commands follow "$ " in blocks that begin with ```console. The lines up to the next command are the expected
# output, in which "..." matches any text.
set -uo pipefail

page=$1
source_dir=$2
build_dir=$3

folder=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null; rm -rf "$folder"' EXIT
for name in docs examples; do ln -s "$source_dir/$name" "$folder/$name"; done
ln -s "$build_dir" "$folder/build"
mkdir "$folder/printed"
cd "$folder"

# Prints a glob that matches the text; "..." in the text matches anything.
glob_of() {
  sed -e 's/[][\\*?]/\\&/g' -e 's/\.\.\./*/g' <<<"$1"
}

failures=0
commands=0
status=0
check() {
  [[ -n "$command" ]] || return 0
  commands=$((commands + 1))
  echo "\$ $command"
  eval "(exit $status); $command" >"$folder/printed/last" 2>&1 </dev/null
  status=$?
  local printed
  printed=$(<"$folder/printed/last")
  [[ -z "$printed" ]] || echo "$printed"
  if [[ "$printed" != $(glob_of "$expected") ]]; then
    echo "FAILED: line $line_of_command: expected:"
    echo "$expected"
    failures=$((failures + 1))
  fi
}

run_page() {
  local in_block=false number=0
  command= expected= line_of_command=
  while IFS= read -r line; do
    number=$((number + 1))
    if ! $in_block; then
      [[ "$line" == '```console' ]] && in_block=true
    elif [[ "$line" == '```' || "$line" == '$ '* ]]; then
      check
      command= expected= line_of_command=$number
      if [[ "$line" == '```' ]]; then in_block=false; else command=${line#\$ }; fi
    else
      expected+=${expected:+$'\n'}$line
    fi
  done <"$page"
}

run_page
[[ $commands -gt 0 ]] || { echo "FAILED: no commands"; exit 1; }
exit $((failures > 0))
