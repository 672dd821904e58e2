// SPDX-License-Identifier: MIT
#include "host/registration/registry.h"

#include <algorithm>

#include "host/symbol/symbol.h"

const char* nameOf(Kind kind) {
  switch (kind) {
    case Kind::kFd:
      return "fd";
    case Kind::kTimer:
      return "timer";
    case Kind::kEvent:
      return "event";
    case Kind::kChange:
      return "change";
    case Kind::kProvider:
      return "provider";
    case Kind::kModule:
      return "module";
  }
  return "";
}

std::string textOf(const Callback& callback) {
  return textOf(symbolOf(callback.callee)) + " of " + nameOf(callback.kind) + ' ' + callback.key;
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

Registration Registry::add(Kind kind, std::string key, const Callee& callee) {
  const auto entry = callbacks_.insert(
      callbacks_.end(),
      std::make_shared<Callback>(Callback{kind, std::move(key), callee, wall_time_(), CallStatistics()}));
  if (on_added_) on_added_(**entry);
  return Registration(*this, entry);
}

std::vector<std::shared_ptr<const Callback>> Registry::callbacks() const {
  return {callbacks_.begin(), callbacks_.end()};
}

void Registry::finish(std::shared_ptr<Callback> callback, const Heartbeat::Reading& before,
                      std::optional<int> result) {
  const Heartbeat::Reading after = heartbeat_.read();
  const auto duration = after.time - before.time;
  callback->statistics.add(duration, result);
  if (depth_ == 1) statistics_.add(duration, result);
  // The steps of modules are taken before the loop runs and after it: they hold nothing up.
  if (callback->kind != Kind::kModule) {
    heartbeat_.check(before, after, [&] { return textOf(*callback); });
  }
  const Call call{std::move(callback), before, after, result};
  for (const auto& tell : on_called_) tell(call);
}
