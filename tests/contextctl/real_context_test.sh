#!/bin/sh
# Tests the client with a service that runs on the host context.
#
#   real_context_test.sh CONTEXTCTL HELLO
#
# CPP2C_LAUNCHER: the emulator or checker that runs the service, if any.
set -eu
contextctl=$1
hello=$2
top=$(mktemp -d)
export CPP2C_CONTROL="$top/control.sock"

mkfifo "$top/input"
cat >"$top/config.json" <<'END'
{
  "objects": [
    {"number": 1, "name": "Device.", "attribute": 3,
     "leaves": {"Host": {"type": "str", "default": "router"}, "Key": {"type": "pwd", "default": "secret"}}},
    {"number": 2, "name": "Device.If.", "dynamic": true, "leaves": {"Mtu": {"type": "uint", "default": 1500}}}
  ]
}
END
${CPP2C_LAUNCHER:+"$CPP2C_LAUNCHER"} "$hello" --config "$top/config.json" --control "$CPP2C_CONTROL" <"$top/input" >"$top/output" &
service=$!
trap 'kill $service 2>/dev/null || true; rm -rf "$top"' EXIT
exec 3>"$top/input"

fail() {
  echo "$*" >&2
  exit 1
}

# expect STATUS OUTPUT COMMAND...
expect() {
  wanted_status=$1
  wanted=$2
  shift 2
  status=0
  printed=$("$contextctl" "$@" 2>&1) || status=$?
  [ "$printed" = "$wanted" ] || fail "contextctl $*: printed '$printed'"
  [ $status -eq "$wanted_status" ] || fail "contextctl $*: status $status"
}

# Once the service listens, it also answers.
tries=0
until "$contextctl" save >/dev/null 2>&1; do
  tries=$((tries + 1))
  [ $tries -lt 200 ] || fail "the service does not answer"
  sleep 0.05
done

expect 0 router get Device.Host
expect 0 "" set Device.Host switch
expect 0 switch get Device.Host
expect 0 "(hidden)" get Device.Key
expect 0 secret --reveal get Device.Key
expect 1 'contextctl: there is no leaf "Nobody"' get Nobody
expect 0 "" add Device.If.eth0.
expect 1 'contextctl: the instance "Device.If.eth0." exists' add Device.If.eth0.
expect 0 "Device.If.eth0." instances Device.If.
expect 0 "" set Device.If.eth0.Mtu 1400
expect 0 1400 get Device.If.eth0.Mtu
expect 1 'contextctl: the instance "Device.If.eth9." does not exist' get Device.If.eth9.Mtu
expect 1 'contextctl: no leaf begins with "Device.Hst"; did you mean "Device.Host"?' list Device.Hst
expect 0 "NAME                TYPE  VALUE
Device.If.eth0.Mtu  uint  1400" list Device.If.
expect 0 "" export "" "$top/export.json"
expect 0 "" diff "$top/export.json"
expect 0 "" set Device.Host hub
expect 1 "NAME         CONTEXT  FILE
Device.Host  hub      switch" diff "$top/export.json"
expect 0 "NAME         CONTEXT  FILE
Device.Host  hub      switch" import "$top/export.json"
expect 0 switch get Device.Host
expect 0 "" del Device.If.eth0.
expect 0 3 attribute Device.
expect 0 "" attribute Device. -7
expect 0 -7 attribute 1
expect 0 "State: running
LIBRARY  STATE" modules
expect 0 "Device.Host
Device.Key" complete -- get Device.
expect 0 "" event send line hello
"$contextctl" registrations | grep -Eq '^event +line +print_line .* 1 ' || fail "the event is not counted"
"$contextctl" stats --trace "$top/trace.json" | grep -q '^program *hello$' || fail "the statistics lack the program"
grep -q '"name":"print_line"' "$top/trace.json" || fail "the trace lacks the call"
"$contextctl" top --count 1 | grep -q print_line || fail "top lacks the registration"

# The moment when a stream begins is unknown: this changes a leaf until a change has been received.
"$contextctl" follow changes --count 1 >"$top/changes" &
follower=$!
number=0
while kill -0 $follower 2>/dev/null; do
  number=$((number + 1))
  [ $number -lt 200 ] || fail "no change is received"
  "$contextctl" set Device.Host "host$number"
  sleep 0.02
done
grep -Eq '^[0-9T:.Z-]+  changed  Device.Host  host[0-9]+$' "$top/changes" || fail "unexpected: $(cat "$top/changes")"

expect 0 "" stop
[ ! -e "$CPP2C_CONTROL" ] || fail "stop has not waited"
wait $service || fail "the service ended with status $?"
[ "$(cat "$top/output")" = "line from hello: hello" ] || fail "the service printed: $(cat "$top/output")"
status=0
"$contextctl" save 2>/dev/null || status=$?
[ $status -eq 3 ] || fail "a context that has ended answers with status $status"
