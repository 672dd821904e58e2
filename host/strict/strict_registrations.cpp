// SPDX-License-Identifier: MIT
#include "host/strict/strict_registrations.h"

#include <errno.h>

#include <set>
#include <string>

#include "host/symbol/symbol.h"

namespace {

// Whether it adds to the registrations of its kind and key. The others take the place of an earlier one,
// which is still there while it makes a last call.
bool addsUp(const Callback& callback) {
  return callback.kind == Kind::kEvent || callback.kind == Kind::kChange;
}

bool isSame(const Callback& a, const Callback& b) {
  return a.kind == b.kind && a.key == b.key && a.callee.function == b.callee.function;
}

}  // namespace

bool isToBeUndone(const Callback& callback) {
  return callback.kind != Kind::kModule && callback.kind != Kind::kProvider;
}

StrictRegistrations::StrictRegistrations(const Misuse& misuse, Registry& registry)
    : misuse_(misuse), registry_(registry) {
  registry.onAdded([this](const Callback& added) { checkTwice(added); });
  registry.onCalled([this](const Call& call) { checkLocks(call); });
}

void StrictRegistrations::checkTwice(const Callback& added) const {
  if (!addsUp(added) || added.callee.function == nullptr) return;
  for (const auto& callback : registry_.callbacks()) {
    if (callback.get() == &added || !isSame(*callback, added)) continue;
    misuse_.reportCall(textOf(added) + " is registered twice");
    return;
  }
}

void StrictRegistrations::checkLocks(const Call& call) const {
  const int locks = call.after.locks - call.before.locks;
  if (locks == 0) return;
  misuse_.report(textOf(*call.callback) + " leaves the heartbeat with " + std::to_string(std::abs(locks)) +
                 (locks > 0 ? " more" : " fewer") + " locks than it found");
}

void StrictRegistrations::checkUnloaded() const {
  std::set<std::string> libraries;
  for (const auto& callback : registry_.callbacks()) {
    if (callback->kind == Kind::kModule) libraries.insert(libraryAt(callback->callee.function));
  }
  libraries.erase("");                       // of nobody, or of an observer in C++
  libraries.erase(program_invocation_name);  // the program itself is never unloaded
  for (const auto& callback : registry_.callbacks()) {
    if (!isToBeUndone(*callback) || libraries.count(libraryAt(callback->callee.function)) == 0) continue;
    misuse_.report(textOf(*callback) + " is still registered, and its module is unloaded");
  }
}
