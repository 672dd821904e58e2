// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STRICT_STRICT_MODE_H
#define CPP2C_HOST_STRICT_STRICT_MODE_H

#include "host/strict/call_checks.h"
#include "host/strict/misuse.h"
#include "host/strict/registration_checks.h"

namespace host {

class EventBase;

// Strict mode: all checks for misuse.
class StrictMode {
 public:
  // Must be constructed on the loop's thread.
  StrictMode(ILog& log, bool fatal, Guard& guard, EventBase& base, ConfigService& config,
             const Heartbeat& heartbeat, Registry& registry);

  // Reports the registrations that modules have left behind. To be called once all modules are unloaded.
  void checkUnloaded() const { registration_checks_.checkUnloaded(); }

  // Lists the registrations that the program has left. This is not misuse: c_context_deinit() removes them.
  void listRemaining() const;

 private:
  ILog& log_;
  const Registry& registry_;
  const Misuse misuse_;
  CallChecks call_checks_;
  RegistrationChecks registration_checks_;
};

}  // namespace host

#endif
