// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_CONTEXT_QUIET_REGISTRY_H
#define CPP2C_TESTS_CONTEXT_QUIET_REGISTRY_H

#include <chrono>

#include "host/heartbeat/heartbeat.h"
#include "host/registration/registry.h"
#include "tests/host/recording_log.h"

struct PatientHeartbeat {
  RecordingLog log;
  Heartbeat heartbeat{log, std::chrono::hours(1)};
};

// A registry whose heartbeat reports nothing.
class QuietRegistry : private PatientHeartbeat, public Registry {
 public:
  QuietRegistry() : Registry(heartbeat) {}
};

#endif
