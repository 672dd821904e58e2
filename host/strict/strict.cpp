// SPDX-License-Identifier: MIT
#include "host/strict/strict.h"

#include <string>

#include "binding/context.h"
#include "host/include/cpp2c_host.h"

Strict::Strict(ILog& log, bool fatal, Guard& guard, EventBase& base, ConfigService& config,
               const Heartbeat& heartbeat, Registry& registry)
    : log_(log),
      registry_(registry),
      misuse_(log, fatal),
      calls_(misuse_, base, config, heartbeat, registry),
      registrations_(misuse_, registry) {
  guard.add(calls_);
}

void Strict::listRemaining() const {
  for (const auto& callback : registry_.callbacks()) {
    if (!isToBeUndone(*callback)) continue;
    const std::string text = "still registered at the end: " + textOf(*callback);
    log_.record("strict", C_LOG_NOTICE, text.c_str());
  }
}
