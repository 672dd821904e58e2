// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXT_HOST_SERVICES_H
#define CPP2C_CONTEXT_HOST_SERVICES_H

#include <memory>

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
#include "context/options/options.h"
#include "context/process/processes.h"
#include "context/registration/call_history.h"
#include "context/registration/registry.h"
#include "context/script/script_player.h"
#include "context/state/state_file.h"
#include "context/strict/strict.h"
#include "context/timer/deadlines.h"
#include "context/timer/timers.h"

class IContext;

// The services of one context, in the order in which they need one another.
struct HostServices {
  // Throws StartError for the first thing that cannot be had.
  HostServices(IContext* context, const Options& options, Configuration configuration);

  Clock clock;
  LogService log;
  Processes processes;
  Heartbeat heartbeat;
  Registry registry;
  CallHistory history;
  std::unique_ptr<StateFile> state;  // null: nothing outlasts the process
  ConfigService config;
  EventService events;
  EventBase event_base;
  EventLoop loop;
  Deadlines deadlines;
  Timers timers;
  Lifecycle lifecycle;

  // What is handed out in the services' place.
  Guard guard;
  GuardedLog guarded_log{guard, log};
  GuardedCfm guarded_config{guard, config};
  GuardedEvent guarded_events{guard, events};
  GuardedHeartbeat guarded_heartbeat{guard, heartbeat};
  GuardedLoop guarded_loop{guard, loop};

  // What is there only if it has been asked for.
  std::unique_ptr<Strict> strict;
  std::unique_ptr<ScriptPlayer> script_player;
  std::unique_ptr<Control> control;

 private:
  void stop();
};

#endif
