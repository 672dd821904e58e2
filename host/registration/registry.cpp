// SPDX-License-Identifier: MIT
#include "host/registration/registry.h"

#include <cxxabi.h>

#include <algorithm>
#include <exception>
#include <typeinfo>

#include "host/symbol/symbol.h"

namespace host {

const char* nameOf(RegistrationKind kind) {
  switch (kind) {
    case RegistrationKind::kFd:
      return "fd";
    case RegistrationKind::kTimer:
      return "timer";
    case RegistrationKind::kEvent:
      return "event";
    case RegistrationKind::kChange:
      return "change";
    case RegistrationKind::kProvider:
      return "provider";
    case RegistrationKind::kModule:
      return "module";
  }
  return "";
}

std::string textOf(const Registration& registration) {
  return textOf(symbolOf(registration.callee)) + " of " + nameOf(registration.kind) + ' ' + registration.key;
}

void CallStatistics::add(Duration duration, std::optional<int> result) {
  count++;
  total += duration;
  longest = std::max(longest, duration);
  last = duration;
  last_result = result;
}

Registry::Registry(Heartbeat& heartbeat, WallTime wall_time)
    : heartbeat_(heartbeat), wall_time_(std::move(wall_time)) {
  running_.reserve(kMostNested);
}

RegistrationHandle Registry::add(RegistrationKind kind, std::string key, const Callee& callee) {
  const auto entry = registrations_.insert(
      registrations_.end(), std::make_shared<Registration>(
                                Registration{kind, std::move(key), callee, wall_time_(), CallStatistics()}));
  if (on_added_) on_added_(**entry);
  return RegistrationHandle(*this, entry);
}

std::vector<std::shared_ptr<const Registration>> Registry::registrations() const {
  return {registrations_.begin(), registrations_.end()};
}

// Once the limit is reached, refuses all calls until the outermost one returns: callbacks that each cause two
// others would make calls without end below the limit.
bool Registry::allowsCallOf(const Registration& registration) {
  if (too_deep_) return false;
  if (running_.size() < kMostNested) return true;
  too_deep_ = true;
  on_failed_({"the callback " + textOf(registration) +
                  " is not called, nor any other until the outermost callback returns: " +
                  std::to_string(kMostNested) + " calls are nested, probably an endless recursion",
              false});
  return false;
}

// To be called while the exception is handled. The end of a thread is no object, so the sanitizer would
// report the reference to it.
__attribute__((no_sanitize("null"))) void Registry::reportException() {
  std::string thrown;
  try {
    throw;
  } catch (const abi::__forced_unwind&) {
    throw;  // ends the thread, which must not be stopped: pthread_exit()
  } catch (const std::exception& exception) {
    thrown = typeName(typeid(exception).name()) + ": " + exception.what();
  } catch (...) {
    thrown = typeName(abi::__cxa_current_exception_type()->name());
  }
  on_failed_({"the callback " + textOf(*running()) + " threw " + thrown, true});
}

void Registry::leave() {
  running_.pop_back();
  if (running_.empty()) too_deep_ = false;
}

Heartbeat::Reading Registry::finish(const Heartbeat::Reading& before, std::optional<int> result) {
  const std::shared_ptr<Registration>& registration = running_.back();
  const Heartbeat::Reading after = heartbeat_.read();
  const auto duration = after.time - before.time;
  registration->statistics.add(duration, result);
  if (running_.size() == 1) statistics_.add(duration, result);
  // The steps of modules run while the loop does not, or inside a call that is checked itself.
  if (registration->kind != RegistrationKind::kModule) {
    heartbeat_.check(before, after, [&] { return textOf(*registration); });
  }
  const Call call{registration, before, after, result};
  for (const auto& callback : on_called_) callback(call);
  return after;
}

}  // namespace host
