// SPDX-License-Identifier: MIT
#include "host/strict/registration_checks.h"

#include <errno.h>

#include <set>
#include <string>

#include "host/symbol/symbol.h"

namespace host {
namespace {

// Whether a registration adds to others of the same kind and key. Those of the other kinds replace the
// earlier one, which may still exist for the call that it is in.
bool accumulates(const Registration& registration) {
  return registration.kind == RegistrationKind::kEvent || registration.kind == RegistrationKind::kChange;
}

bool isSame(const Registration& a, const Registration& b) {
  return a.kind == b.kind && a.key == b.key && a.callee.function == b.callee.function;
}

}  // namespace

bool isRemovable(const Registration& registration) {
  return registration.kind != RegistrationKind::kModule && registration.kind != RegistrationKind::kProvider;
}

RegistrationChecks::RegistrationChecks(const Misuse& misuse, Registry& registry)
    : misuse_(misuse), registry_(registry) {
  registry.onAdded([this](const Registration& added) { checkDuplicate(added); });
  registry.onCalled([this](const Call& call) { checkLocks(call); });
}

void RegistrationChecks::checkDuplicate(const Registration& added) const {
  if (!accumulates(added) || added.callee.function == nullptr) return;
  for (const auto& registration : registry_.registrations()) {
    if (registration.get() == &added || !isSame(*registration, added)) continue;
    misuse_.reportCall(textOf(added) + " is registered twice");
    return;
  }
}

void RegistrationChecks::checkLocks(const Call& call) const {
  const int locks = call.after.locks - call.before.locks;
  if (locks == 0) return;
  misuse_.report(textOf(*call.registration) + " returns with " + std::to_string(std::abs(locks)) +
                 (locks > 0 ? " more" : " fewer") + " heartbeat locks than it was called with");
}

void RegistrationChecks::checkUnloaded() const {
  std::set<std::string> libraries;
  for (const auto& registration : registry_.registrations()) {
    if (registration->kind == RegistrationKind::kModule) {
      libraries.insert(libraryAt(registration->callee.function));
    }
  }
  libraries.erase("");                       // of a module without functions, or one written in C++
  libraries.erase(program_invocation_name);  // the program itself is never unloaded
  for (const auto& registration : registry_.registrations()) {
    if (!isRemovable(*registration)) continue;
    if (libraries.count(libraryAt(registration->callee.function)) == 0) continue;
    misuse_.report(textOf(*registration) + " is still registered after its module was unloaded");
  }
}

}  // namespace host
