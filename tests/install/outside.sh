# Builds a service and a module outside the source tree and runs them on the installed host context. To be sourced
# with `sources` set to this project's folder and `prefix` to the installation prefix.

fail() {
  echo "$*" >&2
  exit 1
}

expect_run() {
  local hello=$1 module=$2 printed
  printed=$(echo Hello | "$prefix/bin/cpp2c-host" "$hello" --module "$module") || fail "$hello ended with status $?"
  [ "$printed" = "greeter: running
line from hello: Hello
greeter: unloaded" ] || fail "unexpected output: $printed"
}

# The client finds the library in its own installation.
expect_client() {
  local printed
  printed=$("$prefix/bin/contextctl" --version) || fail "contextctl --version ended with status $?"
  case $printed in
    "contextctl "[0-9]*) ;;
    *) fail "contextctl --version printed: $printed" ;;
  esac
  printed=$("$prefix/bin/contextctl" inspect "$1" 2>&1) || fail "contextctl inspect ended with status $?: $printed"
  case $printed in
    "$1, to fit "*"/libcpp2c.so.1"*"It fits."*) ;;
    *) fail "contextctl inspect printed: $printed" ;;
  esac
}

# Uses the client on a running service: a saved value is restored after a restart, and the service can be stopped.
expect_driven() {
  local service=$1 folder=$2/driven
  mkdir "$folder"
  mkfifo "$folder/input"
  echo '{"objects": [{"number": 1, "name": "A.", "leaves": {"X": {"type": "int"}}}]}' >"$folder/config.json"
  drive "$service" "$folder" 0
  drive "$service" "$folder" 7
}

# Starts the service, expects A.X to be $3, sets A.X to 7, saves and stops the service.
drive() {
  local client="$prefix/bin/contextctl --control $2/control" pid tries=0 status=0
  "$prefix/bin/cpp2c-host" "$1" --config "$2/config.json" --control "$2/control" --state "$2/state" <"$2/input" &
  pid=$!
  exec 3>"$2/input"
  until $client modules >/dev/null 2>&1; do
    tries=$((tries + 1))
    [ $tries -lt 200 ] || fail "the service does not answer"
    sleep 0.05
  done
  [ "$($client get A.X)" = "$3" ] || fail "A.X is not $3"
  $client set A.X 7
  $client save
  $client registrations | grep -q '^fd .* read_line ' || fail "the service's callback is not named"
  $client stop
  wait $pid || status=$?
  exec 3>&-
  [ $status -eq 0 ] || fail "the service ended with status $status"
}

copy_sources() {
  mkdir -p "$1"
  cp "$sources/examples/hello/hello.c" "$sources/tests/install/greeter.c" "$sources/tests/install/outside/CMakeLists.txt" "$1"
}

with_pkg_config() {
  copy_sources "$1"
  (
    cd "$1"
    flags="-Wall -Wextra -Werror $(pkg-config --cflags cpp2c)"
    libraries=$(pkg-config --libs cpp2c)
    # shellcheck disable=SC2086
    cc -std=c11 $flags hello.c $libraries -o hello
    # shellcheck disable=SC2086
    cc -std=c11 -fPIC -shared $flags greeter.c $libraries -o libgreeter.so
  )
  expect_run "$1/hello" "$1/libgreeter.so"
  expect_driven "$1/hello" "$1"
}

with_cmake() {
  copy_sources "$1"
  cmake -S "$1" -B "$1/build" -G Ninja "-DCMAKE_PREFIX_PATH=$prefix" >/dev/null
  cmake --build "$1/build" >/dev/null
  expect_run "$1/build/hello" "$1/build/libgreeter.so"
}
