// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_SUPPORT_QUIET_REGISTRY_H
#define CPP2C_TESTS_HOST_SUPPORT_QUIET_REGISTRY_H

#include <chrono>

#include "host/heartbeat/heartbeat.h"
#include "host/registration/registry.h"
#include "tests/host/support/recording_log.h"

namespace host {

struct PatientHeartbeat {
  RecordingLog log;
  Heartbeat heartbeat{log, std::chrono::hours(1)};
};

// A registry whose heartbeat reports nothing.
class QuietRegistry : private PatientHeartbeat, public Registry {
 public:
  QuietRegistry() : Registry(heartbeat) {}
};

}  // namespace host

#endif
