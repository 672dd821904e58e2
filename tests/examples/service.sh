# What the end-to-end tests of services share. To be sourced with $program set to the service's program; its
# configuration is $folder/config.json.
#
# CPP2C_LAUNCHER: what the program is run by, if it is not run by itself.
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

# Starts the service in the background with $options, through the command given, if any.
options=()
start() {
  coproc service { exec "$@" "${launch[@]}" --config "$folder/config.json" "${options[@]}" 2>&1; }
  pid=$!
  exec {out}<&"${service[0]}" {in}>&"${service[1]}"
}

# Waits for a line that matches the pattern and leaves it in $said, and all lines up to it in $heard.
expect() {
  heard=
  while IFS= read -r -t 30 said <&"$out"; do
    echo "$said"
    heard+=$said$'\n'
    [[ "$said" =~ $1 ]] && return
  done
  fail "no line matches '$1'"
}

tell() {
  echo "> $*"
  echo "$*" >&"$in"
}

# Sends a signal and requires a clean end, with nothing said on the way that matches "problem". What was said
# is left in $heard.
stop() {
  local status=0
  kill "-$1" "$pid"
  heard=$(timeout 30 cat <&"$out") || fail "the service did not end"
  echo "$heard"
  wait "$pid" || status=$?
  pid=
  [[ $status -eq 0 ]] || fail "exit status $status"
  [[ ! "$heard" =~ problem ]] || fail "a problem at the end"
}

# A network of its own. The machine must allow it and know pairs of virtual interfaces.
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

# Leaves the kernel's number of an interface in $index.
find_index() {
  index=$("${inside[@]}" --target "$pid" ip -oneline link show "$1")
  index=${index%%:*}
}

# Runs the test of that name.
run_test() {
  declare -F "test$1" >/dev/null || fail "there is no test '$1'"
  "test$1"
}
