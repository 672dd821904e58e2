// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_REGISTRATION_REGISTRY_H
#define CPP2C_HOST_REGISTRATION_REGISTRY_H

#include <chrono>
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

// What a registration is for.
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
  std::optional<int> last_result;  // of a callback that answers a number
};

// One registration: who is called, for what, since when, and how that went so far.
struct Registration {
  RegistrationKind kind;
  std::string key;  // the descriptor, the event, the object ...
  Callee callee;
  std::chrono::system_clock::time_point since;
  CallStatistics statistics;
};

// "function (file.c:12) of fd 7".
std::string textOf(const Registration& registration);

// One call that has returned.
struct Call {
  std::shared_ptr<const Registration> registration;
  Heartbeat::Reading before;
  Heartbeat::Reading after;
  std::optional<int> result;
};

class RegistrationHandle;

// Knows every registration, and measures the calls that are made through them. It outlives them all.
class Registry {
 public:
  using WallTime = std::function<std::chrono::system_clock::time_point()>;

  explicit Registry(Heartbeat& heartbeat, WallTime wall_time = std::chrono::system_clock::now);

  RegistrationHandle add(RegistrationKind kind, std::string key, const Callee& callee);

  // All there are, in the order in which they were made.
  std::vector<std::shared_ptr<const Registration>> registrations() const;

  // All calls, a call inside another one counting as part of that.
  const CallStatistics& statistics() const { return statistics_; }

  // Has a function called with each registration that is made, and with each call that has returned.
  void onAdded(std::function<void(const Registration&)> tell) { on_added_ = std::move(tell); }
  void onCalled(std::function<void(const Call&)> tell) { on_called_.push_back(std::move(tell)); }

 private:
  friend class RegistrationHandle;

  using Registrations = std::list<std::shared_ptr<Registration>>;

  // A call in progress. It may end by an exception, and is then not measured.
  class Depth {
   public:
    explicit Depth(int& depth) : depth_(depth) { depth_++; }
    ~Depth() { depth_--; }
    Depth(const Depth&) = delete;
    Depth& operator=(const Depth&) = delete;

   private:
    int& depth_;
  };

  void finish(std::shared_ptr<Registration> registration, const Heartbeat::Reading& before,
              std::optional<int> result);

  Heartbeat& heartbeat_;
  const WallTime wall_time_;
  Registrations registrations_;
  CallStatistics statistics_;
  int depth_ = 0;  // of calls inside calls
  std::function<void(const Registration&)> on_added_;
  std::vector<std::function<void(const Call&)>> on_called_;
};

// Keeps one registration in the registry; it leaves that with the handle.
class RegistrationHandle {
 public:
  RegistrationHandle() = default;  // of nobody: its calls are not measured
  RegistrationHandle(Registry& registry, Registry::Registrations::iterator entry)
      : registry_(&registry), entry_(entry) {}
  ~RegistrationHandle() { leave(); }
  RegistrationHandle(RegistrationHandle&& other) noexcept
      : registry_(std::exchange(other.registry_, nullptr)), entry_(other.entry_) {}
  RegistrationHandle& operator=(RegistrationHandle&& other) noexcept {
    if (this != &other) leave();
    registry_ = std::exchange(other.registry_, nullptr);
    entry_ = other.entry_;
    return *this;
  }

  // Makes one call, which may end this very registration, and returns its result.
  template <typename Function>
  auto call(Function function) const {
    if (registry_ == nullptr) return function();
    Registry& registry = *registry_;
    std::shared_ptr<Registration> registration = *entry_;
    const Registry::Depth depth(registry.depth_);
    const Heartbeat::Reading before = registry.heartbeat_.read();
    auto result = function();
    registry.finish(std::move(registration), before, numberIn(result));
    return result;
  }

 private:
  static std::optional<int> numberIn(int result) { return result; }
  static std::optional<int> numberIn(const std::string& /*result*/) { return std::nullopt; }

  void leave() {
    if (registry_ != nullptr) registry_->registrations_.erase(entry_);
  }

  Registry* registry_ = nullptr;
  Registry::Registrations::iterator entry_;
};

}  // namespace host

#endif
