// SPDX-License-Identifier: MIT
#include "host/strict/strict_mode.h"

#include <string>

#include "binding/context.h"
#include "host/include/cpp2c_host.h"

namespace host {

StrictMode::StrictMode(ILog& log, bool fatal, Guard& guard, EventBase& base, ConfigService& config,
                       const Heartbeat& heartbeat, Registry& registry)
    : log_(log),
      registry_(registry),
      misuse_(log, fatal),
      call_checks_(misuse_, base, config, heartbeat, registry),
      registration_checks_(misuse_, registry) {
  guard.add(call_checks_);
}

void StrictMode::listRemaining() const {
  for (const auto& registration : registry_.registrations()) {
    if (!isRemovable(*registration)) continue;
    const std::string text = "still registered at the end: " + textOf(*registration);
    log_.record("strict", C_LOG_NOTICE, text.c_str());
  }
}

}  // namespace host
