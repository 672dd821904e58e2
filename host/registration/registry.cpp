// SPDX-License-Identifier: MIT
#include "host/registration/registry.h"

#include <algorithm>

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
    : heartbeat_(heartbeat), wall_time_(std::move(wall_time)) {}

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

void Registry::finish(std::shared_ptr<Registration> registration, const Heartbeat::Reading& before,
                      std::optional<int> result) {
  const Heartbeat::Reading after = heartbeat_.read();
  const auto duration = after.time - before.time;
  registration->statistics.add(duration, result);
  if (depth_ == 1) statistics_.add(duration, result);
  // The steps of modules run while the loop does not, or inside a call that is checked itself.
  if (registration->kind != RegistrationKind::kModule) {
    heartbeat_.check(before, after, [&] { return textOf(*registration); });
  }
  const Call call{std::move(registration), before, after, result};
  for (const auto& callback : on_called_) callback(call);
}

}  // namespace host
