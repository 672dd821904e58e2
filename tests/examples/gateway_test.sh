#!/usr/bin/env bash
# End-to-end tests of the example product on the host context: gateway_test.sh GATEWAY SOURCE_DIR TEST_MODULES TEST
set -euo pipefail

program=$1
source_dir=$2
test_modules=$3
test=$4
modules=$(dirname "$program")

source "$source_dir/tests/examples/service.sh"

make_config() {
  "$source_dir/examples/gateway/make-config" "$@"
}

# Changes the configuration by a sed script.
edit_config() {
  sed -E -i "$1" "$folder/config.json"
}

set_default() {
  edit_config "s|(\"$1\": \{\"type\": \"[a-z]+\")[^}]*|\1, \"default\": \"$2\"|"
  grep -F "\"$1\": {" "$folder/config.json" | grep -F "$2" >/dev/null || fail "$1 has not been set"
}

settled='linkwatch: in sync with the kernel: '

configure_this_machine() {
  make_config --console "$modules" >"$folder/config.json"
}

configure_without_console() {
  make_config "$modules" >"$folder/config.json"
}

start_on_this_machine() {
  configure_this_machine
  start
  expect "$settled"
}

configure_lw0() {
  require_network
  mkdir "$folder/no-interfaces"
  make_config --console "$modules" "$folder/no-interfaces" >"$folder/config.json"
}

# Starts the product in a separate network namespace with the interface lw0, whose peer lw1 is up.
start_on_lw0() {
  [[ -e "$folder/config.json" ]] || configure_lw0
  start "${isolated[@]}"
  expect "$settled"1
  ip_inside link add lw0 type veth peer name lw1
  expect "$settled"3
  ip_inside link set lw1 up
  find_index lw0
}

set_value() {
  tell "set $*"
  expect "^$1 is set$"
}

