// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STRICT_REGISTRATION_CHECKS_H
#define CPP2C_HOST_STRICT_REGISTRATION_CHECKS_H

#include "host/registration/registry.h"
#include "host/strict/misuse.h"

namespace host {

// Checks registrations, and the calls made through them, for misuse that the interface does not report.
class RegistrationChecks {
 public:
  RegistrationChecks(const Misuse& misuse, Registry& registry);

  // To be called once all modules are unloaded.
  void checkUnloaded() const;

 private:
  void checkDuplicate(const Registration& added) const;
  void checkLocks(const Call& call) const;

  const Misuse& misuse_;
  const Registry& registry_;
};

// Whether the program is expected to remove a registration itself. Providers cannot be unregistered, and the
// steps of modules are registered by the host context.
bool isRemovable(const Registration& registration);

}  // namespace host

#endif
