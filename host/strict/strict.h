// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STRICT_STRICT_H
#define CPP2C_HOST_STRICT_STRICT_H

#include "host/strict/misuse.h"
#include "host/strict/strict_calls.h"
#include "host/strict/strict_registrations.h"

class EventBase;

// Strict mode: everything that looks for misuse.
class Strict {
 public:
  // Made on the loop's thread.
  Strict(ILog& log, bool fatal, Guard& guard, EventBase& base, ConfigService& config,
         const Heartbeat& heartbeat, Registry& registry);

  // Reports what modules have not undone. To be called when all have been unloaded.
  void checkUnloaded() const { registrations_.checkUnloaded(); }

  // Lists what the program has not undone. That is no misuse: the end undoes it.
  void listRemaining() const;

 private:
  ILog& log_;
  const Registry& registry_;
  const Misuse misuse_;
  StrictCalls calls_;
  StrictRegistrations registrations_;
};

#endif
