// SPDX-License-Identifier: MIT
#include "host/host_services.h"

#include <errno.h>

#include <csignal>
#include <new>
#include <utility>
#include <vector>

#include "host/include/cpp2c_host.h"
#include "include_c"
#include "util/error.h"

namespace host {
namespace {

std::unique_ptr<StateFile> stateFor(const Options& options, ILog& log) {
  if (options.state.empty()) return nullptr;
  return std::make_unique<StateFile>(options.state, program_invocation_short_name, log);
}

ConfigService configFor(std::vector<Object> objects, StateFile* state, Registry& registry) {
  Tree tree(std::move(objects));
  if (state == nullptr) return ConfigService(std::move(tree), registry);
  state->restore(tree);
  return ConfigService(std::move(tree), registry, [state](Tree& changed, const Changes& changes) {
    return state->save(changed, changes);
  });
}

void reopenLog(evutil_socket_t /*signal*/, short /*events*/, void* log) {
  static_cast<LogService*>(log)->reopen();
}

EventPtr reopenOnHangup(EventBase& base, LogService& log) {
  EventPtr event(evsignal_new(base.get(), SIGHUP, reopenLog, &log));
  if (event == nullptr || event_add(event.get(), nullptr) != 0) {
    throw util::Error(C_RESULT_SYSTEM_CALL, "cannot wait for SIGHUP");
  }
  return event;
}

}  // namespace

HostServices::HostServices(IContext* context, const Options& options, Configuration configuration)
    : clock(options.clock),
      log(options.log_level, options.log_file, clock),
      processes(log),
      heartbeat(log.messages(), configuration.heartbeat_limit),
      registry(heartbeat, [this] { return clock.wallTime(); }),
      history(registry),
      state(stateFor(options, log.messages())),
      config(configFor(std::move(configuration.objects), state.get(), registry)),
      events(program_invocation_short_name, registry),
      event_base(log.messages()),
      loop(event_base, registry),
      deadlines(event_base, clock),
      timers(deadlines, clock, registry),
      lifecycle(context, std::move(configuration.modules), log.messages(), registry) {
  log.debugSwitch(options.debug);
  if (options.log_reopen) log_reopening = reopenOnHangup(event_base, log);
  registry.onFailed([this](const FailedCall& call) {
    log.messages().record("callback", C_LOG_ERROR, call.text.c_str());
    if (call.threw) loop.fail();
  });
  loop.callWhenStopped([this] { unload(); });
  if (options.strictness != Strictness::kOff) {
    strict = std::make_unique<StrictMode>(log.messages(), options.strictness == Strictness::kFatal, guard,
                                          event_base, config, heartbeat, registry);
    lifecycle.callWhenUnloaded([this] { strict->checkUnloaded(); });
  }
  if (!options.script.empty()) {
    script_player = std::make_unique<ScriptPlayer>(
        readScript(options.script), guard,
        ScriptPlayer::Services{clock, deadlines, log.messages(), config, events, [this] { loop.stop(); }});
  }
  if (!options.control.empty()) {
    control = std::make_unique<Control>(
        ControlledServices{clock, config, events, log, lifecycle, registry, history, loop}, event_base,
        options.control);
  }
}

// Without memory for the checks of the strict mode, c_loop_run() returns C_RESULT_SYSTEM_CALL.
void HostServices::unload() {
  try {
    lifecycle.unload();
    if (strict != nullptr) strict->listRemaining();
  } catch (const std::bad_alloc&) {
    loop.fail();
  }
}

}  // namespace host
