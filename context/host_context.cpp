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

constexpr int kNotInit = C_RESULT_NOT_INIT;

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
  return services_ != nullptr ? services_->lifecycle.load() : kNotInit;
}

ILog* HostContext::getLog() {
  return services_ != nullptr ? &services_->log : nullptr;
}

ICfm* HostContext::getCfm() {
  return services_ != nullptr ? &services_->config : nullptr;
}

IEvent* HostContext::getEvent() {
  return services_ != nullptr ? &services_->events : nullptr;
}

IHeartbeat* HostContext::getHeartbeat() {
  return services_ != nullptr ? &services_->heartbeat : nullptr;
}

ILoop* HostContext::getLoop() {
  return services_ != nullptr ? &services_->loop : nullptr;
}

int HostContext::debugOut(const char* file, int line, const char* text) {
  return services_ != nullptr ? services_->log.debugOut(file, line, text) : kNotInit;
}

int HostContext::debugSwitch(int value) {
  if (services_ == nullptr) return kNotInit;
  services_->log.debugSwitch(value != 0);
  return C_RESULT_OK;
}

int HostContext::systemCall(const char* command) {
  return systemCall2(command);
}

int HostContext::systemCall2(const char* command) {
  return services_ != nullptr ? services_->processes.run(command) : kNotInit;
}

int HostContext::popenCall(const char* command) {
  return services_ != nullptr ? services_->processes.runLogged(command) : kNotInit;
}

int HostContext::registMasterObserver(IBootContext* observer) {
  return services_ != nullptr ? services_->lifecycle.registMasterObserver(observer) : kNotInit;
}

int HostContext::setTimer(int first, int zero, int period, ITimer* timer) {
  return services_ != nullptr ? services_->timers.set(first, zero, period, timer) : kNotInit;
}

int HostContext::notifyDepends(std::string name) {
  if (services_ == nullptr) return kNotInit;
  services_->lifecycle.notifyDepends(name);
  return C_RESULT_OK;
}
