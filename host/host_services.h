// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_HOST_SERVICES_H
#define CPP2C_HOST_HOST_SERVICES_H

#include <sys/types.h>
#include <unistd.h>

#include <memory>

#include "host/clock/clock.h"
#include "host/config/config_service.h"
#include "host/control/control.h"
#include "host/event/event_service.h"
#include "host/guard/guard.h"
#include "host/guard/guarded_services.h"
#include "host/heartbeat/heartbeat.h"
#include "host/lifecycle/lifecycle.h"
#include "host/log/log_service.h"
#include "host/loop/event_base.h"
#include "host/loop/event_loop.h"
#include "host/process/processes.h"
#include "host/registration/call_history.h"
#include "host/registration/registry.h"
#include "host/script/script_player.h"
#include "host/start/configuration_file.h"
#include "host/start/options.h"
#include "host/state/state_file.h"
#include "host/strict/strict_mode.h"
#include "host/timer/deadlines.h"
#include "host/timer/timers.h"

class IContext;

namespace host {

// The services of one context. Each service depends only on those before it.
struct HostServices {
  // Throws util::Error if a service cannot be created.
  HostServices(IContext* context, const Options& options, Configuration configuration);

  const pid_t process = getpid();
  Clock clock;
  LogService log;
  Processes processes;
  Heartbeat heartbeat;
  Registry registry;
  CallHistory history;
  std::unique_ptr<StateFile> state;  // null: nothing is saved
  ConfigService config;
  EventService events;
  EventBase event_base;
  EventLoop loop;
  Deadlines deadlines;
  Timers timers;
  Lifecycle lifecycle;

  // The program receives these instead of the services themselves.
  Guard guard;
  GuardedLog guarded_log{guard, log};
  GuardedCfm guarded_config{guard, config};
  GuardedEvent guarded_events{guard, events};
  GuardedHeartbeat guarded_heartbeat{guard, heartbeat};
  GuardedLoop guarded_loop{guard, loop};

  // Null unless an option requests them.
  EventPtr log_reopening;
  std::unique_ptr<StrictMode> strict;
  std::unique_ptr<ScriptPlayer> script_player;
  std::unique_ptr<Control> control;

 private:
  void unload();
};

}  // namespace host

#endif
