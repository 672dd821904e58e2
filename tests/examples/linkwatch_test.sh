#!/usr/bin/env bash
# End-to-end tests of linkwatch on the host context: linkwatch_test.sh LINKWATCH SOURCE_DIR TEST
set -euo pipefail

program=$1
source_dir=$2
test=$3

source "$source_dir/tests/examples/service.sh"

make_config() {
  "$source_dir/examples/linkwatch/make-config" "$@"
}

settled='^in sync with the kernel: '

start_on_this_machine() {
  make_config --console >"$folder/config.json"
  start
  expect "$settled"
}

# Starts linkwatch in a separate network namespace with the interface lw0, whose peer lw1 is up.
start_on_lw0() {
  require_network
  mkdir "$folder/no-interfaces"
  make_config --console "$folder/no-interfaces" >"$folder/config.json"
  start "${isolated[@]}"
  expect "$settled"
  tell Interfaces lw0
  expect "$settled"0
  ip_inside link add lw0 type veth peer name lw1
  expect '^link: lw0 down, mac ([0-9a-f]{2}:){5}[0-9a-f]{2}, mtu 1500, address none$'
  expect "$settled"1
  ip_inside link set lw1 up
  find_index lw0
}

testMakeConfigNamesEveryInterface() {
  make_config >"$folder/config.json"
  local interface index line
  for interface in /sys/class/net/*/; do
    index=$(cat "$interface/ifindex")
    line="\"Linkwatch.Link.$index.\": {\"Name\": \"$(basename "$interface")\"}"
    grep -F "$line" "$folder/config.json" || fail "missing: $line"
  done
}

testMakeConfigWritesValidJsonForAnyName() {
  local number=0 name
  for name in eth0.5 $'we"ird\\' $'a\001\377b'; do
    mkdir -p "$folder/net/$name"
    echo $((++number)) >"$folder/net/$name/ifindex"
  done
  make_config --console "$folder/net" >"$folder/config.json"
  start
  expect "$settled"
  stop TERM
}

testMakeConfigRefusesUnknownOption() {
  local status=0
  make_config --colour 2>"$folder/error" || status=$?
  [[ $status -eq 2 ]] || fail "exit status $status"
  grep -Fx "make-config: unknown option '--colour'; see make-config --help." "$folder/error"
}

testMakeConfigRefusesMissingFolder() {
  local status=0
  make_config "$folder/none" 2>"$folder/error" || status=$?
  [[ $status -eq 1 ]] || fail "exit status $status"
  grep -Fx "make-config: folder '$folder/none' does not exist." "$folder/error"
}

testStopsOnTerm() {
  start_on_this_machine
  stop TERM
}

testStopsOnInterrupt() {
  start_on_this_machine
  stop INT
}

testWatchesEveryInterfaceOfThisMachine() {
  start_on_this_machine
  local interfaces=(/sys/class/net/*/ifindex)
  [[ "$line" == "in sync with the kernel: ${#interfaces[@]} watched" ]] || fail "${#interfaces[@]} interfaces"
  stop TERM
}

testConsoleRefusesUnknownSettings() {
  start_on_this_machine
  tell Colour red
  expect '^problem: console: cannot set Colour to "red": result -1019$'
  tell LogLevel loud
  expect '^problem: console: cannot set LogLevel to "loud": result -1023$'
  tell Nonsense
  expect '^problem: console: "Nonsense": expected NAME VALUE$'
  stop TERM
}

testInputThatCannotBeWatchedFailsTheStart() {
  make_config --console >"$folder/config.json"
  local status=0
  "${launch[@]}" --config "$folder/config.json" </dev/null >"$folder/output" || status=$?
  [[ $status -eq 1 ]] || fail "exit status $status"
  grep -Fx 'problem: cannot watch standard input: result -1021' "$folder/output"
}

testConsoleClosesAtALineThatIsTooLong() {
  start_on_this_machine
  tell "LogLevel $(printf '%0600d' 2)"
  expect '^problem: console: line too long; the console is closed$'
  stop TERM
}

testKeepsRunningWhenTheConsoleEnds() {
  start_on_lw0
  local other=${service[1]}
  exec {in}>&- {other}>&-
  ip_inside link set lw0 mtu 1400
  expect '^link: lw0 down, .*, mtu 1400, '
  stop TERM
}

testListThatIsTooLongChangesNothing() {
  start_on_this_machine
  tell Interfaces lo
  expect "$settled"1
  tell Interfaces "$(printf '%0255d' 0)"
  expect '^problem: Linkwatch\.Settings\.Interfaces is too long$'
  tell LogLevel 1
  tell Interfaces "lo,"
  expect '^settings: interfaces "lo,", log level 1$'
  stop TERM
}

testSettingsSelectTheWatchedInterfaces() {
  start_on_this_machine
  tell Interfaces none-such, lo
  expect '^settings: Linkwatch\.Settings\.Interfaces changed$'
  expect '^settings: interfaces "none-such, lo", log level 1$'
  expect "$settled"1
  tell "Interfaces "
  expect '^link: lo is no longer watched$'
  expect .
  [[ "$line" == "in sync with the kernel: 0 watched" ]] || fail "lo did not go down"
  stop TERM
}

testLogLevelSelectsTheOutput() {
  start_on_this_machine
  tell LogLevel 0
  tell Interfaces lo
  tell Nonsense
  expect '^settings: Linkwatch\.Settings\.LogLevel changed$'
  expect .
  [[ "$line" == problem:* ]] || fail "more than problems is printed"
  stop TERM
}