# Leaves the value of a leaf in $value.
get_value() {
  tell "get $*"
  expect "^$1 = "
  value=${line#"$1 = "}
}

expect_value() {
  get_value "$1" "$2"
  [[ "$value" == "$3" ]] || fail "$1 is '$value', not '$3'"
}

# Waits for a value that one of the next samples sets.
await_value() {
  local deadline=$((SECONDS + 30))
  get_value "$1" "$2"
  while [[ "$value" != "$3" ]]; do
    ((SECONDS < deadline)) || fail "$1 does not become '$3'"
    get_value "$1" "$2"
  done
}

# Requires that every module has logged a step in $output.
require_modules() {
  local module
  for module in linkwatch traffic address; do
    grep -qE " info $module: $1\$" <<<"$output" || fail "$module is not $1"
  done
}

require_silence() {
  ! grep -E "$1" <<<"$output" || fail "a line matches '$1'"
}

# Runs the product until it ends, requires the exit status $1 and leaves the output in $output.
run_to_end() {
  local status=0 wanted=$1
  shift
  timeout 30 "${launch[@]}" --config "$folder/config.json" "$@" >"$folder/output" 2>&1 </dev/null || status=$?
  output=$(cat "$folder/output")
  echo "$output"
  [[ $status -eq $wanted ]] || fail "exit status $status"
}

run_to_failure() {
  run_to_end 1 "$@"
}

# Requires that exactly one line in $output matches the first pattern and that this line matches the second one.
require_one_line() {
  [[ $(grep -cE -- "$1" <<<"$output") -eq 1 ]] || fail "not one line matches '$1'"
  grep -E -- "$1" <<<"$output" | grep -E -- "$2" >/dev/null || fail "the line does not match '$2'"
}

testLifecycleTakesEachStepInOrder() {
  configure_this_machine
  start
  local step
  for step in loaded:loaded prepared:started configured:configured running:running; do
    expect "^lifecycle: ${step#*:}\$"
    require_modules "${step%:*}"
  done
  expect "$settled" # the loop is running and handles signals
  stop TERM
}

testStopReversesTheSteps() {
  start_on_this_machine
  stop TERM
  local lines
  lines=$(grep -oE 'lifecycle: [a-z]+$|: un(configured|loaded)$' <<<"$output")
  diff - <(echo "$lines") <<'END' || fail "not in this order"
lifecycle: stopping
: unconfigured
: unconfigured
: unconfigured
lifecycle: unloading
: unloaded
: unloaded
: unloaded
END
}

testStopsOnInterrupt() {
  start_on_this_machine
  stop INT
}

# Requires that a counter is between the kernel's values before and after reading it.
require_counter() {
  local kernel=$1/statistics/$2 before after
  before=$(cat "$kernel")
  get_value "Gateway.Traffic.Link.$(cat "$1/ifindex").$3" str
  after=$(cat "$kernel")
  ((before <= value && value <= after)) || fail "$3 of $1 is $value, not $before to $after"
}

testCountersMatchTheKernel() {
  start_on_this_machine
  local interface
  for interface in /sys/class/net/*/; do
    require_counter "$interface" rx_bytes RxBytes
    require_counter "$interface" rx_packets RxPackets
    require_counter "$interface" tx_bytes TxBytes
    require_counter "$interface" tx_packets TxPackets
  done
  stop TERM
}

# Sends enough on lo in the product's network namespace to exceed a low limit.
send_on_lo() {
  run_inside bash -c 'exec 3>/dev/udp/127.0.0.1/9; for _ in {1..50}; do printf "%01000d" 0 >&3 || true; done'
}

testCountersGrowWithTheTraffic() {
  start_on_lw0
  ip_inside link set lo up
  expect '^event: link-up lo$'
  get_value Gateway.Traffic.Link.1.TxBytes str
  local before=$value
  run_inside bash -c 'exec 3>/dev/udp/127.0.0.1/9; printf "%01000d" 0 >&3'
  get_value Gateway.Traffic.Link.1.TxBytes str
  ((value >= before + 1000)) || fail "1000 bytes more make $value of $before"
  stop TERM
}

testRateCrossesTheLimitAndFallsBelow() {
  configure_lw0
  set_default Interval 50
  start_on_lw0
  ip_inside link set lo up
  expect '^event: link-up lo$'
  set_value Gateway.Traffic.Limit uint 9999
  send_on_lo
  expect '^event: traffic-high lo [0-9]+$'
  ((${line##* } > 9999)) || fail "the rate is below the limit"
  expect '^event: traffic-normal lo [0-9]+$'
  ((${line##* } <= 9999)) || fail "the rate is above the limit"
  stop TERM
}

testRateIsInTheTree() {
  configure_lw0
  set_default Limit 999
  set_default Interval 3600000
  start_on_lw0
  ip_inside link set lo up
  expect '^event: link-up lo$'
  send_on_lo
  kill -HUP "$pid" # takes a sample now
  expect '^event: traffic-high lo [0-9]+$'
  expect_value Gateway.Traffic.Link.1.Rate uint "${line##* }"
  expect_value Gateway.Traffic.Link.1.High bool 1
  sleep 0.01 # a sample in the same millisecond is left to the next one
  kill -HUP "$pid"
  expect '^event: traffic-normal lo [0-9]+$'
  expect_value Gateway.Traffic.Link.1.Rate uint "${line##* }"
  expect_value Gateway.Traffic.Link.1.High bool 0
  stop TERM
}

testSettingReachesItsObserver() {
  start_on_this_machine
  tell set Gateway.Traffic.Limit uint 123456
  expect ' info traffic: Gateway\.Traffic\.Limit changed$'
  expect ' info traffic: sampling every 1000 ms, limit 123456 B/s$'
  expect '^Gateway\.Traffic\.Limit is set$'
  stop TERM
}

testInvalidIntervalIsReverted() {
  start_on_this_machine
  set_value Gateway.Traffic.Interval uint 9
  expect_value Gateway.Traffic.Interval uint 1000
  stop TERM
}

testRemovedInterfaceHasNoMeter() {
  configure_lw0
  set_default Interval 50
  start_on_lw0
  await_value "Gateway.Traffic.Link.$index.Name" str lw0
  ip_inside link delete lw0
  await_value "Gateway.Traffic.Link.$index.Name" str ""
  expect_value "Gateway.Traffic.Link.$index.RxBytes" str ""
  stop TERM
}

testModuleSendsLinkEvents() {
  start_on_lw0
  ip_inside link set lw0 up
  expect '^event: link-up lw0$'
  ip_inside link set lw0 down
  expect '^event: link-down lw0$'
  stop TERM
}

testHookGetsNameAndBothAddresses() {
  start_on_lw0
  set_value Gateway.Address.Hook str 'echo hooked'
  ip_inside address add 192.0.2.1/24 dev lw0
  expect '^event: address-changed lw0 192\.0\.2\.1$'
  expect '^hooked lw0 none 192\.0\.2\.1$'
  ip_inside address add 198.51.100.1/24 dev lw0
  expect "$settled"
  ip_inside address delete 192.0.2.1/24 dev lw0
  expect '^hooked lw0 192\.0\.2\.1 198\.51\.100\.1$'
  ip_inside address delete 198.51.100.1/24 dev lw0
  expect '^event: address-changed lw0 none$'
  expect '^hooked lw0 198\.51\.100\.1 none$'
  expect_value Gateway.Address.Changes uint 3
  stop TERM
}

testHookGetsSpecialCharactersUnchanged() {
  start_on_lw0
  set_value Gateway.Address.Hook str 'printf "<%s>\n"'
  ip_inside link set lw0 name "a'b;\$(c)\\"
  ip_inside address add 192.0.2.1/24 dev "a'b;\$(c)\\"
  expect '^<'
  [[ "$line" == "<a'b;\$(c)\\>" ]] || fail "the name is not the interface's"
  stop TERM
}

testHookStatusIsInTheTree() {
  start_on_lw0
  ip_inside link set lw0 up
  expect '^event: link-up lw0$'
  set_value Gateway.Address.Hook str 'exit 7 #'
  ip_inside address add 192.0.2.1/24 dev lw0
  expect ' error address: lw0: hook failed: status 7$'
  expect_value "Gateway.Address.Link.$index.HookStatus" int 7
  stop TERM
}

# Adds an address to lw0 and deletes the previous one.
change_address() {
  ip_inside address add "192.0.$1.1/24" dev lw0
  ip_inside address delete "192.0.$(($1 - 1)).1/24" dev lw0 2>/dev/null || true
  expect "^event: address-changed lw0 192\.0\.$1\.1\$"
}

testFailedHookRunsTheInspection() {
  configure_lw0
  set_default Inspect 'echo inspected'
  start_on_lw0
  set_value Gateway.Address.Hook str false
  change_address 2
  expect ' error address: lw0: hook failed: status 1$'
  expect ' info command: inspected lw0$'
  stop TERM
}

testFailingHookIsSuspendedUntilItIsChanged() {
  start_on_lw0
  set_value Gateway.Address.Hook str false
  local round
  for round in 1 2 3; do
    change_address "$round"
    expect ' error address: lw0: hook failed: status 1$'
  done
  expect ' error address: hook suspended after 3 failures until it is changed$'
  change_address 4
  set_value Gateway.Address.Hook str 'echo hooked'
  require_silence 'hook failed'
  change_address 5
  expect '^hooked lw0 192\.0\.4\.1 192\.0\.5\.1$'
  stop TERM
}

testProductWithoutHooksRunsNone() {
  configure_lw0
  edit_config 's/"attribute": 1/"attribute": 0/'
  start_on_lw0
  set_value Gateway.Address.Hook str 'echo hooked'
  change_address 2
  stop TERM
  require_silence '^hooked'
}

testSlowHookIsNotReported() {
  configure_lw0
  edit_config '1s/.*/{ "heartbeat": {"limitMs": 100},/'
  start_on_lw0
  set_value Gateway.Address.Hook str 'sleep 0.3; echo hooked'
  ip_inside address add 192.0.2.1/24 dev lw0
  expect '^hooked'
  stop TERM
  require_silence 'held the loop'
}

testCommandThatIsTooLongIsNotRun() {
  start_on_lw0
  set_value Gateway.Address.Hook str "echo hooked $(printf '%0300d' 0)"
  ip_inside address add 192.0.2.1/24 dev lw0
  expect ' error address: cannot use Gateway\.Address\.Hook: result -1023$'
  stop TERM
  require_silence '^hooked'
}

testUsesOfAnInterfaceAreCounted() {
  start_on_lw0
  ip_inside link set lw0 up
  expect '^event: link-up lw0$'
  expect_value "Gateway.Address.Link.$index.Users" int 1
  ip_inside address add 192.0.2.1/24 dev lw0
  expect '^event: address-changed lw0 '
  expect_value "Gateway.Address.Link.$index.Users" int 2
  ip_inside link set lw0 down
  expect '^event: link-down lw0$'
  expect_value "Gateway.Address.Link.$index.Users" int 1
  expect_value "Gateway.Address.Link.$index.Name" str lw0
  ip_inside address delete 192.0.2.1/24 dev lw0
  expect '^event: address-changed lw0 none$'
  expect_value "Gateway.Address.Link.$index.Name" str ""
  stop TERM
}

testNoticeReachesEveryParticipant() {
  start_on_this_machine
  kill -HUP "$pid"
  expect '^notice: "interfaces"$'
  require_modules 'notified of "interfaces"'
  stop TERM
}

testStartCommandIsEchoed() {
  configure_this_machine
  set_default OnStart 'echo begun'
  start
  expect '^begun$'
  expect $'^cmd:echo begun\r$'
  expect "$settled"
  stop TERM
}

testDebugSettingShowsDiagnostics() {
  start_on_this_machine
  require_silence ' debug '
  tell set Gateway.Settings.Debug bool true
  expect '^settings: Gateway\.Settings\.Debug changed: diagnostics are logged$'
  tell set Gateway.Traffic.Limit uint 5
  expect ' debug traffic:[0-9]+: sampled after [0-9]+ ms$'
  stop TERM
}

testConsoleReportsErrors() {
  start_on_this_machine
  tell get Gateway.Colour str
  expect '^problem: get Gateway\.Colour: result -1022$'
  tell set Gateway.Settings.Debug bool yes
  expect '^problem: set Gateway\.Settings\.Debug: result -1023$'
  tell set Gateway.Traffic.Limit uint -1
  expect '^problem: set Gateway\.Traffic\.Limit: result -1023$'
  tell set Gateway.Traffic.Limit int 1
  expect '^problem: set Gateway\.Traffic\.Limit: result -1023$'
  tell sing
  expect '^problem: sing : result -1023$'
  stop TERM
}

testModuleThatCannotBeOpenedFailsTheStart() {
  configure_without_console
  run_to_failure --module "$folder/libmissing.so"
  require_one_line ' error ' "lifecycle: $folder/libmissing\.so: "
  require_one_line '^gateway: ended with result -1019$' .
  require_silence ': loaded$'
}

testModuleThatCannotBeLoadedFailsTheStart() {
  configure_without_console
  run_to_failure --module "$test_modules/libunwilling.so"
  require_one_line ' error ' "lifecycle: onLoad of $test_modules/libunwilling\.so failed: -1018$"
  require_one_line '^gateway: ended with result -1018$' .
  require_modules unloaded
  require_silence '^lifecycle: '
  require_silence ': (prepared|configured|running)$'
}

testModuleThatCannotBeConfiguredFailsTheStart() {
  configure_without_console
  edit_config 's/"Gateway\.Traffic\."/"Other."/'
  run_to_failure
  require_one_line ' error traffic: ' 'cannot read Gateway\.Traffic\.Interval: result -1022$'
  require_one_line ' error lifecycle: ' "onConfig of $modules/libtraffic\.so failed: -1022$"
  require_one_line '^gateway: ended with result -1022$' .
  require_modules unloaded
  require_one_line '^lifecycle: unloading$' .
}

testAddressModuleRequiresItsObject() {
  configure_without_console
  edit_config 's/"number": 130/"number": 140/'
  run_to_failure
  require_one_line ' error address: ' 'there is no object Gateway\.Address\.$'
  require_one_line ' error lifecycle: ' "onConfig of $modules/libaddress\.so failed: -1019$"
}

testCopyOfAModuleIsRefused() {
  configure_without_console
  cp "$modules/libaddress.so" "$folder/libcopy.so"
  run_to_failure --module "$folder/libcopy.so"
  require_one_line ' error address: ' 'another copy of the module is running$'
  require_one_line ' error lifecycle: ' "onConfig of $folder/libcopy\.so failed: -1017$"
  require_modules unloaded
}

testModuleListedTwiceIsRefused() {
  configure_without_console
  run_to_failure --module "$modules/libtraffic.so"
  require_one_line ' error ' "lifecycle: $modules/libtraffic\.so: "
  require_silence ': loaded$'
}

testInputThatCannotBeWatchedFailsTheStart() {
  configure_this_machine
  run_to_failure
  require_one_line '^problem: ' 'cannot watch standard input: result -1021$'
}

# The timer keeps its interval: one sample at the start and one for each second of the minute.
testTimerKeepsRunningIfRearmingFails() {
  configure_without_console
  cat >"$folder/script.json" <<'END'
{"steps": [
  {"atMs": 5000, "set": {"Gateway.Traffic.Limit": 1000000000}},
  {"call": "setTimer", "nth": 2, "answer": -1021},
  {"atMs": 60000, "stop": true}
]}
END
  run_to_end 0 --clock virtual --script "$folder/script.json" --debug
  require_one_line ' info script: setTimer' ' call 2: answers -1021$'
  require_one_line ' error traffic: ' 'cannot arm the timer: result -1021$'
  [[ $(grep -c ' debug traffic:[0-9]*: sampled after ' <<<"$output") -eq 61 ]] || fail "not 61 samples"
  require_one_line ' info script: stops the loop$' .
  require_modules unloaded
}

# Starts the product with a module that misuses the interface.
start_with_careless_module() {
  configure_without_console
  edit_config '0,/\{/s//{ "heartbeat": {"limitMs": 50},/'
  export CPP2C_CONTROL=$folder/control
  options=(--module "$test_modules/libcareless.so" --control "$CPP2C_CONTROL" "$@")
  start
  expect "$settled"
}

contextctl() {
  echo "\$ contextctl $*"
  "$modules/../../bin/contextctl" "$@" || fail "contextctl $1: exit status $?"
}

testSlowCallbackIsNamed() {
  start_with_careless_module
  contextctl event send dawdle ""
  expect ' warning heartbeat: the callback slow_observer \(careless_module\.c:[0-9]+\) of event dawdle held the loop for '
  contextctl registrations >"$folder/registrations"
  grep -E '^event +dawdle +slow_observer +careless_module\.c:[0-9]+ +1 ' "$folder/registrations" || fail "it is not counted"
  contextctl stats --trace "$folder/trace.json"
  grep -F '"name":"slow_observer"' "$folder/trace.json" >/dev/null || fail "it is not in the trace"
  stop TERM
}

testStrictModeReportsRemainingRegistrations() {
  start_with_careless_module --strict
  contextctl stop
  expect ' warning strict: slow_observer \(careless_module\.c:[0-9]+\) of event dawdle is still registered after its '
  expect ' notice strict: still registered at the end: slow_observer '
}

testFatalStrictModeAborts() {
  start_with_careless_module --strict=fatal
  contextctl stop
  expect '^strict: slow_observer .* of event dawdle is still registered after its module was unloaded$'
  local status=0
  wait "$pid" || status=$?
  pid=
  [[ $status -eq 134 ]] || fail "exit status $status"
}

testReportCountsTheEventsOfEachInterface() {
  diff - <("$modules/gateway-report" <<'END'
lifecycle: running
event: link-up eth1
event: address-changed eth0 192.0.2.1
event: link-up eth0
event: address-changed eth0 none
event: colour eth0
event: link-up
END
  ) <<'END' || fail "wrong report"
eth0: link-up 1 address-changed 2
eth1: link-up 1
END
}

testReportReadsTheOutputOfTheProduct() {
  start_on_lw0
  ip_inside link set lw0 up
  expect '^event: link-up lw0$'
  local before=$output
  stop TERM
  "$modules/gateway-report" <<<"$before$output" | grep -x 'lw0: link-up 1' || fail "wrong report"
}

testMakeConfigRequiresTheFolderOfTheModules() {
  local status=0
  make_config --console 2>"$folder/error" || status=$?
  [[ $status -eq 2 ]] || fail "exit status $status"
  grep -Fx 'make-config: MODULES is missing; see make-config --help.' "$folder/error"
}

testMakeConfigRefusesUnknownOption() {
  local status=0
  make_config --colour "$modules" 2>"$folder/error" || status=$?
  [[ $status -eq 2 ]] || fail "exit status $status"
  grep -Fx "make-config: unknown option '--colour'; see make-config --help." "$folder/error"
}

testMakeConfigRefusesMissingInterfaces() {
  local status=0
  make_config "$modules" "$folder/none" >"$folder/written" 2>"$folder/error" || status=$?
  [[ $status -eq 1 ]] || fail "exit status $status"
  [[ ! -s "$folder/written" ]] || fail "an incomplete configuration was printed"
  grep -Fx "make-config: folder '$folder/none' does not exist." "$folder/error"
}

run_test "$test"
