// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STRICT_STRICT_REGISTRATIONS_H
#define CPP2C_HOST_STRICT_STRICT_REGISTRATIONS_H

#include "host/registration/registry.h"
#include "host/strict/misuse.h"

// Looks at registrations and at the calls made through them for what the interface leaves to the caller's
// care.
class StrictRegistrations {
 public:
  StrictRegistrations(const Misuse& misuse, Registry& registry);

  // To be called when all modules have been unloaded.
  void checkUnloaded() const;

 private:
  void checkTwice(const Callback& added) const;
  void checkLocks(const Call& call) const;

  const Misuse& misuse_;
  const Registry& registry_;
};

// Whether it is up to the program to undo a registration: there is no way to undo a provider's, and the
// modules' are the context's own.
bool isToBeUndone(const Callback& callback);

#endif
