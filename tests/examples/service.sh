# Functions for the end-to-end tests of services. Source this file with $program set to the service's program. Its
# configuration file is $folder/config.json.
#
# CPP2C_LAUNCHER: command that runs the program, if it does not run directly.
#
# Exit status: 0 passed, 1 failed, 77 not possible on this machine.

launch=(${CPP2C_LAUNCHER:+"$CPP2C_LAUNCHER"} "$program")
folder=$(mktemp -d)
pid=
finish() {
  [[ -z "$pid" ]] || kill -KILL "$pid" 2>/dev/null || true
  rm -rf "$folder"
}
trap finish EXIT

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

# Starts the service in the background with $options, with the given command in front if there is one.
options=()
start() {
  coproc service { exec "$@" "${launch[@]}" --config "$folder/config.json" "${options[@]}" 2>&1; }
  pid=$!
  exec {out}<&"${service[0]}" {in}>&"${service[1]}"
}

# Waits for a line that matches the pattern. Leaves the line in $line, and all lines up to it in $output.
expect() {
  output=
  while IFS= read -r -t 30 line <&"$out"; do
    echo "$line"
    output+=$line$'\n'
    [[ "$line" =~ $1 ]] && return
  done
  fail "no line matches '$1'"
}

tell() {
  echo "> $*"
  echo "$*" >&"$in"
}

# Sends a signal and requires exit status 0 and no line with "problem". Leaves the output in $output.
stop() {
  local status=0
  kill "-$1" "$pid"
  output=$(timeout 30 cat <&"$out") || fail "the service did not end"
  echo "$output"
  wait "$pid" || status=$?
  pid=
  [[ $status -eq 0 ]] || fail "exit status $status"
  [[ ! "$output" =~ problem ]] || fail "a problem at the end"
}

# A separate network namespace. The machine must permit it and support pairs of virtual interfaces.
isolated=(unshare --net)
inside=(nsenter --net)
if [[ $EUID -ne 0 ]]; then
  isolated+=(--map-root-user)
  inside+=(--user --preserve-credentials)
fi

require_network() {
  local problem
  problem=$("${isolated[@]}" ip link add lw0 type veth peer name lw1 2>&1) && return
  echo "NOT POSSIBLE on this machine: $problem"
  exit 77
}

run_inside() {
  echo "> $*"
  "${inside[@]}" --target "$pid" "$@"
}

ip_inside() {
  run_inside ip "$@"
}

# Leaves the index of an interface in $index.
find_index() {
  index=$("${inside[@]}" --target "$pid" ip -oneline link show "$1")
  index=${index%%:*}
}

# Runs the test with this name.
run_test() {
  declare -F "test$1" >/dev/null || fail "there is no test '$1'"
  "test$1"
}
