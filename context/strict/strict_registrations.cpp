// SPDX-License-Identifier: MIT
#include "context/strict/strict_registrations.h"

#include <errno.h>

#include <string>

#include "context/symbol/symbol.h"

namespace {

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
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
  registry.onCalled([this](const Call& call) {
    checkLocks(call);
    checkUnloaded(call);
  });
}

void StrictRegistrations::checkTwice(const Callback& added) const {
  if (added.callee.function == nullptr) return;
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

void StrictRegistrations::checkUnloaded(const Call& call) const {
  const Callback& step = *call.callback;
  if (step.kind != Kind::kModule || !endsWith(step.key, " onUnload") || step.callee.function == nullptr)
    return;
  const std::string& library = symbolAt(step.callee.function).library;
  if (library == program_invocation_name) return;  // the program itself is never unloaded
  for (const auto& callback : registry_.callbacks()) {
    if (!isToBeUndone(*callback) || callback->callee.function == nullptr) continue;
    if (symbolAt(callback->callee.function).library != library) continue;
    misuse_.report(textOf(*callback) + " is still registered, and its module is unloaded");
  }
}
