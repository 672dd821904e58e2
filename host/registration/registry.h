// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_REGISTRATION_REGISTRY_H
#define CPP2C_HOST_REGISTRATION_REGISTRY_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/heartbeat/heartbeat.h"
#include "host/registration/callee.h"

namespace host {

// What causes the calls of a registration.
enum class RegistrationKind { kFd, kTimer, kEvent, kChange, kProvider, kModule };

// "fd", "timer", "event", "change", "provider" or "module".
const char* nameOf(RegistrationKind kind);

struct CallStatistics {
  using Duration = Heartbeat::TimePoint::duration;

  void add(Duration duration, std::optional<int> result);

  std::uint64_t count = 0;
  Duration total{0};
  Duration longest{0};
  Duration last{0};
  std::optional<int> last_result;  // if the callback returns a number
};

// One registration: the cause of its calls, its callee, its time, and statistics of the calls made so far.
struct Registration {
  RegistrationKind kind;
  std::string key;  // the descriptor, event, object, ...
  Callee callee;
  std::chrono::system_clock::time_point since;
  CallStatistics statistics;
};

// The registration in messages: "function (file.c:12) of fd 7".
std::string textOf(const Registration& registration);

// One completed call.
struct Call {
  const std::shared_ptr<Registration>& registration;
  const Heartbeat::Reading& before;
  const Heartbeat::Reading& after;
  std::optional<int> result;
};

// A call that was not made, or that ended by an exception.
struct FailedCall {
  std::string text;  // for the log
  bool threw;
};

class RegistrationHandle;

// Keeps all registrations, measures their calls and limits how deeply these are nested. It must outlive every
// registration.
class Registry {
 public:
  using WallTime = std::function<std::chrono::system_clock::time_point()>;

  // The deepest nesting of calls. On a stack of 1 MiB, it leaves at least 8 KiB to each callback.
  static constexpr std::size_t kMostNested = 64;

  explicit Registry(Heartbeat& heartbeat, WallTime wall_time = std::chrono::system_clock::now);

  RegistrationHandle add(RegistrationKind kind, std::string key, const Callee& callee);

  // All registrations, the oldest first.
  std::vector<std::shared_ptr<const Registration>> registrations() const;

  // Statistics of all calls. A nested call counts as part of the outer call.
  const CallStatistics& statistics() const { return statistics_; }

  // The registration whose callback is running, the innermost if calls are nested. Null if there is none.
  const Registration* running() const { return running_.empty() ? nullptr : running_.back().get(); }

  // onAdded() sets the function to call with each new registration, onFailed() the one to call with each
  // failed call; onCalled() adds a function to call with each completed call.
  void onAdded(std::function<void(const Registration&)> callback) { on_added_ = std::move(callback); }
  void onFailed(std::function<void(const FailedCall&)> callback) { on_failed_ = std::move(callback); }
  void onCalled(std::function<void(const Call&)> callback) { on_called_.push_back(std::move(callback)); }

 private:
  friend class RegistrationHandle;

  using Registrations = std::list<std::shared_ptr<Registration>>;

  // A call in progress.
  class Running {
   public:
    Running(Registry& registry, std::shared_ptr<Registration> registration) : registry_(registry) {
      registry_.running_.push_back(std::move(registration));
    }
    ~Running() { registry_.leave(); }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

   private:
    Registry& registry_;
  };

  bool allowsCallOf(const Registration& registration);
  void reportException();
  Heartbeat::Reading finish(const Heartbeat::Reading& before, std::optional<int> result);
  void leave();

  Heartbeat& heartbeat_;
  const WallTime wall_time_;
  Registrations registrations_;
  CallStatistics statistics_;
  std::vector<std::shared_ptr<Registration>> running_;  // the innermost last
  bool too_deep_ = false;                               // until the outermost call returns
  std::function<void(const Registration&)> on_added_;
  std::function<void(const FailedCall&)> on_failed_ = [](const FailedCall&) {};
  std::vector<std::function<void(const Call&)>> on_called_;
};

// Owns one registration. Destroying the handle removes the registration from the registry.
class RegistrationHandle {
 public:
  RegistrationHandle() = default;  // without a registration: calls are not measured
  RegistrationHandle(Registry& registry, Registry::Registrations::iterator entry)
      : registry_(&registry), entry_(entry) {}
  ~RegistrationHandle() { remove(); }
  RegistrationHandle(RegistrationHandle&& other) noexcept
      : registry_(std::exchange(other.registry_, nullptr)), entry_(other.entry_) {}
  RegistrationHandle& operator=(RegistrationHandle&& other) noexcept {
    if (this != &other) remove();
    registry_ = std::exchange(other.registry_, nullptr);
    entry_ = other.entry_;
    return *this;
  }

  // Makes one call and returns its result, or nothing if it throws or if too many calls are nested.
  // Exceptions end here because most callers are C functions. The call may destroy this handle.
  template <typename Function>
  auto call(Function function) const {
    std::optional<Heartbeat::Reading> now;
    return call(std::move(function), now);
  }

  // The same in a row of calls. `now` is the time at which the last one ended, or nothing before the first:
  // the time is read once for each call, and what passes between two of them counts to the second.
  template <typename Function>
  auto call(Function function, std::optional<Heartbeat::Reading>& now) const
      -> std::optional<decltype(function())> {
    if (registry_ == nullptr) return function();
    Registry& registry = *registry_;
    if (!registry.allowsCallOf(**entry_)) return std::nullopt;
    const Registry::Running running(registry, *entry_);
    if (!now) now = registry.heartbeat_.read();
    std::optional<decltype(function())> result;
    try {
      result = function();
    } catch (...) {
      registry.reportException();
    }
    now = registry.finish(*now, numberIn(result));
    return result;
  }

 private:
  static std::optional<int> numberIn(std::optional<int> result) { return result; }
  static std::optional<int> numberIn(const std::optional<std::string>& /*result*/) { return std::nullopt; }

  void remove() {
    if (registry_ != nullptr) registry_->registrations_.erase(entry_);
  }

  Registry* registry_ = nullptr;
  Registry::Registrations::iterator entry_;
};

}  // namespace host

#endif
