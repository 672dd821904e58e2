// SPDX-License-Identifier: MIT
#include "context/host_context.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

#include "context/clock/clock.h"
#include "context/config/config_service.h"
#include "context/config/configuration.h"
#include "context/control/control.h"
#include "context/event/event_service.h"
#include "context/guard/guard.h"
#include "context/guard/guarded_cfm.h"
#include "context/guard/guarded_event.h"
#include "context/guard/guarded_heartbeat.h"
#include "context/guard/guarded_log.h"
#include "context/guard/guarded_loop.h"
#include "context/heartbeat/heartbeat.h"
#include "context/lifecycle/lifecycle.h"
#include "context/log/log_service.h"
#include "context/loop/event_base.h"
#include "context/loop/event_loop.h"
#include "context/one_line.h"
#include "context/options/options.h"
#include "context/process/processes.h"
#include "context/registration/call_history.h"
#include "context/start_error.h"
#include "context/timer/deadlines.h"
#include "context/timer/timers.h"
#include "include_c"

namespace {

constexpr int kOk = C_RESULT_OK;

// The word is a pointer that has come through the C interface.
const char* const* pointerOf(std::uintptr_t word) {
  const char* const* pointer = nullptr;
  std::memcpy(&pointer, &word, sizeof pointer);
  return pointer;
}

Configuration configurationFor(const Options& options) {
  Configuration configuration;
  if (!options.config.empty()) configuration = readConfiguration(options.config);
  configuration.modules.insert(configuration.modules.end(), options.modules.begin(), options.modules.end());
  return configuration;
}

// Has a call to the services pass their guard. Before init() there are neither.
template <typename Services, typename Call>
auto enter(const std::unique_ptr<Services>& services, Operation operation, Call call) {
  if (services == nullptr) return refusal<decltype(call(*services))>(C_RESULT_NOT_INIT);
  return services->guard.enter(operation, [&] { return call(*services); });
}

}  // namespace

// In the order in which they need one another.
struct HostContext::Services {
  Services(IContext* context, const Options& options, Configuration configuration)
      : clock(options.clock),
        log(options.log_level, options.log_file, clock),
        processes(log),
        heartbeat(log, configuration.heartbeat_limit),
        registry(heartbeat, [this] { return clock.wallTime(); }),
        history(registry),
        config(Tree(std::move(configuration.objects)), registry),
        events(program_invocation_short_name, registry),
        event_base(log),
        loop(event_base, registry),
        deadlines(event_base, clock),
        timers(deadlines, clock, registry),
        lifecycle(context, std::move(configuration.modules), log, registry) {
    log.debugSwitch(options.debug);
    loop.callWhenStopped([this] { lifecycle.unload(); });
    if (options.control.empty()) return;
    control = std::make_unique<Control>(Controlled{config, events, log, lifecycle, registry, history, loop},
                                        event_base, options.control);
  }

  Clock clock;
  LogService log;
  Processes processes;
  Heartbeat heartbeat;
  Registry registry;
  CallHistory history;
  ConfigService config;
  EventService events;
  EventBase event_base;
  EventLoop loop;
  Deadlines deadlines;
  Timers timers;
  Lifecycle lifecycle;
  std::unique_ptr<Control> control;  // null: not asked for

  // What is handed out in the services' place.
  Guard guard;
  GuardedLog guarded_log{guard, log};
  GuardedCfm guarded_config{guard, config};
  GuardedEvent guarded_events{guard, events};
  GuardedHeartbeat guarded_heartbeat{guard, heartbeat};
  GuardedLoop guarded_loop{guard, loop};
};

HostContext::HostContext() = default;

HostContext::~HostContext() = default;

int HostContext::init(std::uintptr_t argc, std::uintptr_t argv) {
  try {
    if (services_ != nullptr) {
      throw StartError(C_RESULT_REDUNDANT, "the context has been initialised already");
    }
    const Options options = readOptions(static_cast<int>(argc), pointerOf(argv));
    services_ = std::make_unique<Services>(this, options, configurationFor(options));
    return C_RESULT_OK;
  } catch (const StartError& error) {
    std::fprintf(stderr, "%s\n", oneLine(error.what()).c_str());
    return error.code();
  }
}

int HostContext::load() {
  return enter(services_, Operation::kLoad, [](Services& host) { return host.lifecycle.load(); });
}

ILog* HostContext::getLog() {
  return enter(services_, Operation::kGetLog, [](Services& host) { return &host.guarded_log; });
}

ICfm* HostContext::getCfm() {
  return enter(services_, Operation::kGetCfm, [](Services& host) { return &host.guarded_config; });
}

IEvent* HostContext::getEvent() {
  return enter(services_, Operation::kGetEvent, [](Services& host) { return &host.guarded_events; });
}

IHeartbeat* HostContext::getHeartbeat() {
  return enter(services_, Operation::kGetHeartbeat, [](Services& host) { return &host.guarded_heartbeat; });
}

ILoop* HostContext::getLoop() {
  return enter(services_, Operation::kGetLoop, [](Services& host) { return &host.guarded_loop; });
}

int HostContext::debugOut(const char* file, int line, const char* text) {
  return enter(services_, Operation::kDebugOut,
               [&](Services& host) { return host.log.debugOut(file, line, text); });
}

int HostContext::debugSwitch(int value) {
  return enter(services_, Operation::kDebugSwitch, [&](Services& host) {
    host.log.debugSwitch(value != 0);
    return kOk;
  });
}

int HostContext::systemCall(const char* command) {
  return enter(services_, Operation::kSystemCall,
               [&](Services& host) { return host.processes.run(command); });
}

int HostContext::systemCall2(const char* command) {
  return enter(services_, Operation::kSystemCall2,
               [&](Services& host) { return host.processes.run(command); });
}

int HostContext::popenCall(const char* command) {
  return enter(services_, Operation::kPopenCall,
               [&](Services& host) { return host.processes.runLogged(command); });
}

int HostContext::registMasterObserver(IBootContext* observer) {
  return enter(services_, Operation::kRegistMasterObserver,
               [&](Services& host) { return host.lifecycle.registMasterObserver(observer); });
}

int HostContext::setTimer(int first, int zero, int period, ITimer* timer) {
  return enter(services_, Operation::kSetTimer,
               [&](Services& host) { return host.timers.set(first, zero, period, timer); });
}

int HostContext::notifyDepends(std::string name) {
  return enter(services_, Operation::kNotifyDepends, [&](Services& host) {
    host.lifecycle.notifyDepends(name);
    return kOk;
  });
}
