// SPDX-License-Identifier: MIT
#include "context/host_services.h"

#include <errno.h>

#include <utility>

HostServices::HostServices(IContext* context, const Options& options, Configuration configuration)
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
  loop.callWhenStopped([this] { stop(); });
  if (options.strictness != Strictness::kOff) {
    strict = std::make_unique<Strict>(log, options.strictness == Strictness::kFatal, guard, event_base,
                                      config, heartbeat, registry);
  }
  if (!options.control.empty()) {
    control =
        std::make_unique<Control>(Controlled{clock, config, events, log, lifecycle, registry, history, loop},
                                  event_base, options.control);
  }
}

void HostServices::stop() {
  lifecycle.unload();
  if (strict != nullptr) strict->listRemaining();
}