testMissingSettingsFailTheStart() {
  echo '{"objects": []}' >"$folder/config.json"
  local status=0
  "${launch[@]}" --config "$folder/config.json" >"$folder/output" 2>"$folder/error" || status=$?
  [[ $status -eq 1 ]] || fail "exit status $status"
  grep -Fx 'problem: cannot read Linkwatch.Settings.Interfaces: result -1022' "$folder/output"
  grep -Fx 'linkwatch: ended with result -1022' "$folder/error"
}

testFollowsALinkUntilItVanishes() {
  start_on_lw0
  ip_inside link set lw0 up
  expect '^event: link-up lw0, raised by linkwatch$'
  ip_inside address add 192.0.2.1/24 dev lw0
  expect '^link: lw0 up, .*, address 192\.0\.2\.1$'
  ip_inside link set lw0 down
  expect '^event: link-down lw0, raised by linkwatch$'
  ip_inside link delete lw0
  expect '^link: lw0 vanished$'
  stop TERM
}

testLinkThatVanishesGoesDown() {
  start_on_lw0
  ip_inside link set lw0 up
  expect '^event: link-up lw0, '
  ip_inside link delete lw0
  expect '^event: link-down lw0, '
  stop TERM
}

testCarrierDecidesWhetherALinkIsUp() {
  start_on_lw0
  ip_inside link set lw0 up
  expect '^event: link-up lw0, '
  ip_inside link set lw1 down
  expect '^event: link-down lw0, '
  stop TERM
}

testFirstAddressIsTheKernelsFirst() {
  start_on_lw0
  ip_inside address add 192.0.2.1/24 dev lw0
  expect 'address 192\.0\.2\.1$'
  ip_inside address add 198.51.100.1/24 dev lw0
  expect "$settled"
  ip_inside address delete 192.0.2.1/24 dev lw0
  expect 'address 198\.51\.100\.1$'
  ip_inside address delete 198.51.100.1/24 dev lw0
  expect 'address none$'
  stop TERM
}

testRenamedLinkIsNoLongerWatchedUnderItsOldName() {
  start_on_lw0
  ip_inside address add 192.0.2.1/24 dev lw0
  expect 'address 192\.0\.2\.1$'
  ip_inside link set lw0 name other
  expect '^link: lw0 is no longer watched$'
  ip_inside link set other name lw0
  expect '^link: lw0 down, .*, address 192\.0\.2\.1$'
  stop TERM
}

testValuesAreInTheTree() {
  start_on_lw0
  tell LogLevel 2
  expect '^settings: interfaces "lw0", log level 2$'
  ip_inside link set lw0 mtu 1400
  expect "^tree: Linkwatch\.Link\.$index\.Mtu = 1400 \(lw0\)$"
  ip_inside link set lw0 address 02:00:00:00:00:aa
  expect "^tree: Linkwatch\.Link\.$index\.MacAddress = 02:00:00:00:00:aa \(lw0\)$"
  ip_inside address add 192.0.2.1/24 dev lw0
  expect "^tree: Linkwatch\.Link\.$index\.IpAddress = 192\.0\.2\.1 \(lw0\)$"
  ip_inside link set lw0 up
  expect "^tree: Linkwatch\.Link\.$index\.Up = 1 \(lw0\)$"
  ip_inside link delete lw0
  expect "^tree: Linkwatch\.Link\.$index\. was deleted$"
  stop TERM
}

testNewInstanceHasAllValues() {
  start_on_lw0
  tell LogLevel 2
  tell "Interfaces "
  expect "^tree: Linkwatch\.Link\.$index\. was deleted$"
  tell Interfaces lw0
  expect "^tree: Linkwatch\.Link\.$index\. was added$"
  expect "^tree: Linkwatch\.Link\.$index\.Name = lw0 \(lw0\)$"
  expect "^tree: Linkwatch\.Link\.$index\.MacAddress = ([0-9a-f]{2}:){5}[0-9a-f]{2} \(lw0\)$"
  expect "^tree: Linkwatch\.Link\.$index\.Mtu = 1500 \(lw0\)$"
  expect "^tree: Linkwatch\.Link\.$index\.LastChange = [0-9]{4}(-[0-9]{2}){2}T[0-9]{2}(:[0-9]{2}){2}Z \(lw0\)$"
  stop TERM
}

# Overflows linkwatch's socket while linkwatch is stopped, then runs the given ip command and continues linkwatch.
lose_messages_of() {
  kill -STOP "$pid"
  local round
  for round in {1..1000}; do
    echo "link set lw0 mtu $((1000 + round % 2))"
  done >"$folder/batch"
  ip_inside -batch "$folder/batch"
  ip_inside "$@"
  kill -CONT "$pid"
  expect '^problem: messages from the kernel were lost, reading everything again: No buffer space available$'
}

testLostMessagesCauseANewDump() {
  start_on_lw0
  lose_messages_of link set lw0 mtu 1234
  expect '^link: lw0 down, .*, mtu 1234, '
  expect "$settled"1
  stop TERM
}

testLinkThatVanishesUnnoticedGoesDown() {
  start_on_lw0
  ip_inside link set lw0 up
  expect '^event: link-up lw0, '
  lose_messages_of link delete lw0
  expect '^link: lw0 vanished$'
  expect '^event: link-down lw0, '
  expect "$settled"0
  stop TERM
}

run_test "$test"
